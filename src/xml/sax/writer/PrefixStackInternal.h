#ifndef ZUTARNEX_XML_SAX_WRITER_PREFIXSTACKINTERNAL_H
#define ZUTARNEX_XML_SAX_WRITER_PREFIXSTACKINTERNAL_H

#include "xml/sax/writer/StrictRefusalInternal.h"

#include <cstddef>
#include <limits>
#include <map>
#include <utility>
#include <vector>

namespace Quillon::Xml::Sax {

/// Entries with prefixes, one behind the other, of which the last one with a prefix hides those before it. It is found
/// among thousands about as fast as among a few.
///
/// An Entry has `OwnedUnits prefix`, which stays as it is while the entry is here.
template <class Entry>
class PrefixStack {
public:
    struct Node {
        Entry entry;
        std::size_t hidden; ///< the one with the same prefix that this one hides, or kNone
        bool isGone;        ///< removed from under others
    };

    bool empty() const noexcept { return nodes_.empty(); }
    const Entry& top() const noexcept { return nodes_.back().entry; }
    const std::vector<Node>& nodes() const noexcept { return nodes_; }

    void clear() noexcept {
        index_.clear();
        nodes_.clear();
    }

    void push(Entry entry) {
        nodes_.push_back({std::move(entry), kNone, false});
        try {
            const auto [place, isFirst] = index_.try_emplace(Units(top().prefix), nodes_.size() - 1);
            if (!isFirst)
                nodes_.back().hidden = std::exchange(place->second, nodes_.size() - 1);
        } catch (...) {
            nodes_.pop_back();
            throw;
        }
    }

    /// Removes the top.
    void pop() noexcept {
        takeOut(index_.find(Units(top().prefix)));
        popGone();
    }

    /// The last one with that prefix, or null.
    const Entry* find(Units prefix) const noexcept {
        if (nodes_.size() > kFew) {
            const auto place = index_.find(prefix);
            return place == index_.end() ? nullptr : &nodes_[place->second].entry;
        }
        for (auto node = nodes_.rbegin(); node != nodes_.rend(); ++node)
            if (!node->isGone && isSame(node->entry.prefix, prefix))
                return &node->entry;
        return nullptr;
    }

    /// Removes the last one with that prefix, wherever it stands. REQUIRES: there is one.
    void remove(Units prefix) noexcept {
        takeOut(index_.find(prefix));
        popGone();
    }

private:
    static constexpr std::size_t kNone = std::numeric_limits<std::size_t>::max();
    static constexpr std::size_t kFew = 8; // so many are looked through faster than the index is

    /// From a prefix, as the first node with it holds it, to the last node with it.
    using Index = std::map<Units, std::size_t, IsLess>;

    void takeOut(typename Index::iterator place) noexcept {
        Node& node = nodes_[place->second];
        node.isGone = true;
        if (node.hidden == kNone)
            index_.erase(place);
        else
            place->second = node.hidden;
    }
    void popGone() noexcept {
        while (!nodes_.empty() && nodes_.back().isGone)
            nodes_.pop_back();
    }

    std::vector<Node> nodes_;
    Index index_;
};

} // namespace Quillon::Xml::Sax

#endif
