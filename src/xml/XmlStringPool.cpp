#include "xml/XmlStringPool.h"

#include "system/OutOfMemoryException.h"
#include "system/OutOfRangeException.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <map>
#include <memory>

namespace Quillon::Xml {

namespace {

constexpr std::uint32_t kFirstCapacity = 3;

struct Entry {
    Entry(const XmlString& string, std::uint32_t number) : value(string), id(number) {}

    XmlString value;
    std::uint32_t id;
};

struct ComparesBelow {
    bool operator()(const XmlString& left, const XmlString& right) const noexcept {
        return left.compare(right) < 0;
    }
};

} // namespace

struct XmlStringPool::Impl {
    ~Impl();
    void grow();

    std::unique_ptr<Entry*[]> entries =
        std::make_unique<Entry*[]>(kFirstCapacity); // by id; slot 0 stays empty
    std::map<XmlString, Entry*, ComparesBelow> index;
    std::uint32_t capacity = kFirstCapacity;
    std::uint32_t next = 1;
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
    auto grown = std::make_unique<Entry*[]>(newCapacity);
    std::copy_n(entries.get(), capacity, grown.get());
    entries = std::move(grown);
    capacity = newCapacity;
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
    impl_->entries[impl_->next] = entry.release();
    return impl_->next++;
}

XmlString XmlStringPool::find(unsigned int id) const {
    if (!contains(id))
        System::OutOfRangeException::doThrow();
    return impl_->entries[id]->value;
}

unsigned int XmlStringPool::find(const XmlString& s) const {
    const auto found = impl_->index.find(s);
    return found != impl_->index.end() ? found->second->id : 0;
}

bool XmlStringPool::contains(unsigned int id) const noexcept {
    return id != 0 && id < impl_->next;
}

bool XmlStringPool::contains(const XmlString& s) const noexcept {
    return impl_->index.contains(s);
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
