#include "xml/sax/writer/StrictGrammarInternal.h"

#include "xml/NamesInternal.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace Quillon::Xml::Sax {

namespace {

bool isName(Units units) {
    const bool hasColon = std::find(units.begin(), units.end(), ':') != units.end();
    return !units.empty() && !hasColon && endOfName(units.data(), units.size()) == units.size();
}

bool isQualifiedName(Units units) {
    const auto colon = std::find(units.begin(), units.end(), ':');
    if (colon == units.end())
        return isName(units);
    const auto prefixLength = static_cast<std::size_t>(colon - units.begin());
    return isName(units.first(prefixLength)) && isName(units.subspan(prefixLength + 1));
}

bool isNameToken(Units units) {
    return !units.empty() && std::all_of(units.begin(), units.end(), isNameCharacter);
}

bool isQuantifier(unsigned short unit) {
    return unit == '?' || unit == '*' || unit == '+';
}

/// What stands between `start` and the next `)` or one of `delimiters`.
Units pieceAt(Units text, std::size_t start, const char* delimiters) {
    std::size_t end = start;
    while (end < text.size() && (text[end] > 0x7F || !std::strchr(delimiters, text[end])))
        ++end;
    return text.subspan(start, end - start);
}

/// Pieces between `|`, each of them an `isPiece`, up to a `)` that ends the text. `text` starts behind the `(`.
template <class IsPiece>
bool isAlternatives(Units text, IsPiece isPiece) {
    for (std::size_t at = 0;; ++at) {
        const Units piece = pieceAt(text, at, "|)");
        at += piece.size();
        if (!isPiece(piece) || at == text.size())
            return false;
        if (text[at] == ')')
            return at + 1 == text.size();
    }
}

constexpr char kText[] = "(#PCDATA";

bool isMixedModel(Units text) {
    const Units rest = text.subspan(std::strlen(kText));
    if (equals(rest, ")") || equals(rest, ")*"))
        return true;
    return rest.size() > 2 && rest.front() == '|' && rest.back() == '*'
           && isAlternatives(rest.subspan(1, rest.size() - 2), isQualifiedName);
}

/// One open group for each entry: the separator that it has shown so far, 0 for none yet.
bool isElementModel(Units text) {
    std::vector<unsigned short> groups;
    std::size_t at = 0;
    for (;;) { // at the start of a particle
        while (at < text.size() && text[at] == '(') {
            groups.push_back(0);
            ++at;
        }
        const Units name = pieceAt(text, at, "()|,?*+");
        if (groups.empty() || !isQualifiedName(name))
            return false;
        for (at += name.size();; ++at) { // behind a particle, which may end groups
            if (at < text.size() && isQuantifier(text[at]))
                ++at;
            if (groups.empty() || at == text.size())
                return groups.empty() && at == text.size();
            if (text[at] != ')')
                break;
            groups.pop_back();
        }
        const unsigned short separator = text[at++];
        if ((separator != '|' && separator != ',') || (groups.back() != 0 && groups.back() != separator))
            return false;
        groups.back() = separator;
    }
}

} // namespace

bool equals(Units units, const char* ascii) noexcept {
    return units.size() == std::strlen(ascii) && startsWith(units, ascii);
}

bool startsWith(Units units, const char* ascii) noexcept {
    const std::size_t length = std::strlen(ascii);
    return units.size() >= length && std::equal(ascii, ascii + length, units.begin());
}

bool isContentModel(Units text) {
    if (equals(text, "EMPTY") || equals(text, "ANY"))
        return true;
    return startsWith(text, kText) ? isMixedModel(text) : isElementModel(text);
}

bool holdsElementsOnly(Units text) noexcept {
    return startsWith(text, "(") && !startsWith(text, kText);
}

bool isAttributeType(Units text) {
    constexpr const char* kTypes[] = {"CDATA",  "ID",       "IDREF",   "IDREFS",
                                      "ENTITY", "ENTITIES", "NMTOKEN", "NMTOKENS"};
    constexpr char kNotation[] = "NOTATION (";
    if (std::any_of(std::begin(kTypes), std::end(kTypes),
                    [&](const char* type) { return equals(text, type); }))
        return true;
    if (startsWith(text, kNotation))
        return isAlternatives(text.subspan(std::strlen(kNotation)), isName);
    return startsWith(text, "(") && isAlternatives(text.subspan(1), isNameToken);
}

bool isTokenList(Units value) noexcept {
    unsigned short before = ' ';
    for (const unsigned short unit : value) {
        if (unit == ' ' && before == ' ')
            return false;
        before = unit;
    }
    return value.empty() || before != ' ';
}

} // namespace Quillon::Xml::Sax
