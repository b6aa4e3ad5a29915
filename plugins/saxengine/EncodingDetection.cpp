#include "EncodingDetection.h"

#include "Text.h"
#include "runtime/StreamDecoder.h"
#include "runtime/Transcoding.h"
#include "xml/Utf16LiteralInternal.h"

#include <algorithm>
#include <array>
#include <initializer_list>

namespace Quillon::SaxEngine {

namespace {

constexpr Xml::Utf16Literal kUtf8(u"UTF-8");
constexpr Xml::Utf16Literal kUtf16LE(u"UTF-16LE");
constexpr Xml::Utf16Literal kUtf16BE(u"UTF-16BE");
constexpr Xml::Utf16Literal kLatin1(u"ISO-8859-1");
constexpr Xml::Utf16Literal kAscii(u"US-ASCII");

using namespace std::string_view_literals;

/// What the first bytes tell (XML 1.0, appendix F).
enum class Family {
    EightBit, ///< some extension of ASCII, or nothing to tell by
    Utf16LE,
    Utf16BE,
    Utf32LE,
    Utf32BE,
    Ebcdic
};

struct Appearance {
    Family family;
    unsigned int markLength;
};

/// `isContent`: see detectEncoding. Without a mark, Expat takes a zero byte for half of a character in UTF-16.
Appearance appearanceOf(std::string_view head, bool isContent) {
    static constexpr struct {
        std::string_view bytes;
        Appearance appearance;
    } kTable[] = {
        {"\xFF\xFE\x00\x00"sv, {Family::Utf32LE, 4}},
        {"\x00\x00\xFE\xFF"sv, {Family::Utf32BE, 4}},
        {"\xEF\xBB\xBF"sv, {Family::EightBit, 3}},
        {"\xFF\xFE"sv, {Family::Utf16LE, 2}},
        {"\xFE\xFF"sv, {Family::Utf16BE, 2}},
        {"<\x00\x00\x00"sv, {Family::Utf32LE, 0}},
        {"\x00\x00\x00<"sv, {Family::Utf32BE, 0}},
        {"<\x00"sv, {Family::Utf16LE, 0}},
        {"\x00<"sv, {Family::Utf16BE, 0}},
        {"\x4C\x6F\xA7\x94"sv, {Family::Ebcdic, 0}},
    };
    for (const auto& row : kTable)
        if (head.starts_with(row.bytes))
            return row.appearance;
    if (head.size() >= 2 && head[0] == 0 && head[1] != 0)
        return {Family::Utf16BE, 0};
    if (head.size() >= 2 && head[1] == 0 && head[0] != 0 && !isContent)
        return {Family::Utf16LE, 0};
    return {Family::EightBit, 0};
}

bool isOneOf(std::string_view name, std::initializer_list<std::string_view> names) {
    for (const std::string_view candidate : names)
        if (equalsIgnoringCase(name, candidate))
            return true;
    return false;
}

bool isUtf8Name(std::string_view name) {
    return isOneOf(name, {"UTF-8", "UTF8"});
}
bool isUtf16Name(std::string_view name, bool bigEndian) {
    return isOneOf(name, {"UTF-16", "UTF16", "ISO-10646-UCS-2", "UCS-2", "UCS2", "CSUNICODE"})
           || (bigEndian ? isOneOf(name, {"UTF-16BE", "UTF16BE", "UCS-2BE"})
                         : isOneOf(name, {"UTF-16LE", "UTF16LE", "UCS-2LE"}));
}
bool isUtf32Name(std::string_view name, bool bigEndian) {
    return isOneOf(name, {"UTF-32", "UTF32", "ISO-10646-UCS-4", "ISO-10646", "UCS-4", "UCS4", "CSUCS4"})
           || (bigEndian ? isOneOf(name, {"UTF-32BE", "UTF32BE", "UCS-4BE"})
                         : isOneOf(name, {"UTF-32LE", "UTF32LE", "UCS-4LE"}));
}
/// A name of an encoding whose smallest character has more than one byte.
bool isWideName(std::string_view name) {
    return isUtf16Name(name, false) || isUtf16Name(name, true) || isUtf32Name(name, false)
           || isUtf32Name(name, true);
}

std::string decoded(std::string_view bytes, const char* encoding) {
    Runtime::StreamDecoder decoder;
    if (!decoder.open(encoding))
        return {};
    std::string text(4 * bytes.size() + 16, '\0');
    const char* in = bytes.data();
    std::size_t inLeft = bytes.size();
    char* out = text.data();
    std::size_t outLeft = text.size();
    decoder.decode(&in, &inLeft, &out, &outLeft);
    text.resize(text.size() - outLeft);
    return text;
}

/// The low bytes of units whose high byte is zero; any other unit becomes a byte that no declaration has.
std::string asciiOfUnits(std::string_view bytes, bool bigEndian) {
    std::string text;
    for (std::size_t i = 0; i + 2 <= bytes.size(); i += 2) {
        const char high = bytes[bigEndian ? i : i + 1], low = bytes[bigEndian ? i + 1 : i];
        text += high == 0 ? low : '\x01';
    }
    return text;
}

/// The head as far as a declaration can be read from it. Letters, digits and the marks of a declaration have the same
/// codes in every EBCDIC page.
std::string declarationText(std::string_view head, Appearance seen) {
    head.remove_prefix(seen.markLength);
    switch (seen.family) {
    case Family::EightBit:
        return std::string(head);
    case Family::Utf16LE:
    case Family::Utf16BE:
        return asciiOfUnits(head, seen.family == Family::Utf16BE);
    case Family::Utf32LE:
        return decoded(head, "UTF-32LE");
    case Family::Utf32BE:
        return decoded(head, "UTF-32BE");
    case Family::Ebcdic:
        return decoded(head, "IBM037");
    }
    return {};
}

bool isSpace(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}
bool isLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

/// Production 81 of XML 1.0, and no more: to iconv, a longer name may be a path or an option.
bool isEncName(std::string_view name) {
    if (name.empty() || !isLetter(name[0]) || name.size() > 100)
        return false;
    for (const char c : name)
        if (!isLetter(c) && !(c >= '0' && c <= '9') && c != '.' && c != '_' && c != '-')
            return false;
    return true;
}

/// Reads the pseudo-attributes of a declaration. It is lenient: what is wrong with a declaration, Expat says.
class DeclarationScanner {
public:
    explicit DeclarationScanner(std::string_view text) : rest_(text) {}

