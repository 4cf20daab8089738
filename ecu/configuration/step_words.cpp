#include "ecu/configuration/step_words.h"

#include <QCoreApplication>

namespace {

struct SequenceStep
{
    Q_DECLARE_TR_FUNCTIONS(SequenceStep)
};

} // namespace

QStringList modeWords()
{
    return {SequenceStep::tr("AM"), SequenceStep::tr("BPSK0"), SequenceStep::tr("BPSK1")};
}

QStringList stateWords()
{
    return {SequenceStep::tr("Disabled"), SequenceStep::tr("Active"), SequenceStep::tr("Passive")};
}
