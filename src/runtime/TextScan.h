#ifndef ZUTARNEX_RUNTIME_TEXTSCAN_H
#define ZUTARNEX_RUNTIME_TEXTSCAN_H

#include "zutarnex/export.h"

#include <cstddef>

namespace Quillon::Runtime {

/// How many of `unitCount` units in UTF-16 come before the first that a parser of XML does not take for text as it stands:
/// `<`, `&`, `]`, a carriage return, or what is no character of XML. Surrogates count as text, paired or not.
///
/// Threads: any number at once.
ZUTARNEX_API std::size_t lengthOfPlainText(const unsigned short* text, std::size_t unitCount) noexcept;

} // namespace Quillon::Runtime

#endif
