#pragma once

#include <QCoreApplication>
#include <QMetaType>
#include <QVariant>

/// What Qt 5 and Qt 6 want written differently: the one place that asks for Qt's version.
namespace qt_compatibility {

/// Sizes and pictures follow the screen's scale, as they always do since Qt 6. Before the
/// application is made.
inline void followScreenScale()
{
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
#endif
}

/// Makes the value one of the other's type; false where it cannot be.
inline bool convertToTypeOf(const QVariant& other, QVariant& value)
{
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    return value.convert(int(other.type()));
#else
    return value.convert(other.metaType());
#endif
}

/// The number of the type that was registered by this name, QMetaType::UnknownType if none was.
inline int metaTypeId(const char* name)
{
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    return QMetaType::type(name);
#else
    return QMetaType::fromName(name).id();
#endif
}

} // namespace qt_compatibility
