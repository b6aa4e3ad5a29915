#ifndef ZUTARNEX_TOOLS_READINGOPTIONS_H
#define ZUTARNEX_TOOLS_READINGOPTIONS_H

#include "Document.h"
#include "ExitStatus.h"

#include <functional>

namespace CLI {
class App;
}
namespace Quillon::Xml::Sax {
class SaxEngineReader;
class XmlReader;
} // namespace Quillon::Xml::Sax

namespace Quillon::Tool {

/// What every command that reads XML lets its user choose.
struct ReadingOptions {
    bool externalEntities = false;
    unsigned int maximumDepth = 0; ///< 0: the reader's own

    void addTo(CLI::App& command);
    void applyTo(Xml::Sax::SaxEngineReader& reader) const;
};

/// Parses `document` by `parser` (the reader, or a filter over it) and reports every error, one line each. Returns
/// BadInput when there was one.
ExitStatus parseReporting(Xml::Sax::XmlReader& parser, Document& document);

} // namespace Quillon::Tool

#endif
