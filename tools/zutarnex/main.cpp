#include "Commands.h"
#include "ExitStatus.h"
#include "runtime/HostServices.h"

#include "zutarnex/version.h"

#include <CLI/CLI.hpp>

#include <clocale>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <string>

using namespace Quillon::Tool;

namespace {

/// The plain writer has no other way to tell that memory has run out inside an event.
[[noreturn]] void endForLackOfMemory() {
    std::fputs("zutarnex: error: out of memory\n", stderr);
    std::_Exit(NoAccess);
}

void installHost() {
    Quillon::Runtime::HostServices services = Quillon::Runtime::defaultHostServices();
    services.unexpected = endForLackOfMemory;
    Quillon::Runtime::setHostServices(services);
}

int run(int argc, char** argv) {
    installHost();
    std::setlocale(LC_CTYPE, "");  // messages and file names are text of the user's code page
    std::signal(SIGPIPE, SIG_IGN); // a closed pipe is an error that can be told

    CLI::App app(
        "Reads, checks and writes XML documents; URIs, Base64, hexadecimal digits and numbers beside it.",
        "zutarnex");
    app.set_version_flag("--version", std::string(libzutarnex_version) + " (" + libzutarnex_build_date + ")");
    app.require_subcommand(1);
    app.failure_message(CLI::FailureMessage::help);
    app.footer(
        "Exit status: 0 done, 1 ill-formed input or a character that cannot be written, 2 wrong usage,\n"
        "3 something could not be read or written.");

    ExitStatus status = Done;
    addFormatCommand(app, status);
    addCheckCommand(app, status);
    addEventsCommand(app, status);
    addUriCommand(app, status);
    addCodecCommands(app, status);
    addConvertCommand(app, status);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& fault) {
        return app.exit(fault) == 0 ? Done : WrongUsage;
    }
    return status;
}

} // namespace

int main(int argc, char** argv) {
    try {
        return run(argc, argv);
    } catch (...) { // commands report their own failures; what is left is no memory
        endForLackOfMemory();
    }
}
