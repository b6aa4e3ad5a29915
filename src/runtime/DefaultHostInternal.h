#ifndef ZUTARNEX_RUNTIME_DEFAULTHOSTINTERNAL_H
#define ZUTARNEX_RUNTIME_DEFAULTHOSTINTERNAL_H

#include "runtime/HostServices.h"

/// The parts of the default host that are more than one call of the C library. They take their memory from the host
/// in force, so that a host may replace the allocator alone.
namespace Quillon::Runtime {

unsigned short* localCodePageToUtf16(const char* text);
char* utf16ToLocalCodePage(const unsigned short* text);

void rememberMessages(void* memoryContext, const MessageTable* table);
char* formatMessageText(const char* identifier, std::uint32_t code, std::va_list arguments);

} // namespace Quillon::Runtime

#endif
