#include "tools/tarvioctl/commands.h"

#include "tools/tarvioctl/info_command.h"
#include "tools/tarvioctl/monitor_command.h"
#include "tools/tarvioctl/record_command.h"
#include "tools/tarvioctl/replay_command.h"

namespace tarvioctl {

QVector<Command> allCommands()
{
    return {infoCommand(), monitorCommand(), recordCommand(), replayCommand()};
}

} // namespace tarvioctl
