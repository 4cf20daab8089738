#include "ecu/store/safe_file.h"

#include <QByteArray>
#include <QFileInfo>
#include <QSaveFile>

#include <cerrno>

namespace {

// A full disk takes the first bytes without an error: only what it did not take tells.
bool writeAll(QIODevice& device, const QByteArray& bytes)
{
    qint64 done = 0;
    while (done < bytes.size()) {
        const qint64 written = device.write(bytes.constData() + done, bytes.size() - done);
        if (written <= 0)
            return false;
        done += written;
    }
    return true;
}

bool writeAt(QFile& file, qint64 position, const QByteArray& bytes)
{
    return file.seek(position) && writeAll(file, bytes);
}

// The file grows first: where the disk has no room for that, the former bytes are still there.
FileWriteResult overwrite(QFile& file, const QByteArray& bytes)
{
    const auto formerSize = int(file.size());
    const bool hasGrown = writeAt(file, formerSize, bytes.mid(formerSize));
    if (hasGrown && writeAt(file, 0, bytes.left(formerSize)) && file.resize(bytes.size()))
        return {};
    FileWriteResult result{FileWriteResult::Outcome::CannotWrite, file.errorString()};
    if (!hasGrown)
        file.resize(formerSize);
    return result;
}

FileWriteResult writeInPlace(const QString& fileName, const QByteArray& bytes)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadWrite | QIODevice::ExistingOnly | QIODevice::Unbuffered))
        return {FileWriteResult::Outcome::CannotOpen, file.errorString()};
    return overwrite(file, bytes);
}

bool isSpecialFile(const QString& fileName)
{
    const QFileInfo existing(fileName);
    return existing.exists() && !existing.isFile() && !existing.isDir();
}

} // namespace

FileWriteResult writeWholeFile(const QString& fileName, const QByteArray& bytes)
{
    using Outcome = FileWriteResult::Outcome;
    if (isSpecialFile(fileName))
        return {Outcome::CannotOpen,
                QSaveFile::tr("Existing file %1 is not writable").arg(fileName)};
    QSaveFile file(fileName);
    // A buffer would hide the errors: what is left in it is written while committing, which does
    // not look at them.
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered)) {
        const bool folderTakesNone = file.error() == QFileDevice::OpenError && errno == EACCES;
        if (folderTakesNone && QFile::exists(fileName))
            return writeInPlace(fileName, bytes);
        return {Outcome::CannotOpen, file.errorString()};
    }
    if (!writeAll(file, bytes) || !file.commit())
        return {Outcome::CannotWrite, file.errorString()};
    return {};
}

QString withSuffix(const QString& fileName, const QString& suffix)
{
    return fileName.endsWith(suffix, Qt::CaseInsensitive) ? fileName : fileName + suffix;
}
