#include "tests/app/scenes/PseudoTranslator.h"

#include <QRegularExpression>

#include <cmath>

namespace {

constexpr double kGrowth = 0.4;

// Place holders, marks of mnemonics and tags are no text.
const QRegularExpression& marks()
{
    static const QRegularExpression marks(QStringLiteral("%L?[0-9n]+|%p|%v|%m|<[^>]*>|&[a-z]+;"));
    return marks;
}

bool isShortcut(const QString& context, const QString& text)
{
    return context == QLatin1String("QShortcut") || text.startsWith(QLatin1String("Ctrl+"));
}

QChar accented(QChar letter)
{
    static const QString kPlain = QStringLiteral("abcdefghijklmnopqrstuvwxyz");
    static const QString kAccented =
        QStringLiteral("\u00E1\u0180\u00E7\u00F0\u00E9\u0192\u011F\u0125\u00ED\u0135\u0137\u0142"
                       "\u1E41\u00F1\u00F3\u1E57\u01EB\u0155\u0161\u0167\u00FA\u1E7D\u0175\u1E8B"
                       "\u00FD\u017E");
    const auto index = kPlain.indexOf(letter.toLower());
    if (index < 0)
        return letter;
    return letter.isUpper() ? kAccented[index].toUpper() : kAccented[index];
}

QString accented(const QString& text)
{
    QString result = text;
    for (QChar& letter : result)
        letter = accented(letter);
    return result;
}

// Everything but the marks.
QString accentedBetweenMarks(const QString& text)
{
    QString result;
    decltype(text.size()) end = 0;
    auto found = marks().globalMatch(text);
    while (found.hasNext()) {
        const auto mark = found.next();
        result += accented(text.mid(end, mark.capturedStart() - end)) + mark.captured();
        end = mark.capturedEnd();
    }
    return result + accented(text.mid(end));
}

// Words, where the text has some.
QString padding(int length, bool hasWords)
{
    constexpr int kWord = 6;
    QString padding(length, QLatin1Char('~'));
    for (int blank = 0; hasWords && blank < length; blank += kWord)
        padding[blank] = QLatin1Char(' ');
    return padding;
}

// In the longest line: it is the one that needs the room.
QString lengthened(const QString& text)
{
    QStringList lines = text.split(QLatin1Char('\n'));
    auto longest = std::max_element(lines.begin(), lines.end(), [](const auto& a, const auto& b) {
        return a.size() < b.size();
    });
    QString plain = *longest;
    const auto length = plain.remove(marks()).size();
    *longest += padding(static_cast<int>(std::ceil(double(length) * kGrowth)), plain.contains(' '));
    return lines.join(QLatin1Char('\n'));
}

} // namespace

QString PseudoTranslator::translate(const char* context, const char* text, const char*, int) const
{
    const QString plain = QString::fromUtf8(text);
    if (plain.isEmpty() || isShortcut(QString::fromUtf8(context), plain))
        return {};
    return kOpening + lengthened(accentedBetweenMarks(plain)) + kClosing;
}
