#include "runtime/kernels/CpuLevelInternal.h"
#include "runtime/kernels/IntrinsicsInternal.h"
#include "runtime/kernels/TranscodeInternal.h"
#include "runtime/kernels/TranscodeStepsInternal.h"

#include <algorithm>

namespace Quillon::Runtime::Kernels {

namespace {

using Bytes = const unsigned char*;

// Scalar

struct Lengths {
    std::size_t characters;
    std::size_t units;
};

void countNext(Bytes& text, Bytes end, Lengths& lengths) noexcept {
    lengths.units += nextOfUtf8(text, end) < 0x10000 ? 1 : 2;
    ++lengths.characters;
}

Lengths lengthsScalar(Bytes text, Bytes end) noexcept {
    Lengths lengths{};
    while (text != end)
        countNext(text, end, lengths);
    return lengths;
}

unsigned short* convertScalar(Bytes text, Bytes end, unsigned short* out) noexcept {
    while (text != end)
        out = appendUtf16(nextOfUtf8(text, end), out);
    return out;
}

constexpr bool isTrail(unsigned char byte) {
    return (byte & 0xC0) == 0x80;
}

// Blocks: 64 bytes, of each kind of byte a mask, and from these the part of the block that is well-formed. What
// ends it, if anything does, is left to nextOfUtf8().

/// Bit i stands for byte i of the block.
struct Kinds {
    std::uint64_t trail;   ///< 80 to BF
    std::uint64_t lead2;   ///< C2 and above, so the leads of three and four, too
    std::uint64_t lead3;   ///< E0 and above
    std::uint64_t lead4;   ///< F0 and above
    std::uint64_t invalid; ///< C0, C1, F5 and above
    std::uint64_t e0, ed, f0, f4;
    std::uint64_t from90, fromA0; ///< at least: those of the trail bytes
};

struct WellFormed {
    std::uint64_t last;     ///< the last bytes of characters
    std::uint64_t lastOf4;  ///< those of four bytes
    unsigned int byteCount; ///< of the whole characters
    bool isBroken;          ///< what follows them is ill-formed
};

[[gnu::always_inline]] inline WellFormed wellFormedPart(const Kinds& kinds) noexcept {
    const std::uint64_t expected = kinds.lead2 << 1 | kinds.lead3 << 2 | kinds.lead4 << 3;
    std::uint64_t wrong = (kinds.trail ^ expected) | kinds.invalid;
    wrong |= (kinds.e0 << 1 & ~kinds.fromA0) | (kinds.ed << 1 & kinds.fromA0);
    wrong |= (kinds.f0 << 1 & ~kinds.from90) | (kinds.f4 << 1 & kinds.from90);
    const std::uint64_t before = wrong == 0 ? ~std::uint64_t{0} : (wrong & (0 - wrong)) - 1;
    const std::uint64_t single = ~(kinds.trail | kinds.lead2 | kinds.invalid);
    const std::uint64_t lastOf4 = kinds.lead4 << 3;
    const std::uint64_t last =
        (single | (kinds.lead2 & ~kinds.lead3) << 1 | (kinds.lead3 & ~kinds.lead4) << 2 | lastOf4) & before;
    const unsigned int byteCount = last == 0 ? 0 : 64 - static_cast<unsigned int>(__builtin_clzll(last));
    return {last, lastOf4 & before, byteCount, wrong != 0};
}

/// By the book: SSE2 has no instruction for it, and the compiler would call its own library.
[[gnu::always_inline]] inline std::size_t bitCount(std::uint64_t bits) noexcept {
    bits -= bits >> 1 & 0x5555555555555555;
    bits = (bits & 0x3333333333333333) + (bits >> 2 & 0x3333333333333333);
    bits = (bits + (bits >> 4)) & 0x0F0F0F0F0F0F0F0F;
    return static_cast<std::size_t>(bits * 0x0101010101010101 >> 56);
}

[[gnu::always_inline]] inline void countPart(const WellFormed& part, Lengths& lengths) noexcept {
    const std::size_t characters = bitCount(part.last);
    lengths.characters += characters;
    lengths.units += characters + bitCount(part.lastOf4);
}

/// Adds what a block of 64 bytes holds and moves behind it, or behind the ill-formed part that ends it.
[[gnu::always_inline]] inline void countBlock(const Kinds& kinds, Bytes& text, Bytes end,
                                              Lengths& lengths) noexcept {
    const WellFormed part = wellFormedPart(kinds);
    countPart(part, lengths);
    text += part.byteCount;
    if (part.isBroken)
        countNext(text, end, lengths);
}

// SSE2. The comparisons are signed: 80 to FF come first.

ZUTARNEX_TARGET_SSE2 inline __m128i loadSse2(Bytes text) noexcept {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(text));
}

ZUTARNEX_TARGET_SSE2 inline std::uint64_t aboveSse2(__m128i bytes, unsigned char limit) noexcept {
    return static_cast<unsigned int>(
        _mm_movemask_epi8(_mm_cmpgt_epi8(bytes, _mm_set1_epi8(static_cast<char>(limit)))));
}

ZUTARNEX_TARGET_SSE2 inline std::uint64_t equalSse2(__m128i bytes, unsigned char value) noexcept {
    return static_cast<unsigned int>(
        _mm_movemask_epi8(_mm_cmpeq_epi8(bytes, _mm_set1_epi8(static_cast<char>(value)))));
}

ZUTARNEX_TARGET_SSE2 inline Kinds kindsSse2(Bytes text) noexcept {
    Kinds kinds{};
    for (unsigned int at = 0; at < 64; at += 16) {
        const __m128i bytes = loadSse2(text + at);
        const std::uint64_t high = static_cast<unsigned int>(_mm_movemask_epi8(bytes));
        const std::uint64_t trail = high & ~aboveSse2(bytes, 0xBF);
        const std::uint64_t lead2 = high & aboveSse2(bytes, 0xC1);
        kinds.trail |= trail << at;
        kinds.lead2 |= lead2 << at;
        kinds.lead3 |= (high & aboveSse2(bytes, 0xDF)) << at;
        kinds.lead4 |= (high & aboveSse2(bytes, 0xEF)) << at;
        kinds.invalid |= ((high & ~trail & ~lead2) | (high & aboveSse2(bytes, 0xF4))) << at;
        kinds.e0 |= equalSse2(bytes, 0xE0) << at;
        kinds.ed |= equalSse2(bytes, 0xED) << at;
        kinds.f0 |= equalSse2(bytes, 0xF0) << at;
        kinds.f4 |= equalSse2(bytes, 0xF4) << at;
        kinds.from90 |= aboveSse2(bytes, 0x8F) << at;
        kinds.fromA0 |= aboveSse2(bytes, 0x9F) << at;
    }
    return kinds;
}

ZUTARNEX_TARGET_SSE2 inline bool isAsciiSse2(Bytes text) noexcept {
    return _mm_movemask_epi8(_mm_or_si128(_mm_or_si128(loadSse2(text), loadSse2(text + 16)),
                                          _mm_or_si128(loadSse2(text + 32), loadSse2(text + 48))))
           == 0;
}

ZUTARNEX_TARGET_SSE2 Lengths lengthsSse2(Bytes text, Bytes end) noexcept {
    Lengths lengths{};
    std::size_t asciiBlocks = 0;
    while (end - text >= 64) {
        if (isAsciiSse2(text)) {
            text += 64;
            ++asciiBlocks;
        } else {
            countBlock(kindsSse2(text), text, end, lengths);
        }
    }
    const Lengths rest = lengthsScalar(text, end);
    return {lengths.characters + rest.characters + asciiBlocks * 64,
            lengths.units + rest.units + asciiBlocks * 64};
}

/// US-ASCII sixteen bytes at a time, another character and what follows it up to the next US-ASCII one by one.
ZUTARNEX_TARGET_SSE2 unsigned short* convertSse2(Bytes text, Bytes end, unsigned short* out) noexcept {
    while (end - text >= 16) {
        const __m128i bytes = loadSse2(text);
        if (_mm_movemask_epi8(bytes) == 0) {
            _mm_storeu_si128(reinterpret_cast<__m128i*>(out), _mm_unpacklo_epi8(bytes, _mm_setzero_si128()));
            _mm_storeu_si128(reinterpret_cast<__m128i*>(out + 8),
                             _mm_unpackhi_epi8(bytes, _mm_setzero_si128()));
            text += 16;
            out += 16;
        } else {
            for (const Bytes stop = text + 16; text < stop;)
                out = appendUtf16(nextOfUtf8(text, end), out);
        }
    }
    return convertScalar(text, end, out);
}

// AVX2

ZUTARNEX_TARGET_AVX2 inline __m256i loadAvx2(Bytes text) noexcept {
    return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(text));
}

