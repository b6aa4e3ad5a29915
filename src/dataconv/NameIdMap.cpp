#include "dataconv/NameIdMap.h"

#include "runtime/CStringInternal.h"
#include "runtime/HashFrontInternal.h"
#include "runtime/Transcoding.h"
#include "system/OutOfMemoryException.h"
#include "system/OutOfRangeException.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <map>
#include <memory>

namespace Quillon::DataConv {

namespace {

constexpr std::uint32_t kFirstCapacity = 3;

struct Entry {
    const char* name;
    std::uint32_t id;
    std::uint32_t hash;
};

/// Of as many bytes as the name has characters, so that the tail of a name beyond ASCII does not count.
std::uint32_t hashOf(const char* name) noexcept {
    return Runtime::hashBytes(name, Runtime::utf8CharacterCount(name, Runtime::lengthOf(name)));
}

/// A name and its hash, which is the same at every comparison.
struct Key {
    explicit Key(const char* text) noexcept : hash(hashOf(text)), name(text) {}

    std::uint32_t hash;
    const char* name;
};

struct OrdersByHashThenBytes {
    bool operator()(const Key& left, const Key& right) const noexcept {
        return left.hash != right.hash ? left.hash < right.hash : std::strcmp(left.name, right.name) < 0;
    }
};

std::uint32_t hashForFront(const char* name) noexcept {
    return Runtime::frontHashOf(name, std::strlen(name));
}

using Front = Runtime::HashFront<Entry>;

} // namespace

struct NameIdMap::Impl {
    ~Impl();
    void grow();
    void putInFront(Entry& entry) noexcept;
    const Entry* find(const char* name) const noexcept;

    /// One block: the entries by id, of which slot 0 stays empty, and behind them the slots of the front.
    std::unique_ptr<Entry*[]> entries =
        std::make_unique<Entry*[]>(kFirstCapacity + Front::slotCountFor(kFirstCapacity));
    std::map<Key, Entry*, OrdersByHashThenBytes> index;
    std::uint32_t capacity = kFirstCapacity;
    std::uint32_t next = 1;
    Front front{entries.get() + kFirstCapacity, Front::slotCountFor(kFirstCapacity)};
};

NameIdMap::Impl::~Impl() {
    std::for_each(entries.get() + 1, entries.get() + next, [](Entry* entry) { delete entry; });
}

void NameIdMap::Impl::grow() {
    const double wanted = (next + 1.0) * 1.5;
    if (wanted > std::numeric_limits<std::uint32_t>::max())
        System::OutOfMemoryException::doThrow();
    const std::uint32_t newCapacity = static_cast<std::uint32_t>(wanted) | 1;
    const std::size_t slotCount = Front::slotCountFor(newCapacity);
    auto grown = std::make_unique<Entry*[]>(newCapacity + slotCount);
    std::copy_n(entries.get(), capacity, grown.get());
    entries = std::move(grown);
    capacity = newCapacity;
    front = Front(entries.get() + capacity, slotCount);
    std::for_each(entries.get() + 1, entries.get() + next, [this](Entry* entry) { putInFront(*entry); });
}

void NameIdMap::Impl::putInFront(Entry& entry) noexcept {
    front.put(entry, [&entry](const Entry& other) { return std::strcmp(entry.name, other.name) == 0; });
}

const Entry* NameIdMap::Impl::find(const char* name) const noexcept {
    const Entry* const entry = front.find(
        hashForFront(name), [name](const Entry& other) { return std::strcmp(name, other.name) == 0; });
    if (entry != nullptr || front.holdsAll())
        return entry;
    const auto found = index.find(Key(name));
    return found != index.end() ? found->second : nullptr;
}

boost::shared_ptr<NameIdMap> NameIdMap::getGlobalNameIdMap() {
    static const boost::shared_ptr<NameIdMap> map = createStringPool();
    return map;
}

boost::shared_ptr<NameIdMap> NameIdMap::createStringPool() {
    return boost::shared_ptr<NameIdMap>(new NameIdMap);
}

NameIdMap::NameIdMap() : impl_(new Impl) {}

NameIdMap::~NameIdMap() {
    delete impl_;
}

unsigned int NameIdMap::size() const noexcept {
    return impl_->next - 1;
}

bool NameIdMap::contains(unsigned int id) const noexcept {
    return id != 0 && id < impl_->next;
}

bool NameIdMap::contains(const char* name) const noexcept {
    return impl_->find(name) != nullptr;
}

const char* NameIdMap::find(unsigned int id) const {
    if (!contains(id))
        System::OutOfRangeException::doThrow();
    return impl_->entries[id]->name;
}

unsigned int NameIdMap::find(const char* name) const noexcept {
    const Entry* const entry = impl_->find(name);
    return entry != nullptr ? entry->id : 0;
}

unsigned int NameIdMap::insert(const char* name) {
    if (impl_->next + 1 > impl_->capacity)
        impl_->grow();
    auto entry = std::make_unique<Entry>(Entry{name, impl_->next, hashForFront(name)});
    impl_->index.insert_or_assign(Key(name), entry.get());
    impl_->putInFront(*entry);
    impl_->entries[impl_->next] = entry.release();
    return impl_->next++;
}

unsigned int NameIdMap::find_or_insert(const char* name) {
    const unsigned int id = find(name);
    return id != 0 ? id : insert(name);
}

} // namespace Quillon::DataConv
