#include "xml/XmlString.h"

#include "runtime/CStringInternal.h"
#include "runtime/HostArrayInternal.h"
#include "runtime/HostServices.h"
#include "runtime/Transcoding.h"
#include "system/OutOfMemoryException.h"
#include "xml/ImmutableObjectWriteError.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <limits>
#include <new>
#include <sys/single_threaded.h>

namespace Quillon::Xml {

namespace {

constexpr std::uint32_t kHashSeed = 97169;
constexpr std::uint32_t kHashFactor = 17;
constexpr std::uint32_t kHashFinalFactor = 9987001;

using HostUtf16 = Runtime::HostArray<unsigned short>;

/// The count stands in the four bytes before the units.
std::atomic_ref<std::uint32_t> countOf(unsigned short* units) noexcept {
    return std::atomic_ref(*(reinterpret_cast<std::uint32_t*>(units) - 1));
}

/// Adds to the count and returns what it was. As long as the process has one thread, nobody else can be at it: that
/// saves most of what copying a string costs.
std::uint32_t addToCount(unsigned short* units, std::uint32_t number, std::memory_order order) noexcept {
    const std::atomic_ref count = countOf(units);
    if (__libc_single_threaded == 0)
        return count.fetch_add(number, order);
    const std::uint32_t old = count.load(std::memory_order_relaxed);
    count.store(old + number, std::memory_order_relaxed);
    return old;
}

/// The units of a new block for `unitCount` of them: all zero, the count still 0. Room for the count and for a
/// terminating zero unit is added, then the whole is rounded up to elements of four bytes.
unsigned short* newUnits(std::uint64_t unitCount) {
    constexpr std::uint64_t elementSize = sizeof(std::uint32_t);
    const std::uint64_t elements = (((unitCount + 2) | 1) + 1) / 2;
    if (elements > std::numeric_limits<std::uint32_t>::max() / elementSize)
        System::OutOfMemoryException::doThrow();
    void* block = Runtime::hostServices().allocateZeroed(static_cast<std::size_t>(elements), elementSize);
    if (block == nullptr)
        System::OutOfMemoryException::doThrow();
    return reinterpret_cast<unsigned short*>(static_cast<std::uint32_t*>(block) + 1);
}

void releaseUnits(unsigned short* units) noexcept {
    Runtime::release(reinterpret_cast<std::uint32_t*>(units) - 1);
}

/// How many of the first `unitCount` units stand before a zero unit.
std::size_t unitsBeforeZero(const unsigned short* units, std::size_t unitCount) noexcept {
    return static_cast<std::size_t>(std::find(units, units + unitCount, 0) - units);
}

/// Copies at most `unitCount` units and stops at a zero unit. The two ranges may overlap. Returns how many stand
/// before the zero unit.
std::size_t copyUnits(unsigned short* target, const unsigned short* source, std::size_t unitCount) noexcept {
    const std::size_t length = unitsBeforeZero(source, unitCount);
    if (length != 0)
        std::memmove(target, source, length * sizeof(unsigned short));
    return length;
}

std::uint32_t sizeOf(const unsigned short* terminated) {
    const std::uint64_t unitCount = Runtime::unitCountOf(terminated);
    if (unitCount > std::numeric_limits<std::uint32_t>::max())
        System::OutOfMemoryException::doThrow();
    return static_cast<std::uint32_t>(unitCount);
}

/// An owned string from a converter's result; no result means that there was no memory.
XmlString ownedCopyOf(const HostUtf16& converted) {
    if (!converted)
        System::OutOfMemoryException::doThrow();
    return XmlString(0, converted.get());
}

} // namespace

XmlString::XmlString() noexcept : data_(nullptr), capacity_(0), size_(0), flags_(Null | Valid) {}

XmlString::XmlString(unsigned char flags, const unsigned short* s) : XmlString() {
    create(flags, s, sizeOf(s));
}

XmlString::XmlString(unsigned char flags, const unsigned short* s, unsigned int n) : XmlString() {
    create(flags, s, n);
}

XmlString::XmlString(const XmlString& other) : data_(nullptr), capacity_(0), size_(0), flags_(Null) {
    if (!(other.flags_ & Valid))
        return;
    if (!(other.flags_ & (Borrowed | Null)))
        addToCount(other.data_, 1, std::memory_order_relaxed);
    data_ = other.data_;
    capacity_ = other.capacity_;
    size_ = other.size_;
    flags_ = other.flags_;
}

XmlString::~XmlString() {
    dissociate();
}

void XmlString::create(unsigned char flags, const unsigned short* s, unsigned int n) {
    flags_ &= ~Valid;
    const bool owns = s != nullptr && (flags & Borrowed) == 0;
    unsigned short* units = const_cast<unsigned short*>(s);
    if (owns) {
        units = newUnits(n);
        copyUnits(units, s, n);
        countOf(units).store(1, std::memory_order_relaxed);
    }
    dissociate(); // only now: `s` may lie inside the block
    data_ = units;
    capacity_ = size_ = s != nullptr ? n : 0;
    flags_ = static_cast<std::uint8_t>((flags & (Immutable | Borrowed)) | Valid | (s == nullptr ? Null : 0));
}

XmlString XmlString::create(unsigned char flags, XmlString& src) {
    return XmlString(flags, src.getPtr());
}

XmlString& XmlString::copy(const XmlString& other) {
    if (this == &other)
        return *this;
    if (flags_ & Immutable)
        ImmutableObjectWriteError::doThrow();
    if (!(other.flags_ & Valid)) {
        flags_ &= ~Valid;
        return *this;
    }
    const bool inPlace = (flags_ & Borrowed) && !isNull() && !other.isNull() && capacity_ >= other.size_;
    if (inPlace)
        copyIntoBuffer(other);
    else
        share(other);
    return *this;
}

/// Writes `other`'s units into this string's own, borrowed buffer.
void XmlString::copyIntoBuffer(const XmlString& other) noexcept {
    size_ = static_cast<std::uint32_t>(copyUnits(data_, other.data_, other.size_));
    std::fill(data_ + size_, data_ + capacity_, static_cast<unsigned short>(0));
}

/// Takes over `other`'s four fields, and one more hold on its block when it owns one.
void XmlString::share(const XmlString& other) noexcept {
    if (!(other.flags_ & (Borrowed | Null)))
        addToCount(other.data_, 1, std::memory_order_relaxed);
    dissociate();
    data_ = other.data_;
    capacity_ = other.capacity_;
    size_ = other.size_;
    flags_ = other.flags_;
}

XmlString& XmlString::operator=(const XmlString& other) {
    return copy(other);
}

XmlString& XmlString::operator+=(const XmlString& other) {
    if (flags_ & Immutable)
        ImmutableObjectWriteError::doThrow();
    flags_ &= ~Valid; // also of `other`, when a string is appended to itself
    if (!(other.flags_ & Valid))
        return *this;
    if (other.isNull()) {
        flags_ |= Valid;
        return *this;
    }
    if (other.size_ != 0)
        append(other.data_, other.size_);
    return *this;
}

/// Replaces the storage by a new block of this string's units and `n` more.
void XmlString::append(const unsigned short* s, std::uint32_t n) {
    const std::uint32_t oldSize = isNull() ? 0 : size_;
    const std::uint64_t newSize = std::uint64_t{oldSize} + n;
    unsigned short* units = newUnits(newSize + 1);
    if (oldSize != 0)
        copyUnits(units, data_, oldSize);
    copyUnits(units + oldSize, s, n);
    countOf(units).store(1, std::memory_order_relaxed);
    dissociate(); // only now: `s` may lie inside the old block
    data_ = units;
    capacity_ = static_cast<std::uint32_t>(newSize + 1);
    size_ = static_cast<std::uint32_t>(newSize);
    flags_ = Valid;
}

void XmlString::dissociate() {
    if (flags_ & (Borrowed | Null))
        return;
    if (decRefs() == 0)
        releaseUnits(data_);
    data_ = nullptr;
    flags_ = static_cast<std::uint8_t>((flags_ | Null) & ~Valid);
}

const unsigned short* XmlString::data() const noexcept {
    return isNull() ? nullptr : data_;
}

const unsigned short* XmlString::getPtr() const noexcept {
    return data_;
}

unsigned int XmlString::size() const noexcept {
    return size_;
}

unsigned int XmlString::capacity() const noexcept {
    return capacity_;
}

bool XmlString::isNull() const noexcept {
    return (flags_ & Null) != 0;
}

int XmlString::compare(const XmlString& other) const noexcept {
    const unsigned short* left = data();
    const unsigned short* right = other.data();
    if (left == right)
        return 0;
    if (left == nullptr)
        return -1;
    if (right == nullptr)
        return 1;
    const std::uint32_t common = std::min(size_, other.size_);
    for (std::uint32_t i = 0; i < common; ++i) {
        if (left[i] != right[i])
            return int{left[i]} - int{right[i]};
    }
    return static_cast<int>(size_ - other.size_);
}

unsigned int XmlString::hash() const noexcept {
    std::uint32_t value = kHashSeed;
    if (data_ != nullptr) {
        for (const unsigned short* unit = data_; *unit != 0; ++unit)
            value = (value ^ *unit) * kHashFactor;
    }
    return value * kHashFinalFactor;
}

unsigned int XmlString::incRefs() noexcept {
    return addToCount(data_, 1, std::memory_order_relaxed) + 1;
}

// Whoever takes the last hold away must see what all others did to the block before.
unsigned int XmlString::decRefs() noexcept {
    constexpr std::uint32_t kMinusOne = 0xFFFFFFFF;
    return addToCount(data_, kMinusOne, std::memory_order_acq_rel) - 1;
}

unsigned int XmlString::getRefs() const noexcept {
    return countOf(data_).load(std::memory_order_acquire);
}

void* XmlString::operator new(std::size_t bytes) {
    return ::operator new(bytes);
}
void* XmlString::operator new[](std::size_t bytes) {
    return ::operator new[](bytes);
}
void* XmlString::operator new(std::size_t, void* place) noexcept {
    return place;
}
void* XmlString::operator new[](std::size_t, void* place) noexcept {
    return place;
}
void XmlString::operator delete(void* block) noexcept {
    ::operator delete(block);
}
void XmlString::operator delete[](void* block) noexcept {
    ::operator delete[](block);
}
void XmlString::operator delete(void*, void*) noexcept {}
void XmlString::operator delete[](void*, void*) noexcept {}
void* XmlString::operator new(std::size_t bytes, const std::nothrow_t& tag) noexcept {
    return ::operator new(bytes, tag);
}
void* XmlString::operator new[](std::size_t bytes, const std::nothrow_t& tag) noexcept {
    return ::operator new[](bytes, tag);
}
void XmlString::operator delete(void* block, const std::nothrow_t& tag) noexcept {
    ::operator delete(block, tag);
}
void XmlString::operator delete[](void* block, const std::nothrow_t& tag) noexcept {
    ::operator delete[](block, tag);
}

XmlString makeString(const unsigned short* s) {
    return XmlString(0, s);
}

XmlString makeString(unsigned char flags, const unsigned short* s) {
    return XmlString(flags, s);
}

XmlString makeString(const unsigned char* utf8) {
    if (utf8 == nullptr)
        return XmlString();
    return ownedCopyOf(HostUtf16(Runtime::utf8ToUtf16(reinterpret_cast<const char*>(utf8), -1)));
}

XmlString makeString(const char* native) {
    if (native == nullptr)
        return XmlString();
    return ownedCopyOf(HostUtf16(Runtime::hostServices().localToUtf16(native)));
}

XmlString makeString(unsigned char flags, XmlString& s) {
    return XmlString::create(flags, s);
}

XmlString makeString(XmlString& s) {
    return makeString(0, s);
}

} // namespace Quillon::Xml
