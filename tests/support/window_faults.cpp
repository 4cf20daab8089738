#include "tests/support/window_faults.h"

#include <QDockWidget>
#include <QMainWindow>
#include <QMdiArea>
#include <QScreen>
#include <QSplitter>
#include <QToolBar>

namespace {

// As far as it takes to get hold of it.
bool isOnScreen(const QWidget& window)
{
    const QRect visible = window.geometry() & window.screen()->availableGeometry();
    return visible.width() >= qMin(100, window.width()) &&
           visible.height() >= qMin(100, window.height()) && !visible.isEmpty();
}

QSize smallestOf(const QWidget& view)
{
    return view.minimumSizeHint().expandedTo(view.minimumSize()).boundedTo(view.maximumSize());
}

QString faultOfSplitter(const QSplitter& splitter)
{
    const bool isWide = splitter.orientation() == Qt::Horizontal;
    for (int section = 0; section < splitter.count(); ++section) {
        const QWidget& view = *splitter.widget(section);
        const int least = isWide ? smallestOf(view).width() : smallestOf(view).height();
        if (splitter.sizes().at(section) < qMax(1, least))
            return QStringLiteral("a section of %1 has %2 of %3 pixels")
                .arg(splitter.parentWidget()->metaObject()->className())
                .arg(splitter.sizes().at(section))
                .arg(least);
    }
    return {};
}

QString faultOfSplitters(const QMainWindow& window)
{
    QString fault;
    for (const QSplitter* splitter : window.findChildren<QSplitter*>()) {
        if (splitter->isVisible())
            fault += faultOfSplitter(*splitter);
    }
    return fault;
}

QString faultOfFloatingParts(const QMainWindow& window)
{
    for (const QWidget* part : window.findChildren<QWidget*>()) {
        const bool canFloat =
            qobject_cast<const QDockWidget*>(part) || qobject_cast<const QToolBar*>(part);
        if (canFloat && part->isWindow() && part->isVisible() && !isOnScreen(*part))
            return part->objectName() + QStringLiteral(" floats away");
    }
    return {};
}

} // namespace

QString faultOf(const QMainWindow& window)
{
    // The size that it was made for may exceed the smallest screens, the tests' among them.
    const QSize largest = QSize(1074, 707).expandedTo(window.screen()->availableSize());
    if (!window.isVisible() || window.isMinimized())
        return QStringLiteral("not shown");
    if (window.width() > largest.width() || window.height() > largest.height())
        return QStringLiteral("too large: %1 x %2").arg(window.width()).arg(window.height());
    if (window.width() < 200 || window.height() < 200)
        return QStringLiteral("too small");
    if (!isOnScreen(window))
        return QStringLiteral("not on the screen");
    if (!window.findChild<QToolBar*>()->isVisible())
        return QStringLiteral("no tool bar");
    if (window.findChild<QMdiArea*>()->width() < 100)
        return QStringLiteral("no room for the views");
    return faultOfSplitters(window) + faultOfFloatingParts(window);
}
