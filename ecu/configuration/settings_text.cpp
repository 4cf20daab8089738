#include "ecu/configuration/settings_text.h"

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

namespace {

QByteArray bytesOf(const QString& fileName)
{
    QFile file(fileName);
    if (!QFileInfo(fileName).isFile() || !file.open(QIODevice::ReadOnly))
        return {};
    const QByteArray bytes = file.read(kMaxSettingsFileSize + 1);
    return bytes.size() > kMaxSettingsFileSize ? QByteArray() : bytes;
}

// A character that is none becomes a null, which no settings file has and no reader of XML passes.
// Qt puts in its place the replacement character, which a text may also have of itself.
QString decoded(const QByteArray& bytes)
{
    static const QByteArray byteOrderMark("\xEF\xBB\xBF");
    // By length: a byte array alone is taken up to its first null by Qt 5.
    QString text = QString::fromUtf8(bytes.constData(), bytes.size());
    if (!text.contains(QChar::ReplacementCharacter))
        return text;
    const QByteArray again = text.toUtf8();
    if (again != bytes && byteOrderMark + again != bytes)
        text.replace(QChar::ReplacementCharacter, QChar::Null);
    return text;
}

// Declared entities make a short file endless, declared attributes stand in each tag unseen.
bool declaresMarkup(const QString& text)
{
    return text.contains(QLatin1String("<!ENTITY")) || text.contains(QLatin1String("<!ATTLIST"));
}

// Texts and comments may look like an attribute, but no attribute looks different.
bool hasTooManyAttributes(const QString& text)
{
    static const QRegularExpression attribute(QStringLiteral("=\\s*[\"']"));
    int count = 0;
    for (auto found = attribute.globalMatch(text); found.hasNext(); found.next()) {
        if (++count > kMaxSettingsAttributes)
            return true;
    }
    return false;
}

} // namespace

QString settingsText(const QString& fileName)
{
    const QString text = decoded(bytesOf(fileName));
    return declaresMarkup(text) || hasTooManyAttributes(text) ? QString() : text;
}
