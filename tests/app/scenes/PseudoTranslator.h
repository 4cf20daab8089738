#pragma once

#include <QTranslator>

/// Translates every text into one that nobody could have written: each letter replaced by one with
/// an accent, 40 % longer, and in brackets of its own. What was not translated shows by its plain
/// letters, what was put together from halves by its brackets.
class PseudoTranslator : public QTranslator
{
    Q_OBJECT

public:
    using QTranslator::QTranslator;

    QString translate(const char* context, const char* text, const char* disambiguation,
                      int number) const override;
    bool isEmpty() const override { return false; }

    static constexpr QChar kOpening{u'\u00AB'};
    static constexpr QChar kClosing{u'\u00BB'};
};
