#include "xml/sax/Attributes2Impl.h"

#include "runtime/HostServices.h"
#include "system/OutOfMemoryException.h"
#include "xml/ArrayIndexOutOfBoundsException.h"
#include "xml/IllegalArgumentException.h"
#include "xml/Utf16LiteralInternal.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace Quillon::Xml::Sax {

namespace {

// Deliberate: lower case and no colon, unlike that of AttributesImpl (tests/xml/sax/Attributes2ImplTest.cpp,
// IsRefusedInLowerCase).
constexpr Utf16Literal kNoAttributeAtIndex(u"no attribute at index");
constexpr Utf16Literal kQNameNotDeclared(u"qName is not in Attribute declared list");
constexpr Utf16Literal kQNameNotSpecified(u"qName is not in Attribute specified list");
constexpr Utf16Literal kNameNotDeclared(u"uri-localName is not in Attribute declared list");
constexpr Utf16Literal kNameNotSpecified(u"uri-localName is not in Attribute specified list");
constexpr Utf16Literal kCDATA(u"CDATA");

bool isDeclaredType(const XmlString& type) {
    return type.compare(XmlString(Immutable | Borrowed, kCDATA.units)) != 0;
}

/// Closes the gap that the entry `index` leaves in the first `count` flags.
void removeFlag(std::uint8_t* flags, std::uint32_t index, std::uint32_t count) noexcept {
    std::copy(flags + index + 1, flags + count, flags + index);
}

/// Empties a list whose filling is cut short by an exception.
class ClearUnlessDone {
public:
    explicit ClearUnlessDone(AttributesImpl& list) noexcept : list_(&list) {}
    ClearUnlessDone(const ClearUnlessDone&) = delete;
    ClearUnlessDone& operator=(const ClearUnlessDone&) = delete;
    ~ClearUnlessDone() {
        if (list_ != nullptr)
            list_->clear();
    }

    void done() noexcept { list_ = nullptr; }

private:
    AttributesImpl* list_;
};

} // namespace

/// The flag arrays for a list that grows; none when those of the list are large enough.
class Attributes2Impl::FlagArrays {
public:
    FlagArrays(const Attributes2Impl& list, unsigned int wanted);
    FlagArrays(const FlagArrays&) = delete;
    FlagArrays& operator=(const FlagArrays&) = delete;
    ~FlagArrays();

    std::uint8_t* declared = nullptr;
    std::uint8_t* specified = nullptr;
    std::uint32_t count;
    std::uint32_t capacity;
};

Attributes2Impl::FlagArrays::FlagArrays(const Attributes2Impl& list, unsigned int wanted)
    : count(list.flagCount_), capacity(list.flagCapacity_) {
    if (capacity >= wanted)
        return;
    declared = static_cast<std::uint8_t*>(Runtime::hostServices().allocate(wanted));
    specified =
        declared != nullptr ? static_cast<std::uint8_t*>(Runtime::hostServices().allocate(wanted)) : nullptr;
    if (specified == nullptr) {
        Runtime::release(declared);
        System::OutOfMemoryException::doThrow();
    }
    std::memset(declared, 1, wanted);
    std::memset(specified, 1, wanted);
    // Removals can take the count below 0, where it wraps: the old arrays are still all that there is to copy.
    const std::uint32_t carried = std::min(count, capacity);
    std::copy_n(list.declared_, carried, declared);
    std::copy_n(list.specified_, carried, specified);
    count = capacity;
    capacity = wanted;
}

Attributes2Impl::FlagArrays::~FlagArrays() {
    Runtime::release(declared);
    Runtime::release(specified);
}

Attributes2Impl::Attributes2Impl() noexcept = default;

Attributes2Impl::Attributes2Impl(const Attributes& attributes) : Attributes2Impl() {
    setAttributes(attributes);
}

Attributes2Impl::Attributes2Impl(const Attributes2Impl& other) : Attributes2Impl() {
    setAttributes(other);
}

Attributes2Impl& Attributes2Impl::operator=(const Attributes2Impl& other) {
    Attributes2Impl copy(other);
    AttributesImpl::swap(copy);
    std::swap(declared_, copy.declared_);
    std::swap(specified_, copy.specified_);
    std::swap(flagCount_, copy.flagCount_);
    std::swap(flagCapacity_, copy.flagCapacity_);
    return *this;
}

Attributes2Impl::~Attributes2Impl() {
    Runtime::release(declared_);
    Runtime::release(specified_);
}

