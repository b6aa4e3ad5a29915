#ifndef ZUTARNEX_SYSTEM_INTERNALEXCEPTION_H
#define ZUTARNEX_SYSTEM_INTERNALEXCEPTION_H

#include "system/Throwable.h"

namespace Quillon::System {

/// A programming or internal error. It carries no message.
class ZUTARNEX_API InternalException : public Throwable {
public:
    InternalException() noexcept;
    InternalException(const InternalException& other) noexcept;
    InternalException& operator=(const InternalException& other) noexcept;
    ~InternalException() override;

    const char* what() const noexcept override;

    virtual void writeLocalizedMsg(ObjectOutput& out) const; ///< writes what()
    virtual void writeStackTrace(ObjectOutput& out) const;   ///< writes nothing: no trace is kept
};

} // namespace Quillon::System

#endif
