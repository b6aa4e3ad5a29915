#include "xml/sax/AttributesImpl.h"

#include "runtime/HostServices.h"
#include "system/OutOfMemoryException.h"
#include "xml/ArrayIndexOutOfBoundsException.h"
#include "xml/Utf16LiteralInternal.h"
#include "xml/sax/AttributesReadingInternal.h"

#include <limits>
#include <new>
#include <utility>

namespace Quillon::Xml::Sax {

namespace {

constexpr Utf16Literal kNoAttributeAtIndex(u"No attribute at index:");

constexpr unsigned int kUri = AttributesReading::Uri, kLocalName = AttributesReading::LocalName,
                       kQName = AttributesReading::QName, kType = AttributesReading::Type,
                       kValue = AttributesReading::Value, kFieldCount = AttributesReading::FieldCount;

constexpr std::uint64_t kFirstCapacity = 25;

const XmlString& nullString() {
    static const XmlString value = makeString(static_cast<const unsigned short*>(nullptr));
    return value;
}

/// The number of strings to make room for when `entryCount` entries are wanted and the capacity is `capacity`.
std::uint64_t capacityFor(std::uint64_t entryCount, std::uint32_t capacity) noexcept {
    std::uint64_t result = capacity != 0 ? capacity : kFirstCapacity;
    while (result < entryCount * kFieldCount)
        result *= 2;
    return result;
}

} // namespace

/// A block from the host with the strings that were made in it.
class AttributesImpl::Array {
public:
    Array() noexcept = default;
    explicit Array(std::uint64_t stringCount);
    Array(const Array&) = delete;
    Array& operator=(const Array&) = delete;
    ~Array();

    /// REQUIRES: room for one more. Copies of strings share and cannot fail.
    void append(const XmlString& string) noexcept { new (strings + count++) XmlString(string); }
    void appendNull() noexcept { new (strings + count++) XmlString(); }
    void appendEntry(const XmlString* entry) noexcept {
        for (unsigned int field = 0; field < kFieldCount; ++field)
            append(entry[field]);
    }

