#ifndef ZUTARNEX_XML_SAX_WRITER_STRICTNAMESINTERNAL_H
#define ZUTARNEX_XML_SAX_WRITER_STRICTNAMESINTERNAL_H

#include "xml/sax/writer/StrictNamespacesInternal.h"
#include "xml/sax/writer/StrictRefusalInternal.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <utility>

namespace Quillon::Xml::Sax {

/// Checks the names of elements and attributes, and keeps some of those that it found right: one that comes again is
/// only compared. The units decide, not the string that they come in.
///
///     name -> the two places that its units lead to -> in one of them: known; else checked, and put in one of them
class StrictNames {
public:
    class Known {
    public:
        QualifiedName parts(Units name) const noexcept { return {name, colon_, qualifies_}; }

    private:
        friend class StrictNames;

        bool is(Units name) const noexcept { return isSame(Units(units_.data(), length_), name); }

        std::uint64_t tag_ = 0; ///< the last start tag that it was an attribute of
        std::uint32_t colon_ = 0;
        unsigned short length_ = 0;
        bool qualifies_ = false;
        std::array<unsigned short, 24> units_;
    };

    /// For another encoding.
    void clear() noexcept {
        for (Pair& pair : pairs_)
            pair.first.length_ = pair.second.length_ = 0;
    }

    /// One that was found right before; null when it is not here.
    Known* find(Units name) noexcept {
        if (name.empty())
            return nullptr;
        Pair& pair = pairOf(name);
        if (pair.first.is(name))
            return &pair.first;
        return pair.second.is(name) ? &pair.second : nullptr;
    }
    /// Refuses what Refusal::unlessName does. What is returned holds until the next check.
    Known& check(const Refusal& refusal, Units name, const char* place) {
        if (Known* const known = find(name))
            return *known;
        refusal.unlessName(name, place);
        return keep(name);
    }

    void beginTag() noexcept {
        ++tag_;
        hasForgotten_ = false;
    }
    /// False when an attribute with that name may be in the tag already: names that are not kept are not told apart.
    bool addToTag(Known& attribute) noexcept {
        return std::exchange(attribute.tag_, tag_) != tag_ && !hasForgotten_;
    }

private:
    struct Pair {
        Known first, second;
        bool isSecondNext = false;
    };

    /// The upper bits of products with odd factors: they depend on all that is looked at.
    Pair& pairOf(Units name) noexcept {
        const std::uint32_t ends = name.front() | std::uint32_t{name.back()} << 16;
        const auto rest = static_cast<std::uint32_t>(name[name.size() / 2] + name.size() * 97);
        return pairs_[(ends * 0x9E3779B1u ^ rest * 0x85EBCA6Bu) >> 26];
    }
    static Known& nextOf(Pair& pair) noexcept;
    Known& keep(Units name) noexcept;

    std::uint64_t tag_ = 0;
    bool hasForgotten_ = false; ///< a name that stood in this tag
    std::array<Pair, 64> pairs_;
    Known tooLong_;
};

} // namespace Quillon::Xml::Sax

#endif
