#ifndef ZUTARNEX_SAXENGINE_ENCODINGDETECTION_H
#define ZUTARNEX_SAXENGINE_ENCODINGDETECTION_H

#include "UnitSpan.h"

#include <string>
#include <string_view>

namespace Quillon::SaxEngine {

/// How the bytes of an entity are to be read.
///
///     reading            | expatName       | isWidened | recodeFrom
///     as they are        | the encoding    | no        | empty
///     widened to UTF-16  | UTF-16LE        | yes       | empty        (UTF-8: Expat takes twice as long for its text)
///     recoded to UTF-8   | UTF-8           | no        | the encoding, for iconv
struct Encoding {
    std::string name;                    ///< from outside, else as declared, else as the bytes tell
    std::string declared;                ///< what the declaration says; empty: nothing
    const XML_Char* expatName = nullptr; ///< one of Expat's four, whatever the declaration says
    std::string recodeFrom;
    unsigned int markLength = 0; ///< bytes of the byte order mark, which Expat does not get to see
    bool isWidened = false;
    bool isUtf16 = false;     ///< as Expat gets it
    bool isBigEndian = false; ///< of UTF-16
    std::string fault;        ///< why the bytes cannot be read; empty: they can
};

/// The encoding of an entity that begins with `head`.
///
/// `external`: what the application says of it, which goes before the declaration; empty: nothing. `isContent`: the
/// entity stands in an element, where its text may begin with any character.
Encoding detectEncoding(std::string_view head, const std::string& external, bool isContent);

/// Whether `head` is all that detectEncoding() wants to see.
bool isEnoughToDetect(std::string_view head, const std::string& external, bool isContent);

/// No declaration of an encoding is looked for further behind.
inline constexpr std::size_t kLongestHead = 4096;

} // namespace Quillon::SaxEngine

#endif