/// Takes the grown arrays over; the old ones go with `arrays`.
void Attributes2Impl::adopt(FlagArrays& arrays) noexcept {
    if (arrays.declared == nullptr)
        return;
    std::swap(declared_, arrays.declared);
    std::swap(specified_, arrays.specified);
    flagCount_ = arrays.count;
    flagCapacity_ = arrays.capacity;
}

/// An entry that was added through the base has no flag yet: it reads as a new flag does.
bool Attributes2Impl::flag(const std::uint8_t* flags, unsigned int index) const {
    if (index >= getLength())
        badIndex(index);
    return index >= flagCapacity_ || flags[index] != 0;
}

bool Attributes2Impl::flagByName(const std::uint8_t* flags, int index,
                                 const unsigned short* whatIsMissing) const {
    if (index < 0)
        IllegalArgumentException::doThrow(XmlString(Immutable | Borrowed, whatIsMissing));
    return flag(flags, static_cast<unsigned int>(index));
}

/// `flags` is one of the two members, so that it names the new array after a growth.
void Attributes2Impl::setFlag(std::uint8_t*& flags, unsigned int index, bool value) {
    if (index >= getLength())
        badIndex(index);
    if (index >= flagCapacity_) {
        FlagArrays grown(*this, getLength());
        adopt(grown);
    }
    flags[index] = value ? 1 : 0;
}

bool Attributes2Impl::isDeclared(unsigned int index) const {
    return flag(declared_, index);
}

bool Attributes2Impl::isDeclared(const XmlString& qName) const {
    return flagByName(declared_, getIndex(qName), kQNameNotDeclared.units);
}

bool Attributes2Impl::isDeclared(const XmlString& uri, const XmlString& localName) const {
    return flagByName(declared_, getIndex(uri, localName), kNameNotDeclared.units);
}

bool Attributes2Impl::isSpecified(unsigned int index) const {
    return flag(specified_, index);
}

bool Attributes2Impl::isSpecified(const XmlString& qName) const {
    return flagByName(specified_, getIndex(qName), kQNameNotSpecified.units);
}

bool Attributes2Impl::isSpecified(const XmlString& uri, const XmlString& localName) const {
    return flagByName(specified_, getIndex(uri, localName), kNameNotSpecified.units);
}

void Attributes2Impl::setDeclared(unsigned int index, bool declared) {
    setFlag(declared_, index, declared);
}

void Attributes2Impl::setSpecified(unsigned int index, bool specified) {
    setFlag(specified_, index, specified);
}

void Attributes2Impl::addAttribute(const XmlString& uri, const XmlString& localName, const XmlString& qName,
                                   const XmlString& type, const XmlString& value) {
    FlagArrays grown(*this,
                     getLength() + 1); // first, so that a failure leaves entries and flags as they were
    AttributesImpl::addAttribute(uri, localName, qName, type, value);
    adopt(grown);
    const unsigned int last = getLength() - 1;
    specified_[last] = 1;
    declared_[last] = isDeclaredType(type) ? 1 : 0;
}

void Attributes2Impl::setAttributes(const Attributes& attributes) {
    const unsigned int announced = attributes.getLength();
    AttributesImpl::setAttributes(attributes);
    const unsigned int count = std::min(announced, getLength()); // 0 when `attributes` is this list
    ClearUnlessDone failure(*this);
    FlagArrays grown(*this, announced);
    adopt(grown);
    if (const auto* flagged = dynamic_cast<const Attributes2*>(&attributes))
        copyFlags(*flagged, count);
    else
        deriveFlags(attributes, count);
    failure.done();
}

void Attributes2Impl::copyFlags(const Attributes2& source, unsigned int count) {
    for (unsigned int i = 0; i < count; ++i) {
        declared_[i] = source.isDeclared(i) ? 1 : 0;
        specified_[i] = source.isSpecified(i) ? 1 : 0;
    }
}

void Attributes2Impl::deriveFlags(const Attributes& attributes, unsigned int count) {
    for (unsigned int i = 0; i < count; ++i) {
        declared_[i] = isDeclaredType(attributes.getType(i)) ? 1 : 0;
        specified_[i] = 1;
    }
}

void Attributes2Impl::removeAttribute(unsigned int index) {
    if (index >= getLength())
        badIndex(index);
    const std::uint32_t flagged = std::min(getLength(), flagCapacity_);
    AttributesImpl::removeAttribute(index);
    if (index + 1 < flagged) {
        removeFlag(declared_, index, flagged);
        removeFlag(specified_, index, flagged);
    }
    --flagCount_;
}

void Attributes2Impl::badIndex(unsigned int index) {
    ArrayIndexOutOfBoundsException::doThrow(XmlString(Immutable | Borrowed, kNoAttributeAtIndex.units),
                                            index);
}

} // namespace Quillon::Xml::Sax
