#include "Commands.h"
#include "Document.h"
#include "EventPrinter.h"
#include "Failure.h"
#include "OutputFile.h"
#include "ReadingOptions.h"
#include "saxengine/SaxEngineReader.h"
#include "xml/sax/SaxIdentifiers.h"

#include <CLI/CLI.hpp>

#include <memory>
#include <string>

namespace Quillon::Tool {

namespace {

using namespace Xml::Sax;

struct EventsOptions {
    std::string file = "-";
    bool namespacePrefixes = false;
    ReadingOptions reading;
};

ExitStatus printEvents(const EventsOptions& options) {
    Document document(options.file);
    OutputFile out("-");
    EventPrinter printer(out);
    SaxEngineReader reader;
    options.reading.applyTo(reader);
    reader.setFeature(SC_Features_NamespacePrefixes(), options.namespacePrefixes);
    reader.setContentHandler(&printer);
    reader.setDTDHandler(&printer);
    reader.setProperty(SC_Properties_LexicalHandler(), static_cast<LexicalHandler*>(&printer));
    reader.setProperty(SC_Properties_DeclarationHandler(), static_cast<DeclHandler*>(&printer));
    const ExitStatus status = parseReporting(reader, document);
    printer.finish();
    out.commit();
    return status;
}

} // namespace

void addEventsCommand(CLI::App& app, ExitStatus& status) {
    auto options = std::make_shared<EventsOptions>();
    CLI::App* command = app.add_subcommand("events", "Print the SAX events of a document, one on each line");
    command->add_option("FILE", options->file, "The document; - is standard input")->capture_default_str();
    command->add_flag("--namespace-prefixes", options->namespacePrefixes,
                      "Show namespace declarations among the attributes, too");
    options->reading.addTo(*command);
    command->callback([options, &status] {
        status = reportingFailures(options->file, [&] { return printEvents(*options); });
    });
}

} // namespace Quillon::Tool
