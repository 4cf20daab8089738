#pragma once

#include <QStringList>
#include <QWidget>

/// The names of the visible children of this type that are cut by the edge of anything around them.
template<typename Widget>
QStringList clippedChildren(const QWidget& parent)
{
    QStringList names;
    for (const Widget* child : parent.findChildren<Widget*>()) {
        if (child->isVisible() && child->visibleRegion() != QRegion(child->rect()))
            names << child->objectName();
    }
    return names;
}