    std::string encoding() {
        if (!rest_.starts_with("<?xml") || rest_.size() < 6 || !isSpace(rest_[5]))
            return {};
        rest_ = rest_.substr(5, rest_.find("?>") - 5);
        std::string_view name, value;
        while (next(name, value))
            if (name == "encoding")
                return isEncName(value) ? std::string(value) : std::string();
        return {};
    }

private:
    bool next(std::string_view& name, std::string_view& value) {
        skipSpace();
        name = take([](char c) { return isLetter(c); });
        skipSpace();
        if (name.empty() || !rest_.starts_with('='))
            return false;
        rest_.remove_prefix(1);
        skipSpace();
        if (rest_.empty() || (rest_[0] != '"' && rest_[0] != '\''))
            return false;
        const char quote = rest_[0];
        rest_.remove_prefix(1);
        value = take([quote](char c) { return c != quote; });
        if (rest_.empty())
            return false;
        rest_.remove_prefix(1);
        return true;
    }

    void skipSpace() { take(isSpace); }

    template <class Wanted>
    std::string_view take(Wanted wanted) {
        std::size_t i = 0;
        while (i < rest_.size() && wanted(rest_[i]))
            ++i;
        const std::string_view taken = rest_.substr(0, i);
        rest_.remove_prefix(i);
        return taken;
    }

