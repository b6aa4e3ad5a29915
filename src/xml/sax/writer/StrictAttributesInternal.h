#ifndef ZUTARNEX_XML_SAX_WRITER_STRICTATTRIBUTESINTERNAL_H
#define ZUTARNEX_XML_SAX_WRITER_STRICTATTRIBUTESINTERNAL_H

#include "xml/sax/AttributeSourceInternal.h"
#include "xml/sax/Attributes.h"
#include "xml/sax/writer/StrictNamespacesInternal.h"
#include "xml/sax/writer/StrictRefusalInternal.h"

#include <span>
#include <vector>

namespace Quillon::Xml::Sax {

/// One attribute of a start tag.
struct StrictAttribute : AttributeUnits::Entry {
    Units type;
    QualifiedName parts; ///< of the name, once that was found right
};

using StrictAttributeList = std::span<StrictAttribute>;

/// Room for the attributes of a start tag, used again for the next one. It holds no string between two: their blocks
/// belong to others.
struct StrictAttributeRoom {
    std::vector<StrictAttribute> entries; ///< as many as the longest list had, with what the last ones left
    std::vector<XmlString> strings;
    bool isTaken = false;
};

/// The attributes of one start tag. The strings of a foreign list are fetched once and kept as long; those of the
/// library's own lists are read where they lie.
class StrictAttributes {
public:
    /// Takes the room for as long as it lives, if nobody has it. (A foreign list may call the writer that asks it.)
    StrictAttributes(StrictAttributeRoom& room, const Attributes& attributes);
    StrictAttributes(const StrictAttributes&) = delete;
    StrictAttributes& operator=(const StrictAttributes&) = delete;
    ~StrictAttributes() {
        if (list_.empty())
            return;
        room_->strings.clear();
        room_->isTaken = false;
    }

    StrictAttributeList list() const noexcept { return list_; }

private:
    explicit StrictAttributes(StrictAttributeRoom& room) noexcept : room_(&room) {}
    void take(std::size_t count);
    void read(const AttributeUnits& attributes);
    void fetch(const Attributes& attributes);

    StrictAttributeRoom* room_;
    StrictAttributeRoom other_; ///< instead of one that is taken
    StrictAttributeList list_;
};

} // namespace Quillon::Xml::Sax

#endif
