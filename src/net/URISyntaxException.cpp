#include "net/URISyntaxException.h"

namespace Quillon::Net {

URISyntaxException::URISyntaxException(const unsigned char* input, const char* reason,
                                       unsigned int index) noexcept
    : input_(input), reason_(reason), index_(index) {}

URISyntaxException::URISyntaxException(const URISyntaxException&) noexcept = default;
URISyntaxException& URISyntaxException::operator=(const URISyntaxException&) noexcept = default;
URISyntaxException::~URISyntaxException() = default;

const unsigned char* URISyntaxException::getInput() const noexcept {
    return input_;
}

const char* URISyntaxException::getReason() const noexcept {
    return reason_;
}

unsigned int URISyntaxException::getIndex() const noexcept {
    return index_;
}

} // namespace Quillon::Net
