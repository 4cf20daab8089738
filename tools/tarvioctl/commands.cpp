#include "tools/tarvioctl/commands.h"

#include "tools/tarvioctl/info_command.h"

namespace tarvioctl {

QVector<Command> allCommands()
{
    return {infoCommand()};
}

} // namespace tarvioctl
