#ifndef ZUTARNEX_SAXENGINE_PARSESESSION_H
#define ZUTARNEX_SAXENGINE_PARSESESSION_H

#include "ContentEvents.h"
#include "DtdEvents.h"
#include "ExternalEntities.h"
#include "ParseContext.h"

#include <exception>

namespace Quillon::Xml::Sax {
class InputSource;
}

namespace Quillon::SaxEngine {

/// One parse, from startDocument to endDocument.
///
/// No exception crosses Expat's functions. What a handler throws, or the reader itself while Expat is at work, is kept;
/// Expat is stopped, nothing more is delivered, and it is thrown again once Expat has returned:
///
///     run -> read -> XML_ParseBuffer -> callback -> deliver -> handler
///                    ^                  |
///                    rethrow            keep, stop
class ParseSession {
public:
    ParseSession(const ReaderSettings& settings, const Vocabulary& words);
    ParseSession(const ParseSession&) = delete;
    ParseSession& operator=(const ParseSession&) = delete;

    void run(const Xml::Sax::InputSource& source);
    /// Reads an entity to its end, inside the one that is being read.
    void read(OpenEntity& entity);

    /// Calls `body` unless the parse has failed; false when it has failed then. For Expat's callbacks.
    template <class Body>
    bool deliver(Body body) noexcept {
        if (failure_)
            return false;
        try {
            body();
            return true;
        } catch (...) {
            keepFailure();
            return false;
        }
    }

    void declaration(const XML_Char* version, const XML_Char* encoding, int standalone);
    void showDefault(UnitSpan token);

    ParseContext context;
    ContentEvents content;
    ExternalEntities entities;
    DtdEvents dtd;

private:
    ParserPointer createParser();
    static void limitAmplification(const OpenEntity& document);
    void begin(OpenEntity& entity);
    void parseChunk(OpenEntity& entity, EntityInput::Chunk chunk);
    void failOnFault(OpenEntity& entity);
    void checkVersion(const XML_Char* version);
    void checkEncoding(const XML_Char* encoding);
    void keepFailure() noexcept;

    std::exception_ptr failure_;
};

} // namespace Quillon::SaxEngine

#endif
