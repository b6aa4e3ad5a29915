#ifndef ZUTARNEX_XML_SAX_WRITER_STRICTDOCUMENTINTERNAL_H
#define ZUTARNEX_XML_SAX_WRITER_STRICTDOCUMENTINTERNAL_H

#include "xml/XmlString.h"
#include "xml/sax/writer/StrictAttributesInternal.h"
#include "xml/sax/writer/StrictDoctypeInternal.h"
#include "xml/sax/writer/StrictNamesInternal.h"
#include "xml/sax/writer/StrictNamespacesInternal.h"
#include "xml/sax/writer/StrictRefusalInternal.h"

#include <optional>
#include <utility>
#include <vector>

namespace Quillon::Xml::Sax {

/// Where a StrictWriter stands in its document: what is open, and what may come next. Each operation refuses first and
/// changes something only then.
class StrictDocument {
public:
    enum class Place { Outside, Prolog, Doctype, AfterDoctype, Root, Epilog };

    Place place = Place::Outside;
    bool spaceIsLayout = false;
    bool inSection = false;
    unsigned int brackets = 0; ///< `]` at the end of the section so far
    char32_t lastCharacter = 0x10FFFF;
    const char* encoding = nullptr;
    const Locator* nextLocator = nullptr; ///< for the document that begins next
    StrictDoctype doctype;
    StrictAttributeRoom attributeRoom;

    void begin(const char* encodingName);

    /// What every event starts with. Layout may stand between the mappings of prefixes and the element: that is where
    /// a filter puts it that sees the tags only.
    enum class After { Anything, Mapping, EndOfElement, Layout };
    Refusal enter(const char* event, After after = After::Anything) const {
        const Refusal refusal(event, lastCharacter, locator_);
        if (place == Place::Outside || !announced_.empty() || hasDueMappings())
            refuseToEnter(refusal, after);
        return refusal;
    }
    /// The same for what may not stand in a CDATA section.
    Refusal enterMarkup(const char* event, After after = After::Anything) const {
        const Refusal refusal = enter(event, after);
        if (inSection)
            refuseInSection(refusal);
        return refusal;
    }

    /// Whether a parser takes white space in the innermost element for no text of it.
    bool isInElementContent() const noexcept {
        return !elements_.empty() && elements_.back().holdsElementsOnly;
    }

    bool isSuppressed() const noexcept { return suppressing_ != 0; }

    /// Whether text that comes now is the content of an element, with nothing to be said against it but its characters.
    bool takesContent() const noexcept {
        return place == Place::Root && !inSection && !isSuppressed() && announced_.empty()
               && !hasDueMappings() && !elements_.back().holdsElementsOnly;
    }

    void announceMapping(const Refusal& refusal, Units prefix, Units uri);
    void endMapping(const Refusal& refusal, Units prefix);

    /// The name of an element as its events bring it.
    struct ElementName {
        Units uri, localName, qName;
    };
    /// Checks a start tag and opens the element. Returns the bindings that no attribute declares.
    using Bindings = std::vector<StrictNamespaces::Binding>;
    Bindings open(const Refusal& refusal, const ElementName& name, StrictAttributeList list,
                  bool checksTypes);
    void close(const Refusal& refusal, const ElementName& name);

    /// `suppresses`: the content is not written.
    void openEntity(Units name, bool suppresses);
    void closeEntity(const Refusal& refusal, Units name);
    bool isInsideEntity() const noexcept { return !entities_.empty(); }

    /// A locator lives no longer than the parse that set it.
    void forgetLocator() noexcept { locator_ = nullptr; }

private:
    struct OpenEntity {
        OwnedUnits name;
        std::size_t depth; ///< how many elements were open
        bool suppresses;
    };
    struct Mapping {
        OwnedUnits prefix;
        std::size_t depth;
    };

    using ExpandedName = std::pair<Units, Units>; ///< namespace, local name

    struct OpenElement {
        std::size_t nameStart = 0;
        Units uri;                         ///< of a binding that lasts as long as the element
        std::uint32_t localNameLength = 0; ///< at the end of the name
        bool hasCheckedName = false;       ///< whether these two were found right when the element was opened
        bool holdsElementsOnly = false;
    };

    std::size_t depth() const noexcept { return elements_.size(); }
    Units innermostName() const noexcept;
    bool isAsOpened(const ElementName& name) const noexcept;
    void popElement();

    /// Where one of the conditions of enter() holds: whether it is one for this event.
    void refuseToEnter(const Refusal& refusal, After after) const;
    [[noreturn]] static void refuseInSection(const Refusal& refusal);
    void checkPlaceOfElement(const Refusal& refusal) const;
    bool hasExpandedNames(const ElementName& name) const noexcept {
        return !announced_.empty() || !name.uri.empty() || !name.localName.empty();
    }
    // Inlined where an element is opened, so that what they find stays in registers.
    [[gnu::always_inline]] inline bool isPlainTag(const ElementName& name, StrictAttributeList list,
                                                  bool checksTypes, OpenElement& element);
    [[gnu::always_inline]] inline bool areAttributesPlain(StrictAttributeList list, bool isExpanded,
                                                          bool checksTypes);
    [[gnu::always_inline]] static inline bool isExpandedAs(const QualifiedName& name,
                                                           const std::optional<Units>& bound, Units uri,
                                                           Units localName) noexcept;
    [[gnu::always_inline]] inline void push(const ElementName& name, const OpenElement& element);
    Bindings checkTag(const Refusal& refusal, const ElementName& name, StrictAttributeList list,
                      bool checksTypes, OpenElement& element);
    /// Takes the names apart, too.
    void checkAttributes(const Refusal& refusal, StrictAttributeList list);
    void checkDeclaredAttributes(const Refusal& refusal, Units element, StrictAttributeList list) const;
    Bindings bindNamespaces(const Refusal& refusal, StrictAttributeList list);
    void bind(const Refusal& refusal, Units prefix, Units uri);
    /// Those of the attributes.
    void checkExpandedNames(const Refusal& refusal, StrictAttributeList list);
    /// Returns the namespace that is bound to the prefix; it belongs to the binding.
    Units checkExpandedName(const Refusal& refusal, Units uri, Units localName, Units qName,
                            const QualifiedName& name, bool isAttribute) const;
    bool hasDueMappings() const noexcept { return !mapped_.empty() && mapped_.top().depth > depth(); }

    const Locator* locator_ = nullptr;
    bool hasExpandedNames_ = false; ///< the root, and so every element
    OwnedUnits openNames_;          ///< of the open elements, one behind the other
    std::vector<OpenElement> elements_;
    StrictNamespaces namespaces_;
    PrefixStack<StrictNamespaces::Binding> announced_; ///< by startPrefixMapping, for the next element
    PrefixStack<Mapping> mapped_; ///< announced and not ended, in the order of their elements
    std::vector<OpenEntity> entities_;
    std::size_t suppressing_ = 0;
    std::vector<Units> sortedNames_; ///< room for a check of one start tag
    std::vector<ExpandedName> sortedExpandedNames_;
    StrictNames names_;
};

} // namespace Quillon::Xml::Sax

#endif
