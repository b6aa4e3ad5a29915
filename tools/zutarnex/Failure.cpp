#include "Failure.h"

#include "runtime/HostServices.h"
#include "system/OutOfMemoryException.h"
#include "xml/IOException.h"
#include "xml/XmlString.h"
#include "xml/XmlStringConversion.h"
#include "xml/sax/SaxParseException.h"

#include <cstdio>
#include <cstring>
#include <exception>
#include <memory>
#include <new>

namespace Quillon::Tool {

namespace {

std::string named(const std::string& name, const std::string& what) {
    return name + ": error: " + what;
}

/// A message may hold what a document holds; one fault is one line.
std::string onOneLine(std::string text) {
    for (char& c : text)
        if (static_cast<unsigned char>(c) < 0x20)
            c = ' ';
    return text;
}

} // namespace

Failure noAccess(const std::string& what, int errorNumber) {
    return {NoAccess, named(what, std::strerror(errorNumber))};
}

std::string native(const Xml::XmlString& text) {
    const std::unique_ptr<char, void (*)(void*)> bytes(Xml::XmlStringConversion::toNative(text),
                                                       Runtime::release);
    return bytes ? bytes.get() : "";
}

std::string diagnostic(const Xml::Sax::SaxParseException& fault, const std::string& name,
                       const Xml::XmlString& systemId) {
    const Xml::XmlString where = fault.getSystemId();
    const bool isElsewhere = where.size() != 0 && where.compare(systemId) != 0;
    return (isElsewhere ? native(where) : name) + ':' + std::to_string(fault.getLineNumber()) + ':'
           + std::to_string(fault.getColumnNumber()) + ": error: " + onOneLine(native(fault.getMessage()));
}

std::string diagnostic(const std::string& name, const std::string& what) {
    return named(name, onOneLine(what));
}

void printLine(const std::string& line) {
    std::fprintf(stderr, "%s\n", line.c_str());
}

ExitStatus reportingFailures(const std::string& name, const std::function<ExitStatus()>& command) {
    try {
        return command();
    } catch (const Failure& failure) {
        printLine(failure.line);
        return failure.status;
    } catch (const Xml::Sax::SaxException& fault) {
        printLine(diagnostic(name, native(fault.getMessage())));
        return BadInput;
    } catch (const Xml::IOException&) {
        printLine(named(name, "cannot be read"));
        return NoAccess;
    } catch (const System::OutOfMemoryException&) {
        printLine(named(name, "out of memory"));
        return NoAccess;
    } catch (const std::bad_alloc&) {
        printLine(named(name, "out of memory"));
        return NoAccess;
    } catch (const std::exception& fault) {
        printLine(diagnostic(name, fault.what()));
        return NoAccess;
    }
}

} // namespace Quillon::Tool
