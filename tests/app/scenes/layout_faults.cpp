#include "tests/app/scenes/layout_faults.h"

#include "app/OrvgStatusWidget.h"
#include "tests/app/scenes/accessibility_faults.h"
#include "tests/app/scenes/shown_texts.h"

#include <QAbstractButton>
#include <QAbstractScrollArea>
#include <QAction>
#include <QLabel>
#include <QMdiArea>
#include <QMenu>
#include <QSplitterHandle>
#include <QStackedWidget>
#include <QStyle>
#include <QTabBar>
#include <QToolButton>
#include <QtMath>

namespace {

// Borders may share a pixel, and rounding takes one at ratios with a fraction.
constexpr int kTolerance = 1;

QString asText(const QSize& size)
{
    return QStringLiteral("%1x%2").arg(size.width()).arg(size.height());
}

bool fits(const QSize& needed, const QSize& room)
{
    return needed.width() <= room.width() + kTolerance &&
           needed.height() <= room.height() + kTolerance;
}

// Whoever scrolls or stacks cuts its contents on purpose.
bool managesItsParts(const QWidget& parent)
{
    return qobject_cast<const QAbstractScrollArea*>(&parent) ||
           qobject_cast<const QAbstractScrollArea*>(parent.parentWidget()) ||
           qobject_cast<const QStackedWidget*>(&parent) || parent.inherits("QTabBar") ||
           parent.inherits("QMainWindow") || parent.inherits("QMdiSubWindow") ||
           parent.inherits("QAbstractSpinBox") || parent.inherits("QComboBox") ||
           parent.inherits("QLineEdit") || parent.inherits("QSplitter") ||
           parent.inherits("QToolBar");
}

QStringList overlapsIn(const QWidget& parent)
{
    QVector<const QWidget*> parts;
    for (const QObject* child : parent.children()) {
        const auto* part = qobject_cast<const QWidget*>(child);
        if (part && !part->isWindow() && part->isVisible() && !part->size().isEmpty())
            parts << part;
    }
    QStringList faults;
    for (int first = 0; first < parts.size(); ++first) {
        for (int second = first + 1; second < parts.size(); ++second) {
            const QRect common = parts[first]->geometry() & parts[second]->geometry();
            if (common.width() > kTolerance && common.height() > kTolerance)
                faults << QStringLiteral("%1 lies above %2")
                              .arg(nameOf(*parts[second]), nameOf(*parts[first]));
        }
    }
    return faults;
}

bool canScroll(const QWidget& widget)
{
    for (const QWidget* part = widget.parentWidget(); part; part = part->parentWidget()) {
        if (part->inherits("QScrollArea"))
            return true;
    }
    return false;
}

bool isCut(const QWidget& widget)
{
    const bool isWhole = widget.inherits("QAbstractButton") || widget.inherits("QLabel") ||
                         widget.inherits("QComboBox") || widget.inherits("QAbstractSpinBox") ||
                         widget.inherits("QLineEdit") || widget.inherits("QProgressBar");
    if (!isWhole || canScroll(widget) || widget.size().isEmpty())
        return false;
    // Whole parts behind another dock are not looked at.
    return !widget.visibleRegion().isEmpty() &&
           widget.visibleRegion().boundingRect() != widget.rect() &&
           !widget.inherits("QToolBarExtension");
}

// --- icons

QString iconFault(const QIcon& icon, const QSize& size, const QWidget& widget, const QString& name)
{
    if (icon.isNull() || size.isEmpty())
        return {};
    const qreal ratio = widget.devicePixelRatioF();
    const QPixmap shown = icon.pixmap(size);
    const QSize logical = (QSizeF(shown.size()) / shown.devicePixelRatio()).toSize();
    const QSize needed(qFloor(logical.width() * ratio), qFloor(logical.height() * ratio));
    const bool isSharp = fits(needed, shown.size()) && fits(size * 0.7, logical);
    return isSharp ? QString()
                   : QStringLiteral("%1 has %2 pixels of %3")
                         .arg(name, asText(shown.size()), asText((size * ratio)));
}

QString pictureFault(const QLabel& label)
{
    const QPixmap shown = label.pixmap(Qt::ReturnByValue);
    const qreal ratio = label.devicePixelRatioF();
    if (shown.isNull() || shown.devicePixelRatio() >= qMin(ratio, 3.0))
        return {};
    return QStringLiteral("%1 has a ratio of %2").arg(nameOf(label)).arg(shown.devicePixelRatio());
}

QStringList iconFaultsOf(const QMenu& menu)
{
    const int side = menu.style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, &menu);
    QStringList faults;
    for (const QAction* action : menu.actions())
        faults << iconFault(action->icon(), QSize(side, side), menu, action->text());
    return faults;
}

} // namespace

QStringList cutTexts(QWidget& window)
{
    QStringList faults;
    for (const ShownText& text : shownTexts(window)) {
        if (!isPartOfQt(*text.widget) && !isBehindAnother(*text.widget) && !text.needed.isEmpty() &&
            !fits(text.needed, text.room))
            faults << QStringLiteral("\"%1\" of %2 needs %3 of %4")
                          .arg(text.text, nameOf(*text.widget), asText(text.needed),
                               asText(text.room));
    }
    return faults;
}

QStringList overlaps(QWidget& window)
{
    QStringList faults;
    QList<QWidget*> parts = window.findChildren<QWidget*>();
    parts.prepend(&window);
    for (const QWidget* part : parts) {
        if (!part->isVisible() || isPartOfQt(*part) || isBehindAnother(*part))
            continue;
        if (!managesItsParts(*part))
            faults += overlapsIn(*part);
        if (isCut(*part))
            faults << nameOf(*part) + QStringLiteral(" is cut");
    }
    return faults;
}

QStringList blurredIcons(QWidget& window)
{
    QStringList faults;
    if (const auto* menu = qobject_cast<const QMenu*>(&window))
        faults += iconFaultsOf(*menu);
    for (const QWidget* part : window.findChildren<QWidget*>()) {
        if (!part->isVisible() || isPartOfQt(*part) || isBehindAnother(*part))
            continue;
        if (const auto* button = qobject_cast<const QAbstractButton*>(part))
            faults << iconFault(button->icon(), button->iconSize(), *button, nameOf(*button));
        else if (const auto* label = qobject_cast<const QLabel*>(part))
            faults << pictureFault(*label);
        else if (const auto* status = qobject_cast<const OrvgStatusWidget*>(part))
            faults << iconFault(QIcon(status->ledImage()), QSize(1, 1) * (status->height() - 2),
                                *status, nameOf(*status));
    }
    faults.removeAll(QString());
    return faults;
}
