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
        std::size_t length_ = 0;
        std::size_t colon_ = 0;
        bool qualifies_ = false;
        std::array<unsigned short, 28> units_;
    };

    /// For another encoding.
    void clear() noexcept {
        for (Known& known : known_)
            known.length_ = 0;
    }

    /// Refuses what Refusal::unlessName does. What is returned holds until the next check.
    Known& check(const Refusal& refusal, Units name, const char* place) {
        if (name.empty())
            refusal.unlessName(name, place);
        Known& known = placeOf(name);
        if (!isSame(Units(known.units_.data(), known.length_), name)) {
            refusal.unlessName(name, place);
            return keep(known, name);
        }
        return known;
    }

    void beginTag() noexcept {
        ++tag_;
        hasRepeated_ = false;
    }
    void addToTag(Known& attribute) noexcept { hasRepeated_ |= std::exchange(attribute.tag_, tag_) == tag_; }
    /// Not for certain when it does: names that are not kept are not told apart.
    bool mayTagRepeatAName() const noexcept { return hasRepeated_; }

private:
    Known& placeOf(Units name) noexcept {
        const std::size_t ends =
            name.front() + name[name.size() / 2] * std::size_t{5} + name.back() * std::size_t{17};
        return known_[(ends + name.size() * 31) % known_.size()];
    }
    Known& keep(Known& place, Units name) noexcept;

    std::uint64_t tag_ = 0;
    bool hasRepeated_ = false;
    std::array<Known, 128> known_;
    Known tooLong_;
};

} // namespace Quillon::Xml::Sax

#endif