ZUTARNEX_TARGET_AVX2 inline std::uint64_t aboveAvx2(__m256i bytes, unsigned char limit) noexcept {
    return static_cast<unsigned int>(
        _mm256_movemask_epi8(_mm256_cmpgt_epi8(bytes, _mm256_set1_epi8(static_cast<char>(limit)))));
}

ZUTARNEX_TARGET_AVX2 inline std::uint64_t equalAvx2(__m256i bytes, unsigned char value) noexcept {
    return static_cast<unsigned int>(
        _mm256_movemask_epi8(_mm256_cmpeq_epi8(bytes, _mm256_set1_epi8(static_cast<char>(value)))));
}

ZUTARNEX_TARGET_AVX2 inline Kinds kindsAvx2(Bytes text) noexcept {
    Kinds kinds{};
    for (unsigned int at = 0; at < 64; at += 32) {
        const __m256i bytes = loadAvx2(text + at);
        const std::uint64_t high = static_cast<unsigned int>(_mm256_movemask_epi8(bytes));
        const std::uint64_t trail = high & ~aboveAvx2(bytes, 0xBF);
        const std::uint64_t lead2 = high & aboveAvx2(bytes, 0xC1);
        kinds.trail |= trail << at;
        kinds.lead2 |= lead2 << at;
        kinds.lead3 |= (high & aboveAvx2(bytes, 0xDF)) << at;
        kinds.lead4 |= (high & aboveAvx2(bytes, 0xEF)) << at;
        kinds.invalid |= ((high & ~trail & ~lead2) | (high & aboveAvx2(bytes, 0xF4))) << at;
        kinds.e0 |= equalAvx2(bytes, 0xE0) << at;
        kinds.ed |= equalAvx2(bytes, 0xED) << at;
        kinds.f0 |= equalAvx2(bytes, 0xF0) << at;
        kinds.f4 |= equalAvx2(bytes, 0xF4) << at;
        kinds.from90 |= aboveAvx2(bytes, 0x8F) << at;
        kinds.fromA0 |= aboveAvx2(bytes, 0x9F) << at;
    }
    return kinds;
}

