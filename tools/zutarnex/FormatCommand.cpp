#include "Commands.h"
#include "Document.h"
#include "Failure.h"
#include "MappingKeeper.h"
#include "OutputFile.h"
#include "PlainWriter.h"
#include "ReadingOptions.h"
#include "saxengine/SaxEngineReader.h"
#include "xml/sax/EventFilter.h"
#include "xml/sax/RemoveNamespaceFilter.h"
#include "xml/sax/SaxIdentifiers.h"
#include "xml/sax/XmlFilterFormat.h"
#include "xml/sax/writer/StrictWriter.h"

#include <CLI/CLI.hpp>

#include <charconv>
#include <memory>
#include <string>
#include <vector>

namespace Quillon::Tool {

namespace {

using namespace Xml::Sax;

constexpr unsigned int kWidestIndent = 100;

struct FormatOptions {
    std::string file = "-";
    std::string output = "-";
    std::string indent = "none";
    bool newlineOnly = false;
    bool canonical = false;
    bool plain = false;
    std::string encoding = "UTF-8";
    std::vector<std::string> strippedNamespaces;
    ReadingOptions reading;
};

/// How XmlFilterFormat is to be made.
struct Indentation {
    XmlFilterFormat::AlignmentStyle style = XmlFilterFormat::AlignNone;
    XmlFilterFormat::TabMode tabs = XmlFilterFormat::TabSpaces;
    unsigned int width = 0;
};

bool parseWidth(const std::string& text, unsigned int& width) {
    const char* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, width);
    return result.ec == std::errc() && result.ptr == end && width <= kWidestIndent;
}

std::string checkIndent(const std::string& text) {
    unsigned int width;
    if (text == "tab" || text == "none" || parseWidth(text, width))
        return "";
    return "not a number up to " + std::to_string(kWidestIndent) + ", nor 'tab', nor 'none': " + text;
}

Indentation indentationOf(const FormatOptions& options) {
    Indentation result;
    if (options.newlineOnly) {
        result.style = XmlFilterFormat::AlignNewline;
    } else if (options.indent == "tab") {
        result.style = XmlFilterFormat::AlignIndent;
        result.tabs = XmlFilterFormat::TabTabs;
    } else if (parseWidth(options.indent, result.width)) {
        result.style = XmlFilterFormat::AlignIndent;
    }
    return result;
}

/// Stops the parse as soon as the output cannot be written, instead of reading the rest of the input for nothing. It
/// stands in front of the parser, where it costs nothing per event.
class OutputGuard : public Xml::ReadableByteChannel {
public:
    OutputGuard(Document& document, const OutputFile& out) : document_(document), out_(out) {}

    void close() override {}
    bool isOpen() const override { return true; }
    unsigned int read(unsigned char* buffer, unsigned int length) override {
        out_.check();
        return document_.read(buffer, length);
    }

private:
    Document& document_;
    const OutputFile& out_;
};

/// The strict writer unless the plain one was asked for.
std::unique_ptr<TextConsumer> makeWriter(std::ostream& out, const FormatOptions& options) {
    std::unique_ptr<TextConsumer> writer;
    if (options.plain) {
        writer = std::make_unique<PlainWriter>(out);
    } else {
        auto strict = std::make_unique<StrictWriter>(out);
        strict->spaceIsLayout(indentationOf(options).style != XmlFilterFormat::AlignNone);
        writer = std::move(strict);
    }
    writer->setEncoding(options.encoding.c_str());
    // What a filter has changed inside an external entity would be lost in a reference to it.
    writer->expandingEntities(!options.strippedNamespaces.empty());
    writer->setCanonical(options.canonical);
    return writer;
}

/// reader -> one filter for each stripped namespace -> indentation -> writer; what was not asked for is left out.
/// Comments, CDATA sections and the document type go from the reader straight to the writer.
ExitStatus formatTo(OutputFile& out, Document& document, const FormatOptions& options) {
    SaxEngineReader reader;
    options.reading.applyTo(reader);
    const std::unique_ptr<TextConsumer> writer = makeWriter(out.stream(), options);
    EventFilter::bind(&reader, writer.get());

    std::vector<std::unique_ptr<XmlFilterImpl>> chain;
    const auto last = [&] { return chain.empty() ? static_cast<XmlReader*>(&reader) : chain.back().get(); };
    for (const std::string& uri : options.strippedNamespaces)
        chain.push_back(std::make_unique<RemoveNamespaceFilter>(last(), Xml::makeString(uri.c_str())));
    if (!options.strippedNamespaces.empty())
        chain.push_back(std::make_unique<MappingKeeper>(last()));
    const Indentation indent = indentationOf(options);
    if (indent.style != XmlFilterFormat::AlignNone)
        chain.push_back(std::make_unique<XmlFilterFormat>(last(), indent.style, indent.tabs, indent.width));
    last()->setContentHandler(writer->getContentHandler());
    last()->setDTDHandler(writer->getDTDHandler());

    OutputGuard guard(document, out);
    document.source().setByteChannel(&guard);
    return parseReporting(*last(), document);
}

ExitStatus format(const FormatOptions& options) {
    Document document(options.file);
    OutputFile out(options.output);
    const ExitStatus status = formatTo(out, document, options);
    if (status == Done || options.output == "-")
        out.commit();
    return status;
}

} // namespace

void addFormatCommand(CLI::App& app, ExitStatus& status) {
    auto options = std::make_shared<FormatOptions>();
    CLI::App* command =
        app.add_subcommand("format", "Read a document and write it again, indented or filtered");
    command->add_option("FILE", options->file, "The document; - is standard input")->capture_default_str();
    command->add_option("-o,--output", options->output,
                        "Where to write; a file is replaced only when all went well");
    CLI::Option* indent =
        command
            ->add_option("--indent", options->indent,
                         "Put each tag on a line of its own, indented by N spaces or a tab per level")
            ->check(CLI::Validator(checkIndent, "N|tab|none"))
            ->type_name("")
            ->capture_default_str();
    command
        ->add_flag("--newline-only", options->newlineOnly, "Put each tag on a line of its own, not indented")
        ->excludes(indent);
    command
        ->add_option(
            "--strip-namespace", options->strippedNamespaces,
            "Leave out the tags and attributes of this namespace, not their content; may be repeated")
        ->type_name("URI")
        ->allow_extra_args(false);
    command->add_flag(
        "--canonical", options->canonical,
        "Write no XML declaration, no document type and no CDATA sections (this is not the W3C's C14N)");
    command->add_option("--encoding", options->encoding, "Of what is written")
        ->check(CLI::IsMember({"UTF-8", "US-ASCII", "ISO-8859-1"}))
        ->type_name("")
        ->capture_default_str();
    command->add_flag("--plain", options->plain,
                      "Write by the plain writer, which some documents make write ill-formed text");
    options->reading.addTo(*command);
    command->callback(
        [options, &status] { status = reportingFailures(options->file, [&] { return format(*options); }); });
}

} // namespace Quillon::Tool
