#include "runtime/kernels/HexInternal.h"

#include "runtime/kernels/CpuLevelInternal.h"
#include "runtime/kernels/DigitTextInternal.h"
#include "runtime/kernels/IntrinsicsInternal.h"

#include <algorithm>

namespace Quillon::Runtime::Kernels {

namespace {

using Bytes = const unsigned char*;

constexpr char kAlphabet[] = "0123456789ABCDEF";
constexpr DigitTable kDigits = digitTable(kAlphabet);

// Scalar

void encodeScalar(Bytes in, std::size_t count, unsigned char* out) noexcept {
    for (; count != 0; --count, ++in, out += 2) {
        out[0] = static_cast<unsigned char>(kAlphabet[*in >> 4]);
        out[1] = static_cast<unsigned char>(kAlphabet[*in & 15]);
    }
}

/// The digit at `in`, which moves behind it; false when there is none, whatever `in` is then.
bool nextDigit(Bytes& in, Bytes end, unsigned int& digit) noexcept {
    for (; in != end; ++in) {
        digit = digitOf(kDigits, *in);
        if (digit != kWhiteSpace) {
            ++in;
            return digit != kNoDigit;
        }
    }
    return false;
}

std::size_t decodeScalar(Bytes& in, Bytes end, std::size_t maxBytes, unsigned char* out) noexcept {
    std::size_t done = 0;
    unsigned int high, low;
    for (Bytes at = in; done != maxBytes && nextDigit(at, end, high) && nextDigit(at, end, low); ++done) {
        out[done] = static_cast<unsigned char>(high << 4 | low);
        in = at;
    }
    return done;
}

// SSE2

/// Digits for values up to 15.
ZUTARNEX_TARGET_SSE2 inline __m128i digitsSse2(__m128i values) noexcept {
    const __m128i isLetter = _mm_cmpgt_epi8(values, _mm_set1_epi8(9));
    return _mm_add_epi8(_mm_add_epi8(values, _mm_set1_epi8('0')),
                        _mm_and_si128(isLetter, _mm_set1_epi8('A' - '0' - 10)));
}

ZUTARNEX_TARGET_SSE2 void encodeSse2(Bytes in, std::size_t count, unsigned char* out) noexcept {
    const __m128i low4 = _mm_set1_epi8(0x0F);
    for (; count >= 16; count -= 16, in += 16, out += 32) {
        const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(in));
        const __m128i high = digitsSse2(_mm_and_si128(_mm_srli_epi16(bytes, 4), low4));
        const __m128i low = digitsSse2(_mm_and_si128(bytes, low4));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out), _mm_unpacklo_epi8(high, low));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out + 16), _mm_unpackhi_epi8(high, low));
    }
    encodeScalar(in, count, out);
}

/// The values of sixteen digits; false when there is anything else.
ZUTARNEX_TARGET_SSE2 inline bool valuesSse2(Bytes in, __m128i& values) noexcept {
    const __m128i text = _mm_loadu_si128(reinterpret_cast<const __m128i*>(in));
    const __m128i from0 = _mm_sub_epi8(text, _mm_set1_epi8('0')),
                  fromA = _mm_sub_epi8(text, _mm_set1_epi8('A'));
    const __m128i isDigit = _mm_cmpeq_epi8(_mm_min_epu8(from0, _mm_set1_epi8(9)), from0);
    const __m128i isLetter = _mm_cmpeq_epi8(_mm_min_epu8(fromA, _mm_set1_epi8(5)), fromA);
    values = _mm_or_si128(_mm_and_si128(isDigit, from0),
                          _mm_and_si128(isLetter, _mm_add_epi8(fromA, _mm_set1_epi8(10))));
    return _mm_movemask_epi8(_mm_or_si128(isDigit, isLetter)) == 0xFFFF;
}

/// The bytes of eight pairs of values, in lanes of 16 bits.
ZUTARNEX_TARGET_SSE2 inline __m128i pairsSse2(__m128i values) noexcept {
    return _mm_or_si128(_mm_and_si128(_mm_slli_epi16(values, 4), _mm_set1_epi16(0xF0)),
                        _mm_srli_epi16(values, 8));
}

/// Where there is white space among 32 characters, up to sixteen bytes go one by one.
ZUTARNEX_TARGET_SSE2 std::size_t decodeSse2(Bytes& in, Bytes end, std::size_t maxBytes,
                                            unsigned char* out) noexcept {
    std::size_t done = 0;
    while (maxBytes - done >= 16 && end - in >= 32) {
        __m128i first, second;
        if (valuesSse2(in, first) && valuesSse2(in + 16, second)) {
            _mm_storeu_si128(reinterpret_cast<__m128i*>(out + done),
                             _mm_packus_epi16(pairsSse2(first), pairsSse2(second)));
            in += 32;
            done += 16;
            continue;
        }
        const std::size_t single = decodeScalar(in, end, 16, out + done);
        done += single;
        if (single != 16)
            return done;
    }
    return done + decodeScalar(in, end, maxBytes - done, out + done);
}

// AVX2

