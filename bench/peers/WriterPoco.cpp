#include "support/Contest.h"
#include "support/DiscardingStream.h"
#include "support/Document.h"
#include "support/Text.h"

#include <Poco/SAX/AttributesImpl.h>
#include <Poco/XML/XMLWriter.h>

namespace Quillon::Bench {

namespace {

struct PreparedEvent {
    Event::Kind kind;
    std::string text;
    Poco::XML::AttributesImpl attributes;
};

std::vector<PreparedEvent> prepared(const Document& document) {
    std::vector<PreparedEvent> events;
    for (const Event& event : document.events) {
        PreparedEvent& ready = events.emplace_back();
        ready.kind = event.kind;
        ready.text = toUtf8(event.text);
        for (const auto& [name, value] : event.attributes)
            ready.attributes.addAttribute("", toUtf8(name), toUtf8(name), "CDATA", toUtf8(value));
    }
    return events;
}

class PocoRound {
public:
    explicit PocoRound(const Document& document) : events_(prepared(document)) {}

    void operator()() {
        Poco::XML::XMLWriter writer(out_, Poco::XML::XMLWriter::WRITE_XML_DECLARATION);
        writer.startDocument();
        for (const PreparedEvent& event : events_)
            write(writer, event);
        writer.endDocument();
    }

    Load load() const { return {events_.size() + 2, out_.byteCount()}; }

private:
    void write(Poco::XML::XMLWriter& writer, const PreparedEvent& event) {
        switch (event.kind) {
        case Event::Start:
            writer.startElement(none_, event.text, event.text, event.attributes);
            break;
        case Event::End:
            writer.endElement(none_, event.text, event.text);
            break;
        case Event::Text:
            writer.characters(event.text.data(), 0, static_cast<int>(event.text.size()));
            break;
        }
    }

    const std::string none_;
    std::vector<PreparedEvent> events_;
    DiscardingStream out_;
};

const Entries entries([] {
    for (const Document& document : writerDocuments())
        enter(document.workload, "POCO", [&document] { return PocoRound(document); });
});

} // namespace

} // namespace Quillon::Bench
