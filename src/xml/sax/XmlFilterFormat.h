#ifndef ZUTARNEX_XML_SAX_XMLFILTERFORMAT_H
#define ZUTARNEX_XML_SAX_XMLFILTERFORMAT_H

#include "xml/sax/XmlFilterImpl.h"

#include <cstdint>

namespace Quillon::Xml::Sax {

/// Puts each tag on a line of its own, indented by its depth, by `characters` events before start and end tags.
///
/// Deliberate: every tag is treated alike, also the root's, and the end tag of an element that holds only text; white
/// space of the document stays (tests/xml/sax/XmlFilterFormatTest.cpp, EveryTagIsTreatedAlike).
///
///     wsBuf -> | newline | tab or space | tab or space | ...  what is injected is always a prefix of it
///
/// Layout:    XmlFilterImpl; alignment, tabMode, indentWidth, wsBuf, wsBufSize, depth (tests/abi/SaxAbiTest.cpp).
/// Ownership: the buffer comes from the host's allocator; it grows by powers of two and never shrinks.
/// Throws:    System::OutOfRangeException for an indentation of more than 2^31 units, the depth of an end tag
///            without a start tag included; System::OutOfMemoryException with the old buffer kept; otherwise as
///            XmlFilterImpl.
class ZUTARNEX_API XmlFilterFormat : public XmlFilterImpl {
public:
    enum AlignmentStyle : int {
        AlignNone = 0,    ///< nothing is injected
        AlignNewline = 1, ///< a line feed
        AlignIndent = 2   ///< a line feed and the indentation of the depth
    };
    enum TabMode : int {
        TabTabs = 0,  ///< one tab per level; the width does not count
        TabSpaces = 1 ///< `indentWidth` spaces per level, as with every other value but 0
    };

    XmlFilterFormat(XmlReader* parent, AlignmentStyle alignment, TabMode tabMode, unsigned int indentWidth);
    XmlFilterFormat(const XmlFilterFormat&) = delete;
    XmlFilterFormat& operator=(const XmlFilterFormat&) = delete;
    ~XmlFilterFormat() override;

    /// The depth grows only when the handler returned normally. It is kept over documents.
    void startElement(const XmlString& uri, const XmlString& localName, const XmlString& qName,
                      const Attributes& attributes) override;
    void endElement(const XmlString& uri, const XmlString& localName, const XmlString& qName) override;

protected:
    /// Makes the buffer large enough for the indentation of the depth, and of `depth` if that is more.
    void validateWsBufSize(unsigned int depth);
    void doIndent();

private:
    std::uint64_t unitsForDepth(std::uint32_t depth) const noexcept;

    AlignmentStyle alignment_;
    TabMode tabMode_;
    std::uint32_t indentWidth_;
    unsigned short* wsBuf_ = nullptr;
    std::uint32_t wsBufSize_ = 0;
    std::uint32_t depth_ = 0;
};

} // namespace Quillon::Xml::Sax

#endif
