#ifndef ZUTARNEX_SAXENGINE_CONTENTEVENTS_H
#define ZUTARNEX_SAXENGINE_CONTENTEVENTS_H

#include "ElementAttributes.h"
#include "Location.h"
#include "NameTable.h"
#include "UnitSpan.h"

#include <vector>

namespace Quillon::SaxEngine {

struct ParseContext;

/// Turns what Expat reports of elements and text into events: it keeps the open elements and the prefixes that are
/// bound, and holds Namespaces in XML 1.0. Expat works without namespaces, so that the qualified names are there.
class ContentEvents {
public:
    explicit ContentEvents(ParseContext& context);

    void startElement(const XML_Char* name, const XML_Char** attributes);
    void endElement();
    void text(UnitSpan units);
    void startCdata();
    void endCdata();
    void comment(const XML_Char* text);
    void processingInstruction(const XML_Char* target, const XML_Char* data);
    void skippedEntity(const XML_Char* name);

    /// Before every event that is not text. A high surrogate that still waits for its other half then never gets it.
    void endText();

private:
    struct OpenElement {
        const Name* name;
        const Uri* uri;
        std::size_t bindings; ///< how many there were before it
        bool hasElementContent;
        bool mayBeEmptyTag; ///< what looks like <b/>
    };
    struct Binding {
        Prefix* prefix;
        Uri* outer; ///< what the prefix was bound to before
    };

    bool looksLikeEmptyTag() const;
    Uri& resolve(const Name& name);
    void collect(const XML_Char** attributes);
    void declarePrefixes();
    void bind(const Name& name, const XML_Char* uri);
    void checkBinding(const Prefix& prefix, const Uri& uri);
    void resolveAttributes();
    void showDeclarationAttribute(ElementAttributes::Slot& slot) const;
    void checkUnique();
    [[noreturn]] void failDuplicate(const ElementAttributes::Slot& slot);
    void closeElement();
    [[noreturn]] void failHeldSurrogate();
    UnitSpan withLinesBehind(UnitSpan units);
    const XML_Char* placeIn(UnitSpan chunk, UnitSpan units) const;
    void deliver(UnitSpan units);
    void textWithHalfPair(UnitSpan units);
    void joinPair(UnitSpan& units);

    ParseContext& context_;
    Prefix& xml_;
    Prefix& xmlns_;
    ElementAttributes attributes_;
    std::vector<const ElementAttributes::Slot*> prefixed_;
    std::vector<OpenElement> elements_;
    std::vector<Binding> bindings_;
    bool hasDeclarations_ = false; ///< among the attributes
    std::uint64_t elementNumber_ = 0;
    Location emptyTagStart_;
    bool isContentOfElements_ = false; ///< white space here may be ignored
    bool inCdata_ = false;
    std::uint32_t deliveredAhead_ = 0; ///< units that Expat will tell of next
    XML_Char heldSurrogate_ = 0;       ///< 0: none
    Location heldPlace_;
};

} // namespace Quillon::SaxEngine

#endif