ZUTARNEX_TARGET_AVX2 Lengths lengthsAvx2(Bytes text, Bytes end) noexcept {
    Lengths lengths{};
    std::size_t asciiBlocks = 0;
    while (end - text >= 64) {
        if (_mm256_movemask_epi8(_mm256_or_si256(loadAvx2(text), loadAvx2(text + 32))) == 0) {
            text += 64;
            ++asciiBlocks;
        } else {
            countBlock(kindsAvx2(text), text, end, lengths);
        }
    }
    const Lengths rest = lengthsScalar(text, end);
    return {lengths.characters + rest.characters + asciiBlocks * 64,
            lengths.units + rest.units + asciiBlocks * 64};
}

/// Eight characters of two bytes; false, with nothing written, when there is anything else.
ZUTARNEX_TARGET_AVX2 inline bool convertEightOfTwo(__m128i bytes, unsigned short* out) noexcept {
    const __m128i marks = _mm_and_si128(bytes, _mm_set1_epi16(static_cast<short>(0xC0E0)));
    const __m128i areMarked = _mm_cmpeq_epi16(marks, _mm_set1_epi16(static_cast<short>(0x80C0)));
    const __m128i bits = _mm_and_si128(bytes, _mm_set1_epi16(0x3F1F));
    const __m128i units = _mm_maddubs_epi16(bits, _mm_set1_epi16(0x0140)); // first * 64 + second
    const __m128i areLong = _mm_cmpgt_epi16(units, _mm_set1_epi16(0x7F));
    if (_mm_movemask_epi8(_mm_and_si128(areMarked, areLong)) != 0xFFFF)
        return false;
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out), units);
    return true;
}

