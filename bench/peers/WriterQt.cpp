#include "support/Contest.h"
#include "support/Document.h"

#include <QIODevice>
#include <QString>
#include <QXmlStreamWriter>

namespace Quillon::Bench {

namespace {

class DiscardingDevice : public QIODevice {
public:
    DiscardingDevice() { open(QIODevice::WriteOnly | QIODevice::Unbuffered); }
    std::size_t byteCount() const noexcept { return byteCount_; }

protected:
    qint64 readData(char*, qint64) override { return -1; }
    qint64 writeData(const char*, qint64 count) override {
        byteCount_ += static_cast<std::size_t>(count);
        return count;
    }

private:
    std::size_t byteCount_ = 0;
};

struct PreparedEvent {
    Event::Kind kind;
    QString text;
    std::vector<std::pair<QString, QString>> attributes;
};

std::vector<PreparedEvent> prepared(const Document& document) {
    std::vector<PreparedEvent> events;
    for (const Event& event : document.events) {
        PreparedEvent& ready = events.emplace_back();
        ready.kind = event.kind;
        ready.text = QString::fromStdU16String(event.text);
        for (const auto& [name, value] : event.attributes)
            ready.attributes.emplace_back(QString::fromStdU16String(name), QString::fromStdU16String(value));
    }
    return events;
}

class QtRound {
public:
    explicit QtRound(const Document& document) : events_(prepared(document)) {}

    void operator()() {
        QXmlStreamWriter writer(&out_);
        writer.writeStartDocument();
        for (const PreparedEvent& event : events_)
            write(writer, event);
        writer.writeEndDocument();
    }

    Load load() const { return {events_.size() + 2, out_.byteCount()}; }

private:
    static void write(QXmlStreamWriter& writer, const PreparedEvent& event) {
        switch (event.kind) {
        case Event::Start:
            writer.writeStartElement(event.text);
            for (const auto& [name, value] : event.attributes)
                writer.writeAttribute(name, value);
            break;
        case Event::End:
            writer.writeEndElement();
            break;
        case Event::Text:
            writer.writeCharacters(event.text);
            break;
        }
    }

    std::vector<PreparedEvent> events_;
    DiscardingDevice out_;
};

const Entries entries([] {
    for (const Document& document : writerDocuments())
        enter(document.workload, "Qt", [&document] { return QtRound(document); });
});

} // namespace

} // namespace Quillon::Bench
