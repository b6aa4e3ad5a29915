#ifndef ZUTARNEX_SYSTEM_QVPI_ARGUMENTS_H
#define ZUTARNEX_SYSTEM_QVPI_ARGUMENTS_H

#include "system/QVPI_Plugin.h"
#include "zutarnex/export.h"

#include <cstdarg>
#include <cstddef>

namespace Quillon::System {

/// Reads the options that a plug-in is created with: the host's services are kept, every other option goes to an
/// operation that the plug-in overrides.
///
///     MyArguments arguments;                       // overrides handleQvpiPluginOption
///     if (arguments.parse(initArgs) != 0) return -1;
///     void* block = arguments.malloc(32);
///
/// Layout: virtual table, then the seven functions in the order below; slots: destructor, handleQvpiPluginOption
///         (tests/abi/).
class ZUTARNEX_API QVPI_Arguments {
public:
    QVPI_Arguments() noexcept; ///< all seven null
    QVPI_Arguments(const QVPI_Arguments& other) noexcept;
    QVPI_Arguments& operator=(const QVPI_Arguments& other) noexcept;
    virtual ~QVPI_Arguments();

    /// Takes an option that is not one of the seven. 0: accepted, which is what the base answers to all.
    virtual int handleQvpiPluginOption(const QVPI_PluginOption* option);

    int parse(const QVPI_PluginInitArgs* args); ///< parseQvpiInitArgs(args)

    /// 0: every option was taken, and `malloc`, `realloc`, `calloc` and `free` are all set or all null. -1: failed;
    /// the options behind a bad one were not looked at. A later option overwrites an earlier one of the same name.
    /// An option without a name is a bad one. A null `args`, and a null list that should hold options, fail without a
    /// report.
    ///
    /// Throws: what handleQvpiPluginOption() throws.
    int parseQvpiInitArgs(const QVPI_PluginInitArgs* args);

    /// Stores the value of one of the seven: 0; any other option: -1.
    ///
    /// Deliberate: an option's name needs only to begin with one of the seven: "exit_code" is "exit", "freeze" is
    /// "free" (tests/system/PluginArgumentsTest.cpp, NameMatchesByPrefix).
    int handleQvpiCommonOption(const QVPI_PluginOption* option);

    bool isObsoleteOption(const QVPI_PluginOption* option); ///< always false

    /// With `quiet` 0 reports the option, through `vprintf` when that is set, else on the host's standard output,
    /// and returns true; else returns false.
    bool isBadOption(const QVPI_PluginOption* option, unsigned char quiet);

    // The host's services; null: not given.
    void (*abort)();
    void (*exit)(int status);
    int (*vprintf)(const char* format, std::va_list arguments);
    void* (*malloc)(std::size_t bytes);
    void* (*realloc)(void* block, std::size_t bytes);
    void* (*calloc)(std::size_t count, std::size_t elementSize);
    void (*free)(void* block);
};

} // namespace Quillon::System

#endif