/// Four characters of three bytes, which are the first twelve of `bytes`; false, with nothing written, when there is
/// anything else.
ZUTARNEX_TARGET_AVX2 inline bool convertFourOfThree(__m128i bytes, unsigned short* out) noexcept {
    // Each lane: the third byte, the second, the first, nothing.
    const __m128i lanes =
        _mm_shuffle_epi8(bytes, _mm_setr_epi8(2, 1, 0, -1, 5, 4, 3, -1, 8, 7, 6, -1, 11, 10, 9, -1));
    const __m128i marks = _mm_and_si128(lanes, _mm_set1_epi32(0xF0C0C0));
    const __m128i areMarked = _mm_cmpeq_epi32(marks, _mm_set1_epi32(0xE08080));
    const __m128i third = _mm_and_si128(lanes, _mm_set1_epi32(0x3F));
    const __m128i second = _mm_and_si128(_mm_srli_epi32(lanes, 2), _mm_set1_epi32(0x3F << 6));
    const __m128i first = _mm_and_si128(_mm_srli_epi32(lanes, 4), _mm_set1_epi32(0xF000));
    const __m128i c = _mm_or_si128(_mm_or_si128(first, second), third);
    const __m128i areLong = _mm_cmpgt_epi32(c, _mm_set1_epi32(0x7FF));
    const __m128i areSurrogates =
        _mm_cmpeq_epi32(_mm_and_si128(c, _mm_set1_epi32(0xF800)), _mm_set1_epi32(0xD800));
    if (_mm_movemask_epi8(_mm_andnot_si128(areSurrogates, _mm_and_si128(areMarked, areLong))) != 0xFFFF)
        return false;
    _mm_storel_epi64(reinterpret_cast<__m128i*>(out), _mm_packus_epi32(c, c));
    return true;
}

/// US-ASCII 32 bytes at a time, rows of characters of two or three bytes eight or four at a time.
ZUTARNEX_TARGET_AVX2 unsigned short* convertAvx2(Bytes text, Bytes end, unsigned short* out) noexcept {
    // Sixteen units are written although fewer may count: 48 bytes make up for those.
    while (end - text >= 48) {
        const __m256i bytes = loadAvx2(text);
        const auto high = static_cast<unsigned int>(_mm256_movemask_epi8(bytes));
        const __m128i front = _mm256_castsi256_si128(bytes);
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(out), _mm256_cvtepu8_epi16(front));
        if (high == 0) {
            _mm256_storeu_si256(reinterpret_cast<__m256i*>(out + 16),
                                _mm256_cvtepu8_epi16(_mm256_extracti128_si256(bytes, 1)));
            text += 32;
            out += 32;
        } else if ((high & 0xFFFF) == 0) {
            text += 16;
            out += 16;
        } else if ((high & 1) == 0) {
            const unsigned int asciiCount = static_cast<unsigned int>(__builtin_ctz(high));
            text += asciiCount;
            out += asciiCount;
        } else if (*text >= 0xE0 && convertFourOfThree(front, out)) {
            text += 12;
            out += 4;
        } else if (*text < 0xE0 && convertEightOfTwo(front, out)) {
            text += 16;
            out += 8;
        } else {
            for (const Bytes stop = text + 16; text < stop;)
                out = appendUtf16(nextOfUtf8(text, end), out);
        }
    }
    return convertSse2(text, end, out);
}

