#ifndef ZUTARNEX_XML_CODEC_CODECRANGESINTERNAL_H
#define ZUTARNEX_XML_CODEC_CODECRANGESINTERNAL_H

#include "xml/codec/cteErrorCode.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <new>

namespace Quillon::Xml {

/// What a streaming call has left to read and to write; moves the caller's pointers themselves.
struct CodecRanges {
    unsigned char*& out;
    const unsigned char* outEnd;
    const unsigned char*& in;
    const unsigned char* inEnd;

    std::size_t room() const noexcept { return static_cast<std::size_t>(outEnd - out); }
    std::size_t left() const noexcept { return static_cast<std::size_t>(inEnd - in); }

    /// Copies the `count` bytes at `bytes`, or as many as there is room for, and returns how many.
    std::size_t deliver(const unsigned char* bytes, std::size_t count) noexcept {
        const std::size_t delivered = std::min(count, room());
        out = std::copy_n(bytes, delivered, out);
        return delivered;
    }
};

/// Delivers the items from `index` to `count` of `pending`, or as many as there is room for; both are 0 behind the last.
inline void deliverPending(CodecRanges& ranges, const unsigned char* pending, unsigned char& index,
                           unsigned char& count) noexcept {
    const std::size_t left = count - std::size_t{index};
    index = static_cast<unsigned char>(index + ranges.deliver(pending + index, left));
    if (index == count)
        index = count = 0;
}

/// Whether a streaming call can serve these arguments; if not, stores the error where there is a place for it.
/// `holdsSomething`: the codec has a partial unit or pending output.
inline bool areUsable(unsigned char** out, const unsigned char* outEnd, const unsigned char** in,
                      const unsigned char* inEnd, bool holdsSomething, cteErrorCode* err) noexcept {
    if (err == nullptr)
        return false;
    const bool arePointers = out != nullptr && *out != nullptr && outEnd != nullptr && in != nullptr
                             && *in != nullptr && inEnd != nullptr;
    if (arePointers && *out < outEnd && (*in < inEnd || (*in == inEnd && holdsSomething)))
        return true;
    *err = cteInvalidArguments;
    return false;
}

/// Only errors are stored.
inline void report(cteErrorCode found, cteErrorCode* err) noexcept {
    if (found != cteNoError)
        *err = found;
}

/// Runs `convert`, a final streaming call on a codec of its own, over the whole input and into a new array of
/// `capacity` bytes, which it terminates where there is room. Null when there is an error.
template <class Convert>
unsigned char* convertAtOnce(const unsigned char* in, unsigned int length, std::uint64_t capacity,
                             unsigned int* outLength, cteErrorCode* err, Convert convert) {
    std::unique_ptr<unsigned char[]> result;
    if (capacity <= std::numeric_limits<std::uint32_t>::max())
        result.reset(new (std::nothrow) unsigned char[static_cast<std::size_t>(capacity)]);
    if (!result) {
        *err = cteNoMemory;
        return nullptr;
    }
    unsigned char* out = result.get();
    const unsigned char* const outEnd = out + capacity;
    cteErrorCode found = cteNoError;
    convert(&out, outEnd, &in, in + length, &found);
    report(found, err);
    if (found != cteNoError)
        return nullptr;
    if (out != outEnd)
        *out = 0;
    *outLength = static_cast<unsigned int>(out - result.get());
    return result.release();
}

} // namespace Quillon::Xml

#endif
