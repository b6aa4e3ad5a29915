#include "NameTable.h"

#include "NameStart.h"
#include "Text.h"
#include "xml/Utf16LiteralInternal.h"

#include <algorithm>

namespace Quillon::SaxEngine {

namespace {

constexpr Xml::Utf16Literal kXmlns(u"xmlns");

template <class Entry>
std::unique_ptr<Entry> makeEntry(UnitSpan text) {
    auto entry = std::make_unique<Entry>();
    entry->text = ownedString(text);
    return entry;
}

bool isXmlns(UnitSpan text) {
    return text == UnitSpan(kXmlns.units);
}

/// The index of the one colon that parts a qualified name, the size when there is none, or -1 when the name is not
/// qualified. (Expat has checked that it is a name.)
long colonOf(UnitSpan text) {
    const XML_Char* colon = std::find(text.begin(), text.end(), u':');
    if (colon == text.end())
        return static_cast<long>(text.size);
    if (colon == text.begin() || colon + 1 == text.end() || !isNameStart(colon[1])
        || std::find(colon + 1, text.end(), u':') != text.end())
        return -1;
    return colon - text.begin();
}

/// Reads no further than the terminating zero unit: a name has none.
bool isText(const Name& name, const XML_Char* terminated) {
    for (std::uint32_t i = 0; i < name.units.size; ++i)
        if (terminated[i] != name.units.data[i])
            return false;
    return terminated[name.units.size] == 0;
}

} // namespace

Name& NameTable::elementName(const XML_Char* terminated) {
    Name* guess = lastElement_ ? lastElement_->follower : nullptr;
    if (!guess || !isText(*guess, terminated))
        guess = &name(UnitSpan(terminated));
    if (lastElement_)
        lastElement_->follower = guess;
    lastElement_ = guess;
    return *guess;
}

Name& NameTable::attributeName(const XML_Char* terminated) {
    const auto address = reinterpret_cast<std::uintptr_t>(terminated) / sizeof(XML_Char);
    Name*& guess = attributesByAddress_[(address ^ address >> 7) % attributesByAddress_.size()];
    if (!guess || !isText(*guess, terminated))
        guess = &name(UnitSpan(terminated));
    return *guess;
}

Name& NameTable::name(UnitSpan text) {
    return names_.intern(text, [&] { return makeName(text); });
}

Prefix& NameTable::prefix(UnitSpan text) {
    return prefixes_.intern(text, [&] { return makeEntry<Prefix>(text); });
}

Uri& NameTable::uri(UnitSpan text) {
    return uris_.intern(text, [&] { return makeEntry<Uri>(text); });
}

std::unique_ptr<Name> NameTable::makeName(UnitSpan text) {
    auto name = makeEntry<Name>(text);
    name->units = UnitSpan(name->text);
    const long colon = colonOf(text);
    const bool isName = std::none_of(text.begin(), text.end(), isForeignToNames);
    if (colon < 0 || !isName) {
        name->form = isName ? NameForm::NotQualified : NameForm::NotAName;
        name->localName = name->text;
        return name;
    }
    if (static_cast<std::uint32_t>(colon) == text.size) {
        name->form = isXmlns(text) ? NameForm::DefaultDeclaration : NameForm::Unprefixed;
        name->localName = name->text;
        name->prefix = &prefix(text.first(0));
        return name;
    }
    const UnitSpan front = text.first(static_cast<std::uint32_t>(colon));
    const UnitSpan local = text.from(static_cast<std::uint32_t>(colon) + 1);
    name->form = isXmlns(front) ? NameForm::PrefixDeclaration : NameForm::Prefixed;
    name->localName = ownedString(local);
    name->prefix = &prefix(name->form == NameForm::PrefixDeclaration ? local : front);
    return name;
}

} // namespace Quillon::SaxEngine
