#include "support/Contest.h"
#include "support/Document.h"

#include <xercesc/framework/XMLFormatter.hpp>
#include <xercesc/util/PlatformUtils.hpp>

#include <array>
#include <cstring>

namespace Quillon::Bench {

namespace {

using xercesc::XMLFormatter;

/// What a program puts between the formatter and a file; the formatter itself passes on every piece.
class BufferedTarget : public xercesc::XMLFormatTarget {
public:
    std::size_t byteCount() const noexcept { return byteCount_; }

    void writeChars(const XMLByte* bytes, const XMLSize_t count, XMLFormatter*) override {
        byteCount_ += count;
        if (count > buffer_.size() - used_)
            used_ = 0;
        if (count > buffer_.size())
            return; // straight to the file
        std::memcpy(buffer_.data() + used_, bytes, count);
        used_ += count;
    }

private:
    std::array<XMLByte, 65536> buffer_;
    std::size_t used_ = 0;
    std::size_t byteCount_ = 0;
};

class XercesRound {
public:
    explicit XercesRound(const Document& document) : events_(document.events) {
        xercesc::XMLPlatformUtils::Initialize();
    }
    XercesRound(const XercesRound&) = delete;
    XercesRound& operator=(const XercesRound&) = delete;
    ~XercesRound() { xercesc::XMLPlatformUtils::Terminate(); }

    void operator()() {
        XMLFormatter formatter("UTF-8", &out_, XMLFormatter::NoEscapes, XMLFormatter::UnRep_CharRef);
        formatter << u"<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
        for (const Event& event : events_)
            write(formatter, event);
    }

    Load load() const { return {events_.size() + 2, out_.byteCount()}; }

private:
    static void plain(XMLFormatter& formatter, const std::u16string& text) {
        formatter.formatBuf(text.data(), text.size(), XMLFormatter::NoEscapes);
    }

    static void write(XMLFormatter& formatter, const Event& event) {
        switch (event.kind) {
        case Event::Start:
            formatter << XMLFormatter::NoEscapes << u'<';
            plain(formatter, event.text);
            for (const auto& [name, value] : event.attributes) {
                formatter << u' ';
                plain(formatter, name);
                formatter << u"=\"";
                formatter.formatBuf(value.data(), value.size(), XMLFormatter::AttrEscapes);
                formatter << u'"';
            }
            formatter << u'>';
            break;
        case Event::End:
            formatter << u"</";
            plain(formatter, event.text);
            formatter << u'>';
            break;
        case Event::Text:
            formatter.formatBuf(event.text.data(), event.text.size(), XMLFormatter::CharEscapes);
            break;
        }
    }

    const std::vector<Event>& events_;
    BufferedTarget out_;
};

const Entries entries([] {
    for (const Document& document : writerDocuments())
        enter(document.workload, "Xerces-C", [&document] { return XercesRound(document); });
});

} // namespace

} // namespace Quillon::Bench
