#ifndef ZUTARNEX_TOOLS_PLAINWRITER_H
#define ZUTARNEX_TOOLS_PLAINWRITER_H

#include "xml/sax/writer/TextConsumer.h"

#include <iosfwd>

namespace Quillon::Tool {

/// The plain writer, with the one thing that would end the process made an exception: characters that the encoding
/// lacks, in comments, processing instructions and CDATA sections.
///
/// Throws: SaxParseException from these events, its message that of the writer's own exception; nothing of the event
///         is written.
class PlainWriter : public Xml::Sax::TextConsumer {
public:
    explicit PlainWriter(std::ostream& out);
    ~PlainWriter() override;

    void setDocumentLocator(Xml::Sax::Locator* locator) override;
    void characters(const unsigned short* ch, unsigned int start, unsigned int length) override;
    void comment(const unsigned short* ch, unsigned int start, unsigned int length) override;
    void processingInstruction(const Xml::XmlString& target, const Xml::XmlString& data) override;

private:
    void checkWritable(const unsigned short* units, unsigned int length) const;

    const Xml::Sax::Locator* locator_ = nullptr;
};

} // namespace Quillon::Tool

#endif
