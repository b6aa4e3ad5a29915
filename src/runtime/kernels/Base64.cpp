#include "runtime/kernels/Base64Internal.h"

#include "runtime/kernels/CpuLevelInternal.h"
#include "runtime/kernels/DigitTextInternal.h"
#include "runtime/kernels/IntrinsicsInternal.h"

#include <algorithm>

namespace Quillon::Runtime::Kernels {

namespace {

using Bytes = const unsigned char*;

constexpr std::size_t kGroupBytes = 3, kGroupCharacters = 4;
constexpr std::size_t kLineBytes = kBase64GroupsInLine * kGroupBytes;
constexpr std::size_t kLineCharacters = kBase64GroupsInLine * kGroupCharacters;
constexpr char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr DigitTable kDigits = digitTable(kAlphabet);

// Scalar

void encodeScalar(Bytes in, std::size_t groupCount, unsigned char* out) noexcept {
    for (; groupCount != 0; --groupCount, in += kGroupBytes, out += kGroupCharacters) {
        const unsigned int bits =
            static_cast<unsigned int>(in[0]) << 16 | static_cast<unsigned int>(in[1]) << 8 | in[2];
        out[0] = static_cast<unsigned char>(kAlphabet[bits >> 18]);
        out[1] = static_cast<unsigned char>(kAlphabet[bits >> 12 & 63]);
        out[2] = static_cast<unsigned char>(kAlphabet[bits >> 6 & 63]);
        out[3] = static_cast<unsigned char>(kAlphabet[bits & 63]);
    }
}

void encodeLinesScalar(Bytes in, std::size_t lineCount, unsigned char* out) noexcept {
    for (; lineCount != 0; --lineCount, in += kLineBytes, out += kLineCharacters + 1) {
        encodeScalar(in, kBase64GroupsInLine, out);
        out[kLineCharacters] = '\n';
    }
}

/// The values of the group at `in`, which moves behind it; false, with `in` as it was, when there is none.
bool nextGroup(Bytes& in, Bytes end, unsigned int& bits) noexcept {
    Bytes at = in;
    unsigned int found = 0;
    for (std::size_t count = 0; count != kGroupCharacters; ++at) {
        if (at == end)
            return false;
        const unsigned char digit = digitOf(kDigits, *at);
        if (digit == kWhiteSpace)
            continue;
        if (digit == kNoDigit)
            return false;
        found = found << 6 | digit;
        ++count;
    }
    in = at;
    bits = found;
    return true;
}

std::size_t decodeScalar(Bytes& in, Bytes end, std::size_t maxGroups, unsigned char* out) noexcept {
    Bytes at = in; // not `in` itself, which the stores below might change
    std::size_t done = 0;
    for (unsigned int bits; done != maxGroups && nextGroup(at, end, bits); ++done, out += kGroupBytes) {
        out[0] = static_cast<unsigned char>(bits >> 16);
        out[1] = static_cast<unsigned char>(bits >> 8);
        out[2] = static_cast<unsigned char>(bits);
    }
    in = at;
    return done;
}

std::size_t countScalar(Bytes& in, Bytes end) noexcept {
    std::size_t count = 0;
    for (; in != end; ++in) {
        if (*in > 32 && *in < 127)
            ++count;
        else if (digitOf(kDigits, *in) != kWhiteSpace)
            break;
    }
    return count;
}

// AVX2: eight groups at a time (the ideas are those of Mula and Lemire, "Faster Base64 encoding and decoding using
// AVX2 instructions").

/// The characters of eight groups, of which four begin at byte `offset` of each half.
template <char offset>
ZUTARNEX_TARGET_AVX2 inline __m256i encodeEight(__m256i bytes) noexcept {
    constexpr char o = offset;
    const __m256i order =
        _mm256_broadcastsi128_si256(_mm_setr_epi8(o + 1, o, o + 2, o + 1, o + 4, o + 3, o + 5, o + 4, o + 7,
                                                  o + 6, o + 8, o + 7, o + 10, o + 9, o + 11, o + 10));
    // Each lane: the second byte, the first, the third, the second. Four shifts by two multiplications.
    const __m256i lanes = _mm256_shuffle_epi8(bytes, order);
    const __m256i upper = _mm256_mulhi_epu16(_mm256_and_si256(lanes, _mm256_set1_epi32(0x0FC0FC00)),
                                             _mm256_set1_epi32(0x04000040));
    const __m256i lower = _mm256_mullo_epi16(_mm256_and_si256(lanes, _mm256_set1_epi32(0x003F03F0)),
                                             _mm256_set1_epi32(0x01000010));
    const __m256i values = _mm256_or_si256(upper, lower);
    // Which row of the alphabet: 0 for a to z, 1 to 12 for the digits and signs, 13 for A to Z; each has its distance.
    const __m256i distances = _mm256_broadcastsi128_si256(
        _mm_setr_epi8('a' - 26, '0' - 52, '0' - 52, '0' - 52, '0' - 52, '0' - 52, '0' - 52, '0' - 52,
                      '0' - 52, '0' - 52, '0' - 52, '+' - 62, '/' - 63, 'A', 0, 0));
    const __m256i isCapital = _mm256_cmpgt_epi8(_mm256_set1_epi8(26), values);
    const __m256i row = _mm256_or_si256(_mm256_subs_epu8(values, _mm256_set1_epi8(51)),
                                        _mm256_and_si256(isCapital, _mm256_set1_epi8(13)));
    return _mm256_add_epi8(values, _mm256_shuffle_epi8(distances, row));
}

ZUTARNEX_TARGET_AVX2 inline __m256i loadHalves(Bytes low, Bytes high) noexcept {
    return _mm256_loadu2_m128i(reinterpret_cast<const __m128i*>(high), reinterpret_cast<const __m128i*>(low));
}

ZUTARNEX_TARGET_AVX2 inline void store(__m256i bytes, unsigned char* out) noexcept {
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(out), bytes);
}

ZUTARNEX_TARGET_AVX2 void encodeAvx2(Bytes in, std::size_t groupCount, unsigned char* out) noexcept {
    for (; groupCount >= 10; groupCount -= 8, in += 24, out += 32) // reads four bytes behind the eight groups
        store(encodeEight<0>(loadHalves(in, in + 12)), out);
    encodeScalar(in, groupCount, out);
}

/// Groups 0 to 7, 8 to 15 and 11 to 18: no byte outside the line is read.
ZUTARNEX_TARGET_AVX2 void encodeLinesAvx2(Bytes in, std::size_t lineCount, unsigned char* out) noexcept {
    for (; lineCount != 0; --lineCount, in += kLineBytes, out += kLineCharacters + 1) {
        store(encodeEight<0>(loadHalves(in, in + 12)), out);
        store(encodeEight<0>(loadHalves(in + 24, in + 36)), out + 32);
        store(encodeEight<4>(loadHalves(in + 29, in + 41)), out + 44);
        out[kLineCharacters] = '\n';
    }
}

/// Decodes eight groups that have nothing among them; false, with nothing written, when there is something.
ZUTARNEX_TARGET_AVX2 inline bool decodeEight(Bytes in, unsigned char* out) noexcept {
    const __m256i text = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(in));
    // Each table gives, for four bits of a character, a bit for each class that these exclude.
    const __m256i low4 = _mm256_set1_epi8(0x0F);
    const __m256i byLow = _mm256_broadcastsi128_si256(_mm_setr_epi8(
        0x15, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x13, 0x1A, 0x1B, 0x1B, 0x1B, 0x1A));
    const __m256i byHigh = _mm256_broadcastsi128_si256(_mm_setr_epi8(
        0x10, 0x10, 0x01, 0x02, 0x04, 0x08, 0x04, 0x08, 0x10, 0x10, 0x10, 0x10, 0x10, 0x10, 0x10, 0x10));
    const __m256i high = _mm256_and_si256(_mm256_srli_epi32(text, 4), low4);
    const __m256i low = _mm256_and_si256(text, low4);
    if (!_mm256_testz_si256(_mm256_shuffle_epi8(byLow, low), _mm256_shuffle_epi8(byHigh, high)))
        return false;
    // The distance to the value depends on the upper four bits, and is another one for the slash.
    const __m256i distances = _mm256_broadcastsi128_si256(_mm_setr_epi8(
        0, 63 - '/', 62 - '+', 52 - '0', -'A', -'A', 26 - 'a', 26 - 'a', 0, 0, 0, 0, 0, 0, 0, 0));
    const __m256i isSlash = _mm256_cmpeq_epi8(text, _mm256_set1_epi8('/'));
    const __m256i values =
        _mm256_add_epi8(text, _mm256_shuffle_epi8(distances, _mm256_add_epi8(isSlash, high)));
    const __m256i pairs = _mm256_maddubs_epi16(values, _mm256_set1_epi32(0x01400140));
    const __m256i groups = _mm256_madd_epi16(pairs, _mm256_set1_epi32(0x00011000));
    const __m256i order =
        _mm256_broadcastsi128_si256(_mm_setr_epi8(2, 1, 0, 6, 5, 4, 10, 9, 8, 14, 13, 12, -1, -1, -1, -1));
    const __m256i bytes = _mm256_permutevar8x32_epi32(_mm256_shuffle_epi8(groups, order),
                                                      _mm256_setr_epi32(0, 1, 2, 4, 5, 6, -1, -1));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out), _mm256_castsi256_si128(bytes));
    _mm_storel_epi64(reinterpret_cast<__m128i*>(out + 16), _mm256_extracti128_si256(bytes, 1));
    return true;
}

