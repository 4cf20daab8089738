#pragma once

#include "tools/tarvioctl/Command.h"

#include <QStringList>
#include <QVector>

namespace tarvioctl {

/// Runs the command that the arguments name, the first being the program, and tells what went
/// wrong in one sentence on standard error.
ExitStatus runCommandLine(const QVector<Command>& commands, const QStringList& arguments);

} // namespace tarvioctl
