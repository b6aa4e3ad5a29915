// Reads a file with Xerces-C's SAX2 parser and writes it to standard output with its XMLFormatter, through a target with
// a buffer.

#include <xercesc/framework/XMLFormatter.hpp>
#include <xercesc/sax2/Attributes.hpp>
#include <xercesc/sax2/DefaultHandler.hpp>
#include <xercesc/sax2/SAX2XMLReader.hpp>
#include <xercesc/sax2/XMLReaderFactory.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLUni.hpp>

#include <cstdio>
#include <memory>

using namespace xercesc;

namespace {

class StandardOutput : public XMLFormatTarget {
public:
    void writeChars(const XMLByte* bytes, const XMLSize_t count, XMLFormatter*) override {
        std::fwrite(bytes, 1, count, stdout);
    }
};

class Copier : public DefaultHandler {
public:
    void startDocument() override { formatter_ << u"<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"; }

    void startElement(const XMLCh*, const XMLCh*, const XMLCh* qName, const Attributes& attributes) override {
        formatter_ << XMLFormatter::NoEscapes << u'<' << qName;
        for (XMLSize_t i = 0; i < attributes.getLength(); ++i)
            formatter_ << XMLFormatter::NoEscapes << u' ' << attributes.getQName(i) << u"=\""
                       << XMLFormatter::AttrEscapes << attributes.getValue(i) << XMLFormatter::NoEscapes
                       << u'"';
        formatter_ << u'>';
    }

    void endElement(const XMLCh*, const XMLCh*, const XMLCh* qName) override {
        formatter_ << XMLFormatter::NoEscapes << u"</" << qName << u'>';
    }

    void characters(const XMLCh* text, const XMLSize_t length) override {
        formatter_.formatBuf(text, length, XMLFormatter::CharEscapes);
    }

    void processingInstruction(const XMLCh* target, const XMLCh* data) override {
        formatter_ << XMLFormatter::NoEscapes << u"<?" << target << u' ' << data << u"?>";
    }

    void comment(const XMLCh* text, const XMLSize_t length) override {
        formatter_ << XMLFormatter::NoEscapes << u"<!--";
        formatter_.formatBuf(text, length, XMLFormatter::NoEscapes);
        formatter_ << u"-->";
    }

private:
    StandardOutput out_;
    XMLFormatter formatter_{"UTF-8", &out_, XMLFormatter::NoEscapes, XMLFormatter::UnRep_CharRef};
};

void copy(const char* path) {
    const std::unique_ptr<SAX2XMLReader> reader(XMLReaderFactory::createXMLReader());
    reader->setFeature(XMLUni::fgSAX2CoreValidation, false);
    reader->setFeature(XMLUni::fgSAX2CoreNameSpacePrefixes, true);
    reader->setFeature(XMLUni::fgXercesLoadExternalDTD, false);
    Copier copier;
    reader->setContentHandler(&copier);
    reader->setLexicalHandler(&copier);
    reader->setErrorHandler(&copier);
    reader->parse(path);
}

} // namespace

int main(int, char** arguments) {
    static char buffer[65536];
    std::setvbuf(stdout, buffer, _IOFBF, sizeof buffer);
    XMLPlatformUtils::Initialize();
    copy(arguments[1]);
    XMLPlatformUtils::Terminate();
    return std::fflush(stdout);
}
