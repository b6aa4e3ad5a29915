#include "system/ChildProcess.h"

#include <cstdio>
#include <cstdlib>

namespace Quillon::Testing {

void checkFact(bool fact, const char* text) {
    if (!fact) {
        std::fprintf(stderr, "not so: %s\n", text);
        std::_Exit(1);
    }
}

void (*afterStatics)() = nullptr;

namespace {

[[gnu::destructor]] void runAfterStatics() {
    if (afterStatics)
        afterStatics();
}

} // namespace

void endUnexpectedlyWithStatus(Runtime::HostServices& services) {
    services.unexpected = [] { std::_Exit(kUnexpected); };
}

} // namespace Quillon::Testing
