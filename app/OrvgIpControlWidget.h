#pragma once

#include "app/octet_keys.h"
#include "ecu/store/ip_address.h"

#include <QFrame>

#include <array>
#include <cstdint>

class OctetEdit;
class QHBoxLayout;
class QKeyEvent;
class QLineEdit;

/// An IPv4 address in four fields of one octet, typed through like one text: a dot or a third
/// digit goes on to the next field. A whole address may be pasted into any of them.
class OrvgIpControlWidget : public QFrame
{
    Q_OBJECT

public:
    explicit OrvgIpControlWidget(QWidget* parent = nullptr, const QString& text = QString());

    /// The four octets joined by "."; an empty field gives an empty octet, leading zeros go.
    QString text() const;

    /// False while an octet is missing.
    bool isComplete() const;

    /// Splits at "." and drops empty parts. A field without a part, or whose part is no octet,
    /// becomes empty.
    void setText(const QString& text);

    /// The address with its first octet in the lowest byte; an empty field counts as 0.
    std::uint32_t value() const;
    void setValue(std::uint32_t address);

    /// Lets the first digit typed replace the first octet, with the focus in it.
    void startTyping();

    bool eventFilter(QObject* watched, QEvent* event) override;

public slots:
    /// Goes on to the next field when `pEdit` is full and still being typed in.
    void slotTextChanged(QLineEdit* pEdit);

signals:
    void signalTextChanged(QLineEdit* pEdit);

    /// An octet has become another one, whoever changed it.
    void addressChanged();

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void setUpFrame();
    OctetEdit* createField(int index);
    void addDot(QHBoxLayout* layout);

    void fitFont(int availableWidth);

    int indexOf(const QObject* field) const;
    OctetEdit* fieldAt(int index) const;
    void moveTo(int index);
    void moveToEndOf(int index);

    OctetField stateOf(int index) const;
    bool handleKey(int index, QKeyEvent& event);
    bool act(OctetKeyAction action, int index, QKeyEvent& event);
    bool sendTo(int index, QKeyEvent& event);
    void showPastedAddress(const QString& address);

    static constexpr int kNoField = -1;

    std::array<OctetEdit*, kOctetCount> mFields{}; // children
    // The field that a third digit has just moved on to: a dot typed next has had its effect.
    int mMovedOnTo = kNoField;
    // The field whose last key must not move on.
    int mStaysIn = kNoField;
    // Keys are still on their way to the field that the focus has left.
    bool mIsFocusMoving = false;
};
