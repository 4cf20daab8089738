#pragma once

#include "tools/tarvioctl/Command.h"

#include <QVector>

namespace tarvioctl {

/// Every command of the program, in the order of its help.
QVector<Command> allCommands();

} // namespace tarvioctl
