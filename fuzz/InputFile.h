#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>
#include <QTemporaryDir>

#include <cstdint>
#include <span>

inline QByteArray byteArray(std::span<const std::uint8_t> bytes)
{
    return {reinterpret_cast<const char*>(bytes.data()), static_cast<int>(bytes.size())};
}

/// A file for what is read by its name.
class InputFile
{
public:
    explicit InputFile(const QByteArray& content) : mName(mFolder.filePath(QStringLiteral("input")))
    {
        QFile file(mName);
        file.open(QIODevice::WriteOnly);
        file.write(content);
    }

    const QString& name() const { return mName; }

private:
    QTemporaryDir mFolder;
    QString mName;
};
