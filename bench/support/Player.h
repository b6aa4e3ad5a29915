#ifndef ZUTARNEX_BENCH_SUPPORT_PLAYER_H
#define ZUTARNEX_BENCH_SUPPORT_PLAYER_H

#include "support/Document.h"
#include "support/Text.h"
#include "xml/XmlString.h"
#include "xml/sax/AttributesImpl.h"
#include "xml/sax/ContentHandler.h"

#include <vector>

namespace Quillon::Bench {

/// A document in the library's own types, ready to be handed to a handler.
class Player {
public:
    explicit Player(const Document& document);

    /// From startDocument to endDocument.
    void play(Xml::Sax::ContentHandler& handler) const;
    std::size_t eventCount() const noexcept { return events_.size() + 2; }

private:
    struct ReadyEvent {
        Event::Kind kind;
        Xml::XmlString text;
        Xml::Sax::AttributesImpl attributes;
    };

    void play(const ReadyEvent& event, Xml::Sax::ContentHandler& handler) const;

    const Xml::XmlString none_ = toXmlString(u"");
    std::vector<ReadyEvent> events_;
};

} // namespace Quillon::Bench

#endif
