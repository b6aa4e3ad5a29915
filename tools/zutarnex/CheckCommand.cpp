#include "Commands.h"
#include "Document.h"
#include "Failure.h"
#include "ReadingOptions.h"
#include "saxengine/SaxEngineReader.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

namespace Quillon::Tool {

namespace {

struct CheckOptions {
    std::vector<std::string> files;
    ReadingOptions reading;
};

ExitStatus checkAll(const CheckOptions& options) {
    Xml::Sax::SaxEngineReader reader;
    options.reading.applyTo(reader);
    ExitStatus worst = Done;
    for (const std::string& file : options.files) {
        const ExitStatus status = reportingFailures(file, [&] {
            Document document(file);
            return parseReporting(reader, document);
        });
        worst = std::max(worst, status);
    }
    return worst;
}

} // namespace

void addCheckCommand(CLI::App& app, ExitStatus& status) {
    auto options = std::make_shared<CheckOptions>();
    CLI::App* command = app.add_subcommand("check", "Say of each file whether it is well-formed");
    command->add_option("FILE", options->files, "Documents; - is standard input")->required();
    options->reading.addTo(*command);
    command->callback(
        [options, &status] { status = reportingFailures("zutarnex", [&] { return checkAll(*options); }); });
}

} // namespace Quillon::Tool