// AVX-512

ZUTARNEX_TARGET_AVX512 inline __mmask64 from(__m512i bytes, unsigned char value) noexcept {
    return _mm512_cmpge_epu8_mask(bytes, _mm512_set1_epi8(static_cast<char>(value)));
}

/// Those of the bytes in `mask` that are at least `value`.
ZUTARNEX_TARGET_AVX512 inline __mmask64 fromAmong(__mmask64 mask, __m512i bytes,
                                                  unsigned char value) noexcept {
    return _mm512_mask_cmpge_epu8_mask(mask, bytes, _mm512_set1_epi8(static_cast<char>(value)));
}

/// Those of the bytes in `mask` that begin a character.
ZUTARNEX_TARGET_AVX512 inline __mmask64 startsAmong(__mmask64 mask, __m512i bytes) noexcept {
    return _mm512_mask_cmpgt_epi8_mask(mask, bytes, _mm512_set1_epi8(static_cast<char>(0xBF)));
}

/// 64 bytes that begin with a character, and with each byte those that follow and precede it. The two or three bytes
/// behind the block are there to be read.
struct Block {
    __m512i bytes, next1, next2;
    __m512i before1, before2;
};

constexpr std::ptrdiff_t kReadByBlock = 64 + 2;

ZUTARNEX_TARGET_AVX512 inline Block blockAt(Bytes text, __m512i bytes) noexcept {
    const __m512i numbers = numbersFrom(0);
    return {bytes, _mm512_loadu_si512(text + 1), _mm512_loadu_si512(text + 2),
            _mm512_maskz_permutexvar_epi8(_mm512_test_epi8_mask(numbers, numbers), numbersFrom(-1), bytes),
            _mm512_maskz_permutexvar_epi8(_mm512_cmpgt_epi8_mask(numbers, _mm512_set1_epi8(1)),
                                          numbersFrom(-2), bytes)};
}

ZUTARNEX_TARGET_AVX512 inline __m512i lookUp(__m128i table, __m512i indexes) noexcept {
    return _mm512_shuffle_epi8(_mm512_broadcast_i32x4(table),
                               _mm512_and_si512(indexes, _mm512_set1_epi8(0x0F)));
}

