#include "xml/sax/writer/StrictDoctypeInternal.h"

#include "xml/sax/writer/StrictGrammarInternal.h"

#include <string_view>

namespace Quillon::Xml::Sax {

namespace {

OwnedUnits fromAscii(std::string_view text) {
    return OwnedUnits(text.begin(), text.end());
}

/// The type of an attribute list for the type of a declaration.
OwnedUnits listedType(Units declared) {
    if (startsWith(declared, "("))
        return fromAscii("NMTOKEN");
    return startsWith(declared, "NOTATION") ? fromAscii("NOTATION") : copyOf(declared);
}

} // namespace

bool StrictDoctype::Attribute::isTokenized() const {
    return !equals(type, "CDATA");
}

void StrictDoctype::clear() {
    *this = StrictDoctype();
}

bool StrictDoctype::declareEntity(Units name, EntityKind kind) {
    return entities_.emplace(copyOf(name), kind).second;
}

StrictDoctype::EntityKind StrictDoctype::entity(Units name) const {
    const auto found = entities_.find(name);
    return found == entities_.end() ? EntityKind::Undeclared : found->second;
}

void StrictDoctype::declareElement(Units element, bool holdsElementsOnly) {
    elements_.emplace(copyOf(element), holdsElementsOnly);
}

bool StrictDoctype::isDeclaredToHoldElementsOnly(Units element) const {
    const auto found = elements_.find(element);
    return found != elements_.end() && found->second;
}

bool StrictDoctype::declareAttribute(Units element, Units attribute, Units type, bool hasDefault) {
    auto& attributes = attributes_[copyOf(element)];
    return attributes.emplace(copyOf(attribute), Attribute{listedType(type), hasDefault}).second;
}

const StrictDoctype::Attributes* StrictDoctype::declaredAttributesOf(Units element) const {
    const auto found = attributes_.find(element);
    return found == attributes_.end() ? nullptr : &found->second;
}

} // namespace Quillon::Xml::Sax
