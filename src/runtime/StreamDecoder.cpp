#include "runtime/StreamDecoder.h"

#include "runtime/IconvInternal.h"

#include <cerrno>
#include <new>

namespace Quillon::Runtime {

StreamDecoder::~StreamDecoder() {
    close();
}

bool StreamDecoder::open(const char* encodingName) noexcept {
    close();
    if (!isEncodingName(encodingName))
        return false;
    auto* iconv = new (std::nothrow) Iconv("UTF-8", encodingName);
    if (iconv && !iconv->isOpen()) {
        delete iconv;
        iconv = nullptr;
    }
    iconv_ = iconv;
    return isOpen();
}

bool StreamDecoder::isOpen() const noexcept {
    return iconv_;
}

void StreamDecoder::close() noexcept {
    delete iconv_;
    iconv_ = nullptr;
}

StreamDecoder::Status StreamDecoder::decode(const char** input, std::size_t* inputBytes, char** output,
                                            std::size_t* outputBytes) noexcept {
    switch (iconv_->convert(input, inputBytes, output, outputBytes)) {
    case E2BIG:
        return Status::OutputFull;
    case EILSEQ:
        return Status::IllFormed;
    default: // EINVAL: the input ends inside a character
        return Status::InputUsed;
    }
}

} // namespace Quillon::Runtime
