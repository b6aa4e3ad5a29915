#ifndef ZUTARNEX_XML_SAX_ATTRIBUTESOURCEINTERNAL_H
#define ZUTARNEX_XML_SAX_ATTRIBUTESOURCEINTERNAL_H

#include "xml/XmlStringInternal.h"
#include "xml/sax/Attributes2.h"
#include "zutarnex/export.h"

#include <memory>

namespace Quillon::Xml::Sax {

/// The attributes of a start tag where they lie, for who only looks at them: without a string for each field. The units
/// are those that the strings of the list have, and last as long as the event.
///
/// REQUIRES: index < length().
class AttributeUnits {
public:
    struct Entry {
        Units uri, localName, qName, value;
    };

    virtual unsigned int length() const noexcept = 0;
    /// Into the place where it is wanted: a copy of what was just written would have to wait for that.
    virtual void read(unsigned int index, Entry& entry) const noexcept = 0;
    virtual Units type(unsigned int index) const noexcept = 0;

protected:
    ~AttributeUnits() = default;
};

/// What a reader knows of the attributes of the element that it reports. attributesFrom() makes the list of it that handlers
/// get; such a list runs nobody else's code.
class AttributeSource : public AttributeUnits {
public:
    enum class Field : unsigned char { Uri, LocalName, QName, Type, Value };

    /// Null when the index is no attribute's. The string stays as it is as long as the event lasts.
    ///
    /// Throws: System::OutOfMemoryException, when a value is made a string only now.
    virtual const XmlString* string(unsigned int index, Field field) const = 0;
    /// REQUIRES: index < length().
    virtual bool isDeclared(unsigned int index) const = 0;
    virtual bool isSpecified(unsigned int index) const = 0;

protected:
    ~AttributeSource() = default;
};

/// The list that says what `source` says at that time. It is of a class of the library, so that the library finds the
/// units behind it by a look at that class, whatever else is loaded and unloaded.
///
/// Ownership: `source` is not taken; it must stay alive as long as the list.
/// Throws:    std::bad_alloc.
ZUTARNEX_API std::unique_ptr<Attributes2> attributesFrom(const AttributeSource& source);

} // namespace Quillon::Xml::Sax

#endif