/// Whether every pair of neighbours in the block is one that well-formed text can hold; the second of the last pair
/// stands behind the block. Each table gives the faults that its four bits allow; a fault that all three allow is one
/// (Keiser and Lemire, "Validating UTF-8 in less than one instruction per byte").
ZUTARNEX_TARGET_AVX512 inline bool isWellFormed(const Block& block) noexcept {
    constexpr char kTooShort = 1, kTooLong = 2, kOverlong3 = 4, kTooLarge = 8, kSurrogate = 16,
                   kOverlong2 = 32, kTooLarge1000 = 64, kOverlong4 = 64, kTwoTrails = static_cast<char>(128);
    constexpr char kAnyLow = kTooShort | kTooLong | kTwoTrails;
    constexpr char kLarge = kAnyLow | kTooLarge | kTooLarge1000;
    const __m128i firstHigh = _mm_setr_epi8(
        kTooLong, kTooLong, kTooLong, kTooLong, kTooLong, kTooLong, kTooLong, kTooLong, kTwoTrails,
        kTwoTrails, kTwoTrails, kTwoTrails, kTooShort | kOverlong2, kTooShort,
        kTooShort | kOverlong3 | kSurrogate, kTooShort | kTooLarge | kTooLarge1000 | kOverlong4);
    const __m128i firstLow =
        _mm_setr_epi8(kAnyLow | kOverlong3 | kOverlong2 | kOverlong4, kAnyLow | kOverlong2, kAnyLow, kAnyLow,
                      kAnyLow | kTooLarge, kLarge, kLarge, kLarge, kLarge, kLarge, kLarge, kLarge, kLarge,
                      kLarge | kSurrogate, kLarge, kLarge);
    constexpr char kSecond8 = kTooLong | kOverlong2 | kTwoTrails | kOverlong3 | kTooLarge1000 | kOverlong4;
    constexpr char kSecond9 = kTooLong | kOverlong2 | kTwoTrails | kOverlong3 | kTooLarge;
    constexpr char kSecondA = kTooLong | kOverlong2 | kTwoTrails | kSurrogate | kTooLarge;
    const __m128i secondHigh =
        _mm_setr_epi8(kTooShort, kTooShort, kTooShort, kTooShort, kTooShort, kTooShort, kTooShort, kTooShort,
                      kSecond8, kSecond9, kSecondA, kSecondA, kTooShort, kTooShort, kTooShort, kTooShort);
    const __m512i first = lookUp(firstHigh, _mm512_srli_epi16(block.bytes, 4));
    const __m512i low = lookUp(firstLow, block.bytes);
    const __m512i second = lookUp(secondHigh, _mm512_srli_epi16(block.next1, 4));
    const __m512i faults = _mm512_ternarylogic_epi64(first, low, second, 0x80); // a & b & c
    // Two trail bytes in a row are right where they are the second and third, or third and fourth, and only there.
    const __m512i third = _mm512_subs_epu8(block.before1, _mm512_set1_epi8(0xE0 - 0x80));
    const __m512i fourth = _mm512_subs_epu8(block.before2, _mm512_set1_epi8(0xF0 - 0x80));
    const __m512i expected = _mm512_ternarylogic_epi64(
        third, fourth, _mm512_set1_epi8(static_cast<char>(0x80)), 0xA8); // (a | b) & c
    return !hasAny(_mm512_xor_si512(faults, expected), 0xFF);
}

/// The bytes of a well-formed block that are whole characters: all but up to three.
inline unsigned int wholeCharacters(Bytes text) noexcept {
    if (text[63] >= 0xC0)
        return 63;
    if (text[62] >= 0xE0)
        return 62;
    return text[61] >= 0xF0 ? 61 : 64;
}

ZUTARNEX_TARGET_AVX512 inline bool isAsciiRun(Bytes text) noexcept {
    return _mm512_movepi8_mask(_mm512_or_si512(
               _mm512_or_si512(_mm512_loadu_si512(text), _mm512_loadu_si512(text + 64)),
               _mm512_or_si512(_mm512_loadu_si512(text + 128), _mm512_loadu_si512(text + 192))))
           == 0;
}

ZUTARNEX_TARGET_AVX512 Lengths lengthsAvx512(Bytes text, Bytes end) noexcept {
    Lengths lengths{};
    while (end - text >= kReadByBlock) {
        if (end - text >= 256 && isAsciiRun(text)) {
            text += 256;
            lengths.characters += 256;
            lengths.units += 256;
            continue;
        }
        const Block block = blockAt(text, _mm512_loadu_si512(text));
        if (isTrail(*text) || !isWellFormed(block)) {
            countBlock(kindsAvx2(text), text, end, lengths);
            continue;
        }
        const unsigned int byteCount = wholeCharacters(text);
        const __mmask64 whole = firstBytes(byteCount);
        const unsigned int characters = countOf(startsAmong(whole, block.bytes));
        lengths.characters += characters;
        lengths.units += characters;
        const __mmask64 of4 = fromAmong(whole, block.bytes, 0xF0);
        if (!isEmpty(of4))
            lengths.units += countOf(of4);
        text += byteCount;
    }
    const Lengths rest = lengthsAvx2(text, end);
    return {lengths.characters + rest.characters, lengths.units + rest.units};
}

