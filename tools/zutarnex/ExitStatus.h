#ifndef ZUTARNEX_TOOLS_EXITSTATUS_H
#define ZUTARNEX_TOOLS_EXITSTATUS_H

namespace Quillon::Tool {

/// What the process says to its caller. Of several files the highest status counts.
enum ExitStatus : int {
    Done = 0,
    BadInput = 1,   ///< ill-formed input, or a character that cannot be written
    WrongUsage = 2, ///< unknown options, missing arguments
    NoAccess = 3    ///< something could not be read or written
};

} // namespace Quillon::Tool

#endif
