#include "dataconv/NameIdMap.h"

#include "runtime/CStringInternal.h"
#include "runtime/Transcoding.h"
#include "system/OutOfMemoryException.h"
#include "system/OutOfRangeException.h"

#include <algorithm>
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
};

/// Of as many bytes as the name has characters, so that the tail of a name beyond ASCII does not count.
std::uint32_t hashOf(const char* name) noexcept {
    return Runtime::hashBytes(name, Runtime::utf8CharacterCount(name, Runtime::lengthOf(name)));
}

struct OrdersByHashThenBytes {
    bool operator()(const char* left, const char* right) const noexcept {
        const std::uint32_t leftHash = hashOf(left), rightHash = hashOf(right);
        return leftHash != rightHash ? leftHash < rightHash : std::strcmp(left, right) < 0;
    }
};

} // namespace

struct NameIdMap::Impl {
    ~Impl();
    void grow();

    std::unique_ptr<Entry*[]> entries =
        std::make_unique<Entry*[]>(kFirstCapacity); // by id; slot 0 stays empty
    std::map<const char*, Entry*, OrdersByHashThenBytes> index;
    std::uint32_t capacity = kFirstCapacity;
    std::uint32_t next = 1;
};

NameIdMap::Impl::~Impl() {
    std::for_each(entries.get() + 1, entries.get() + next, [](Entry* entry) { delete entry; });
}

void NameIdMap::Impl::grow() {
    const double wanted = (next + 1.0) * 1.5;
    if (wanted > std::numeric_limits<std::uint32_t>::max())
        System::OutOfMemoryException::doThrow();
    const std::uint32_t newCapacity = static_cast<std::uint32_t>(wanted) | 1;
    auto grown = std::make_unique<Entry*[]>(newCapacity);
    std::copy_n(entries.get(), capacity, grown.get());
    entries = std::move(grown);
    capacity = newCapacity;
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
    return impl_->index.contains(name);
}

const char* NameIdMap::find(unsigned int id) const {
    if (!contains(id))
        System::OutOfRangeException::doThrow();
    return impl_->entries[id]->name;
}

unsigned int NameIdMap::find(const char* name) const noexcept {
    const auto found = impl_->index.find(name);
    return found != impl_->index.end() ? found->second->id : 0;
}

unsigned int NameIdMap::insert(const char* name) {
    if (impl_->next + 1 > impl_->capacity)
        impl_->grow();
    auto entry = std::make_unique<Entry>(Entry{name, impl_->next});
    impl_->index.insert_or_assign(name, entry.get());
    impl_->entries[impl_->next] = entry.release();
    return impl_->next++;
}

unsigned int NameIdMap::find_or_insert(const char* name) {
    const unsigned int id = find(name);
    return id != 0 ? id : insert(name);
}

} // namespace Quillon::DataConv