/// The low and the high halves of units, each where its character begins; the second of two surrogates one byte
/// further on.
struct Halves {
    __m512i low, high;
};

ZUTARNEX_TARGET_AVX512 inline Halves halvesOf(const Block& block) noexcept {
    const __mmask64 isAscii = _mm512_cmplt_epu8_mask(block.bytes, _mm512_set1_epi8(static_cast<char>(0x80)));
    const __mmask64 isLong = from(block.bytes, 0xE0);
    // The six bits of the last byte, the next six (of two bytes: five), and above them the first byte's of three.
    const __m512i last = _mm512_mask_mov_epi8(block.next1, isLong, block.next2);
    const __m512i middle = _mm512_mask_mov_epi8(block.bytes, isLong, block.next1);
    const __m512i first = _mm512_maskz_mov_epi8(isLong, block.bytes);
    // (a & b) | (~a & c)
    const __m512i low =
        _mm512_ternarylogic_epi64(_mm512_set1_epi8(0x3F), last, _mm512_slli_epi16(middle, 6), 0xCA);
    const __m512i high = _mm512_ternarylogic_epi64(_mm512_set1_epi8(0x0F), _mm512_srli_epi16(middle, 2),
                                                   _mm512_slli_epi16(first, 4), 0xCA);
    return {_mm512_mask_mov_epi8(low, isAscii, block.bytes),
            _mm512_mask_mov_epi8(high, isAscii, _mm512_setzero_si512())};
}

/// Puts surrogates in where characters of four bytes begin, `of4`, and at their second bytes.
ZUTARNEX_TARGET_AVX512 inline void addSurrogates(const Block& block, __mmask64 of4, __mmask64 seconds,
                                                 Halves& halves) noexcept {
    const __m512i low2 = _mm512_set1_epi8(0x03);
    // The first: D800 and the ten upper bits, less 40: D7C0 and what three bytes hold of them.
    const __m512i bits = _mm512_ternarylogic_epi64(low2, _mm512_srli_epi16(block.next2, 4),
                                                   _mm512_slli_epi16(block.next1, 2), 0xCA);
    const __m512i top = _mm512_add_epi8(_mm512_and_si512(block.bytes, _mm512_set1_epi8(0x07)),
                                        _mm512_set1_epi8(static_cast<char>(0xD7)));
    const __mmask64 carry = from(bits, 0x40);
    halves.low = _mm512_mask_add_epi8(halves.low, of4, bits, _mm512_set1_epi8(static_cast<char>(0xC0)));
    halves.high =
        _mm512_mask_mov_epi8(halves.high, of4, _mm512_mask_add_epi8(top, carry, top, _mm512_set1_epi8(1)));
    // The second: DC00 and the ten lower bits, which the third and the fourth byte hold.
    const __m512i low = _mm512_ternarylogic_epi64(_mm512_set1_epi8(0x3F), block.next2,
                                                  _mm512_slli_epi16(block.next1, 6), 0xCA);
    const __m512i high =
        _mm512_ternarylogic_epi64(low2, _mm512_srli_epi16(block.next1, 2),
                                  _mm512_set1_epi8(static_cast<char>(0xDC)), 0xEA); // (a & b) | c
    halves.low = _mm512_mask_mov_epi8(halves.low, seconds, low);
    halves.high = _mm512_mask_mov_epi8(halves.high, seconds, high);
}

