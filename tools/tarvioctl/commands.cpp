#include "tools/tarvioctl/commands.h"

#include "tools/tarvioctl/calibrate_command.h"
#include "tools/tarvioctl/diff_command.h"
#include "tools/tarvioctl/doctor_command.h"
#include "tools/tarvioctl/envelope_command.h"
#include "tools/tarvioctl/info_command.h"
#include "tools/tarvioctl/monitor_command.h"
#include "tools/tarvioctl/read_command.h"
#include "tools/tarvioctl/record_command.h"
#include "tools/tarvioctl/replay_command.h"
#include "tools/tarvioctl/write_command.h"

namespace tarvioctl {

QVector<Command> allCommands()
{
    return {
        infoCommand(),   readCommand(),   writeCommand(),    diffCommand(),      monitorCommand(),
        recordCommand(), replayCommand(), envelopeCommand(), calibrateCommand(), doctorCommand(),
    };
}

} // namespace tarvioctl