    XmlString* strings = nullptr;
    std::uint32_t count = 0;
    std::uint32_t room = 0;
};

AttributesImpl::Array::Array(std::uint64_t stringCount) {
    if (stringCount == 0)
        return;
    if (stringCount > std::numeric_limits<std::uint32_t>::max()
        || stringCount > std::numeric_limits<std::size_t>::max() / sizeof(XmlString))
        System::OutOfMemoryException::doThrow();
    void* block =
        Runtime::hostServices().allocateZeroed(static_cast<std::size_t>(stringCount), sizeof(XmlString));
    if (block == nullptr)
        System::OutOfMemoryException::doThrow();
    strings = static_cast<XmlString*>(block);
    room = static_cast<std::uint32_t>(stringCount);
}

AttributesImpl::Array::~Array() {
    for (std::uint32_t i = 0; i < count; ++i)
        strings[i].~XmlString();
    Runtime::release(strings);
}

AttributesImpl::AttributesImpl() noexcept = default;

// The delegation makes the list complete before it is filled, so that a failure in between destroys what is there.
AttributesImpl::AttributesImpl(const Attributes& attributes) : AttributesImpl() {
    setAttributes(attributes);
}

AttributesImpl::AttributesImpl(const AttributesImpl& other) : AttributesImpl() {
    setAttributes(other);
}

AttributesImpl& AttributesImpl::operator=(const AttributesImpl& other) {
    AttributesImpl copy(other);
    swap(copy);
    return *this;
}

AttributesImpl::~AttributesImpl() {
    clear();
}

void AttributesImpl::swap(AttributesImpl& other) noexcept {
    std::swap(capacity_, other.capacity_);
    std::swap(length_, other.length_);
    std::swap(data_, other.data_);
    std::swap(room_, other.room_);
}

/// Exchanges the list's array for `array`, which destroys the old one.
void AttributesImpl::adopt(Array& array) noexcept {
    const std::uint32_t oldCount = length_ * kFieldCount;
    length_ = array.count / kFieldCount;
    array.count = oldCount;
    std::swap(data_, array.strings);
    std::swap(room_, array.room);
}

XmlString& AttributesImpl::slot(unsigned int index, unsigned int field) const noexcept {
    return data_[std::size_t{index} * kFieldCount + field];
}

XmlString& AttributesImpl::checkedSlot(unsigned int index, unsigned int field) const {
    if (index >= length_)
        badIndex(index);
    return slot(index, field);
}

XmlString AttributesImpl::read(unsigned int index, unsigned int field) const {
    return index < length_ ? slot(index, field) : nullString();
}

/// As read(), for what getIndex() returned: -1 is beyond every end.
XmlString AttributesImpl::readFound(int index, unsigned int field) const {
    return read(static_cast<unsigned int>(index), field);
}

unsigned int AttributesImpl::getLength() const {
    return length_;
}

XmlString AttributesImpl::getURI(unsigned int index) const {
    return read(index, kUri);
}

XmlString AttributesImpl::getLocalName(unsigned int index) const {
    return read(index, kLocalName);
}

XmlString AttributesImpl::getQName(unsigned int index) const {
    return read(index, kQName);
}

XmlString AttributesImpl::getType(unsigned int index) const {
    return read(index, kType);
}

XmlString AttributesImpl::getValue(unsigned int index) const {
    return read(index, kValue);
}

int AttributesImpl::getIndex(const XmlString& uri, const XmlString& localName) const {
    for (std::uint32_t i = 0; i < length_; ++i) {
        if (slot(i, kUri).compare(uri) == 0 && slot(i, kLocalName).compare(localName) == 0)
            return static_cast<int>(i);
    }
    return -1;
}

int AttributesImpl::getIndex(const XmlString& qName) const {
    for (std::uint32_t i = 0; i < length_; ++i) {
        if (slot(i, kQName).compare(qName) == 0)
            return static_cast<int>(i);
    }
    return -1;
}

XmlString AttributesImpl::getType(const XmlString& uri, const XmlString& localName) const {
    return readFound(getIndex(uri, localName), kType);
}

XmlString AttributesImpl::getType(const XmlString& qName) const {
    return readFound(getIndex(qName), kType);
}

XmlString AttributesImpl::getValue(const XmlString& uri, const XmlString& localName) const {
    return readFound(getIndex(uri, localName), kValue);
}

XmlString AttributesImpl::getValue(const XmlString& qName) const {
    return readFound(getIndex(qName), kValue);
}

void AttributesImpl::setURI(unsigned int index, const XmlString& uri) {
    checkedSlot(index, kUri) = uri;
}

void AttributesImpl::setLocalName(unsigned int index, const XmlString& localName) {
    checkedSlot(index, kLocalName) = localName;
}

void AttributesImpl::setQName(unsigned int index, const XmlString& qName) {
    checkedSlot(index, kQName) = qName;
}

void AttributesImpl::setType(unsigned int index, const XmlString& type) {
    checkedSlot(index, kType) = type;
}

void AttributesImpl::setValue(unsigned int index, const XmlString& value) {
    checkedSlot(index, kValue) = value;
}

void AttributesImpl::setAttribute(unsigned int index, const XmlString& uri, const XmlString& localName,
                                  const XmlString& qName, const XmlString& type, const XmlString& value) {
    setURI(index, uri);
    setLocalName(index, localName);
    setQName(index, qName);
    setType(index, type);
    setValue(index, value);
}

void AttributesImpl::addAttribute(const XmlString& uri, const XmlString& localName, const XmlString& qName,
                                  const XmlString& type, const XmlString& value) {
    ensureCapacity(std::uint64_t{length_} + 1);
    const XmlString* const fields[kFieldCount] = {&uri, &localName, &qName, &type, &value};
    for (unsigned int field = 0; field < kFieldCount; ++field)
        new (&slot(length_, field)) XmlString(*fields[field]);
    ++length_;
}

/// Makes the array large enough for `entryCount` entries. The capacity is not to be trusted alone: a removal leaves
/// it larger than the array.
void AttributesImpl::ensureCapacity(std::uint64_t entryCount) {
    if (entryCount * kFieldCount <= room_)
        return;
    const std::uint64_t capacity = capacityFor(entryCount, capacity_);
    Array grown(capacity);
    for (std::uint32_t i = 0; i < length_; ++i)
        grown.appendEntry(&slot(i, kUri));
    adopt(grown);
    capacity_ = static_cast<std::uint32_t>(capacity);
}

void AttributesImpl::removeAttribute(unsigned int index) {
    if (index >= length_)
        badIndex(index);
    const std::uint32_t newLength = length_ - 1;
    Array shrunk(std::uint64_t{newLength} * kFieldCount);
    for (std::uint32_t i = 0; i < newLength; ++i) {
        if (i != index)
            shrunk.appendEntry(&slot(i, kUri));
        else
            for (unsigned int field = 0; field < kFieldCount; ++field)
                shrunk.appendNull();
    }
    adopt(shrunk);
}

void AttributesImpl::clear() noexcept {
    Array none;
    adopt(none);
    capacity_ = 0;
}

void AttributesImpl::setAttributes(const Attributes& attributes) {
    clear();
    const unsigned int entryCount = attributes.getLength();
    if (entryCount == 0)
        return;
    const std::uint64_t capacity = capacityFor(entryCount, 0);
    Array filled(capacity);
    for (unsigned int i = 0; i < entryCount; ++i) {
        filled.append(attributes.getURI(i));
        filled.append(attributes.getLocalName(i));
        filled.append(attributes.getQName(i));
        filled.append(attributes.getType(i));
        filled.append(attributes.getValue(i));
    }
    adopt(filled);
    capacity_ = static_cast<std::uint32_t>(capacity);
}

void AttributesImpl::badIndex(unsigned int index) {
    ArrayIndexOutOfBoundsException::doThrow(XmlString(Immutable | Borrowed, kNoAttributeAtIndex.units),
                                            index);
}

} // namespace Quillon::Xml::Sax
