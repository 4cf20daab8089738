#include "ecu/configuration/settings_text.h"

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTextCodec>

namespace {

QByteArray bytesOf(const QString& fileName)
{
    QFile file(fileName);
    if (!QFileInfo(fileName).isFile() || !file.open(QIODevice::ReadOnly))
        return {};
    const QByteArray bytes = file.read(kMaxSettingsFileSize + 1);
    return bytes.size() > kMaxSettingsFileSize ? QByteArray() : bytes;
}

QString decoded(const QByteArray& bytes)
{
    QTextCodec::ConverterState state(QTextCodec::ConvertInvalidToNull);
    QString text =
        QTextCodec::codecForName("UTF-8")->toUnicode(bytes.constData(), bytes.size(), &state);
    // A character that is cut short at the end waits in the state.
    if (state.remainingChars > 0)
        text.append(QChar::Null);
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