ZUTARNEX_TARGET_AVX2 void encodeAvx2(Bytes in, std::size_t count, unsigned char* out) noexcept {
    const __m256i digits =
        _mm256_broadcastsi128_si256(_mm_loadu_si128(reinterpret_cast<const __m128i*>(kAlphabet)));
    for (; count >= 16; count -= 16, in += 16, out += 32) {
        const __m256i bytes = _mm256_cvtepu8_epi16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(in)));
        const __m256i values =
            _mm256_and_si256(_mm256_or_si256(_mm256_srli_epi16(bytes, 4), _mm256_slli_epi16(bytes, 8)),
                             _mm256_set1_epi8(0x0F));
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(out), _mm256_shuffle_epi8(digits, values));
    }
    encodeScalar(in, count, out);
}

// AVX-512

/// The 64 digits of 32 bytes.
ZUTARNEX_TARGET_AVX512 inline __m512i digitsAvx512(__m256i bytes) noexcept {
    const __m512i digits =
        _mm512_broadcast_i32x4(_mm_loadu_si128(reinterpret_cast<const __m128i*>(kAlphabet)));
    // Four bits each from 4, 0, 12, 8, 20, 16, 28 and 24 on; what is above them chooses among equal tables.
    const __m512i values =
        _mm512_multishift_epi64_epi8(_mm512_set1_epi64(0x181C1014080C0004), _mm512_cvtepu32_epi64(bytes));
    return _mm512_permutexvar_epi8(values, digits);
}

ZUTARNEX_TARGET_AVX512 void encodeAvx512(Bytes in, std::size_t count, unsigned char* out) noexcept {
    for (; count >= 32; count -= 32, in += 32, out += 64)
        _mm512_storeu_si512(out, digitsAvx512(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(in))));
    const __m256i rest = _mm256_maskz_loadu_epi8((1u << count) - 1, in);
    _mm512_mask_storeu_epi8(out, firstBytes(count * 2), digitsAvx512(rest));
}

/// The 32 bytes of 64 values.
ZUTARNEX_TARGET_AVX512 inline __m256i pairsAvx512(__m512i values) noexcept {
    return _mm512_cvtepi16_epi8(_mm512_maddubs_epi16(values, _mm512_set1_epi16(0x0110)));
}

/// Reads up to the next 64 values.
ZUTARNEX_TARGET_AVX512 void decodeValues(const unsigned char* values, std::size_t count,
                                         unsigned char* out) noexcept {
    for (; count >= 32; count -= 32, values += 64, out += 32)
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(out), pairsAvx512(_mm512_loadu_si512(values)));
    _mm256_mask_storeu_epi8(out, (1u << count) - 1, pairsAvx512(_mm512_loadu_si512(values)));
}

/// As long as there is no white space.
ZUTARNEX_TARGET_AVX512 std::size_t decodeUnbroken(Bytes& in, Bytes end, std::size_t maxBytes,
                                                  unsigned char* out) noexcept {
    const __m512i low = _mm512_loadu_si512(kDigits.data()), high = _mm512_loadu_si512(kDigits.data() + 64);
    std::size_t done = 0;
    for (; maxBytes - done >= 32 && end - in >= 64; done += 32, in += 64) {
        const __m512i text = _mm512_loadu_si512(in);
        const __m512i values = _mm512_permutex2var_epi8(low, text, high);
        if (hasAny(_mm512_or_si512(values,
                                   _mm512_and_si512(text, _mm512_set1_epi8(static_cast<char>(kNoDigit)))),
                   kNoDigit | kWhiteSpace))
            break;
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(out + done), pairsAvx512(values));
    }
    return done;
}

ZUTARNEX_TARGET_AVX512 std::size_t decodeAvx512(Bytes& in, Bytes end, std::size_t maxBytes,
                                                unsigned char* out) noexcept {
    constexpr std::size_t kFew = 16; // bytes, for which a block is not worth while
    std::size_t done = decodeUnbroken(in, end, maxBytes, out);
    const Bytes begin = in;
    DigitCollector text(kDigits);
    while (!text.isStopped && maxBytes - done > kFew && static_cast<std::size_t>(end - in) > 2 * kFew) {
        text.collect(in, text.pieceFor(maxBytes - done, 2, static_cast<std::size_t>(end - in)));
        const std::size_t bytes = text.count / 2;
        decodeValues(text.values, bytes, out + done);
        text.drop(bytes * 2);
        done += bytes;
    }
    takeBack(kDigits, in, begin, text.count);
    return done + decodeScalar(in, end, maxBytes - done, out + done);
}

} // namespace

void encodeHex(const unsigned char* in, std::size_t count, unsigned char* out) noexcept {
    switch (cpuLevel()) {
    case CpuLevel::Avx512:
        return encodeAvx512(in, count, out);
    case CpuLevel::Avx2:
        return encodeAvx2(in, count, out);
    case CpuLevel::Sse2:
        return encodeSse2(in, count, out);
    case CpuLevel::Scalar:
        break;
    }
    encodeScalar(in, count, out);
}

std::size_t decodeHex(const unsigned char*& in, const unsigned char* end, std::size_t maxBytes,
                      unsigned char* out) noexcept {
    switch (cpuLevel()) {
    case CpuLevel::Avx512:
        return decodeAvx512(in, end, maxBytes, out);
    case CpuLevel::
        Avx2: // the work per digit is little: twice as wide gains nothing beside the loads and stores
    case CpuLevel::Sse2:
        return decodeSse2(in, end, maxBytes, out);
    case CpuLevel::Scalar:
        break;
    }
    return decodeScalar(in, end, maxBytes, out);
}

} // namespace Quillon::Runtime::Kernels
