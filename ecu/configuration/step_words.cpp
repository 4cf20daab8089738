#include "ecu/configuration/step_words.h"

#include <QCoreApplication>

namespace {

QString translated(const char* word)
{
    return QCoreApplication::translate("SequenceStep", word);
}

} // namespace

QStringList modeWords()
{
    return {translated("AM"), translated("BPSK0"), translated("BPSK1")};
}

QStringList stateWords()
{
    return {translated("Disabled"), translated("Active"), translated("Passive")};
}
