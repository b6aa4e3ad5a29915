#include "net/UriPathInternal.h"

#include <algorithm>

namespace Quillon::Net {

namespace {

bool startsWith(const unsigned char* text, const char* start) noexcept {
    return std::strncmp(reinterpret_cast<const char*>(text), start, std::strlen(start)) == 0;
}

bool equals(const unsigned char* text, const char* other) noexcept {
    return std::strcmp(reinterpret_cast<const char*>(text), other) == 0;
}

/// Where the last "/" of [begin, end) stands; `begin` when there is none.
unsigned char* withoutLastSegment(unsigned char* begin, unsigned char* end) noexcept {
    while (end != begin)
        if (*--end == '/')
            return end;
    return begin;
}

/// The place behind the last "/"; the range's begin when there is none.
const unsigned char* behindLastSlash(TextRange range) noexcept {
    const unsigned char* at = range.end;
    while (at != range.begin && at[-1] != '/')
        --at;
    return at;
}

OwnedText concatenation(TextRange first, TextRange second) {
    OwnedText text = allocateText(std::uint64_t{first.size()} + second.size());
    *append(append(text.get(), first), second) = 0;
    return text;
}

constexpr unsigned char kSlash[] = "/";
constexpr unsigned char kUp[] = "../";
constexpr unsigned char kHere[] = "./";

/// `steps` times "../", "./" when asked for, and the rest.
OwnedText wayUpAndDown(std::uint64_t steps, bool guarded, TextRange rest) {
    OwnedText way = allocateText(steps * 3 + (guarded ? 2 : 0) + rest.size());
    unsigned char* out = way.get();
    for (; steps != 0; --steps)
        out = append(out, {kUp, kUp + 3});
    if (guarded)
        out = append(out, {kHere, kHere + 2});
    *append(out, rest) = 0;
    return way;
}

} // namespace

void removeDotSegments(unsigned char* path) noexcept {
    unsigned char* in = path;
    unsigned char* out = path;
    while (*in) {
        if (startsWith(in, "../")) {
            in += 3;
        } else if (startsWith(in, "./") || startsWith(in, "/./")) {
            in += 2;
        } else if (equals(in, "/.")) {
            in[1] = 0;
        } else if (startsWith(in, "/../")) {
            in += 3;
            out = withoutLastSegment(path, out);
        } else if (equals(in, "/..")) {
            in[1] = 0;
            out = withoutLastSegment(path, out);
        } else if (equals(in, ".") || equals(in, "..")) {
            break;
        } else {
            do
                *out++ = *in++;
            while (*in && *in != '/');
        }
    }
    *out = 0;
}

OwnedText mergePaths(TextRange basePath, bool baseHasAuthority, TextRange reference) {
    if (baseHasAuthority && basePath.isEmpty())
        return concatenation({kSlash, kSlash + 1}, reference);
    return concatenation({basePath.begin, behindLastSlash(basePath)}, reference);
}

OwnedText relativePath(TextRange base, TextRange target) {
    const auto [baseRest, targetRest] = std::mismatch(base.begin, base.end, target.begin, target.end);
    const unsigned char* const rest = behindLastSlash({target.begin, targetRest});
    // No "/" in common, or only the leading one. (Also when one of the paths is empty.)
    if (rest - target.begin <= 1)
        return wayUpAndDown(0, false, target);
    const auto steps = static_cast<std::uint64_t>(std::count(baseRest, base.end, '/'));
    const bool mistakable = rest == target.end || std::find(rest, target.end, ':') != target.end;
    return wayUpAndDown(steps, steps == 0 && mistakable, {rest, target.end});
}

} // namespace Quillon::Net
