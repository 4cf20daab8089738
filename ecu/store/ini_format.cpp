#include "ecu/store/ini_format.h"

#include <QFile>
#include <QFileDevice>
#include <QTemporaryDir>

#include <new>
#include <optional>

namespace {

// Qt writes and reads INI files by their names alone.
class ScratchFile
{
public:
    bool fill(const QByteArray& bytes) const
    {
        QFile file(name());
        return file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) &&
               file.write(bytes) == bytes.size();
    }

    QByteArray content() const
    {
        QFile file(name());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    /// Qt keeps what it knows of a file by its name: under another one it has to read the bytes.
    bool rename(const QString& name)
    {
        const QString former = this->name();
        mName = name;
        return QFile::rename(former, this->name());
    }

    QString name() const { return mFolder.filePath(mName); }

private:
    QTemporaryDir mFolder;
    QString mName = QStringLiteral("written.ini");
};

QStringList keysIn(const QString& fileName)
{
    return QSettings(fileName, QSettings::IniFormat).allKeys();
}

QStringList writeTo(const QString& fileName, const QSettings::SettingsMap& values)
{
    QSettings ini(fileName, QSettings::IniFormat);
    for (auto value = values.cbegin(); value != values.cend(); ++value)
        ini.setValue(value.key(), value.value());
    ini.sync();
    return ini.allKeys();
}

// The last line of a file that was cut short has no end, or keys are missing behind it.
std::optional<QByteArray> iniOf(const QSettings::SettingsMap& values)
{
    ScratchFile scratch;
    const QStringList keys = writeTo(scratch.name(), values);
    if (keys.isEmpty())
        return QByteArray();
    if (!scratch.rename(QStringLiteral("read.ini")) || keysIn(scratch.name()) != keys)
        return {};
    const QByteArray ini = scratch.content();
    return ini.endsWith('\n') ? std::optional(ini) : std::nullopt;
}

} // namespace

namespace settings {

QSettings::Format safeIniFormat()
{
    static const QSettings::Format format =
        QSettings::registerFormat(QStringLiteral("ini"), readIni, writeIni);
    return format;
}

bool readIni(QIODevice& device, QSettings::SettingsMap& values)
{
    const ScratchFile scratch;
    if (!scratch.fill(device.readAll()))
        return false;
    const QSettings ini(scratch.name(), QSettings::IniFormat);
    try {
        for (const QStringList keys = ini.allKeys(); const QString& key : keys)
            values.insert(key, ini.value(key));
    } catch (const std::bad_alloc&) { // A value claims to be longer than any memory.
        return false;
    }
    return ini.status() == QSettings::NoError;
}

bool writeIni(QIODevice& device, const QSettings::SettingsMap& values)
{
    const std::optional<QByteArray> ini = iniOf(values);
    if (!ini || device.write(*ini) != ini->size())
        return false;
    // What is left in the buffer is written while Qt commits, which does not look at errors.
    auto* file = qobject_cast<QFileDevice*>(&device);
    return !file || file->flush();
}

} // namespace settings
