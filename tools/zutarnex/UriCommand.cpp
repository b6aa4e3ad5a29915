#include "Commands.h"
#include "Failure.h"
#include "OutputFile.h"
#include "net/URI.h"
#include "net/URISyntaxException.h"
#include "runtime/HostServices.h"

#include <CLI/CLI.hpp>

#include <functional>
#include <memory>
#include <string>

namespace Quillon::Tool {

namespace {

using Net::URI;
using OwnedUri = std::unique_ptr<URI>;

const unsigned char* bytesOf(const std::string& text) {
    return reinterpret_cast<const unsigned char*>(text.c_str());
}

/// `text:1:column: error: reason`.
std::string diagnostic(const std::string& text, const Net::URISyntaxException& fault) {
    return text + ":1:" + std::to_string(fault.getIndex() + 1) + ": error: " + fault.getReason();
}

/// The same, then the text with a caret under the byte at fault.
std::string diagnosticWithCaret(const std::string& text, const Net::URISyntaxException& fault) {
    return diagnostic(text, fault) + '\n' + text + '\n' + std::string(fault.getIndex(), ' ') + '^';
}

OwnedUri parsed(const std::string& text,
                std::string (*describe)(const std::string&, const Net::URISyntaxException&)) {
    try {
        return OwnedUri(URI::construct(bytesOf(text)));
    } catch (const Net::URISyntaxException& fault) {
        throw Failure{BadInput, describe(text, fault)};
    } catch (int) { // the parser's way to say that there is no memory
        throw std::bad_alloc();
    }
}

OwnedUri parsed(const std::string& text) {
    return parsed(text, diagnostic);
}

void printComponent(std::ostream& out, const char* name, const unsigned char* text) {
    if (text)
        out << name << ": " << reinterpret_cast<const char*>(text) << '\n';
}

void printUri(std::ostream& out, const URI& uri) {
    const std::unique_ptr<unsigned char, void (*)(void*)> text(uri.recompose(), Runtime::release);
    out << reinterpret_cast<const char*>(text.get()) << '\n';
}

void printComponents(std::ostream& out, const std::string& text) {
    const OwnedUri uri = parsed(text, diagnosticWithCaret);
    printComponent(out, "scheme", uri->getScheme());
    printComponent(out, "authority", uri->getAuthority());
    printComponent(out, "userInfo", uri->getUserInfo());
    printComponent(out, "host", uri->getHost());
    printComponent(out, "path", uri->getPath());
    printComponent(out, "query", uri->getQuery());
    printComponent(out, "fragment", uri->getFragment());
}

/// The operands and switches of all of the commands below `uri`.
struct UriOptions {
    std::string first, second;
    bool strict = false;
};

using Action = std::function<void(std::ostream&, const UriOptions&)>;

ExitStatus perform(const Action& action, const UriOptions& options) {
    return reportingFailures("zutarnex", [&] {
        OutputFile out("-");
        action(out.stream(), options);
        out.commit();
        return Done;
    });
}

struct Parent {
    CLI::App& app;
    ExitStatus& status;
};

std::shared_ptr<UriOptions> addAction(const Parent& parent, const char* name, const char* help, Action action,
                                      const char* firstName, const char* secondName = nullptr) {
    auto options = std::make_shared<UriOptions>();
    CLI::App* command = parent.app.add_subcommand(name, help);
    command->add_option(firstName, options->first)->required();
    if (secondName)
        command->add_option(secondName, options->second)->required();
    ExitStatus& status = parent.status;
    command->callback([options, action, &status] { status = perform(action, *options); });
    return options;
}

} // namespace

void addUriCommand(CLI::App& app, ExitStatus& status) {
    CLI::App* uri =
        app.add_subcommand("uri", "Take URI references apart, resolve, relativize, normalize, compare them");
    uri->require_subcommand(1);
    const Parent parent{*uri, status};
    addAction(
        parent, "parse", "Print the components, one on each line",
        [](std::ostream& out, const UriOptions& options) { printComponents(out, options.first); }, "URI");
    const auto resolving = addAction(
        parent, "resolve", "Resolve REFERENCE against BASE (RFC 3986, section 5.2)",
        [](std::ostream& out, const UriOptions& options) {
            printUri(out, *OwnedUri(parsed(options.second)->resolve(*parsed(options.first), options.strict)));
        },
        "BASE", "REFERENCE");
    uri->get_subcommand("resolve")->add_flag(
        "--strict", resolving->strict, "A scheme that is the base's own makes the reference absolute, too");
    addAction(
        parent, "relativize", "Print a reference that leads from BASE to TARGET",
        [](std::ostream& out, const UriOptions& options) {
            printUri(out, *OwnedUri(parsed(options.second)->relativize(*parsed(options.first))));
        },
        "BASE", "TARGET");
    addAction(
        parent, "normalize", "Make the scheme lower-case and take dot segments out of the path",
        [](std::ostream& out, const UriOptions& options) {
            printUri(out, *OwnedUri(parsed(options.first)->normalize()));
        },
        "URI");
    addAction(
        parent, "compare", "Print 'equal' or 'different'; the case of letters counts nowhere",
        [](std::ostream& out, const UriOptions& options) {
            out << (*parsed(options.first) == *parsed(options.second) ? "equal\n" : "different\n");
        },
        "FIRST", "SECOND");
}

} // namespace Quillon::Tool
