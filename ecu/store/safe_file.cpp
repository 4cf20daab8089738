#include "ecu/store/safe_file.h"

#include <QByteArray>
#include <QFileInfo>
#include <QSaveFile>

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
    file.setDirectWriteFallback(true);
    // A buffer would hide the errors: what is left in it is written while committing, which does
    // not look at them.
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        return {Outcome::CannotOpen, file.errorString()};
    if (!writeAll(file, bytes) || !file.commit())
        return {Outcome::CannotWrite, file.errorString()};
    return {};
}

QString withSuffix(const QString& fileName, const QString& suffix)
{
    return fileName.endsWith(suffix, Qt::CaseInsensitive) ? fileName : fileName + suffix;
}
