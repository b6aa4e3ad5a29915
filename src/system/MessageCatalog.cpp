#include "system/MessageCatalogInternal.h"

#include "runtime/HostServices.h"

#include <atomic>
#include <iterator>

namespace Quillon::System {

namespace {

constexpr std::uint32_t kFacility = 76;
constexpr std::uint32_t kEndOfCodes = 0xFFFFFFFF;

constexpr std::uint32_t kCodes[] = {
    QVPI_PLUGIN_NOT_FOUND,
    QVPI_PLUGIN_ENTRY_NOT_FOUND,
    QVPI_PLUGIN_FAILED_TO_RETURN_PLUGIN_INTERFACE,
    QVPI_PLUGIN_VERSION_INCOMPATIBLE,
    QVPI_PLUGIN_MANAGEMENT_ILLEGAL_STATE,
    TARNEX_ILLEGAL_CHARACTER,
    TARNEX_ARRAY_INDEX_OUT_OF_BOUNDS,
    TARNEX_ILLEGAL_ARGUMENT,
    kEndOfCodes,
};

constexpr const char* kNames[] = {
    "QVPI_PLUGIN_NOT_FOUND",
    "QVPI_PLUGIN_ENTRY_NOT_FOUND",
    "QVPI_PLUGIN_FAILED_TO_RETURN_PLUGIN_INTERFACE",
    "QVPI_PLUGIN_VERSION_INCOMPATIBLE",
    "QVPI_PLUGIN_MANAGEMENT_ILLEGAL_STATE",
    "TARNEX_ILLEGAL_CHARACTER",
    "TARNEX_ARRAY_INDEX_OUT_OF_BOUNDS",
    "TARNEX_ILLEGAL_ARGUMENT",
};

// Deliberate: four of the texts begin and end with a quotation mark (tests/system/MessageCatalogTest.cpp,
// RecordHoldsEveryFormat).
constexpr const char* kFormats[] = {
    "Plug-in [%s] module not found.",
    "\"Plug-in entry [%s] not found, [%s] is not a valid QVPI plugin.\"",
    "\"Plug-in failed to return [%s] plug-in level interface.\"",
    "\"Plug-in [%s] has incompatible QVPI version number.\"",
    "\"Plug-in management framework entered illegal state due to [%s].\"",
    "Illegal or non-writable character: U+%04X.",
    "Array index out of bounds; %s: %d.",
    "Illegal argument provided: %s.",
};

static_assert(std::size(kCodes) == std::size(kNames) + 1 && std::size(kNames) == std::size(kFormats));

constexpr Runtime::MessageTable kCatalog = {std::size(kNames), kFacility, kCodes, kNames, kFormats, "", 0, 0};

/// One byte and no lock. Atomic only so that a race is harmless by the rules of the language, too.
std::atomic<unsigned char> registered{0};

} // namespace

void registerMessageCatalog() {
    if (registered.load(std::memory_order_relaxed) != 0) {
        return;
    }
    Runtime::hostServices().addMessageTable(nullptr, &kCatalog);
    registered.store(1, std::memory_order_relaxed);
}

} // namespace Quillon::System
