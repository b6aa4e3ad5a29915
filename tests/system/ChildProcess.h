#ifndef ZUTARNEX_TESTS_SYSTEM_CHILDPROCESS_H
#define ZUTARNEX_TESTS_SYSTEM_CHILDPROCESS_H

#include "runtime/HostServices.h"

#include <new>

namespace Quillon::Testing {

/// For what changes a process for good: statements of an EXPECT_EXIT that ends with status 0 when all facts hold.
void checkFact(bool fact, const char* text);
#define CHECK_FACT(fact) ::Quillon::Testing::checkFact(static_cast<bool>(fact), #fact)

/// Runs at the very end of the process, when every static object of it and of its libraries is gone.
extern void (*afterStatics)();

/// One object for the process that is never destroyed.
template <class T>
T& undestroyed() {
    alignas(T) static unsigned char storage[sizeof(T)];
    static T& object = *new (storage) T();
    return object;
}

/// The status with which a process ends whose host has this `unexpected`.
constexpr int kUnexpected = 97;
void endUnexpectedlyWithStatus(Runtime::HostServices& services);

} // namespace Quillon::Testing

#endif
