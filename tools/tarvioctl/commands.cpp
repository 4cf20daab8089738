#include "tools/tarvioctl/commands.h"

#include "tools/tarvioctl/diff_command.h"
#include "tools/tarvioctl/info_command.h"
#include "tools/tarvioctl/read_command.h"
#include "tools/tarvioctl/write_command.h"

namespace tarvioctl {

QVector<Command> allCommands()
{
    return {
        infoCommand(),
        readCommand(),
        writeCommand(),
        diffCommand(),
    };
}

} // namespace tarvioctl
