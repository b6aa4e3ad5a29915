#ifndef ZUTARNEX_SYSTEM_PLUGINNOTFOUNDEXCEPTION_H
#define ZUTARNEX_SYSTEM_PLUGINNOTFOUNDEXCEPTION_H

#include "zutarnex/export.h"

namespace Quillon::System {

/// No loader could supply a plug-in. What is thrown is a UserException and Identifiable, too: identifier
/// "KAVOLT:PluginNotFound", message "Plug-in [<name>] module not found."
///
/// Throws: doThrow() may throw OutOfMemoryException or std::bad_alloc instead, while it builds the message.
class ZUTARNEX_API PluginNotFoundException {
public:
    [[noreturn]] static void doThrow(const char* name); ///< null is shown as "(null)"

    PluginNotFoundException() noexcept = default;
    PluginNotFoundException(const PluginNotFoundException& other) noexcept = default;
    virtual ~PluginNotFoundException() = 0;
};

} // namespace Quillon::System

#endif
