#ifndef ZUTARNEX_TESTS_SAXENGINE_READINGFIXTURE_H
#define ZUTARNEX_TESTS_SAXENGINE_READINGFIXTURE_H

#include "saxengine/MemoryByteChannel.h"
#include "saxengine/SaxEngineReader.h"
#include "support/HostFixture.h"
#include "support/RecordingHandler.h"
#include "support/Text.h"
#include "xml/sax/Attributes2.h"
#include "xml/sax/DefaultHandler2.h"
#include "xml/sax/InputSource.h"
#include "xml/sax/SaxIdentifiers.h"
#include "xml/sax/SaxParseException.h"

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Quillon::Testing {

/// How a parse ended: nothing, or the place and text of the exception.
struct Outcome {
    bool threw = false;
    bool isParseException = false;
    std::string message, systemId;
    long long line = 0, column = 0;
};

/// A reader over the plug-in with a handler that records all events.
class ReadingFixture : public HostFixture {
protected:
    /// What lives as long as the process: the plug-in loader, the identifiers, the module.
    void warmUp() override;
    void SetUp() override;
    void TearDown() override;

    void set(Xml::XmlString (*feature)(), bool value) { reader().setFeature(feature(), value); }
    void readExternalEntities();
    /// Makes `handler` the reader's handler for everything.
    void listen(Xml::Sax::XmlReader& reader, RecordingHandler& handler);

    Xml::Sax::SaxEngineReader& reader() { return *reader_; }
    RecordingHandler& handler() { return *handler_; }

    /// Reads `bytes` as a document with that system identifier; the events are the handler's lines.
    Outcome read(std::string_view bytes, const char16_t* systemId = nullptr,
                 const char16_t* encoding = nullptr);
    /// The same; the parse must succeed.
    std::vector<std::string> events(std::string_view bytes);
    /// The same, of the events with that name only.
    std::vector<std::string> events(std::string_view bytes, const char* name);
    /// The error of a document that must be refused.
    Outcome refused(std::string_view bytes);

    /// Resolves entities from `resources`, which are texts by absolute system identifier; what is not there, the reader
    /// opens.
    void serveResources();
    std::map<std::string, std::string> resources;
    std::vector<std::string> asked; ///< the system identifiers that were asked for

private:
    class Server : public Xml::Sax::EntityResolver {
    public:
        explicit Server(ReadingFixture& fixture) : fixture_(fixture) {}
        Xml::Sax::InputSource* resolveEntity(const Xml::XmlString& publicId,
                                             const Xml::XmlString& systemId) override;

    private:
        ReadingFixture& fixture_;
    };

    Server server_{*this};
    std::optional<Xml::Sax::SaxEngineReader> reader_;
    std::optional<RecordingHandler> handler_;
    std::vector<std::unique_ptr<Xml::MemoryByteChannel>> channels_;
};

/// Runs `parse` and says how it ended.
template <class Parse>
Outcome outcomeOf(Parse parse) {
    Outcome outcome;
    try {
        parse();
    } catch (const Xml::Sax::SaxParseException& e) {
        outcome = {
            true, true, show(e.getMessage()), show(e.getSystemId()), e.getLineNumber(), e.getColumnNumber()};
    } catch (const Xml::Sax::SaxException& e) {
        outcome = {true, false, show(e.getMessage()), "", 0, 0};
    }
    return outcome;
}

/// UTF-16 of `text`, in either order, without a mark.
std::string utf16(std::u16string_view text, bool bigEndian);

} // namespace Quillon::Testing

#endif
