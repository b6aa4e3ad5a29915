#include "system/DlCalls.h"

#include <cstring>
#include <dlfcn.h>

namespace Quillon::Testing {

namespace {

constinit DlCalls calls;
constinit const char* redirectedPath = nullptr;
constinit const char* redirectionTarget = nullptr;

} // namespace

DlCalls& dlCalls() noexcept {
    return calls;
}

DlRedirection::DlRedirection(const char* path, const char* target) noexcept {
    redirectedPath = path;
    redirectionTarget = target;
}

DlRedirection::~DlRedirection() {
    redirectedPath = nullptr;
}

} // namespace Quillon::Testing

using namespace Quillon::Testing;

extern "C" __attribute__((visibility("default"))) void* dlopen(const char* path, int flags) noexcept {
    using Open = void* (*)(const char*, int);
    static const Open next = reinterpret_cast<Open>(dlsym(RTLD_NEXT, "dlopen"));
    ++calls.opens;
    calls.lastFlags = flags;
    const bool redirected = redirectedPath && path && std::strcmp(path, redirectedPath) == 0;
    return next(redirected ? redirectionTarget : path, flags);
}

extern "C" __attribute__((visibility("default"))) int dlclose(void* handle) noexcept {
    using Close = int (*)(void*);
    static const Close next = reinterpret_cast<Close>(dlsym(RTLD_NEXT, "dlclose"));
    ++calls.closes;
    return next(handle);
}