    std::string_view rest_;
};

void readAsUtf16(Encoding& encoding, bool bigEndian) {
    encoding.isUtf16 = true;
    encoding.isBigEndian = bigEndian;
    encoding.expatName = bigEndian ? kUtf16BE.units : kUtf16LE.units;
}

/// Chooses between Expat and iconv for an encoding whose smallest character is one byte.
void readAsNamed(Encoding& encoding, const std::string& name) {
    encoding.expatName = kUtf8.units;
    if (equalsIgnoringCase(name, "ISO-8859-1")) {
        encoding.expatName = kLatin1.units;
    } else if (equalsIgnoringCase(name, "US-ASCII")) {
        encoding.expatName = kAscii.units;
    } else if (!isUtf8Name(name)) {
        encoding.recodeFrom = name;
        if (!isEncName(name) || !Runtime::StreamDecoder().open(name.c_str()))
            encoding.fault = "the encoding \"" + name + "\" is not known";
    }
}

std::string contradiction(const std::string& declared, const char* seen) {
    return "the encoding is declared as \"" + declared + "\", but the text is in " + seen;
}

/// Whether text that looks like `<?xml` in ASCII or EBCDIC still does when it is read in the encoding it declares. (Some
/// decoders keep a letter until they have seen what follows.)
bool declaresItself(std::string_view head, const std::string& name) {
    return decoded(head.substr(0, 5), name.c_str()).starts_with("<?xm");
}

void detectWide(Encoding& encoding, Appearance seen) {
    const bool isBig = seen.family == Family::Utf16BE || seen.family == Family::Utf32BE;
    const std::string& declared = encoding.declared;
    if (seen.family == Family::Utf16LE || seen.family == Family::Utf16BE) {
        readAsUtf16(encoding, isBig);
        encoding.name = isBig ? "UTF-16BE" : "UTF-16LE";
        if (!declared.empty() && !isUtf16Name(declared, isBig))
            encoding.fault = contradiction(declared, encoding.name.c_str());
    } else {
        encoding.name = isBig ? "UTF-32BE" : "UTF-32LE";
        readAsNamed(encoding, encoding.name);
        if (!declared.empty() && !isUtf32Name(declared, isBig))
            encoding.fault = contradiction(declared, encoding.name.c_str());
    }
    if (!declared.empty())
        encoding.name = declared;
}

void detectEightBit(Encoding& encoding, std::string_view head, Appearance seen) {
    const std::string& declared = encoding.declared;
    encoding.name = declared.empty() ? "UTF-8" : declared;
    if (isWideName(declared)) {
        readAsNamed(encoding, "UTF-8");
        encoding.fault = contradiction(declared, "an encoding with characters of one byte");
        return;
    }
    readAsNamed(encoding, encoding.name);
    if (!encoding.fault.empty())
        return;
    if (seen.markLength != 0 && !isUtf8Name(encoding.name))
        encoding.fault = contradiction(declared, "UTF-8: it begins with the byte order mark of UTF-8");
    else if (seen.family == Family::Ebcdic
             && (encoding.recodeFrom.empty() || !declaresItself(head, declared)))
        encoding.fault = contradiction(declared, "EBCDIC");
    else if (!encoding.recodeFrom.empty() && !declaresItself(head, declared))
        encoding.fault = contradiction(declared, "another encoding");
}

void detectEbcdic(Encoding& encoding, std::string_view head, Appearance seen) {
    if (!encoding.declared.empty()) {
        detectEightBit(encoding, head, seen);
        return;
    }
    encoding.name = "EBCDIC";
    encoding.expatName = kUtf8.units;
    encoding.fault = "the text is in EBCDIC, but its declaration does not say in which encoding";
}

Encoding detectByAppearance(std::string_view head, bool isContent) {
    const Appearance seen = appearanceOf(head, isContent);
    Encoding encoding;
    encoding.markLength = seen.markLength;
    encoding.declared = DeclarationScanner(declarationText(head, seen)).encoding();
    if (seen.family == Family::EightBit)
        detectEightBit(encoding, head, seen);
    else if (seen.family == Family::Ebcdic)
        detectEbcdic(encoding, head, seen);
    else
        detectWide(encoding, seen);
    return encoding;
}

/// The byte order of text that the application says is in UTF-16 or UTF-32: by its name, else by the bytes, else big.
bool externalIsBigEndian(std::string_view name, Appearance seen) {
    const bool namesBig = isOneOf(name, {"UTF-16BE", "UTF16BE", "UCS-2BE", "UTF-32BE", "UTF32BE", "UCS-4BE"});
    const bool namesLittle =
        isOneOf(name, {"UTF-16LE", "UTF16LE", "UCS-2LE", "UTF-32LE", "UTF32LE", "UCS-4LE"});
    if (namesBig || namesLittle)
        return namesBig;
    return seen.family != Family::Utf16LE && seen.family != Family::Utf32LE;
}

Encoding detectExternalWide(const std::string& external, Appearance seen) {
    Encoding encoding;
    encoding.name = external;
    const bool big = externalIsBigEndian(external, seen);
    const bool is32 = isUtf32Name(external, big);
    if (is32)
        readAsNamed(encoding, big ? "UTF-32BE" : "UTF-32LE");
    else
        readAsUtf16(encoding, big);
    const Family marked =
        is32 ? (big ? Family::Utf32BE : Family::Utf32LE) : (big ? Family::Utf16BE : Family::Utf16LE);
    if (seen.family == marked)
        encoding.markLength = seen.markLength;
    return encoding;
}

/// Expat goes by the first bytes of a document even when it was told the encoding; so what would lead it astray is
/// refused here.
bool looksLikeAnother(std::string_view head, const Encoding& encoding, bool isContent) {
    const auto at = [&](std::size_t i) { return i < head.size() ? static_cast<unsigned char>(head[i]) : 1u; };
    if (encoding.isUtf16) {
        const bool otherMark =
            encoding.isBigEndian ? at(0) == 0xFF && at(1) == 0xFE : at(0) == 0xFE && at(1) == 0xFF;
        const bool otherOrder = encoding.isBigEndian ? at(1) == 0 : at(0) == 0;
        return otherMark || (otherOrder && !isContent);
    }
    const bool hasMark = (at(0) == 0xFF && at(1) == 0xFE) || (at(0) == 0xFE && at(1) == 0xFF)
                         || (head.starts_with("\xEF\xBB\xBF") && encoding.markLength == 0);
    const bool isLatin1Text = encoding.expatName == kLatin1.units && isContent;
    return encoding.recodeFrom.empty() && ((hasMark && !isLatin1Text) || at(0) == 0 || at(1) == 0);
}

Encoding detectExternal(std::string_view head, const std::string& external, bool isContent) {
    const Appearance seen = appearanceOf(head, isContent);
    Encoding encoding;
    if (isWideName(external)) {
        encoding = detectExternalWide(external, seen);
    } else {
        encoding.name = external;
        readAsNamed(encoding, external);
        if (isUtf8Name(external) && head.starts_with("\xEF\xBB\xBF"))
            encoding.markLength = 3;
    }
    if (encoding.fault.empty() && looksLikeAnother(head, encoding, isContent))
        encoding.fault = "the text is not in the encoding \"" + external + "\" that the application named";
    return encoding;
}

/// A second mark is left to Expat together with the first, of which it takes one: it would swallow the second, too.
void keepDoubleMark(Encoding& encoding, std::string_view head) {
    const std::string_view mark = head.substr(0, encoding.markLength);
    if (!mark.empty() && encoding.recodeFrom.empty() && head.substr(mark.size()).starts_with(mark))
        encoding.markLength = 0;
}

/// The first two bytes that Expat gets of text in UTF-16 or widened to it.
std::array<unsigned char, 2> firstBytes(const Encoding& encoding, std::string_view head) {
    const std::string_view text = head.substr(std::min<std::size_t>(encoding.markLength, head.size()), 4);
    XML_Char units[4] = {u'<'};
    if (encoding.isWidened) {
        Runtime::wellFormedUtf8ToUtf16(text.data(), text.size(), units);
        return {static_cast<unsigned char>(units[0] & 0xFF), static_cast<unsigned char>(units[0] >> 8)};
    }
    if (text.size() < 2)
        return {'<', 0};
    return {static_cast<unsigned char>(text[0]), static_cast<unsigned char>(text[1])};
}

/// As the first character of the text, one whose bytes Expat takes for a mark or for another encoding, whatever it was
/// told. No document begins with such a one; in content only the first kind is not allowed, and leads astray.
void refuseMisleadingStart(Encoding& encoding, std::string_view head, bool isContent) {
    const auto [first, second] = firstBytes(encoding, head);
    const unsigned int low = encoding.isBigEndian ? second : first,
                       high = encoding.isBigEndian ? first : second;
    const bool beginsMarkOfUtf8 = first == 0xEF && second == 0xBB;
    if (low == 0xFE && high == 0xFF)
        encoding.fault = "the character U+FFFE is not allowed";
    else if (!isContent && (low == 0 || beginsMarkOfUtf8))
        encoding.fault = "not well-formed";
}

} // namespace

bool isEnoughToDetect(std::string_view head, const std::string& external, bool isContent) {
    if (head.size() >= kLongestHead)
        return true;
    if (head.size() < 4)
        return false;
    if (!external.empty())
        return head.size() >= 6; // two marks
    const std::string text = declarationText(head, appearanceOf(head, isContent));
    const std::string_view begin = "<?xml";
    if (text.size() < begin.size())
        return head.size() >= 32 || !begin.starts_with(text);
    return !text.starts_with(begin) || text.find("?>") != std::string::npos;
}

Encoding detectEncoding(std::string_view head, const std::string& external, bool isContent) {
    Encoding encoding =
        external.empty() ? detectByAppearance(head, isContent) : detectExternal(head, external, isContent);
    keepDoubleMark(encoding, head);
    const bool isUtf8 = encoding.expatName == kUtf8.units && encoding.recodeFrom.empty();
    if (isUtf8 && encoding.fault.empty()) {
        readAsUtf16(encoding, false);
        encoding.isWidened = true;
    }
    if (encoding.isUtf16 && encoding.fault.empty())
        refuseMisleadingStart(encoding, head, isContent);
    return encoding;
}

} // namespace Quillon::SaxEngine
