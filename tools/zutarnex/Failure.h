#ifndef ZUTARNEX_TOOLS_FAILURE_H
#define ZUTARNEX_TOOLS_FAILURE_H

#include "ExitStatus.h"

#include <functional>
#include <string>

namespace Quillon::Xml {
class XmlString;
}
namespace Quillon::Xml::Sax {
class SaxParseException;
}

namespace Quillon::Tool {

/// Ends a command: the status and the one line for standard error that says why.
struct Failure {
    ExitStatus status;
    std::string line;
};

/// `what: reason of errno`, for things that could not be read or written.
Failure noAccess(const std::string& what, int errorNumber);

/// Text for standard error, in the code page of the locale; empty for a null string.
std::string native(const Xml::XmlString& text);

/// `file:line:column: error: what`. `name` stands for the document itself, whose faults carry `systemId`; a fault in
/// another entity is named by its own identifier.
std::string diagnostic(const Xml::Sax::SaxParseException& fault, const std::string& name,
                       const Xml::XmlString& systemId);
std::string diagnostic(const std::string& name, const std::string& what);

void printLine(const std::string& line); ///< to standard error

/// Runs `command`, turns whatever it throws into one line on standard error, and returns the status of it all.
/// `name` is what the line begins with where the exception has no place of its own.
ExitStatus reportingFailures(const std::string& name, const std::function<ExitStatus()>& command);

} // namespace Quillon::Tool

#endif
