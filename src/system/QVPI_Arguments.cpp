#include "system/QVPI_Arguments.h"

#include "runtime/HostServices.h"

#include <cstdarg>
#include <cstring>

namespace Quillon::System {

namespace {

/// Deliberate: the end of the keyword is not compared, so that every name that begins with it matches
/// (tests/system/PluginArgumentsTest.cpp, NameMatchesByPrefix).
bool beginsWith(const char* name, const char* keyword) {
    return std::strncmp(name, keyword, std::strlen(keyword)) == 0;
}

/// Stores the option's value in `function` when its name matches.
template <class Function>
bool take(const QVPI_PluginOption& option, const char* keyword, Function*& function) {
    if (!beginsWith(option.name, keyword))
        return false;
    function = reinterpret_cast<Function*>(option.value);
    return true;
}

[[gnu::format(printf, 2, 3)]] void print(int (*vprintf)(const char*, std::va_list), const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    vprintf(format, arguments);
    va_end(arguments);
}

} // namespace

QVPI_Arguments::QVPI_Arguments() noexcept
    : abort(nullptr), exit(nullptr), vprintf(nullptr), malloc(nullptr), realloc(nullptr), calloc(nullptr),
      free(nullptr) {}

QVPI_Arguments::QVPI_Arguments(const QVPI_Arguments& other) noexcept = default;
QVPI_Arguments& QVPI_Arguments::operator=(const QVPI_Arguments& other) noexcept = default;
QVPI_Arguments::~QVPI_Arguments() = default;

int QVPI_Arguments::handleQvpiPluginOption(const QVPI_PluginOption*) {
    return 0;
}

int QVPI_Arguments::parse(const QVPI_PluginInitArgs* args) {
    return parseQvpiInitArgs(args);
}

int QVPI_Arguments::parseQvpiInitArgs(const QVPI_PluginInitArgs* args) {
    if (!args || (args->count != 0 && !args->options))
        return -1;
    int result = 0;
    for (std::uint32_t i = 0; i < args->count && result == 0; ++i) {
        const QVPI_PluginOption* const option = &args->options[i];
        if (handleQvpiCommonOption(option) != 0 && (!option->name || handleQvpiPluginOption(option) != 0)) {
            isBadOption(option, args->quiet);
            result = -1;
        }
    }
    const bool allSet = malloc && realloc && calloc && free;
    const bool noneSet = !malloc && !realloc && !calloc && !free;
    return allSet || noneSet ? result : -1;
}

int QVPI_Arguments::handleQvpiCommonOption(const QVPI_PluginOption* option) {
    if (!option->name)
        return -1;
    const bool taken = take(*option, "abort", abort) || take(*option, "exit", exit)
                       || take(*option, "vprintf", vprintf) || take(*option, "malloc", malloc)
                       || take(*option, "realloc", realloc) || take(*option, "calloc", calloc)
                       || take(*option, "free", free);
    return taken ? 0 : -1;
}

bool QVPI_Arguments::isObsoleteOption(const QVPI_PluginOption*) {
    return false;
}

bool QVPI_Arguments::isBadOption(const QVPI_PluginOption* option, unsigned char quiet) {
    if (quiet != 0)
        return false;
    const char* const name = option->name ? option->name : "(null)";
    const auto printer = vprintf ? vprintf : Runtime::hostServices().print;
    if (isObsoleteOption(option))
        print(printer, "Obsolete option: %s\n", name);
    else
        print(printer, "Unknown option: %s\n", name);
    return true;
}

} // namespace Quillon::System
