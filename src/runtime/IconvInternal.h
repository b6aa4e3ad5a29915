#ifndef ZUTARNEX_RUNTIME_ICONVINTERNAL_H
#define ZUTARNEX_RUNTIME_ICONVINTERNAL_H

#include <cstddef>

namespace Quillon::Runtime {

/// One iconv descriptor.
class Iconv {
public:
    Iconv(const char* to, const char* from) noexcept;
    Iconv(const Iconv&) = delete;
    Iconv& operator=(const Iconv&) = delete;
    ~Iconv();

    bool isOpen() const noexcept;

    /// As iconv(3): 0, or the errno that stopped it: E2BIG, EILSEQ, EINVAL. Null input brings the output back to its
    /// initial shift state.
    int convert(const char** input, std::size_t* inputBytes, char** output,
                std::size_t* outputBytes) noexcept;

private:
    void* descriptor_;
};

/// A letter, then letters, digits, `.`, `_`, `-`. Anything else would be a path or an option (//IGNORE) to iconv.
bool isEncodingName(const char* name) noexcept;

/// UTF-16 in the encoding of that name, ended by one zero byte. Both return a new block of the host; null when there
/// is no memory or iconv lacks the encoding.
char* encodedByIconv(const char* encodingName, const unsigned short* text, std::size_t unitCount) noexcept;
/// Bytes of the encoding of that name as NUL-terminated UTF-16.
unsigned short* decodedByIconv(const char* encodingName, const char* text, std::size_t byteCount) noexcept;

} // namespace Quillon::Runtime

#endif
