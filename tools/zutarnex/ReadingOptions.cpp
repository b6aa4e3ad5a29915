#include "ReadingOptions.h"

#include "Failure.h"
#include "saxengine/SaxEngineReader.h"
#include "xml/sax/ErrorHandler.h"
#include "xml/sax/SaxIdentifiers.h"
#include "xml/sax/SaxParseException.h"

#include <CLI/CLI.hpp>

namespace Quillon::Tool {

namespace {

using namespace Xml::Sax;

class ErrorPrinter : public ErrorHandler {
public:
    ErrorPrinter(const std::string& name, const Xml::XmlString& systemId)
        : name_(name), systemId_(systemId) {}

    bool hasPrinted() const noexcept { return hasPrinted_; }

    void warning(const SaxParseException&) override {}
    void error(const SaxParseException& fault) override {
        printLine(diagnostic(fault, name_, systemId_));
        hasPrinted_ = true;
    }
    void fatalError(const SaxParseException& fault) override { error(fault); }

private:
    const std::string& name_;
    const Xml::XmlString systemId_;
    bool hasPrinted_ = false;
};

} // namespace

void ReadingOptions::addTo(CLI::App& command) {
    command.add_flag(
        "--external-entities", externalEntities,
        "Read external entities and the external subset (off: nothing is opened that you did not name)");
    command.add_option("--maximum-depth", maximumDepth, "Refuse elements nested deeper than this")
        ->check(CLI::PositiveNumber)
        ->type_name("N");
}

void ReadingOptions::applyTo(SaxEngineReader& reader) const {
    reader.setFeature(SC_Features_ExternalGeneralEntities(), externalEntities);
    reader.setFeature(SC_Features_ExternalParameterEntities(), externalEntities);
    if (maximumDepth != 0)
        reader.setMaximumDepth(maximumDepth);
}

ExitStatus parseReporting(XmlReader& parser, Document& document) {
    ErrorPrinter errors(document.name(), document.source().getSystemId());
    parser.setErrorHandler(&errors);
    try {
        parser.parse(document.source());
    } catch (const SaxParseException& fault) {
        if (!errors.hasPrinted())
            errors.fatalError(fault);
    }
    return errors.hasPrinted() ? BadInput : Done;
}

} // namespace Quillon::Tool
