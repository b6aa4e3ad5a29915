#ifndef ZUTARNEX_XML_SAX_ATTRIBUTESIMPL_H
#define ZUTARNEX_XML_SAX_ATTRIBUTESIMPL_H

#include "xml/sax/Attributes.h"

#include <cstdint>

namespace Quillon::Xml::Sax {

/// An editable list of attributes.
///
///     data -> | uri 0 | localName 0 | qName 0 | type 0 | value 0 | uri 1 | ...        | zeroed room ... |
///             '--------------------- 5 * length strings --------------------'
///
/// Layout:    the virtual base Attributes; capacity and length (32 bits each; the capacity counts strings), data, and
///            one more word, the strings that the array has really room for (tests/abi/SaxAbiTest.cpp).
/// Ownership: the array comes from the host's allocator and belongs to the list; its strings share their blocks with
///            those that were passed in.
/// Threads:   one list is used by one thread at a time.
/// Throws:    System::OutOfMemoryException when the array cannot grow: additions and removals then leave the list as
///            it was. ArrayIndexOutOfBoundsException, "No attribute at index:", from what changes or removes an entry.
///            ImmutableObjectWriteError when an entry that was given a literal is set a second time.
/// Cost:      room for 5 attributes at first, then doubled; looking up a name is a scan.
class ZUTARNEX_API AttributesImpl : public virtual Attributes {
public:
    AttributesImpl() noexcept;
    AttributesImpl(const Attributes& attributes); ///< as setAttributes
    AttributesImpl(const AttributesImpl& other);
    AttributesImpl& operator=(const AttributesImpl& other); ///< a failure leaves the old list
    ~AttributesImpl() override;

    unsigned int getLength() const override;

    /// Deliberate: unlike the setters, these never throw (tests/xml/sax/AttributesImplTest.cpp,
    /// ReadingBeyondTheEndGivesNull).
    XmlString getURI(unsigned int index) const override;
    XmlString getLocalName(unsigned int index) const override;
    XmlString getQName(unsigned int index) const override;
    XmlString getType(unsigned int index) const override;
    XmlString getValue(unsigned int index) const override;

    int getIndex(const XmlString& uri, const XmlString& localName) const override;
    int getIndex(const XmlString& qName) const override;
    XmlString getType(const XmlString& uri, const XmlString& localName) const override;
    XmlString getType(const XmlString& qName) const override;
    XmlString getValue(const XmlString& uri, const XmlString& localName) const override;
    XmlString getValue(const XmlString& qName) const override;

    /// Assignments to the strings of an entry, with all that XmlString says of assignment.
    void setURI(unsigned int index, const XmlString& uri);
    void setLocalName(unsigned int index, const XmlString& localName);
    void setQName(unsigned int index, const XmlString& qName);
    void setType(unsigned int index, const XmlString& type);
    void setValue(unsigned int index, const XmlString& value);
    /// All five in this order; when one of them throws, those before it have been assigned.
    void setAttribute(unsigned int index, const XmlString& uri, const XmlString& localName,
                      const XmlString& qName, const XmlString& type, const XmlString& value);

    /// Appends an entry; the type is stored unchanged, an empty one too.
    void addAttribute(const XmlString& uri, const XmlString& localName, const XmlString& qName,
                      const XmlString& type, const XmlString& value);

    /// Makes the list one shorter.
    ///
    /// Deliberate: no entry moves. Entry `index` becomes all null and the last one is dropped, unless `index` is the
    /// last (tests/xml/sax/AttributesImplTest.cpp, RemovingInFrontLeavesNullsAndDropsTheLast).
    void removeAttribute(unsigned int index);

    /// Empties the list and frees its array.
    void clear() noexcept;

    /// Empties the list, then copies `attributes`, entry by entry. When that throws, the list stays empty.
    ///
    /// Deliberate: setting a list to itself empties it (tests/xml/sax/AttributesImplTest.cpp,
    /// SettingAListToItselfEmptiesIt).
    void setAttributes(const Attributes& attributes);

protected:
    [[noreturn]] static void badIndex(unsigned int index);
    void swap(AttributesImpl& other) noexcept;

private:
    friend class AttributesReading;
    class Array;

    XmlString& slot(unsigned int index, unsigned int field) const noexcept;
    XmlString& checkedSlot(unsigned int index, unsigned int field) const;
    XmlString read(unsigned int index, unsigned int field) const;
    XmlString readFound(int index, unsigned int field) const;
    void ensureCapacity(std::uint64_t entryCount);
    void adopt(Array& array) noexcept;

    std::uint32_t capacity_ = 0;
    std::uint32_t length_ = 0;
    XmlString* data_ = nullptr;
    std::uint32_t room_ = 0; ///< strings that fit into *data_: after a removal, less than capacity_
};

} // namespace Quillon::Xml::Sax

#endif
