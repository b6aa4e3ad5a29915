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
///     name -> the one place that its ends and length lead to -> the same name: known; another: checked, and put there
class StrictNames {
public:
    class Known {
    public:
        QualifiedName parts(Units name) const noexcept { return {name, colon_, qualifies_}; }

    private:
        friend class StrictNames;

        std::uint64_t tag_ = 0; ///< the last start tag that it was an attribute of
        std::uint32_t colon_ = 0;
        unsigned short length_ = 0;
        bool qualifies_ = false;
        std::array<unsigned short, 24> units_;
    };

    /// For another encoding.
    void clear() noexcept {
        for (Known& known : known_)
            known.length_ = 0;
    }

    /// One that was found right before; null when it is not here.
    Known* find(Units name) noexcept {
        if (name.empty())
            return nullptr;
        Known& known = placeOf(name);
        return isSame(Units(known.units_.data(), known.length_), name) ? &known : nullptr;
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
    Known& placeOf(Units name) noexcept {
        const std::size_t length = name.size();
        const std::size_t ends = name.front() + std::size_t{17} * name.back();
        return known_[(ends + std::size_t{5} * name[length / 2] + 3 * length) % known_.size()];
    }
    Known& keep(Units name) noexcept;

    std::uint64_t tag_ = 0;
    bool hasForgotten_ = false; ///< a name that stood in this tag
    std::array<Known, 128> known_;
    Known tooLong_;
};

} // namespace Quillon::Xml::Sax

#endif
