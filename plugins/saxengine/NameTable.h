#ifndef ZUTARNEX_SAXENGINE_NAMETABLE_H
#define ZUTARNEX_SAXENGINE_NAMETABLE_H

#include "ElementDeclaration.h"
#include "InternTable.h"
#include "UnitSpan.h"
#include "xml/XmlString.h"

#include <array>
#include <memory>

namespace Quillon::SaxEngine {

/// A namespace name.
struct Prefix;
struct Uri {
    Xml::XmlString text;
    const Prefix* usedBy = nullptr; ///< by the attributes of the element with this number, this prefix first
    std::uint64_t usedIn = 0;
};

/// A prefix, the empty one included, with what it is bound to at this point of the document.
struct Prefix {
    Xml::XmlString text;
    Uri* uri = nullptr; ///< null: not bound
};

enum class NameForm {
    Unprefixed,         ///< a
    Prefixed,           ///< p:a
    DefaultDeclaration, ///< xmlns
    PrefixDeclaration,  ///< xmlns:p
    NotQualified,       ///< what Namespaces in XML does not allow: :a, a:, a:b:c, a:1
    NotAName            ///< what XML 1.0 does not allow and Expat does not notice: see isForeignToNames()
};

/// A name of an element or attribute, taken apart.
struct Name {
    Xml::XmlString text;      ///< the whole
    Xml::XmlString localName; ///< behind the colon; `xmlns` of a default declaration
    UnitSpan units;           ///< of the text
    Prefix* prefix = nullptr; ///< null when not qualified; the declared one of a PrefixDeclaration
    NameForm form = NameForm::Unprefixed;
    Name* follower = nullptr; ///< of an element: the one that began after the last one with this name
    std::unique_ptr<ElementDeclaration>
        element; ///< what the DTD says of an element with this name; null: nothing
};

/// The names, prefixes and namespace names of a document, each made once.
///
/// Cost: see InternTable. The names of elements and attributes are mostly found by a guess that one comparison confirms:
/// records repeat each other's sequence of elements, and Expat keeps the name of an attribute at one address.
class NameTable {
public:
    Name& name(UnitSpan text);
    Name& elementName(const XML_Char* terminated); ///< of the element that begins now
    Name& attributeName(const XML_Char* terminated);
    Prefix& prefix(UnitSpan text);
    Uri& uri(UnitSpan text);

private:
    std::unique_ptr<Name> makeName(UnitSpan text);

    InternTable<Name> names_;
    InternTable<Prefix> prefixes_;
    InternTable<Uri> uris_;
    Name* lastElement_ = nullptr;
    std::array<Name*, 128> attributesByAddress_{};
};

} // namespace Quillon::SaxEngine

#endif
