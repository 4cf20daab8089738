#include "app/DockTitleStyle.h"

#include <QStyleOptionDockWidget>

void DockTitleStyle::drawControl(ControlElement element, const QStyleOption* option,
                                 QPainter* painter, const QWidget* widget) const
{
    const auto* dock = qstyleoption_cast<const QStyleOptionDockWidget*>(option);
    if (element != CE_DockWidgetTitle || !dock) {
        QProxyStyle::drawControl(element, option, painter, widget);
        return;
    }
    QStyleOptionDockWidget plain(*dock);
    plain.title.remove(QLatin1Char('&'));
    QProxyStyle::drawControl(element, &plain, painter, widget);
}
