#include "support/Player.h"

namespace Quillon::Bench {

Player::Player(const Document& document) {
    const Xml::XmlString cdata = toXmlString(u"CDATA");
    for (const Event& event : document.events) {
        ReadyEvent& ready = events_.emplace_back();
        ready.kind = event.kind;
        ready.text = toXmlString(event.text);
        for (const auto& [name, value] : event.attributes) {
            const Xml::XmlString qName = toXmlString(name);
            ready.attributes.addAttribute(none_, qName, qName, cdata, toXmlString(value));
        }
    }
}

void Player::play(Xml::Sax::ContentHandler& handler) const {
    handler.startDocument();
    for (const ReadyEvent& event : events_)
        play(event, handler);
    handler.endDocument();
}

void Player::play(const ReadyEvent& event, Xml::Sax::ContentHandler& handler) const {
    switch (event.kind) {
    case Event::Start:
        handler.startElement(none_, event.text, event.text, event.attributes);
        break;
    case Event::End:
        handler.endElement(none_, event.text, event.text);
        break;
    case Event::Text:
        handler.characters(event.text.data(), 0, event.text.size());
        break;
    }
}

} // namespace Quillon::Bench
