#ifndef ZUTARNEX_XML_SAX_WRITER_STRICTREFUSALINTERNAL_H
#define ZUTARNEX_XML_SAX_WRITER_STRICTREFUSALINTERNAL_H

#include "runtime/kernels/CompareInternal.h"
#include "runtime/kernels/EscapeScanInternal.h"
#include "xml/XmlStringInternal.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace Quillon::Xml::Sax {

class Locator;

using OwnedUnits = std::vector<unsigned short>;

inline OwnedUnits copyOf(Units units) {
    return OwnedUnits(units.begin(), units.end());
}

inline bool isSame(Units left, Units right) noexcept {
    return left.size() == right.size()
           && (left.data() == right.data()
               || Runtime::Kernels::areUnitsSame(left.data(), right.data(), left.size()));
}

inline bool isLess(Units left, Units right) noexcept {
    return std::lexicographical_compare(left.begin(), left.end(), right.begin(), right.end());
}

/// For ordered containers.
struct IsLess {
    using is_transparent = void;
    bool operator()(Units left, Units right) const noexcept { return isLess(left, right); }
};

/// A character of XML 1.0 (production 2).
constexpr bool isXmlCharacter(char32_t c) noexcept {
    return (c >= 0x20 && c <= 0xD7FF) || c == 0x9 || c == 0xA || c == 0xD || (c >= 0xE000 && c <= 0xFFFD)
           || (c >= 0x10000 && c <= 0x10FFFF);
}

/// Between these two there are characters of XML only.
constexpr unsigned short kFirstPrintable = 0x20, kLastBeforeSurrogates = 0xD7FF;

constexpr bool isXmlSpace(char32_t c) noexcept {
    return c == 0x20 || c == 0x9 || c == 0xA || c == 0xD;
}

/// The bits of the units that an encoding with that highest character lacks: one of those that the writer knows.
constexpr std::uint16_t unwritableMaskFor(char32_t lastCharacter) noexcept {
    return static_cast<std::uint16_t>(lastCharacter > 0xFFFF ? 0 : ~lastCharacter);
}

/// The character at `index`, which moves behind it; a lone surrogate is itself. REQUIRES: index < units.size().
char32_t nextCharacter(Units units, std::size_t& index) noexcept;

/// Looks at what an event brings and throws the exception that names the event and what is wrong with it: a
/// SaxParseException where a locator knows the place, else a SaxException.
class Refusal {
public:
    /// `lastCharacter`: the highest one that the encoding holds.
    Refusal(const char* event, char32_t lastCharacter, const Locator* locator) noexcept
        : event_(event), lastCharacter_(lastCharacter), locator_(locator) {}

    [[noreturn]] void because(const char* reason) const;
    /// The same with a name behind the reason.
    [[noreturn]] void because(const char* reason, Units name) const;
    [[noreturn]] void character(char32_t c, const char* place) const;

    /// Whether unlessText has nothing against it, and there is no surrogate nor anything behind these.
    static bool isPlainText(Units units) noexcept {
        namespace Kernels = Runtime::Kernels;
        return Kernels::isShortAndPlain<kNotText>(units.data(), units.size())
               || Kernels::firstToEscape(units.data(), units.size(), kNotText, 0) == units.size();
    }
    /// Characters of XML, whatever the encoding: text that may hold character references.
    void unlessText(Units units, const char* place) const {
        if (!Runtime::Kernels::isShortAndPlain<kNotText>(units.data(), units.size()))
            unlessLongText(units, place);
    }
    /// Characters that can stand as they are and come back unchanged: no carriage return, none that the encoding lacks.
    void unlessVerbatim(Units units, const char* place) const;
    void unlessName(Units units, const char* place) const;
    /// A name without a colon, as Namespaces in XML wants those of entities, notations and instructions.
    void unlessNameWithoutColon(Units units, const char* place) const;
    /// A name with at most one colon inside, as Namespaces in XML wants those of elements and attributes.
    void unlessQualifiedName(Units units, const char* place) const;
    /// The same for what is known to be a name.
    void unlessColonQualifies(Units name, const char* place) const;
    /// Null identifiers are left to the caller.
    void unlessSystemLiteral(Units units) const;
    void unlessPublicLiteral(Units units) const;

private:
    /// Surrogates, and what lies behind them, are looked at one by one.
    static constexpr Runtime::Kernels::EscapeSet kNotText{kFirstPrintable, kLastBeforeSurrogates, ""};

    void unlessLongText(Units units, const char* place) const;
    [[noreturn]] void refuse(const XmlString& message) const;

    const char* event_;
    char32_t lastCharacter_;
    const Locator* locator_;
};

} // namespace Quillon::Xml::Sax

#endif
