#include "xml/sax/writer/StrictDocumentInternal.h"

#include "xml/Utf16LiteralInternal.h"
#include "xml/sax/SaxNotSupportedException.h"
#include "xml/sax/writer/StrictGrammarInternal.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>

namespace Quillon::Xml::Sax {

namespace {

constexpr Utf16Literal kCdataLiteral(u"CDATA");
constexpr Units kCdata(kCdataLiteral.units, 5);

constexpr char kElementName[] = "an element's name";

/// The highest character of the encoding. Only the names that the writer itself knows are taken.
char32_t lastCharacterOf(const char* encoding) {
    const std::string_view name = encoding ? encoding : "UTF-8";
    if (name == "UTF-8")
        return 0x10FFFF;
    if (name == "US-ASCII")
        return 0x7F;
    if (name == "ISO-8859-1")
        return 0xFF;
    throw SaxNotSupportedException(makeString(("startDocument: encoding " + std::string(name)).c_str()));
}

} // namespace

void StrictDocument::begin(const char* encodingName) {
    lastCharacter = lastCharacterOf(encodingName);
    encoding = encodingName;
    locator_ = std::exchange(nextLocator, nullptr);
    place = Place::Prolog;
    inSection = false;
    doctype.clear();
    names_.clear();
    openNames_.clear();
    elements_.clear();
    namespaces_.clear();
    announced_.clear();
    mapped_.clear();
    entities_.clear();
    suppressing_ = 0;
}

void StrictDocument::refuseToEnter(const Refusal& refusal, After after) const {
    if (place == Place::Outside)
        refusal.because("no document has been started");
    if (!announced_.empty() && after != After::Mapping && after != After::Layout)
        refusal.because("no element follows the mapping of the prefix", announced_.top().prefix);
    if (hasDueMappings() && after != After::EndOfElement)
        refusal.because("the mapping has not been ended of the prefix", mapped_.top().prefix);
}

void StrictDocument::refuseInSection(const Refusal& refusal) {
    refusal.because("a CDATA section holds text only");
}

void StrictDocument::announceMapping(const Refusal& refusal, Units prefix, Units uri) {
    checkPlaceOfElement(refusal);
    if (!prefix.empty())
        refusal.unlessNameWithoutColon(prefix, "a prefix");
    refusal.unlessText(uri, "the identifier of a namespace");
    if (!isLegalBinding(prefix, uri))
        refusal.because("reserved or empty names, for the prefix", prefix);
    if (announced_.find(prefix))
        refusal.because("twice for one element, for the prefix", prefix);
    announced_.push({copyOf(prefix), copyOf(uri), depth() + 1});
}

void StrictDocument::endMapping(const Refusal& refusal, Units prefix) {
    const Mapping* const mapping = mapped_.find(prefix);
    if (!mapping || mapping->depth <= depth())
        refusal.because("no mapping is to be ended of the prefix", prefix);
    mapped_.remove(prefix);
}

void StrictDocument::checkPlaceOfElement(const Refusal& refusal) const {
    if (place == Place::Epilog)
        refusal.because("behind the end of the root element");
    if (place == Place::Doctype)
        refusal.because("inside the document type");
}

bool StrictDocument::isExpandedAs(const QualifiedName& name, const std::optional<Units>& bound, Units uri,
                                  Units localName) noexcept {
    return bound && name.qualifies && isSame(*bound, uri) && isSame(name.localName, localName);
}

bool StrictDocument::areAttributesPlain(StrictAttributeList list, bool isExpanded, bool checksTypes) {
    bool hasPrefix = false;
    names_.beginTag();
    for (const StrictAttribute& attribute : list) {
        StrictNames::Known* const known = names_.find(attribute.qName);
        if (known == nullptr || !names_.addToTag(*known) || !Refusal::isPlainText(attribute.value)
            || (checksTypes && !isSame(attribute.type, kCdata)))
            return false;
        if (!isExpanded)
            continue;
        const QualifiedName parts = known->parts(attribute.qName);
        if (isNamespaceDeclaration(parts) || (parts.hasColon && std::exchange(hasPrefix, true)))
            return false; // two with prefixes may be one and the same
        const std::optional<Units> bound = parts.hasColon ? namespaces_.uriOf(parts.prefix) : Units();
        if (!isExpandedAs(parts, bound, attribute.uri, attribute.localName))
            return false;
    }
    return true;
}

/// Whether a tag is of the kind that most are: its names are known, it brings no namespace, and nothing can be said
/// against it. Any other is looked at step by step.
bool StrictDocument::isPlainTag(const ElementName& name, StrictAttributeList list, bool checksTypes,
                                OpenElement& element) {
    const bool isExpanded = hasExpandedNames(name);
    if (!announced_.empty() || (depth() != 0 && isExpanded != hasExpandedNames_))
        return false;
    const StrictNames::Known* const known = names_.find(name.qName);
    if (known == nullptr || (checksTypes && doctype.attributesOf(name.qName) != nullptr))
        return false;
    if (isExpanded) {
        const QualifiedName parts = known->parts(name.qName);
        const std::optional<Units> bound = namespaces_.uriOf(parts.prefix);
        if (!isExpandedAs(parts, bound, name.uri, name.localName))
            return false;
        element.uri = *bound;
        element.localNameLength = static_cast<std::uint32_t>(parts.localName.size());
        element.hasCheckedName = true;
    }
    return list.empty() || areAttributesPlain(list, isExpanded, checksTypes);
}

StrictDocument::Bindings StrictDocument::checkTag(const Refusal& refusal, const ElementName& name,
                                                  StrictAttributeList list, bool checksTypes,
                                                  OpenElement& element) {
    const bool isExpanded = hasExpandedNames(name);
    const QualifiedName parts = names_.check(refusal, name.qName, kElementName).parts(name.qName);
    if (depth() != 0 && isExpanded != hasExpandedNames_)
        refusal.because("the root and this element do not both have expanded names:", name.qName);
    checkAttributes(refusal, list);
    if (checksTypes)
        checkDeclaredAttributes(refusal, name.qName, list);
    if (!isExpanded) // the events come from a reader that does not process namespaces
        return Bindings();
    try {
        Bindings added = bindNamespaces(refusal, list);
        element.uri = checkExpandedName(refusal, name.uri, name.localName, name.qName, parts, false);
        element.localNameLength = static_cast<std::uint32_t>(parts.localName.size());
        element.hasCheckedName = true;
        checkExpandedNames(refusal, list);
        return added;
    } catch (...) {
        namespaces_.leave(depth());
        throw;
    }
}

void StrictDocument::push(const ElementName& name, const OpenElement& element) {
    if (depth() == 0)
        hasExpandedNames_ = hasExpandedNames(name);
    elements_.push_back({openNames_.size(), element.uri, element.localNameLength, element.hasCheckedName,
                         doctype.holdsElementsOnly(name.qName)});
    openNames_.insert(openNames_.end(), name.qName.begin(), name.qName.end());
    if (announced_.empty())
        return;
    for (const auto& node : announced_.nodes())
        mapped_.push({node.entry.prefix, depth()});
    announced_.clear();
}

StrictDocument::Bindings StrictDocument::open(const Refusal& refusal, const ElementName& name,
                                              StrictAttributeList list, bool checksTypes) {
    checkPlaceOfElement(refusal);
    Bindings added;
    OpenElement element; // stays in registers, so nobody else gets its address
    if (!isSuppressed() && !isPlainTag(name, list, checksTypes, element)) {
        OpenElement checked;
        added = checkTag(refusal, name, list, checksTypes, checked);
        element = checked;
    }
    push(name, element);
    place = Place::Root;
    return added;
}

void StrictDocument::checkAttributes(const Refusal& refusal, StrictAttributeList list) {
    bool mayRepeat = false;
    names_.beginTag();
    for (StrictAttribute& attribute : list) {
        StrictNames::Known& name = names_.check(refusal, attribute.qName, "an attribute's name");
        mayRepeat |= !names_.addToTag(name);
        attribute.parts = name.parts(attribute.qName);
        refusal.unlessText(attribute.value, "the value of an attribute");
    }
    if (!mayRepeat)
        return;
    sortedNames_.clear();
    for (const StrictAttribute& attribute : list)
        sortedNames_.push_back(attribute.qName);
    std::sort(sortedNames_.begin(), sortedNames_.end(), isLess);
    const auto repeated = std::adjacent_find(sortedNames_.begin(), sortedNames_.end(), isSame);
    if (repeated != sortedNames_.end())
        refusal.because("twice the attribute", *repeated);
}

void StrictDocument::checkDeclaredAttributes(const Refusal& refusal, Units element,
                                             StrictAttributeList list) const {
    const StrictDoctype::Attributes* declared = doctype.attributesOf(element);
    std::size_t defaultsLeft = 0;
    if (declared)
        defaultsLeft = static_cast<std::size_t>(std::count_if(
            declared->begin(), declared->end(), [](const auto& entry) { return entry.second.hasDefault; }));
    for (const StrictAttribute& attribute : list) {
        const StrictDoctype::Attribute* rule = nullptr;
        if (declared) {
            const auto found = declared->find(attribute.qName);
            rule = found == declared->end() ? nullptr : &found->second;
        }
        const Units type = attribute.type;
        if (rule ? !isSame(type, rule->type) : !isSame(type, kCdata))
            refusal.because("a type that was not declared, of the attribute", attribute.qName);
        if (rule && rule->isTokenized() && !isTokenList(attribute.value))
            refusal.because("spaces that would be taken away, in the attribute", attribute.qName);
        defaultsLeft -= rule && rule->hasDefault;
    }
    if (defaultsLeft != 0)
        refusal.because("an attribute is missing that has a default, in the element", element);
}

void StrictDocument::bind(const Refusal& refusal, Units prefix, Units uri) {
    if (!isLegalBinding(prefix, uri))
        refusal.because("reserved or empty names, for the prefix", prefix);
    namespaces_.bind({copyOf(prefix), copyOf(uri), depth() + 1});
}

StrictDocument::Bindings StrictDocument::bindNamespaces(const Refusal& refusal, StrictAttributeList list) {
    for (const StrictAttribute& attribute : list) {
        const QualifiedName& name = attribute.parts;
        if (isNamespaceDeclaration(name))
            bind(refusal, name.hasColon ? name.localName : Units(), attribute.value);
    }
    Bindings added;
    for (const auto& node : announced_.nodes()) {
        const StrictNamespaces::Binding& mapping = node.entry;
        const StrictNamespaces::Binding* brought = namespaces_.broughtAt(depth() + 1, mapping.prefix);
        if (brought && !isSame(brought->uri, mapping.uri))
            refusal.because("an attribute declares something else, for the prefix", mapping.prefix);
        if (!brought)
            added.push_back(mapping);
    }
    for (const StrictNamespaces::Binding& mapping : added)
        namespaces_.bind(mapping);
    return added;
}

void StrictDocument::checkExpandedNames(const Refusal& refusal, StrictAttributeList list) {
    auto& names = sortedExpandedNames_; // of those in a namespace
    names.clear();
    for (const StrictAttribute& attribute : list) {
        const QualifiedName& name = attribute.parts;
        if (isNamespaceDeclaration(name))
            continue;
        const Units bound =
            checkExpandedName(refusal, attribute.uri, attribute.localName, attribute.qName, name, true);
        if (name.hasColon)
            names.emplace_back(bound, name.localName);
    }
    if (names.size() < 2)
        return;
    const auto isLessPair = [](const auto& left, const auto& right) {
        return isSame(left.first, right.first) ? isLess(left.second, right.second)
                                               : isLess(left.first, right.first);
    };
    std::sort(names.begin(), names.end(), isLessPair);
    const auto repeated =
        std::adjacent_find(names.begin(), names.end(), [](const auto& left, const auto& right) {
            return isSame(left.first, right.first) && isSame(left.second, right.second);
        });
    if (repeated != names.end())
        refusal.because("twice, by two prefixes, the attribute", repeated->second);
}

Units StrictDocument::checkExpandedName(const Refusal& refusal, Units uri, Units localName, Units qName,
                                        const QualifiedName& name, bool isAttribute) const {
    if (!name.qualifies)
        refusal.unlessColonQualifies(qName, "a qualified name");
    const bool isInNoNamespace = isAttribute && !name.hasColon; // the default namespace is not for attributes
    const std::optional<Units> bound = isInNoNamespace ? Units() : namespaces_.uriOf(name.prefix);
    if (!bound)
        refusal.because("no namespace is bound to the prefix of", qName);
    if (isAttribute && uri.empty() && localName.empty())
        return *bound; // a list without expanded names
    if (!isSame(*bound, uri))
        refusal.because("another namespace is bound to the prefix of", qName);
    if (!isSame(name.localName, localName))
        refusal.because("the local name is not that of", qName);
    return *bound;
}

/// Whether the innermost element was opened with the same expanded name, which was right and so still is.
bool StrictDocument::isAsOpened(const ElementName& name) const noexcept {
    const OpenElement& opened = elements_.back();
    return opened.hasCheckedName && isSame(opened.uri, name.uri)
           && isSame(innermostName().last(opened.localNameLength), name.localName);
}

void StrictDocument::close(const Refusal& refusal, const ElementName& name) {
    if (place != Place::Root)
        refusal.because("no element is open");
    if (!entities_.empty() && depth() == entities_.back().depth)
        refusal.because("the element began outside the entity", entities_.back().name);
    if (!isSame(name.qName, innermostName()))
        refusal.because("the open element is", innermostName());
    const bool isExpanded = !name.uri.empty() || !name.localName.empty();
    if (isExpanded && !isSuppressed() && !isAsOpened(name))
        checkExpandedName(refusal, name.uri, name.localName, name.qName,
                          names_.check(refusal, name.qName, kElementName).parts(name.qName), false);
    popElement();
    namespaces_.leave(depth());
    if (depth() == 0)
        place = Place::Epilog;
}

void StrictDocument::openEntity(Units name, bool suppresses) {
    entities_.push_back({copyOf(name), depth(), suppresses});
    suppressing_ += suppresses;
}

void StrictDocument::closeEntity(const Refusal& refusal, Units name) {
    if (entities_.empty() || !isSame(entities_.back().name, name))
        refusal.because("not the entity that began last:", name);
    if (entities_.back().depth != depth())
        refusal.because("an element is open that began inside the entity", name);
    suppressing_ -= entities_.back().suppresses;
    entities_.pop_back();
}

Units StrictDocument::innermostName() const noexcept {
    return Units(openNames_).subspan(elements_.back().nameStart);
}

void StrictDocument::popElement() {
    openNames_.resize(elements_.back().nameStart);
    elements_.pop_back();
}

} // namespace Quillon::Xml::Sax
