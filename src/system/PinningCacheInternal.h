#ifndef ZUTARNEX_SYSTEM_PINNINGCACHEINTERNAL_H
#define ZUTARNEX_SYSTEM_PINNINGCACHEINTERNAL_H

#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>

#include <map>
#include <string>
#include <utility>

namespace Quillon::System {

/// Objects that were handed out, by name (bytewise). The weak map knows every one that there ever was; the strong map
/// keeps some alive.
///
///     pinned:  name -> shared_ptr     destroyed last
///     known:   name -> weak_ptr       an expired entry is never erased, only overwritten
template <class T>
class PinningCache {
public:
    virtual ~PinningCache() = default;

protected:
    PinningCache() = default;

    /// Empty when there is none, or none any more.
    boost::shared_ptr<T> find(const std::string& name) const {
        const auto entry = known_.find(name);
        return entry != known_.end() ? entry->second.lock() : boost::shared_ptr<T>();
    }

    void pin(const std::string& name, const boost::shared_ptr<T>& object) { pinned_[name] = object; }

    /// Makes `object` known under `name` and pins it there when asked to. Should memory run out, nothing changes.
    void insert(const std::string& name, const boost::shared_ptr<T>& object, bool pinned) {
        Known newKnown{{name, object}};
        Pinned newPinned;
        if (pinned)
            newPinned.emplace(name, object);
        moveInto(known_, newKnown);
        moveInto(pinned_, newPinned);
    }

private:
    using Pinned = std::map<std::string, boost::shared_ptr<T>>;
    using Known = std::map<std::string, boost::weak_ptr<T>>;

    /// Moves nodes, so that nothing is allocated.
    template <class Map>
    static void moveInto(Map& target, Map& source) noexcept {
        while (!source.empty()) {
            auto result = target.insert(source.extract(source.begin()));
            if (!result.inserted)
                result.position->second = std::move(result.node.mapped());
        }
    }

    Pinned pinned_;
    Known known_;
};

} // namespace Quillon::System

#endif
