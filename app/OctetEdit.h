#pragma once

#include <QLineEdit>

/// The field for one octet of an address. A whole address that is pasted into it, in whatever way,
/// is announced instead of being refused.
class OctetEdit : public QLineEdit
{
    Q_OBJECT

public:
    explicit OctetEdit(QWidget* parent = nullptr);

    /// The fixed-pitch font, no larger than the system's, whose three digits have room in `width`
    /// pixels.
    static QFont fontFor(int width);

signals:
    /// @param address four octets joined by "."
    void addressPasted(const QString& address);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    bool announceAddress(const QString& pasted);
};
