#include "system/ChildProcess.h"

#include <cstdio>
#include <cstdlib>

extern "C" int __cxa_atexit(void (*function)(void*), void* argument, void* module);

namespace Quillon::Testing {

void checkFact(bool fact, const char* text) {
    if (!fact) {
        std::fprintf(stderr, "not so: %s\n", text);
        std::_Exit(1);
    }
}

void (*afterStatics)() = nullptr;

namespace {

void runAfterStatics(void*) {
    if (afterStatics)
        afterStatics();
}

/// Before any library is initialised: what is registered first runs last, and what belongs to no module is not run
/// when one ends.
void registerFirst() {
    __cxa_atexit(runAfterStatics, nullptr, nullptr);
}
[[gnu::section(".preinit_array"), gnu::used]] void (*const beforeEverything)() = registerFirst;

} // namespace

void endUnexpectedlyWithStatus(Runtime::HostServices& services) {
    services.unexpected = [] { std::_Exit(kUnexpected); };
}

} // namespace Quillon::Testing
