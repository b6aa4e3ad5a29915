#ifndef ZUTARNEX_SYSTEM_THROWABLE_H
#define ZUTARNEX_SYSTEM_THROWABLE_H

#include "zutarnex/export.h"

#include <exception>

namespace Quillon::System {

class ObjectOutput;

/// The root of the exceptions, and the only one that derives from std::exception.
class ZUTARNEX_API Throwable : public std::exception {
public:
    Throwable() noexcept;
    Throwable(const Throwable& other) noexcept;
    Throwable& operator=(const Throwable& other) noexcept;
    ~Throwable() override;

    /// The message where there is one, else the kind of the exception. Valid as long as the exception lives.
    const char* what() const noexcept override;

    /// Writes what() to `out`.
    virtual void writeExternal(ObjectOutput& out) const;
    /// Writes this exception and then those that caused it; no exception of this library has a cause.
    virtual void writeRecurseChain(ObjectOutput& out) const;
};

} // namespace Quillon::System

#endif