/// Where there is white space among eight groups, four go one by one.
ZUTARNEX_TARGET_AVX2 std::size_t decodeAvx2(Bytes& in, Bytes end, std::size_t maxGroups,
                                            unsigned char* out) noexcept {
    std::size_t done = 0;
    while (maxGroups - done >= 8 && end - in >= 32) {
        if (decodeEight(in, out + done * kGroupBytes)) {
            in += 32;
            done += 8;
            continue;
        }
        const std::size_t single = decodeScalar(in, end, 4, out + done * kGroupBytes);
        done += single;
        if (single != 4)
            return done;
    }
    return done + decodeScalar(in, end, maxGroups - done, out + done * kGroupBytes);
}

ZUTARNEX_TARGET_AVX2 std::size_t countAvx2(Bytes& in, Bytes end) noexcept {
    std::size_t count = 0;
    for (; end - in >= 32; in += 32) {
        const __m256i text = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(in));
        const __m256i fromTab = _mm256_sub_epi8(text, _mm256_set1_epi8(9));
        const __m256i isSpace =
            _mm256_or_si256(_mm256_cmpeq_epi8(text, _mm256_set1_epi8(' ')),
                            _mm256_cmpeq_epi8(_mm256_min_epu8(fromTab, _mm256_set1_epi8(4)), fromTab));
        const __m256i isVisible = _mm256_andnot_si256(_mm256_cmpeq_epi8(text, _mm256_set1_epi8(127)),
                                                      _mm256_cmpgt_epi8(text, _mm256_set1_epi8(' ')));
        if (_mm256_movemask_epi8(_mm256_or_si256(isSpace, isVisible)) != -1)
            break;
        count += static_cast<unsigned int>(
            __builtin_popcount(static_cast<unsigned int>(_mm256_movemask_epi8(isVisible))));
    }
    return count + countScalar(in, end);
}

