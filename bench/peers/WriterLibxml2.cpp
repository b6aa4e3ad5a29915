// libxml2 is handed UTF-8 that is ready: it has less to do than the others.

#include "support/Contest.h"
#include "support/Document.h"
#include "support/Text.h"

#include <libxml/xmlwriter.h>

namespace Quillon::Bench {

namespace {

struct PreparedEvent {
    Event::Kind kind;
    std::string text;
    std::vector<std::pair<std::string, std::string>> attributes;
};

std::vector<PreparedEvent> prepared(const Document& document) {
    std::vector<PreparedEvent> events;
    for (const Event& event : document.events) {
        PreparedEvent& ready = events.emplace_back();
        ready.kind = event.kind;
        ready.text = toUtf8(event.text);
        for (const auto& [name, value] : event.attributes)
            ready.attributes.emplace_back(toUtf8(name), toUtf8(value));
    }
    return events;
}

const xmlChar* chars(const std::string& text) {
    return reinterpret_cast<const xmlChar*>(text.c_str());
}

class Libxml2Round {
public:
    explicit Libxml2Round(const Document& document) : events_(prepared(document)) {}

    void operator()() {
        xmlOutputBufferPtr out = xmlOutputBufferCreateIO(discard, nullptr, this, nullptr);
        xmlTextWriterPtr writer = xmlNewTextWriter(out);
        xmlTextWriterStartDocument(writer, "1.0", "UTF-8", nullptr);
        for (const PreparedEvent& event : events_)
            write(writer, event);
        xmlTextWriterEndDocument(writer);
        xmlFreeTextWriter(writer);
    }

    Load load() const { return {events_.size() + 2, byteCount_}; }

private:
    static int discard(void* self, const char*, int count) {
        static_cast<Libxml2Round*>(self)->byteCount_ += static_cast<std::size_t>(count);
        return count;
    }

    static void write(xmlTextWriterPtr writer, const PreparedEvent& event) {
        switch (event.kind) {
        case Event::Start:
            xmlTextWriterStartElement(writer, chars(event.text));
            for (const auto& [name, value] : event.attributes)
                xmlTextWriterWriteAttribute(writer, chars(name), chars(value));
            break;
        case Event::End:
            xmlTextWriterFullEndElement(writer);
            break;
        case Event::Text:
            xmlTextWriterWriteString(writer, chars(event.text));
            break;
        }
    }

    std::vector<PreparedEvent> events_;
    std::size_t byteCount_ = 0;
};

const Entries entries([] {
    for (const Document& document : writerDocuments())
        enter(document.workload, "libxml2", [&document] { return Libxml2Round(document); });
});

} // namespace

} // namespace Quillon::Bench
