#ifndef ZUTARNEX_TOOLS_COMMANDS_H
#define ZUTARNEX_TOOLS_COMMANDS_H

#include "ExitStatus.h"

namespace CLI {
class App;
}

namespace Quillon::Tool {

/// Each adds one command to `app`; running it stores the outcome in `status`, which must outlive `app`.
void addFormatCommand(CLI::App& app, ExitStatus& status);
void addCheckCommand(CLI::App& app, ExitStatus& status);
void addEventsCommand(CLI::App& app, ExitStatus& status);
void addUriCommand(CLI::App& app, ExitStatus& status);
void addCodecCommands(CLI::App& app, ExitStatus& status);
void addConvertCommand(CLI::App& app, ExitStatus& status);

} // namespace Quillon::Tool

#endif
