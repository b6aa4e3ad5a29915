// The exceptions that every other one is made of. Destructors stand here so that each class has one vtable and one
// type_info, whichever module throws and catches.
#include "system/Identifiable.h"
#include "system/InternalException.h"
#include "system/ObjectOutput.h"
#include "system/OutOfMemoryException.h"
#include "system/Throwable.h"
#include "system/UserException.h"

#include <cstring>

namespace Quillon::System {

namespace {

void writeText(ObjectOutput& out, const char* text) {
    out.write(text, std::strlen(text));
}

} // namespace

ObjectOutput::~ObjectOutput() = default;
Identifiable::~Identifiable() = default;

Throwable::Throwable() noexcept = default;
Throwable::Throwable(const Throwable& other) noexcept = default;
Throwable& Throwable::operator=(const Throwable& other) noexcept = default;
Throwable::~Throwable() = default;

const char* Throwable::what() const noexcept {
    return "Throwable";
}

void Throwable::writeExternal(ObjectOutput& out) const {
    writeText(out, what());
}

void Throwable::writeRecurseChain(ObjectOutput& out) const {
    writeExternal(out);
}

UserException::UserException() = default;
UserException::UserException(const UserException& other) = default;
UserException& UserException::operator=(const UserException& other) = default;
UserException::~UserException() = default;

const std::string& UserException::getMessage() const noexcept {
    return message_;
}

void UserException::setMessage(const std::string& message) {
    message_ = message;
}

const char* UserException::what() const noexcept {
    return message_.c_str();
}

void UserException::writeLocalizedMsg(ObjectOutput& out) const {
    out.write(message_.data(), message_.size());
}

void UserException::writeStackTrace(ObjectOutput&) const {}

InternalException::InternalException() noexcept = default;
InternalException::InternalException(const InternalException& other) noexcept = default;
InternalException& InternalException::operator=(const InternalException& other) noexcept = default;
InternalException::~InternalException() = default;

const char* InternalException::what() const noexcept {
    return "internal error";
}

void InternalException::writeLocalizedMsg(ObjectOutput& out) const {
    writeText(out, what());
}

void InternalException::writeStackTrace(ObjectOutput&) const {}

void OutOfMemoryException::doThrow() {
    throw OutOfMemoryException();
}

OutOfMemoryException::OutOfMemoryException() noexcept = default;
OutOfMemoryException::OutOfMemoryException(const OutOfMemoryException& other) noexcept = default;
OutOfMemoryException& OutOfMemoryException::operator=(const OutOfMemoryException& other) noexcept = default;
OutOfMemoryException::~OutOfMemoryException() = default;

const char* OutOfMemoryException::what() const noexcept {
    return "out of memory";
}

} // namespace Quillon::System
