#pragma once

#include <QString>

class QByteArray;

/// What became of a file that was to be written.
struct FileWriteResult
{
    enum class Outcome {
        Written,
        CannotOpen,
        CannotWrite, ///< the former file, if there was one, is still whole
    };

    Outcome outcome = Outcome::Written;
    QString errorText; ///< the system's reason; empty when written

    bool isWritten() const { return outcome == Outcome::Written; }
};

/// Makes the bytes the content of the file. The former content stays until the new one is complete
/// on the disk, so that neither a full disk nor a killed program leaves half a file. Only where the
/// folder takes no new file is an existing one written in place: a full disk leaves that one whole
/// too, but not the end of the program in the middle. What is no regular file (a device,
/// a pipe) is never opened: it would be replaced, or wait for a reader.
FileWriteResult writeWholeFile(const QString& fileName, const QByteArray& bytes);

/// The file name with the suffix, ".orv" for example, added unless it ends in it already, in
/// whatever case.
QString withSuffix(const QString& fileName, const QString& suffix);
