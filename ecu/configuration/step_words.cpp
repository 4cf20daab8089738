#include "ecu/configuration/step_words.h"

#include <QCoreApplication>

namespace {

struct StepWords
{
    Q_DECLARE_TR_FUNCTIONS(StepWords)
};

} // namespace

QStringList modeWords()
{
    return {StepWords::tr("AM"), StepWords::tr("BPSK0"), StepWords::tr("BPSK1")};
}

QStringList stateWords()
{
    return {StepWords::tr("Disabled"), StepWords::tr("Active"), StepWords::tr("Passive")};
}
