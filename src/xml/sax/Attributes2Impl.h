#ifndef ZUTARNEX_XML_SAX_ATTRIBUTES2IMPL_H
#define ZUTARNEX_XML_SAX_ATTRIBUTES2IMPL_H

#include "xml/sax/Attributes2.h"
#include "xml/sax/AttributesImpl.h"

#include <cstdint>

namespace Quillon::Xml::Sax {

/// An editable list of attributes with their "declared" and "specified" flags.
///
/// Editing goes through this class: an entry that was added through an AttributesImpl& has no flags of its own and
/// reads as declared and specified.
///
/// Layout:    AttributesImpl, Attributes2; declared, specified (one byte per attribute), flagCount and flagCapacity
///            (32 bits each) (tests/abi/SaxAbiTest.cpp).
/// Ownership: the flag arrays come from the host's allocator and belong to the list.
/// Threads:   one list is used by one thread at a time.
/// Throws:    System::OutOfMemoryException: an addition or removal then leaves the entries as they were.
///            ArrayIndexOutOfBoundsException, "no attribute at index", from the flag operations and removeAttribute;
///            IllegalArgumentException from the flag queries by name.
class ZUTARNEX_API Attributes2Impl : public AttributesImpl, public Attributes2 {
public:
    Attributes2Impl() noexcept;
    Attributes2Impl(const Attributes& attributes);            ///< as setAttributes
    Attributes2Impl(const Attributes2Impl& other);            ///< as setAttributes
    Attributes2Impl& operator=(const Attributes2Impl& other); ///< a failure leaves the old list
    ~Attributes2Impl() override;

    bool isDeclared(unsigned int index) const override;
    bool isDeclared(const XmlString& qName) const override;
    bool isDeclared(const XmlString& uri, const XmlString& localName) const override;
    bool isSpecified(unsigned int index) const override;
    bool isSpecified(const XmlString& qName) const override;
    bool isSpecified(const XmlString& uri, const XmlString& localName) const override;

    void setDeclared(unsigned int index, bool declared);
    void setSpecified(unsigned int index, bool specified);

    /// Appends an entry that is specified, and declared unless its type is `CDATA`.
    ///
    /// Deliberate: when the flag arrays grow, only the flags of the first flagCount entries are carried over, and
    /// flagCount is the size that the arrays had one growth earlier; the others become true
    /// (tests/xml/sax/Attributes2ImplTest.cpp, GrowthForgetsFlagsBeyondTheCarriedOnes).
    void addAttribute(const XmlString& uri, const XmlString& localName, const XmlString& qName,
                      const XmlString& type, const XmlString& value);

    /// As AttributesImpl::removeAttribute for the entry.
    ///
    /// Deliberate: the flags, unlike the entries, do move down (tests/xml/sax/Attributes2ImplTest.cpp,
    /// RemovalMovesTheFlagsDown).
    void removeAttribute(unsigned int index);

    /// As AttributesImpl::setAttributes, with the flags of an Attributes2; entries of any other list are specified,
    /// and declared unless their type is `CDATA`. A list that is set to itself ends empty.
    void setAttributes(const Attributes& attributes);

protected:
    [[noreturn]] static void badIndex(unsigned int index);

private:
    class FlagArrays;

    bool flag(const std::uint8_t* flags, unsigned int index) const;
    bool flagByName(const std::uint8_t* flags, int index, const unsigned short* whatIsMissing) const;
    void setFlag(std::uint8_t*& flags, unsigned int index, bool value);
    void adopt(FlagArrays& arrays) noexcept;
    void copyFlags(const Attributes2& source, unsigned int count);
    void deriveFlags(const Attributes& attributes, unsigned int count);

    std::uint8_t* declared_ = nullptr;
    std::uint8_t* specified_ = nullptr;
    std::uint32_t flagCount_ = 0;    ///< flags that the next growth carries over
    std::uint32_t flagCapacity_ = 0; ///< size of each array
};

} // namespace Quillon::Xml::Sax

#endif
