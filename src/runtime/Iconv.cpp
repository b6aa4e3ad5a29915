#include "runtime/IconvInternal.h"

#include "runtime/HostServices.h"

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <iconv.h>

namespace Quillon::Runtime {

namespace {

constexpr char kNativeUtf16[] = "UTF-16LE"; // x86 is little-endian
constexpr unsigned short kReplacement = 0xFFFD;
constexpr unsigned short kUnknown = '?';

constexpr bool isLetter(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}
constexpr bool isNameCharacter(char c) {
    return isLetter(c) || (c >= '0' && c <= '9') || c == '.' || c == '_' || c == '-';
}

/// A block of the host that grows while a conversion fills it.
class GrowingBlock {
public:
    explicit GrowingBlock(std::size_t capacity) noexcept
        : start_(static_cast<char*>(hostServices().allocate(capacity))), capacity_(start_ ? capacity : 0) {}
    GrowingBlock(const GrowingBlock&) = delete;
    GrowingBlock& operator=(const GrowingBlock&) = delete;
    ~GrowingBlock() { release(start_); }

    bool isAllocated() const noexcept { return start_; }

    bool grow() noexcept {
        if (capacity_ > SIZE_MAX / 4)
            return false;
        const std::size_t doubled = 2 * capacity_;
        void* larger = hostServices().resize(start_, doubled);
        if (!larger)
            return false;
        start_ = static_cast<char*>(larger);
        capacity_ = doubled;
        return true;
    }

    /// One conversion step into the free room; grows on E2BIG. 0, EILSEQ, EINVAL as iconv(3); ENOMEM.
    int convert(Iconv& iconv, const char** input, std::size_t* inputBytes) noexcept {
        for (;;) {
            char* out = start_ + used_;
            std::size_t room = capacity_ - used_;
            const int fault = iconv.convert(input, inputBytes, &out, &room);
            used_ = capacity_ - room;
            if (fault != E2BIG)
                return fault;
            if (!grow())
                return ENOMEM;
        }
    }

    bool append(const void* bytes, std::size_t count) noexcept {
        while (capacity_ - used_ < count)
            if (!grow())
                return false;
        std::memcpy(start_ + used_, bytes, count);
        used_ += count;
        return true;
    }

    /// Hands the block over.
    char* take() noexcept {
        char* block = start_;
        start_ = nullptr;
        return block;
    }

private:
    char* start_;
    std::size_t capacity_;
    std::size_t used_ = 0;
};

/// Puts what stands for a character that could not be converted; ENOMEM or 0.
int putUnit(GrowingBlock& out, Iconv& iconv, unsigned short unit) noexcept {
    const char* input = reinterpret_cast<const char*>(&unit);
    std::size_t left = sizeof unit;
    return out.convert(iconv, &input, &left);
}

/// Steps over the character at `input` (or the lone surrogate) and puts its replacement.
int replaceInEncoded(GrowingBlock& out, Iconv& iconv, const char** input, std::size_t* left) noexcept {
    unsigned short first = 0, second = 0;
    std::memcpy(&first, *input, sizeof first);
    if (*left >= 2 * sizeof first)
        std::memcpy(&second, *input + sizeof first, sizeof second);
    const bool isPair = (first & 0xFC00) == 0xD800 && (second & 0xFC00) == 0xDC00;
    const bool isLone = !isPair && (first & 0xF800) == 0xD800;
    const std::size_t step = isPair ? 2 * sizeof first : sizeof first;
    *input += step;
    *left -= step;
    const int fault = isLone ? putUnit(out, iconv, kReplacement) : EILSEQ;
    return fault == EILSEQ ? putUnit(out, iconv, kUnknown) : fault;
}

} // namespace

Iconv::Iconv(const char* to, const char* from) noexcept : descriptor_(::iconv_open(to, from)) {}

Iconv::~Iconv() {
    if (isOpen())
        ::iconv_close(static_cast<iconv_t>(descriptor_));
}

bool Iconv::isOpen() const noexcept {
    return reinterpret_cast<std::intptr_t>(descriptor_) != -1;
}

int Iconv::convert(const char** input, std::size_t* inputBytes, char** output,
                   std::size_t* outputBytes) noexcept {
    char** in = const_cast<char**>(input); // iconv(3) does not write through it
    const std::size_t result =
        ::iconv(static_cast<iconv_t>(descriptor_), in, inputBytes, output, outputBytes);
    return result == static_cast<std::size_t>(-1) ? errno : 0;
}

bool isEncodingName(const char* name) noexcept {
    if (!name || !isLetter(*name))
        return false;
    while (isNameCharacter(*name))
        ++name;
    return *name == '\0';
}

char* encodedByIconv(const char* encodingName, const unsigned short* text, std::size_t unitCount) noexcept {
    if (!isEncodingName(encodingName) || unitCount > SIZE_MAX / 8)
        return nullptr;
    Iconv iconv(encodingName, kNativeUtf16);
    if (!iconv.isOpen())
        return nullptr;
    GrowingBlock out(2 * unitCount + 16);
    const char* input = reinterpret_cast<const char*>(text);
    std::size_t left = unitCount * sizeof *text;
    while (out.isAllocated() && left != 0) {
        int fault = out.convert(iconv, &input, &left);
        if (fault == EILSEQ || fault == EINVAL)
            fault = replaceInEncoded(out, iconv, &input, &left);
        if (fault != 0)
            return nullptr;
    }
    const bool isComplete =
        out.isAllocated() && out.convert(iconv, nullptr, nullptr) == 0 && out.append("", 1);
    return isComplete ? out.take() : nullptr;
}

unsigned short* decodedByIconv(const char* encodingName, const char* text, std::size_t byteCount) noexcept {
    if (!isEncodingName(encodingName) || byteCount > SIZE_MAX / 8)
        return nullptr;
    Iconv iconv(kNativeUtf16, encodingName);
    if (!iconv.isOpen())
        return nullptr;
    GrowingBlock out(2 * byteCount + 16);
    while (out.isAllocated() && byteCount != 0) {
        const int fault = out.convert(iconv, &text, &byteCount);
        if (fault == ENOMEM)
            return nullptr;
        if (fault == EINVAL)
            byteCount = 0; // the text ends inside a character: one ill-formed part
        else if (fault == EILSEQ)
            ++text, --byteCount;
        if (fault != 0 && !out.append(&kReplacement, sizeof kReplacement))
            return nullptr;
    }
    const unsigned short terminator = 0;
    const bool isComplete = out.isAllocated() && out.convert(iconv, nullptr, nullptr) == 0
                            && out.append(&terminator, sizeof terminator);
    return isComplete ? reinterpret_cast<unsigned short*>(out.take()) : nullptr;
}

} // namespace Quillon::Runtime
