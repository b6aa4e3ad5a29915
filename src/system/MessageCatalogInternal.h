#ifndef ZUTARNEX_SYSTEM_MESSAGECATALOGINTERNAL_H
#define ZUTARNEX_SYSTEM_MESSAGECATALOGINTERNAL_H

#include <cstdint>

namespace Quillon::System {

/// The codes of the library's message catalog: facility 76 (0x4C) in the upper half, the message's number below.
/// Formats and their arguments stand in MessageCatalog.cpp.
inline constexpr std::uint32_t QVPI_PLUGIN_NOT_FOUND = 0x4C0001;       ///< (const char* name)
inline constexpr std::uint32_t QVPI_PLUGIN_ENTRY_NOT_FOUND = 0x4C0002; ///< (const char* name, entry)
inline constexpr std::uint32_t QVPI_PLUGIN_FAILED_TO_RETURN_PLUGIN_INTERFACE =
    0x4C0003;                                                                   ///< (const char* name)
inline constexpr std::uint32_t QVPI_PLUGIN_VERSION_INCOMPATIBLE = 0x4C0004;     ///< (const char* name)
inline constexpr std::uint32_t QVPI_PLUGIN_MANAGEMENT_ILLEGAL_STATE = 0x4C0005; ///< (const char* reason)
inline constexpr std::uint32_t TARNEX_ILLEGAL_CHARACTER = 0x4C0006;             ///< (int character)
inline constexpr std::uint32_t TARNEX_ARRAY_INDEX_OUT_OF_BOUNDS = 0x4C0007; ///< (const char* what, int index)
inline constexpr std::uint32_t TARNEX_ILLEGAL_ARGUMENT = 0x4C0008;          ///< (const char* what)

/// Registers the catalog with the host's message service, once per process. Called by the operations that build a
/// catalogued exception with an identifier of its own, never at load time.
///
/// Threads: two threads that raise their first catalogued exception at the same moment may both register it; the
///          message service takes the same table twice.
void registerMessageCatalog();

} // namespace Quillon::System

#endif
