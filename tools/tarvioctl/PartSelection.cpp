#include "tools/tarvioctl/PartSelection.h"

#include <QCommandLineParser>

#include <algorithm>
#include <stdexcept>

namespace tarvioctl {

namespace {

const QString kOption = QStringLiteral("only");

struct PartWord
{
    QString word;
    QString element;
};

const QVector<PartWord>& partWords()
{
    static const QVector<PartWord> words{
        {QStringLiteral("network"), QStringLiteral("Network")},
        {QStringLiteral("sequence"), QStringLiteral("MSEQ")},
        {QStringLiteral("thresholds"), QStringLiteral("Thresholds")},
        {QStringLiteral("positions"), QStringLiteral("MountPositions")}};
    return words;
}

QString listOfWords()
{
    QStringList words;
    for (const PartWord& part : partWords())
        words += part.word;
    return words.join(QStringLiteral(", "));
}

QString elementOf(const QString& word)
{
    const auto found = std::ranges::find(partWords(), word, &PartWord::word);
    if (found == partWords().end())
        throw std::invalid_argument(QStringLiteral("--only takes one of %1, not \"%2\".")
                                        .arg(listOfWords(), word)
                                        .toStdString());
    return found->element;
}

} // namespace

QCommandLineOption PartSelection::option()
{
    return {kOption, QStringLiteral("This part alone: %1; may be repeated.").arg(listOfWords()),
            QStringLiteral("part")};
}

PartSelection::PartSelection(const QCommandLineParser& parser)
{
    for (const QStringList words = parser.values(kOption); const QString& word : words)
        mElements += elementOf(word);
}

bool PartSelection::contains(const QString& element) const
{
    return mElements.isEmpty() || mElements.contains(element);
}

QVector<ConfigurationPart> PartSelection::of(const QVector<ConfigurationPart>& parts) const
{
    QVector<ConfigurationPart> selected;
    std::ranges::copy_if(parts, std::back_inserter(selected),
                         [this](const ConfigurationPart& part) { return contains(part.element); });
    return selected;
}

} // namespace tarvioctl
