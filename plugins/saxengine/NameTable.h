#ifndef ZUTARNEX_SAXENGINE_NAMETABLE_H
#define ZUTARNEX_SAXENGINE_NAMETABLE_H

#include "ElementDeclaration.h"
#include "InternTable.h"
#include "UnitSpan.h"
#include "xml/XmlString.h"

#include <memory>

namespace Quillon::SaxEngine {

/// A namespace name.
struct Uri {
    Xml::XmlString text;
};

/// A prefix, the empty one included, with what it is bound to at this point of the document.
struct Prefix {
    Xml::XmlString text;
    const Uri* uri = nullptr; ///< null: not bound
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
    Prefix* prefix = nullptr; ///< null when not qualified; the declared one of a PrefixDeclaration
    NameForm form = NameForm::Unprefixed;
    std::unique_ptr<ElementDeclaration>
        element; ///< what the DTD says of an element with this name; null: nothing
};

/// The names, prefixes and namespace names of a document, each made once.
class NameTable {
public:
    Name& name(UnitSpan text);
    Prefix& prefix(UnitSpan text);
    Uri& uri(UnitSpan text);

private:
    std::unique_ptr<Name> makeName(UnitSpan text);

    InternTable<Name> names_;
    InternTable<Prefix> prefixes_;
    InternTable<Uri> uris_;
};

} // namespace Quillon::SaxEngine

#endif