// AVX-512: sixteen groups at a time.

/// Byte i of the result is byte order(i).
template <class Order>
constexpr std::array<unsigned char, 64> orderOf(Order order) {
    std::array<unsigned char, 64> bytes{};
    for (unsigned int i = 0; i < 64; ++i)
        bytes[i] = static_cast<unsigned char>(order(i));
    return bytes;
}

/// Each lane: the second byte of a group, the first, the third, the second.
constexpr unsigned int laneByte(unsigned int i) {
    constexpr unsigned int kInGroup[] = {1, 0, 2, 1};
    return i / 4 * 3 + kInGroup[i % 4];
}
constexpr auto kGroupsToLanes = orderOf(laneByte);
/// The same for the first 16 and for the last 3 groups of a line of which a register holds the first and the last 32
/// bytes.
constexpr unsigned int inLine(unsigned int byte) {
    return byte < 32 ? byte : byte - (kLineBytes - 64);
}
constexpr auto kLineToLanes = orderOf([](unsigned int i) { return inLine(laneByte(i)); });
constexpr auto kLineEndToLanes = orderOf([](unsigned int i) { return inLine(48 + laneByte(i % 12)); });
/// The three bytes of each lane, the highest first.
constexpr auto kLanesToGroups = orderOf([](unsigned int i) { return i / 3 % 16 * 4 + 2 - i % 3; });

ZUTARNEX_TARGET_AVX512 inline __m512i load(const std::array<unsigned char, 64>& order) noexcept {
    return _mm512_loadu_si512(order.data());
}

/// The characters of the groups that `order` puts into the lanes.
ZUTARNEX_TARGET_AVX512 inline __m512i encodeSixteen(__m512i bytes, __m512i order) noexcept {
    const __m512i lanes = _mm512_permutexvar_epi8(order, bytes);
    // Six bits each from 10, 4, 22 and 16 on; the two above them do not count as an index.
    const __m512i values = _mm512_multishift_epi64_epi8(_mm512_set1_epi64(0x3036242A1016040A), lanes);
    return _mm512_permutexvar_epi8(values, _mm512_loadu_si512(kAlphabet));
}

ZUTARNEX_TARGET_AVX512 void encodeAvx512(Bytes in, std::size_t groupCount, unsigned char* out) noexcept {
    while (groupCount != 0) {
        const std::size_t count = std::min<std::size_t>(groupCount, 16);
        const __m512i bytes = _mm512_maskz_loadu_epi8(firstBytes(count * kGroupBytes), in);
        _mm512_mask_storeu_epi8(out, firstBytes(count * kGroupCharacters),
                                encodeSixteen(bytes, load(kGroupsToLanes)));
        groupCount -= count;
        in += count * kGroupBytes;
        out += count * kGroupCharacters;
    }
}

