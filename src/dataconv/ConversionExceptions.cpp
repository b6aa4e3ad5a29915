// The exceptions of the conversions: interfaces that callers catch, and what is really thrown.
#include "dataconv/AlreadyBoundException.h"
#include "dataconv/IllegalArgumentException.h"
#include "dataconv/IllegalConversionException.h"
#include "dataconv/NotBoundException.h"
#include "dataconv/NotFoundException.h"
#include "dataconv/RuntimeException.h"
#include "system/InternalException.h"

namespace Quillon::DataConv {

namespace {

class NotFoundExceptionImpl final : public NotFoundException, public System::InternalException {};
class RuntimeExceptionImpl final : public RuntimeException, public System::InternalException {};
class IllegalArgumentExceptionImpl final : public IllegalArgumentException,
                                           public System::InternalException {};
class NotBoundExceptionImpl final : public NotBoundException, public System::InternalException {};
class AlreadyBoundExceptionImpl final : public AlreadyBoundException, public System::InternalException {};
class IllegalConversionExceptionImpl final : public IllegalConversionException,
                                             public System::InternalException {};

} // namespace

NotFoundException::NotFoundException() noexcept = default;
NotFoundException::NotFoundException(const NotFoundException&) noexcept = default;
NotFoundException::~NotFoundException() = default;

void NotFoundException::doThrow() {
    throw NotFoundExceptionImpl();
}

RuntimeException::RuntimeException() noexcept = default;
RuntimeException::RuntimeException(const RuntimeException&) noexcept = default;
RuntimeException::~RuntimeException() = default;

void RuntimeException::doThrow() {
    throw RuntimeExceptionImpl();
}

IllegalArgumentException::IllegalArgumentException() noexcept = default;
IllegalArgumentException::IllegalArgumentException(const IllegalArgumentException&) noexcept = default;
IllegalArgumentException::~IllegalArgumentException() = default;

void IllegalArgumentException::doThrow() {
    throw IllegalArgumentExceptionImpl();
}

NotBoundException::NotBoundException() noexcept = default;
NotBoundException::NotBoundException(const NotBoundException&) noexcept = default;
NotBoundException::~NotBoundException() = default;

void NotBoundException::doThrow() {
    throw NotBoundExceptionImpl();
}

AlreadyBoundException::AlreadyBoundException() noexcept = default;
AlreadyBoundException::AlreadyBoundException(const AlreadyBoundException&) noexcept = default;
AlreadyBoundException::~AlreadyBoundException() = default;

void AlreadyBoundException::doThrow() {
    throw AlreadyBoundExceptionImpl();
}

IllegalConversionException::IllegalConversionException() noexcept = default;
IllegalConversionException::IllegalConversionException(const IllegalConversionException&) noexcept = default;
IllegalConversionException::~IllegalConversionException() = default;

void IllegalConversionException::doThrow() {
    throw IllegalConversionExceptionImpl();
}

} // namespace Quillon::DataConv
