#include "runtime/CStringInternal.h"

#include "runtime/HostServices.h"

#include <cstdarg>
#include <cstdio>
#include <cstring>

namespace Quillon::Runtime {

std::size_t lengthOf(const char* text) noexcept {
    return text ? std::strlen(text) : 0;
}

std::size_t unitCountOf(const unsigned short* text) noexcept {
    std::size_t count = 0;
    if (text)
        while (text[count])
            ++count;
    return count;
}

char* duplicate(const char* text) noexcept {
    return text ? duplicate(text, std::strlen(text)) : nullptr;
}

char* duplicate(const char* text, std::size_t length) noexcept {
    char* copy = static_cast<char*>(hostServices().allocate(length + 1));
    if (copy) {
        std::memcpy(copy, text, length);
        copy[length] = 0;
    }
    return copy;
}

bool copyBounded(char* target, std::size_t capacity, const char* text) noexcept {
    return printBounded(target, capacity, "%s", text);
}

bool printBounded(char* target, std::size_t capacity, const char* format, ...) noexcept {
    std::va_list arguments;
    va_start(arguments, format);
    const int length = std::vsnprintf(target, capacity, format, arguments);
    va_end(arguments);
    return length >= 0 && static_cast<std::size_t>(length) < capacity;
}

int printToHost(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    const int result = hostServices().print(format, arguments);
    va_end(arguments);
    return result;
}

std::uint32_t hashBytes(const char* bytes, std::size_t byteCount) noexcept {
    std::uint32_t hash = 2166136261u; // FNV-1a
    for (std::size_t i = 0; i < byteCount; ++i)
        hash = (hash ^ static_cast<unsigned char>(bytes[i])) * 16777619u;
    return hash;
}

} // namespace Quillon::Runtime
