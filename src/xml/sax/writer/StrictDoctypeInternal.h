#ifndef ZUTARNEX_XML_SAX_WRITER_STRICTDOCTYPEINTERNAL_H
#define ZUTARNEX_XML_SAX_WRITER_STRICTDOCTYPEINTERNAL_H

#include "xml/sax/writer/StrictRefusalInternal.h"

#include <map>

namespace Quillon::Xml::Sax {

/// What the document type has declared so far, as far as it decides how the document will be read back.
class StrictDoctype {
public:
    enum class EntityKind { Undeclared, Internal, External, Unparsed };

    /// Names are found without a copy of them.
    struct Attribute {
        OwnedUnits type; ///< as an attribute list tells it: `(a|b)` is NMTOKEN
        bool hasDefault;

        bool isTokenized() const;
    };
    using Attributes = std::map<OwnedUnits, Attribute, IsLess>;

    void clear();

    /// False when the name is taken: a parser keeps the first declaration and does not report another one. Names of
    /// parameter entities begin with `%`.
    bool declareEntity(Units name, EntityKind kind);
    EntityKind entity(Units name) const;

    /// Later declarations of the same element change nothing.
    void declareElement(Units element, bool holdsElementsOnly);
    bool holdsElementsOnly(Units element) const {
        return !elements_.empty() && isDeclaredToHoldElementsOnly(element);
    }

    /// False when it is declared already: as with entities.
    bool declareAttribute(Units element, Units attribute, Units type, bool hasDefault);
    /// Null when the element has none declared.
    const Attributes* attributesOf(Units element) const {
        return attributes_.empty() ? nullptr : declaredAttributesOf(element);
    }

    bool hasExternalSubset = false;

private:
    bool isDeclaredToHoldElementsOnly(Units element) const;
    const Attributes* declaredAttributesOf(Units element) const;

    std::map<OwnedUnits, EntityKind, IsLess> entities_;
    std::map<OwnedUnits, bool, IsLess> elements_; ///< whether they hold elements only
    std::map<OwnedUnits, Attributes, IsLess> attributes_;
};

} // namespace Quillon::Xml::Sax

#endif
