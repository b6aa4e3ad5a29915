#include "runtime/HostServices.h"

#include "runtime/DefaultHostInternal.h"
#include "runtime/ThrowGuardInternal.h"

#include <cstdio>
#include <cstdlib>
#include <exception>

namespace Quillon::Runtime {

namespace {

[[noreturn]] void endProcess(int status) {
    std::fflush(nullptr); // what was printed is not lost, although no destructor runs
    std::_Exit(status);
}

void printFatalError(int code, const char* text) {
    std::fprintf(stderr, "fatal error %d: %s\n", code, text ? text : "");
    endProcess(code);
}

void endWithStatus(int status) {
    endProcess(status);
}

void endUnexpectedly() {
    std::terminate();
}

constexpr HostServices kDefaultServices = {
    std::malloc,       std::calloc,          std::realloc,         std::free,
    std::vprintf,      localCodePageToUtf16, utf16ToLocalCodePage, rememberMessages,
    formatMessageText, printFatalError,      endWithStatus,        endUnexpectedly};

constinit HostServices services = kDefaultServices;

} // namespace

const HostServices& hostServices() noexcept {
    return services;
}

const HostServices& defaultHostServices() noexcept {
    return kDefaultServices;
}

void setHostServices(const HostServices& replacement) noexcept {
    services = replacement;
}

void unexpectedException() noexcept {
    services.unexpected();
    std::terminate();
}

} // namespace Quillon::Runtime
