#include "xml/ImmutableObjectWriteError.h"

#include "system/InternalException.h"

namespace Quillon::Xml {

namespace {

class ImmutableObjectWriteErrorImpl : public ImmutableObjectWriteError, public System::InternalException {};

} // namespace

ImmutableObjectWriteError::ImmutableObjectWriteError() noexcept = default;
ImmutableObjectWriteError::ImmutableObjectWriteError(const ImmutableObjectWriteError&) noexcept = default;
ImmutableObjectWriteError::~ImmutableObjectWriteError() = default;

void ImmutableObjectWriteError::doThrow() {
    throw ImmutableObjectWriteErrorImpl();
}

} // namespace Quillon::Xml
