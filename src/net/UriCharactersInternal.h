#ifndef ZUTARNEX_NET_URICHARACTERSINTERNAL_H
#define ZUTARNEX_NET_URICHARACTERSINTERNAL_H

#include <cstdint>

namespace Quillon::Net {

/// A set of 7-bit characters: one bit for each, in two masks, for 0 to 63 and for 64 to 127. Bytes of 128 and above
/// are in no set.
class CharacterSet {
public:
    constexpr CharacterSet() = default;
    constexpr explicit CharacterSet(const char* members) {
        for (; *members; ++members)
            add(static_cast<unsigned char>(*members));
    }
    static constexpr CharacterSet between(unsigned char first, unsigned char last) {
        CharacterSet set;
        for (unsigned int c = first; c <= last; ++c)
            set.add(static_cast<unsigned char>(c));
        return set;
    }

    friend constexpr CharacterSet operator|(CharacterSet a, CharacterSet b) {
        a.masks_[0] |= b.masks_[0];
        a.masks_[1] |= b.masks_[1];
        return a;
    }

    constexpr bool contains(unsigned char c) const {
        return c < 128 && (masks_[c >> 6] >> (c & 63) & 1) != 0;
    }

private:
    constexpr void add(unsigned char c) { masks_[c >> 6] |= std::uint64_t{1} << (c & 63); }

    std::uint64_t masks_[2] = {0, 0};
};

/// A set for scanning: one load for each character.
class CharacterTable {
public:
    constexpr explicit CharacterTable(CharacterSet set) {
        for (unsigned int c = 0; c < 256; ++c)
            contains_[c] = set.contains(static_cast<unsigned char>(c));
    }
    constexpr bool contains(unsigned char c) const { return contains_[c]; }

private:
    bool contains_[256] = {};
};

// The classes of RFC 3986. The masks are part of the library's constant data, so that they are there as soon as it is
// loaded, before any initialiser runs. "%" is in none of them: it is an escape everywhere.
inline constexpr CharacterSet kAlpha = CharacterSet::between('A', 'Z') | CharacterSet::between('a', 'z');
inline constexpr CharacterSet kDigits = CharacterSet::between('0', '9');
inline constexpr CharacterSet kHexDigits =
    kDigits | CharacterSet::between('A', 'F') | CharacterSet::between('a', 'f');
inline constexpr CharacterSet kSubDelims("!$&'()*+,;=");
inline constexpr CharacterSet kUnreserved = kAlpha | kDigits | CharacterSet("-._~");
inline constexpr CharacterSet kSchemeCharacters = kAlpha | kDigits | CharacterSet("+-.");
inline constexpr CharacterSet kRegNameCharacters = kUnreserved | kSubDelims;
inline constexpr CharacterSet kUserInfoCharacters = kRegNameCharacters | CharacterSet(":");
inline constexpr CharacterSet kSegmentNzNcCharacters = kRegNameCharacters | CharacterSet("@");
inline constexpr CharacterSet kSegmentCharacters = kRegNameCharacters | CharacterSet(":@");
inline constexpr CharacterSet kPathCharacters = kSegmentCharacters | CharacterSet("/");
inline constexpr CharacterSet kQueryCharacters = kSegmentCharacters | CharacterSet("/?");

// What a part of a text may end with, beside its listed delimiters: the terminator.
inline constexpr CharacterSet kTerminator = CharacterSet::between(0, 0);

} // namespace Quillon::Net

#endif
