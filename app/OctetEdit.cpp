#include "app/OctetEdit.h"

#include "app/IPItemValidator.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QFontMetrics>
#include <QKeyEvent>
#include <QMenu>

#include <algorithm>

namespace {

constexpr int kOctetCount = 4;
// A line edit keeps two pixels free on either side of its text, which nobody sees here.
constexpr int kTextMargin = -1;
constexpr int kLineEditMargin = 2;
constexpr QLatin1Char kDot('.');

} // namespace

OctetEdit::OctetEdit(QWidget* parent) : QLineEdit(parent)
{
    setFrame(false);
    setAlignment(Qt::AlignCenter);
    setTextMargins(kTextMargin, 0, kTextMargin, 0);
    setMinimumWidth(1);
    setValidator(new IPItemValidator(this));
}

int OctetEdit::widthFor(const QFont& font)
{
    return QFontMetrics(font).horizontalAdvance(QStringLiteral("255")) +
           2 * (kLineEditMargin + kTextMargin);
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
    for (const QAction* action : menu->actions()) {
        if (action->text().startsWith(pasteText))
            connect(action, &QAction::triggered, this,
                    [this] { announceAddress(QApplication::clipboard()->text()); });
    }
    menu->popup(event->globalPos());
}

bool OctetEdit::announceAddress(const QString& pasted)
{
    const QStringList octets = pasted.trimmed().split(kDot);
    if (octets.size() != kOctetCount || !std::all_of(octets.begin(), octets.end(), isOctet))
        return false;
    emit addressPasted(octets.join(kDot));
    return true;
}
