#ifndef ZUTARNEX_SAXENGINE_ELEMENTATTRIBUTES_H
#define ZUTARNEX_SAXENGINE_ELEMENTATTRIBUTES_H

#include "ElementDeclaration.h"
#include "NameTable.h"
#include "Vocabulary.h"
#include "xml/sax/AttributeSourceInternal.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace Quillon::SaxEngine {

/// The attributes of the element that is being reported, over Expat's array. Names are shared from the name table; a
/// value becomes a string when somebody asks for it, and that string owns its text. The writers of the library look at
/// the array itself.
///
/// Cost: once it has held as many attributes with values as long, nothing is allocated for an element. The block of a
/// value serves the next element, too, unless somebody has kept a copy of the string, or it is a long one.
class ElementAttributes final : public Xml::Sax::AttributeSource {
public:
    struct Slot {
        const Name* name;
        const Xml::XmlString* uri;
        const Xml::XmlString* localName;
        const XML_Char* value;
        bool isSpecified;
    };

    explicit ElementAttributes(const Vocabulary& words);
    ElementAttributes(const ElementAttributes&) = delete;
    ElementAttributes& operator=(const ElementAttributes&) = delete;
    ~ElementAttributes();

    /// As handlers get them.
    operator const Xml::Sax::Attributes&() const { return *list_; }

    /// Makes the list empty for an element that the DTD declares so (null: not at all).
    void begin(const ElementDeclaration* declaration) {
        declaration_ = declaration;
        slots_.clear();
    }
    void add(const Name& name, const XML_Char* value, bool isSpecified) {
        slots_.push_back({&name, &words_.empty, &words_.empty, value, isSpecified});
    }
    std::vector<Slot>& slots() { return slots_; }
    void clear() {
        slots_.clear();
        ++element_;
        if (hasMuchToGiveBack_)
            giveBack();
    }

    unsigned int length() const noexcept override;
    void read(unsigned int index, Entry& entry) const noexcept override;
    Xml::Units type(unsigned int index) const noexcept override;
    const Xml::XmlString* string(unsigned int index, Field field) const override;
    bool isDeclared(unsigned int index) const override;
    bool isSpecified(unsigned int index) const override;

private:
    /// A string for the value at an index. It holds the value of the element with that number, or one that is over.
    struct Value {
        Xml::XmlString text;
        std::uint64_t element = 0;
    };

    const Xml::XmlString& value(unsigned int index) const;
    void makeValue(Xml::XmlString& text, const XML_Char* units) const;
    void giveBack();
    const Xml::XmlString* declaredType(const Slot& slot) const;
    const Xml::XmlString& listedType(const Slot& slot) const;

    const Vocabulary& words_;
    const std::unique_ptr<Xml::Sax::Attributes2> list_;
    const ElementDeclaration* declaration_ = nullptr;
    std::vector<Slot> slots_;
    std::uint64_t element_ = 1; ///< counts the elements
    mutable std::vector<Value> values_;
    mutable bool hasMuchToGiveBack_ = false; ///< of memory, that this element needs and the next may not
};

} // namespace Quillon::SaxEngine

#endif
