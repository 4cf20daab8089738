#include "tests/app/scenes/text_faults.h"

#include "tests/app/scenes/PseudoTranslator.h"
#include "tests/app/scenes/accessibility_faults.h"
#include "tests/app/scenes/shown_texts.h"

#include <QRegularExpression>
#include <QStatusBar>

namespace {

constexpr QChar kOpening = PseudoTranslator::kOpening;
constexpr QChar kClosing = PseudoTranslator::kClosing;

bool hasLetters(const QString& text)
{
    return std::any_of(text.begin(), text.end(), [](QChar c) { return c.isLetter(); });
}

// Where the bracket that opens the text is closed; -1 when it does not open one.
int endOfBracket(const QString& text)
{
    int depth = 0;
    for (int i = 0; i < text.size(); ++i) {
        depth += text[i] == kOpening ? 1 : 0;
        depth -= text[i] == kClosing ? 1 : 0;
        if (depth == 0)
            return i == 0 ? -1 : i;
    }
    return -1;
}

bool isOneBracket(const QString& text)
{
    return !text.isEmpty() && endOfBracket(text) == text.size() - 1;
}

// Several messages that are shown together, one a line.
bool isLinesOfBrackets(QString text)
{
    while (!text.isEmpty()) {
        const int end = endOfBracket(text);
        const bool isLine = end >= 0 && (end + 1 == text.size() || text[end + 1] == '\n');
        if (!isLine)
            return false;
        text = text.mid(end + 1).trimmed();
    }
    return true;
}

QString withoutPadding(QString text)
{
    while (text.endsWith('~') || text.endsWith(' '))
        text.chop(1);
    return text;
}

// What no translator could know: names of files, of the system's and of the file's parts, and what
// other libraries say of their errors.
QString withoutData(QString text)
{
    static const QRegularExpression data(
        QStringLiteral("/[\\w./-]+|<[^>]*>|&[a-z]+;|no such luck|No such file or directory|"
                       "\\bOther\\b|\\w+\\.orv\\b|\\([0-9a-f]{7}\\)|%p"));
    return text.remove(data);
}

QString plainLetters(const QString& text)
{
    static const QRegularExpression word(QStringLiteral("[A-Za-z]+"));
    return word.match(withoutData(text)).captured();
}

} // namespace

QString translationFault(const QString& text)
{
    const QString trimmed = text.trimmed();
    if (!hasLetters(withoutData(trimmed)))
        return {};
    if (!isOneBracket(trimmed) && !isLinesOfBrackets(trimmed))
        return QStringLiteral("is not one translated text");
    if (isOneBracket(trimmed) && isOneBracket(withoutPadding(trimmed.mid(1, trimmed.size() - 2))))
        return QStringLiteral("is translated twice");
    const QString plain = plainLetters(trimmed);
    return plain.isEmpty() ? QString() : QStringLiteral("holds \"%1\" untranslated").arg(plain);
}

namespace {

// The status bar has one line for all messages.
QString asLines(const ShownText& text)
{
    QString lines = text.text;
    if (qobject_cast<const QStatusBar*>(text.widget))
        lines.replace(QString(kClosing) + ' ' + kOpening, QString(kClosing) + '\n' + kOpening);
    return lines;
}

} // namespace

QStringList translationFaults(QWidget& window)
{
    QStringList faults;
    for (const ShownText& text : shownTexts(window)) {
        const bool isOfOthers = text.isData || isPartOfQt(*text.widget);
        const QString fault = isOfOthers ? QString() : translationFault(asLines(text));
        if (!fault.isEmpty())
            faults << QStringLiteral("\"%1\" of %2 %3").arg(text.text, nameOf(*text.widget), fault);
    }
    return faults;
}
