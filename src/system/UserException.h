#ifndef ZUTARNEX_SYSTEM_USEREXCEPTION_H
#define ZUTARNEX_SYSTEM_USEREXCEPTION_H

#include "system/Throwable.h"

#include <string>

namespace Quillon::System {

/// An error that the caller's input or action caused; it carries a message.
class ZUTARNEX_API UserException : public Throwable {
public:
    UserException();
    UserException(const UserException& other);
    UserException& operator=(const UserException& other);
    ~UserException() override;

    const std::string& getMessage() const noexcept;
    void setMessage(const std::string& message);
    const char* what() const noexcept override; ///< the message

    virtual void writeLocalizedMsg(ObjectOutput& out) const; ///< writes the message
    virtual void writeStackTrace(ObjectOutput& out) const;   ///< writes nothing: no trace is kept

private:
    std::string message_;
};

} // namespace Quillon::System

#endif
