#include "PlainWriter.h"

#include "system/UserException.h"
#include "xml/sax/IllegalCharacterException.h"
#include "xml/sax/SaxParseException.h"

#include <cstring>

namespace Quillon::Tool {

using namespace Xml::Sax;

namespace {

unsigned short lastUnitOf(const char* encoding) {
    if (encoding && std::strcmp(encoding, "US-ASCII") == 0)
        return 0x7F;
    return encoding && std::strcmp(encoding, "ISO-8859-1") == 0 ? 0xFF : 0xFFFF;
}

} // namespace

PlainWriter::PlainWriter(std::ostream& out) : TextConsumer(out) {}

PlainWriter::~PlainWriter() = default;

void PlainWriter::setDocumentLocator(Locator* locator) {
    TextConsumer::setDocumentLocator(locator);
    locator_ = locator;
}

void PlainWriter::checkWritable(const unsigned short* units, unsigned int length) const {
    const unsigned short last = lastUnitOf(getEncoding());
    for (unsigned int i = 0; i < length; ++i) {
        if (units[i] <= last)
            continue;
        try {
            IllegalCharacterException::doThrow(units[i]);
        } catch (const System::UserException& refusal) {
            throw SaxParseException(Xml::makeString(refusal.getMessage().c_str()), *locator_);
        }
    }
}

void PlainWriter::characters(const unsigned short* ch, unsigned int start, unsigned int length) {
    if (inCDATA())
        checkWritable(ch + start, length);
    TextConsumer::characters(ch, start, length);
}

void PlainWriter::comment(const unsigned short* ch, unsigned int start, unsigned int length) {
    checkWritable(ch + start, length);
    TextConsumer::comment(ch, start, length);
}

void PlainWriter::processingInstruction(const Xml::XmlString& target, const Xml::XmlString& data) {
    checkWritable(data.data(), data.isNull() ? 0 : data.size());
    TextConsumer::processingInstruction(target, data);
}

} // namespace Quillon::Tool
