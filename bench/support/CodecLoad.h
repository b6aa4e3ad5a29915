#ifndef ZUTARNEX_BENCH_SUPPORT_CODECLOAD_H
#define ZUTARNEX_BENCH_SUPPORT_CODECLOAD_H

#include <cstddef>
#include <string>
#include <vector>

namespace Quillon::Bench {

inline constexpr std::size_t kCodecBytes = 65536;

/// The binary data that codecs encode, and the texts of it that they decode. The figures of all of them count bytes of
/// binary.
const std::vector<unsigned char>& codecBinary();
const std::string& base64Text(); ///< a line feed after every 76 characters
const std::string& hexText();    ///< upper case

} // namespace Quillon::Bench

#endif
