#ifndef ZUTARNEX_RUNTIME_STREAMDECODER_H
#define ZUTARNEX_RUNTIME_STREAMDECODER_H

#include "zutarnex/export.h"

#include <cstddef>

namespace Quillon::Runtime {

class Iconv;

/// Recodes a stream of bytes, piece by piece, from an encoding that iconv knows to UTF-8.
///
/// Ownership: holds one iconv descriptor from `open` to `close` or destruction; not copyable.
/// Threads:   one object is used by one thread at a time.
class ZUTARNEX_API StreamDecoder {
public:
    enum class Status {
        InputUsed, ///< all input was consumed, but for the start of a character that the next piece completes
        OutputFull, ///< call again with more room
        IllFormed   ///< the bytes at `*input` are no character of the encoding
    };

    StreamDecoder() noexcept = default;
    StreamDecoder(const StreamDecoder&) = delete;
    StreamDecoder& operator=(const StreamDecoder&) = delete;
    ~StreamDecoder();

    /// False when iconv lacks the encoding, or the name is none (a letter, then letters, digits, `.`, `_`, `-`), or
    /// there is no memory; the decoder is then closed.
    bool open(const char* encodingName) noexcept;
    bool isOpen() const noexcept;
    void close() noexcept;

    /// Converts from [*input, *input + *inputBytes) to [*output, *output + *outputBytes) and advances all four.
    /// An incomplete character at the end of the input is left unconsumed. REQUIRES: isOpen().
    Status decode(const char** input, std::size_t* inputBytes, char** output,
                  std::size_t* outputBytes) noexcept;

private:
    Iconv* iconv_ = nullptr;
};

} // namespace Quillon::Runtime

#endif
