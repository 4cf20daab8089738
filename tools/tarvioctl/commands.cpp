#include "tools/tarvioctl/commands.h"

#include "tools/tarvioctl/info_command.h"
#include "tools/tarvioctl/monitor_command.h"

namespace tarvioctl {

QVector<Command> allCommands()
{
    return {infoCommand(), monitorCommand()};
}

} // namespace tarvioctl
