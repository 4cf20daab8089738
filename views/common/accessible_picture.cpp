#include "views/common/accessible_picture.h"

#include <QAccessibleWidget>
#include <QMetaObject>
#include <QString>
#include <QWidget>

namespace {

QAccessibleInterface* pictureInterface(const QString& className, QObject* object)
{
    auto* widget = qobject_cast<QWidget*>(object);
    // Asked again for each base class, until somebody knows one.
    if (!widget || className != QLatin1String(widget->metaObject()->className()) ||
        widget->metaObject()->indexOfClassInfo("accessible role") < 0)
        return nullptr;
    return new QAccessibleWidget(widget, QAccessible::Graphic);
}

} // namespace

void announcePictures()
{
    QAccessible::installFactory(pictureInterface);
}
