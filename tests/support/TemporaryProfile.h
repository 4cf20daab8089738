#pragma once

#include <QSettings>
#include <QString>
#include <QTemporaryDir>

#include <cstdint>

/// A settings store of the test's own: while it lives, user-scope INI stores are kept in a
/// temporary folder.
class TemporaryProfile
{
public:
    TemporaryProfile();

    /// Points the program at an ECU and two stream ports on 127.0.0.1.
    void setNetwork(std::uint16_t controlPort, std::uint16_t receivePort, std::uint16_t fspPort);

    void setValue(const QString& key, const QVariant& value);
    /// A key, or a group with all that is in it.
    void remove(const QString& key);
    QVariant value(const QString& key) const;
    QStringList keys(const QString& group) const;
    QStringList groups() const;

    /// The file behind the store.
    QString fileName() const;

private:
    QTemporaryDir mFolder;
};
