#ifndef ZUTARNEX_RUNTIME_THROWGUARDINTERNAL_H
#define ZUTARNEX_RUNTIME_THROWGUARDINTERNAL_H

namespace Quillon::Runtime {

/// Hands over to the host's `unexpected` and ends the process should that return.
[[noreturn]] void unexpectedException() noexcept;

/// Runs `body` and lets only exceptions of kind `Allowed` (and what derives from it) leave; any other one, a failed
/// allocation included, goes to the host's `unexpected`. The one mechanism for narrow throw declarations.
template <class Allowed, class Body>
decltype(auto) letEscapeOnly(Body&& body) {
    try {
        return body();
    } catch (const Allowed&) {
        throw;
    } catch (...) {
        unexpectedException();
    }
}

} // namespace Quillon::Runtime

#endif