/// Writes 64 units, of which those at the bytes in `counted` come first; returns the end of these.
ZUTARNEX_TARGET_AVX512 inline unsigned short* storeUnits(const Halves& halves, __mmask64 counted,
                                                         unsigned short* out) noexcept {
    const __m512i low = _mm512_maskz_compress_epi8(counted, halves.low);
    const __m512i high = _mm512_maskz_compress_epi8(counted, halves.high);
    // 0, 64, 1, 65, ...: a byte of the first, a byte of the second
    const __m512i order =
        _mm512_or_si512(_mm512_cvtepu8_epi16(_mm512_castsi512_si256(numbersFrom(0))),
                        _mm512_slli_epi16(_mm512_cvtepu8_epi16(_mm512_castsi512_si256(numbersFrom(64))), 8));
    const __m512i further = _mm512_add_epi8(order, _mm512_set1_epi8(32));
    const unsigned int count = countOf(counted);
    _mm512_storeu_si512(out, _mm512_permutex2var_epi8(low, order, high));
    if (count > 32)
        _mm512_storeu_si512(out + 32, _mm512_permutex2var_epi8(low, further, high));
    return out + count;
}

ZUTARNEX_TARGET_AVX512 unsigned short* convertAvx512(Bytes text, Bytes end, unsigned short* out) noexcept {
    // A store may count few of its 32 or 64 units: three bytes for each of the rest make up for them.
    constexpr std::ptrdiff_t kNeeded = 64 + 3 * 64;
    while (end - text >= kNeeded) {
        const __m512i bytes = _mm512_loadu_si512(text);
        if (!hasAny(bytes, 0x80)) {
            _mm512_storeu_si512(out, _mm512_cvtepu8_epi16(_mm512_castsi512_si256(bytes)));
            _mm512_storeu_si512(out + 32, _mm512_cvtepu8_epi16(_mm512_extracti64x4_epi64(bytes, 1)));
            text += 64;
            out += 64;
            continue;
        }
        const Block block = blockAt(text, bytes);
        if (isTrail(*text) || !isWellFormed(block)) {
            for (const Bytes stop = text + 64; text < stop;)
                out = appendUtf16(nextOfUtf8(text, end), out);
            continue;
        }
        const unsigned int byteCount = wholeCharacters(text);
        const __mmask64 whole = firstBytes(byteCount);
        __mmask64 counted = startsAmong(whole, bytes);
        Halves halves = halvesOf(block);
        const __mmask64 of4 = fromAmong(whole, bytes, 0xF0);
        if (!isEmpty(of4)) {
            const __mmask64 seconds = _kshiftli_mask64(of4, 1);
            addSurrogates(block, of4, seconds, halves);
            counted = _kor_mask64(counted, seconds);
        }
        out = storeUnits(halves, counted, out);
        text += byteCount;
    }
    return convertAvx2(text, end, out);
}

Lengths lengthsOf(const char* text, std::size_t count) noexcept {
    const Bytes begin = reinterpret_cast<Bytes>(text), end = begin + count;
    switch (cpuLevel()) {
    case CpuLevel::Avx512:
        return lengthsAvx512(begin, end);
    case CpuLevel::Avx2:
        return lengthsAvx2(begin, end);
    case CpuLevel::Sse2:
        return lengthsSse2(begin, end);
    case CpuLevel::Scalar:
        break;
    }
    return lengthsScalar(begin, end);
}

} // namespace

std::size_t utf16LengthOfUtf8(const char* text, std::size_t count) noexcept {
    return lengthsOf(text, count).units;
}

std::size_t charactersOfUtf8(const char* text, std::size_t count) noexcept {
    return lengthsOf(text, count).characters;
}

unsigned short* utf8ToUtf16(const char* text, std::size_t count, unsigned short* out) noexcept {
    const Bytes begin = reinterpret_cast<Bytes>(text), end = begin + count;
    switch (cpuLevel()) {
    case CpuLevel::Avx512:
        return convertAvx512(begin, end, out);
    case CpuLevel::Avx2:
        return convertAvx2(begin, end, out);
    case CpuLevel::Sse2:
        return convertSse2(begin, end, out);
    case CpuLevel::Scalar:
        break;
    }
    return convertScalar(begin, end, out);
}

} // namespace Quillon::Runtime::Kernels
