#include "app/OctetEdit.h"

#include "app/IPItemValidator.h"
#include "ecu/store/ip_address.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QFontInfo>
#include <QFontMetrics>
#include <QKeyEvent>
#include <QMenu>

namespace {

// A line edit keeps two pixels free on either side of its text, which nobody sees here.
constexpr int kTextMargin = -1;
constexpr int kLineEditMargin = 2;
constexpr int kMinFontPixels = 8;

QFont fixedPitchFont()
{
    QFont font(QStringLiteral("Monospace"), QApplication::font().pointSize());
    font.setStyleHint(QFont::Monospace);
    font.setFixedPitch(true);
    return font;
}

// What three digits need.
int widthIn(const QFont& font)
{
    return QFontMetrics(font).horizontalAdvance(QStringLiteral("255")) +
           2 * (kLineEditMargin + kTextMargin);
}

} // namespace

OctetEdit::OctetEdit(QWidget* parent) : QLineEdit(parent)
{
    setFrame(false);
    setAlignment(Qt::AlignCenter);
    setTextMargins(kTextMargin, 0, kTextMargin, 0);
    setMinimumWidth(1);
    setValidator(new IPItemValidator(this));
}

QFont OctetEdit::fontFor(int width)
{
    QFont font = fixedPitchFont();
    for (int pixels = QFontInfo(font).pixelSize(); pixels >= kMinFontPixels; --pixels) {
        font.setPixelSize(pixels);
        if (widthIn(font) <= width)
            break;
    }
    return font;
}

void OctetEdit::keyPressEvent(QKeyEvent* event)
{
    if (!event->matches(QKeySequence::Paste) || !announceAddress(QApplication::clipboard()->text()))
        QLineEdit::keyPressEvent(event);
}

void OctetEdit::mouseReleaseEvent(QMouseEvent* event)
{
    const QClipboard* clipboard = QApplication::clipboard();
    const bool isPaste = event->button() == Qt::MiddleButton && clipboard->supportsSelection();
    if (!isPaste || !announceAddress(clipboard->text(QClipboard::Selection)))
        QLineEdit::mouseReleaseEvent(event);
}

// The menu's own paste comes first; of a whole address the validator refuses it.
void OctetEdit::contextMenuEvent(QContextMenuEvent* event)
{
    QMenu* menu = createStandardContextMenu();
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const QString pasteText = QLineEdit::tr("&Paste");
    for (const auto actions = menu->actions(); const QAction* action : actions) {
        if (action->text().startsWith(pasteText))
            connect(action, &QAction::triggered, this,
                    [this] { announceAddress(QApplication::clipboard()->text()); });
    }
    menu->popup(event->globalPos());
}

bool OctetEdit::announceAddress(const QString& pasted)
{
    const QString address = completeAddress(pasted);
    if (address.isEmpty())
        return false;
    emit addressPasted(address);
    return true;
}
