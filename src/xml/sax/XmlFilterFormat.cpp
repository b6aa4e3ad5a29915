#include "xml/sax/XmlFilterFormat.h"

#include "runtime/HostServices.h"
#include "system/OutOfMemoryException.h"
#include "system/OutOfRangeException.h"
#include "xml/PowersOfTwo.h"

#include <algorithm>
#include <limits>

namespace Quillon::Xml::Sax {

namespace {

constexpr unsigned short kNewline = u'\n';
constexpr unsigned short kTab = u'\t';
constexpr unsigned short kSpace = u' ';

constexpr std::uint64_t kMostUnits = std::uint64_t{1} << 31; ///< what PowersOfTwo can round up
constexpr unsigned int kDepthAtStart = 2;

unsigned short* newUnits(std::uint32_t unitCount) {
    const std::uint64_t byteCount = std::uint64_t{unitCount} * sizeof(unsigned short);
    if (byteCount > std::numeric_limits<std::size_t>::max())
        System::OutOfMemoryException::doThrow();
    void* block = Runtime::hostServices().allocate(static_cast<std::size_t>(byteCount));
    if (block == nullptr)
        System::OutOfMemoryException::doThrow();
    return static_cast<unsigned short*>(block);
}

} // namespace

XmlFilterFormat::XmlFilterFormat(XmlReader* parent, AlignmentStyle alignment, TabMode tabMode,
                                 unsigned int indentWidth)
    : alignment_(alignment), tabMode_(tabMode), indentWidth_(indentWidth) {
    XmlFilterImpl::setParent(parent);
    validateWsBufSize(kDepthAtStart);
}

XmlFilterFormat::~XmlFilterFormat() {
    Runtime::release(wsBuf_);
}

void XmlFilterFormat::startElement(const XmlString& uri, const XmlString& localName, const XmlString& qName,
                                   const Attributes& attributes) {
    if (alignment_ != AlignNone)
        doIndent();
    XmlFilterImpl::startElement(uri, localName, qName, attributes);
    ++depth_;
}

void XmlFilterFormat::endElement(const XmlString& uri, const XmlString& localName, const XmlString& qName) {
    --depth_;
    if (alignment_ != AlignNone)
        doIndent();
    XmlFilterImpl::endElement(uri, localName, qName);
}

/// The newline and the indentation of `depth`.
std::uint64_t XmlFilterFormat::unitsForDepth(std::uint32_t depth) const noexcept {
    const std::uint64_t perLevel = tabMode_ != TabTabs ? indentWidth_ : 1;
    return depth * perLevel + 1;
}

void XmlFilterFormat::validateWsBufSize(unsigned int depth) {
    const std::uint64_t needed = unitsForDepth(std::max<std::uint32_t>(depth_, depth));
    if (needed <= wsBufSize_)
        return;
    if (needed > kMostUnits)
        System::OutOfRangeException::doThrow();
    const std::uint32_t newSize = PowersOfTwo().roundUp(static_cast<unsigned int>(needed));
    unsigned short* newBuf = newUnits(newSize);
    newBuf[0] = kNewline;
    std::fill(newBuf + 1, newBuf + newSize, tabMode_ != TabTabs ? kSpace : kTab);
    Runtime::release(wsBuf_);
    wsBuf_ = newBuf;
    wsBufSize_ = newSize;
}

void XmlFilterFormat::doIndent() {
    if (alignment_ == AlignIndent) {
        validateWsBufSize(depth_);
        XmlFilterImpl::characters(wsBuf_, 0, static_cast<unsigned int>(unitsForDepth(depth_)));
    } else if (alignment_ == AlignNewline) {
        XmlFilterImpl::characters(wsBuf_, 0, 1);
    }
}

} // namespace Quillon::Xml::Sax
