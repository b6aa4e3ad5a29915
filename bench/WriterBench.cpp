// Events of a document in memory, written to a stream that discards them.

#include "support/Contest.h"
#include "support/DiscardingStream.h"
#include "support/Document.h"
#include "support/Text.h"
#include "xml/sax/AttributesImpl.h"
#include "xml/sax/writer/StrictWriter.h"
#include "xml/sax/writer/XmlWriter.h"

namespace Quillon::Bench {

namespace {

using Xml::XmlString;

struct PreparedEvent {
    Event::Kind kind;
    XmlString text;
    Xml::Sax::AttributesImpl attributes;
};

std::vector<PreparedEvent> prepared(const Document& document) {
    const XmlString none = toXmlString(u""), cdata = toXmlString(u"CDATA");
    std::vector<PreparedEvent> events;
    for (const Event& event : document.events) {
        PreparedEvent& ready = events.emplace_back();
        ready.kind = event.kind;
        ready.text = toXmlString(event.text);
        for (const auto& [name, value] : event.attributes) {
            const XmlString qName = toXmlString(name);
            ready.attributes.addAttribute(none, qName, qName, cdata, toXmlString(value));
        }
    }
    return events;
}

template <class Writer>
class WriterRound {
public:
    explicit WriterRound(const Document& document) : events_(prepared(document)) {}

    void operator()() {
        Writer writer(out_);
        writer.startDocument();
        for (const PreparedEvent& event : events_)
            write(writer, event);
        writer.endDocument();
    }

    Load load() const { return {events_.size() + 2, out_.byteCount()}; }

private:
    void write(Writer& writer, const PreparedEvent& event) {
        switch (event.kind) {
        case Event::Start:
            writer.startElement(none_, event.text, event.text, event.attributes);
            break;
        case Event::End:
            writer.endElement(none_, event.text, event.text);
            break;
        case Event::Text:
            writer.characters(event.text.data(), 0, event.text.size());
            break;
        }
    }

    const XmlString none_ = toXmlString(u"");
    std::vector<PreparedEvent> events_;
    DiscardingStream out_;
};

template <class Writer>
void enterWriter(const Document& document, const char* competitor) {
    enter(document.workload, competitor, [&document] { return WriterRound<Writer>(document); });
}

const Entries entries([] {
    for (const Document& document : writerDocuments()) {
        enterWriter<Xml::Sax::XmlWriter>(document, kLibrary);
        enterWriter<Xml::Sax::StrictWriter>(document, "zutarnex-strict");
    }
});

} // namespace

} // namespace Quillon::Bench

BENCHMARK_MAIN();
