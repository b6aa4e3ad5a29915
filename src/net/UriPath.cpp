#include "net/UriPathInternal.h"

#include <algorithm>

namespace Quillon::Net {

namespace {

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

/// A segment "." or "..", of one or two characters; of none: another segment.
struct DotSegment {
    int length;
    bool isLast;
};

DotSegment dotSegmentAt(const unsigned char* segment) noexcept {
    const int length = segment[0] != '.' ? 0 : segment[1] != '.' ? 1 : 2;
    const unsigned char behind = segment[length];
    return {behind == 0 || behind == '/' ? length : 0, behind == 0};
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
        const bool hasSlash = *in == '/';
        const DotSegment dots = dotSegmentAt(in + hasSlash);
        if (dots.length == 0) {
            do
                *out++ = *in++;
            while (*in && *in != '/');
            continue;
        }
        if (hasSlash && dots.length == 2)
            out = withoutLastSegment(path, out);
        if (dots.isLast) {
            if (hasSlash)
                *out++ = '/';
            break;
        }
        in += dots.length
              + 1; // with the slash before it, which that behind it stands for, or with that behind it
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
