#ifndef ZUTARNEX_SAXENGINE_OPENENTITY_H
#define ZUTARNEX_SAXENGINE_OPENENTITY_H

#include "DeclarationTracker.h"
#include "EntityInput.h"
#include "Location.h"
#include "UnitSpan.h"
#include "WidePlace.h"
#include "xml/XmlString.h"

#include <expat.h>
#include <memory>
#include <string>
#include <type_traits>

namespace Quillon::Xml::Sax {
class InputSource;
}

namespace Quillon::SaxEngine {

/// Where the text of an entity comes from.
struct EntitySource {
    Xml::XmlString publicId, systemId; ///< for handlers
    std::string uri;                   ///< the base of what the entity declares; empty: not known
    std::string encoding;              ///< what the application says; empty: nothing
    Xml::ReadableByteChannel* channel = nullptr;
    std::unique_ptr<Xml::ReadableByteChannel> file; ///< the channel, when it was opened here

    /// Opens the source. `fallbackUri`: of the entity, for a source that has no system identifier.
    /// Throws: SaxException when there is nothing to read or the file cannot be opened.
    EntitySource(const Xml::Sax::InputSource& source, const std::string& fallbackUri);
};

struct FreeParser {
    void operator()(XML_Parser parser) const { XML_ParserFree(parser); }
};
using ParserPointer = std::unique_ptr<std::remove_pointer_t<XML_Parser>, FreeParser>;

/// An entity that is being read: the document, the external subset, or an external entity. Internal entities are a
/// matter of Expat's.
class OpenEntity {
public:
    enum class Kind { Document, Dtd, Content };

    OpenEntity(ParserPointer parser, EntitySource source, Kind kind);

    XML_Parser parser() const { return parser_.get(); }
    EntityInput& input() { return input_; }
    const EntityInput& input() const { return input_; }
    const EntitySource& source() const { return source_; }
    Kind kind() const { return kind_; }

    /// Of the current event; also to be asked for after each chunk (see WidePlace).
    Location location();

    /// The chunk that Expat has got now, where it is in UTF-16 of the host's byte order: so far, events about its text
    /// point into it. Else empty.
    UnitSpan chunk() const { return chunk_; }
    void showChunk(const void* buffer, int byteCount);

    OpenEntity* outer = nullptr; ///< the one that refers to it
    DeclarationTracker declarations;
    Xml::XmlString version;
    Xml::XmlString encoding;

private:
    EntitySource source_;
    EntityInput input_;
    ParserPointer parser_;
    Kind kind_;
    UnitSpan chunk_;
    WidePlace<XML_Size> place_;
};

} // namespace Quillon::SaxEngine

#endif
