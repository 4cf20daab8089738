#pragma once

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
    static constexpr int kOctetCount = 4;

    explicit OrvgIpControlWidget(QWidget* parent = nullptr, const QString& text = QString());

    /// The four octets joined by "."; an empty field gives an empty octet, leading zeros go.
    QString text() const;

    /// Splits at "." and drops empty parts. A field without a part, or whose part is no octet,
    /// becomes empty.
    void setText(const QString& text);

    /// The address with its first octet in the lowest byte; an empty field counts as 0.
    std::uint32_t value() const;
    void setValue(std::uint32_t address);

    bool eventFilter(QObject* watched, QEvent* event) override;

public slots:
    /// Goes on to the next field when `pEdit` is full and still being typed in.
    void slotTextChanged(QLineEdit* pEdit);

signals:
    void signalTextChanged(QLineEdit* pEdit);

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void setUpFrame();
    OctetEdit* createField(int index);
    void addDot(QHBoxLayout* layout);

    void fitFont(int availableWidth);
    int widthFor(const QFont& font) const;

    int indexOf(const QObject* field) const;
    OctetEdit* fieldAt(int index) const;
    void moveTo(int index);

    bool handleFieldEvent(int index, QEvent* event);
    bool handleKey(int index, const QKeyEvent& key);
    bool handleDot(int index, bool followsMove);
    bool handleTab(int index);
    bool handleRight(int index);
    bool handleLeft(int index);
    void showPastedAddress(const QString& address);

    static constexpr int kNoField = -1;

    std::array<OctetEdit*, kOctetCount> mFields{}; // children
    // The field that a third digit has just moved on to: a dot typed next has had its effect.
    int mMovedOnTo = kNoField;
};
