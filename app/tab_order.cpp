#include "app/tab_order.h"

#include <QDockWidget>
#include <QMainWindow>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QScrollArea>
#include <QVector>

#include <algorithm>
#include <utility>

namespace {

bool isInFront(const QWidget& part)
{
    for (const QWidget* around = &part; around; around = around->parentWidget()) {
        const auto* dock = qobject_cast<const QDockWidget*>(around);
        const auto* subWindow = qobject_cast<const QMdiSubWindow*>(around);
        if ((dock && dock->visibleRegion().isEmpty()) ||
            (subWindow && subWindow->mdiArea()->currentSubWindow() != subWindow))
            return false;
    }
    return true;
}

bool isTabStop(const QWidget& part, const QMainWindow& window)
{
    return (part.focusPolicy() & Qt::TabFocus) == Qt::TabFocus && !part.focusProxy() &&
           part.isEnabled() && part.window() == &window && part.isVisibleTo(&window) &&
           isInFront(part);
}

// The part of the window's own layout that it belongs to.
const QWidget* regionOf(const QWidget& part, const QMainWindow& window)
{
    const QWidget* region = &part;
    while (region->parentWidget() != &window)
        region = region->parentWidget();
    return region;
}

QVector<QWidget*> tabStops(const QMainWindow& window, const QWidget* focused)
{
    QVector<QWidget*> stops;
    for (QWidget* part = window.nextInFocusChain(); part != &window;
         part = part->nextInFocusChain()) {
        if (part == focused || isTabStop(*part, window))
            stops << part;
    }
    const auto placeOf = [&window](const QWidget* stop) {
        const QPoint place = regionOf(*stop, window)->pos();
        return std::pair(place.y(), place.x());
    };
    std::stable_sort(stops.begin(), stops.end(), [&](const QWidget* first, const QWidget* second) {
        return placeOf(first) < placeOf(second);
    });
    return stops;
}

} // namespace

QWidget* nextTabStop(const QMainWindow& window, bool next)
{
    const QWidget* focused = window.focusWidget();
    if (focused == &window)
        focused = nullptr;
    const QVector<QWidget*> stops = tabStops(window, focused);
    if (stops.isEmpty())
        return nullptr;
    if (!focused)
        return next ? stops.first() : stops.last();
    const auto count = stops.size();
    const auto index = stops.indexOf(const_cast<QWidget*>(focused));
    return stops[(index + (next ? 1 : count - 1)) % count];
}

void bringIntoSight(QWidget& part)
{
    for (QWidget* around = part.parentWidget(); around; around = around->parentWidget()) {
        if (auto* area = qobject_cast<QScrollArea*>(around))
            area->ensureWidgetVisible(&part);
    }
}
