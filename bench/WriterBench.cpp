// Events of a document in memory, written to a stream that discards them.

#include "support/Contest.h"
#include "support/DiscardingStream.h"
#include "support/Document.h"
#include "support/Player.h"
#include "xml/sax/writer/StrictWriter.h"
#include "xml/sax/writer/XmlWriter.h"

namespace Quillon::Bench {

namespace {

template <class Writer>
class WriterRound {
public:
    explicit WriterRound(const Document& document) : player_(document) {}

    void operator()() {
        Writer writer(out_);
        player_.play(writer);
    }

    Load load() const { return {player_.eventCount(), out_.byteCount()}; }

private:
    const Player player_;
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