ZUTARNEX_TARGET_AVX512 void encodeLinesAvx512(Bytes in, std::size_t lineCount, unsigned char* out) noexcept {
    constexpr std::size_t kRest = kLineCharacters - 64;
    const __m128i lineFeed = _mm_set1_epi8('\n');
    for (; lineCount != 0; --lineCount, in += kLineBytes, out += kLineCharacters + 1) {
        const __m256i first = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(in));
        const __m256i last = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(in + kLineBytes - 32));
        const __m512i line = _mm512_inserti64x4(_mm512_castsi256_si512(first), last, 1);
        const __m128i rest = _mm512_castsi512_si128(encodeSixteen(line, load(kLineEndToLanes)));
        _mm512_storeu_si512(out, encodeSixteen(line, load(kLineToLanes)));
        _mm_mask_storeu_epi8(out + 64, (1u << (kRest + 1)) - 1,
                             _mm_mask_mov_epi8(lineFeed, (1u << kRest) - 1, rest));
    }
}

/// The 48 bytes of sixteen groups, the first of the result.
ZUTARNEX_TARGET_AVX512 inline __m512i decodeSixteen(const unsigned char* values) noexcept {
    const __m512i pairs = _mm512_maddubs_epi16(_mm512_loadu_si512(values), _mm512_set1_epi32(0x01400140));
    const __m512i groups = _mm512_madd_epi16(pairs, _mm512_set1_epi32(0x00011000));
    return _mm512_permutexvar_epi8(load(kLanesToGroups), groups);
}

/// Reads up to the next 64 values.
ZUTARNEX_TARGET_AVX512 void decodeValues(const unsigned char* values, std::size_t groupCount,
                                         unsigned char* out) noexcept {
    for (; groupCount >= 16; groupCount -= 16, values += 64, out += 48) {
        const __m512i bytes = decodeSixteen(values);
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(out), _mm512_castsi512_si256(bytes));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out + 32), _mm512_extracti32x4_epi32(bytes, 2));
    }
    _mm512_mask_storeu_epi8(out, firstBytes(groupCount * kGroupBytes), decodeSixteen(values));
}

ZUTARNEX_TARGET_AVX512 std::size_t decodeAvx512(Bytes& in, Bytes end, std::size_t maxGroups,
                                                unsigned char* out) noexcept {
    constexpr std::size_t kFew = 8; // groups, for which a block is not worth while
    const Bytes begin = in;
    DigitCollector text(kDigits);
    std::size_t done = 0;
    while (!text.isStopped && maxGroups - done > kFew
           && static_cast<std::size_t>(end - in) > kFew * kGroupCharacters) {
        text.collect(in,
                     text.pieceFor(maxGroups - done, kGroupCharacters, static_cast<std::size_t>(end - in)));
        const std::size_t groups = text.count / kGroupCharacters;
        decodeValues(text.values, groups, out + done * kGroupBytes);
        text.drop(groups * kGroupCharacters);
        done += groups;
    }
    takeBack(kDigits, in, begin, text.count);
    return done + decodeScalar(in, end, maxGroups - done, out + done * kGroupBytes);
}

} // namespace

void encodeBase64(const unsigned char* in, std::size_t groupCount, unsigned char* out) noexcept {
    switch (cpuLevel()) {
    case CpuLevel::Avx512:
        return encodeAvx512(in, groupCount, out);
    case CpuLevel::Avx2:
        return encodeAvx2(in, groupCount, out);
    case CpuLevel::Sse2: // nothing there puts bytes into any order
    case CpuLevel::Scalar:
        break;
    }
    encodeScalar(in, groupCount, out);
}

void encodeBase64Lines(const unsigned char* in, std::size_t lineCount, unsigned char* out) noexcept {
    switch (cpuLevel()) {
    case CpuLevel::Avx512:
        return encodeLinesAvx512(in, lineCount, out);
    case CpuLevel::Avx2:
        return encodeLinesAvx2(in, lineCount, out);
    case CpuLevel::Sse2:
    case CpuLevel::Scalar:
        break;
    }
    encodeLinesScalar(in, lineCount, out);
}

std::size_t decodeBase64(const unsigned char*& in, const unsigned char* end, std::size_t maxGroups,
                         unsigned char* out) noexcept {
    switch (cpuLevel()) {
    case CpuLevel::Avx512:
        return decodeAvx512(in, end, maxGroups, out);
    case CpuLevel::Avx2:
        return decodeAvx2(in, end, maxGroups, out);
    case CpuLevel::Sse2:
    case CpuLevel::Scalar:
        break;
    }
    return decodeScalar(in, end, maxGroups, out);
}

std::size_t countVisible(const unsigned char*& in, const unsigned char* end) noexcept {
    return cpuLevel() >= CpuLevel::Avx2 ? countAvx2(in, end) : countScalar(in, end);
}

} // namespace Quillon::Runtime::Kernels
