#include "xml/XmlStringPool.h"

#include "runtime/HashFrontInternal.h"
#include "system/OutOfMemoryException.h"
#include "system/OutOfRangeException.h"
#include "xml/XmlStringInternal.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <map>
#include <memory>

namespace Quillon::Xml {

namespace {

constexpr std::uint32_t kFirstCapacity = 3;

/// The hash of a string that only the index knows.
constexpr std::uint32_t kNoHash = 0;

std::uint32_t hashOf(const XmlString& string) noexcept {
    return Runtime::frontHashOf(string.data(), std::size_t{string.size()} * sizeof(unsigned short));
}

/// Null strings, and those that hold a zero unit, are not for the front: see Impl::front.
std::uint32_t hashForFront(const XmlString& string) noexcept {
    const unsigned short* const units = string.data();
    const bool isPlain =
        units != nullptr && std::find(units, units + string.size(), 0) == units + string.size();
    return isPlain ? hashOf(string) : kNoHash;
}

bool haveSameUnits(const XmlString& left, const XmlString& right) noexcept {
    return left.size() == right.size()
           && std::memcmp(left.data(), right.data(), std::size_t{left.size()} * sizeof(unsigned short)) == 0;
}

struct Entry {
    Entry(const XmlString& string, std::uint32_t number)
        : value(string), id(number), hash(hashForFront(value)) {}

    XmlString value;
    std::uint32_t id;
    std::uint32_t hash;
};

struct ComparesBelow {
    bool operator()(const XmlString& left, const XmlString& right) const noexcept {
        return left.compare(right) < 0;
    }
};

using Front = Runtime::HashFront<Entry>;

} // namespace

struct XmlStringPool::Impl {
    ~Impl();
    void grow();
    void putInFront(Entry& entry) noexcept;
    const Entry* find(const XmlString& string) const noexcept;

    /// One block: the entries by id, of which slot 0 stays empty, and behind them the slots of the front.
    std::unique_ptr<Entry*[]> entries =
        std::make_unique<Entry*[]>(kFirstCapacity + Front::slotCountFor(kFirstCapacity));
    std::map<XmlString, Entry*, ComparesBelow> index;
    std::uint32_t capacity = kFirstCapacity;
    std::uint32_t next = 1;

    /// Answers for the index where it is sure of the same answer. The index takes strings on the same units for equal,
    /// whatever their sizes; and the units of borrowed strings may change. So a pool that was given a borrowed string is
    /// searched by its index alone; and as an owned string of another size can only lie on the units of a looked-up one
    /// that goes on behind its zero unit, strings with zero units are not in the front.
    Front front{entries.get() + kFirstCapacity, Front::slotCountFor(kFirstCapacity)};
    bool ownsAllUnits = true;
};

/// What an insertion of an equal string has put out of the index is not freed.
XmlStringPool::Impl::~Impl() {
    for (const auto& [value, entry] : index)
        delete entry;
}

void XmlStringPool::Impl::grow() {
    const double wanted = (next + 1.0) * 1.5;
    if (wanted > std::numeric_limits<std::uint32_t>::max())
        System::OutOfMemoryException::doThrow();
    const auto newCapacity = static_cast<std::uint32_t>(wanted);
    const std::size_t slotCount = Front::slotCountFor(newCapacity);
    auto grown = std::make_unique<Entry*[]>(newCapacity + slotCount);
    std::copy_n(entries.get(), capacity, grown.get());
    entries = std::move(grown);
    capacity = newCapacity;
    front = Front(entries.get() + capacity, slotCount);
    std::for_each(entries.get() + 1, entries.get() + next, [this](Entry* entry) { putInFront(*entry); });
}

void XmlStringPool::Impl::putInFront(Entry& entry) noexcept {
    ownsAllUnits = ownsAllUnits && !XmlStringReading::isBorrowed(entry.value);
    if (entry.hash == kNoHash)
        front.leaveOut();
    else
        front.put(entry, [&entry](const Entry& other) { return haveSameUnits(entry.value, other.value); });
}

const Entry* XmlStringPool::Impl::find(const XmlString& string) const noexcept {
    if (ownsAllUnits && !string.isNull()) {
        const Entry* const entry = front.find(
            hashOf(string), [&string](const Entry& other) { return haveSameUnits(string, other.value); });
        if (entry != nullptr || (front.holdsAll() && !XmlStringReading::isBorrowed(string)))
            return entry;
    }
    const auto found = index.find(string);
    return found != index.end() ? found->second : nullptr;
}

XmlStringPool::XmlStringPool() : impl_(new Impl) {}

XmlStringPool::~XmlStringPool() {
    delete impl_;
}

boost::shared_ptr<XmlStringPool> XmlStringPool::createXmlStringPool() {
    return boost::shared_ptr<XmlStringPool>(new XmlStringPool);
}

unsigned int XmlStringPool::insert(const XmlString& s) {
    if (impl_->next + 1 > impl_->capacity)
        impl_->grow();
    auto entry = std::make_unique<Entry>(s, impl_->next);
    // Under the entry's string, not `s`: the copy of a string that has lost Valid is null.
    impl_->index.insert_or_assign(entry->value, entry.get());
    impl_->putInFront(*entry);
    impl_->entries[impl_->next] = entry.release();
    return impl_->next++;
}

XmlString XmlStringPool::find(unsigned int id) const {
    if (!contains(id))
        System::OutOfRangeException::doThrow();
    return impl_->entries[id]->value;
}

unsigned int XmlStringPool::find(const XmlString& s) const {
    const Entry* const entry = impl_->find(s);
    return entry != nullptr ? entry->id : 0;
}

bool XmlStringPool::contains(unsigned int id) const noexcept {
    return id != 0 && id < impl_->next;
}

bool XmlStringPool::contains(const XmlString& s) const noexcept {
    return impl_->find(s) != nullptr;
}

unsigned int XmlStringPool::size() const noexcept {
    return impl_->next - 1;
}

namespace {

XmlString pooled(XmlStringPool& pool, XmlString text) {
    unsigned int id = pool.find(text);
    if (id == 0)
        id = pool.insert(makeString(Immutable, text));
    return pool.find(id);
}

} // namespace

XmlString makePooledString(boost::shared_ptr<XmlStringPool> pool, const unsigned short* s) {
    return pooled(*pool, makeString(s));
}

XmlString makePooledString(boost::shared_ptr<XmlStringPool> pool, const char* native) {
    return pooled(*pool, makeString(native));
}

XmlString makePooledString(boost::shared_ptr<XmlStringPool> pool, const unsigned char* utf8) {
    return pooled(*pool, makeString(utf8));
}

} // namespace Quillon::Xml
