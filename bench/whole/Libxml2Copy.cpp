// Reads a file piece by piece with libxml2's SAX2 interface and writes it to standard output with its xmlTextWriter.

#include <libxml/SAX2.h>
#include <libxml/parser.h>
#include <libxml/xmlwriter.h>

#include <cstdio>
#include <string>

namespace {

struct Copier {
    xmlTextWriterPtr writer;
    std::string text; ///< the writer wants an end of the text, the parser gives a length
};

Copier& self(void* context) {
    return *static_cast<Copier*>(context);
}

const xmlChar* terminated(Copier& copier, const xmlChar* begin, std::size_t length) {
    copier.text.assign(reinterpret_cast<const char*>(begin), length);
    return reinterpret_cast<const xmlChar*>(copier.text.c_str());
}

void startElement(void* context, const xmlChar* name, const xmlChar* prefix, const xmlChar*,
                  int namespaceCount, const xmlChar** namespaces, int attributeCount, int,
                  const xmlChar** attributes) {
    Copier& copier = self(context);
    xmlTextWriterStartElementNS(copier.writer, prefix, name, nullptr);
    for (int i = 0; i < namespaceCount; ++i) {
        const xmlChar* const* declaration = namespaces + 2 * i;
        if (declaration[0])
            xmlTextWriterWriteAttributeNS(copier.writer, BAD_CAST "xmlns", declaration[0], nullptr,
                                          declaration[1]);
        else
            xmlTextWriterWriteAttribute(copier.writer, BAD_CAST "xmlns", declaration[1]);
    }
    for (int i = 0; i < attributeCount; ++i) {
        const xmlChar* const* attribute = attributes + 5 * i; // name, prefix, URI, begin and end of the value
        xmlTextWriterWriteAttributeNS(
            copier.writer, attribute[1], attribute[0], nullptr,
            terminated(copier, attribute[3], static_cast<std::size_t>(attribute[4] - attribute[3])));
    }
}

void endElement(void* context, const xmlChar*, const xmlChar*, const xmlChar*) {
    xmlTextWriterFullEndElement(self(context).writer);
}

void characters(void* context, const xmlChar* text, int length) {
    Copier& copier = self(context);
    xmlTextWriterWriteString(copier.writer, terminated(copier, text, static_cast<std::size_t>(length)));
}

void comment(void* context, const xmlChar* text) {
    xmlTextWriterWriteComment(self(context).writer, text);
}

int toStandardOutput(void*, const char* bytes, int count) {
    return static_cast<int>(std::fwrite(bytes, 1, static_cast<std::size_t>(count), stdout));
}

bool parse(std::FILE* file, xmlParserCtxtPtr parser) {
    static char piece[65536];
    std::size_t count = 0;
    while ((count = std::fread(piece, 1, sizeof piece, file)) > 0)
        if (xmlParseChunk(parser, piece, static_cast<int>(count), 0) != 0)
            return false;
    return xmlParseChunk(parser, piece, 0, 1) == 0;
}

} // namespace

int main(int, char** arguments) {
    std::FILE* file = std::fopen(arguments[1], "rb");
    if (!file)
        return 1;
    xmlSAXHandler handler{};
    handler.initialized = XML_SAX2_MAGIC;
    handler.startElementNs = startElement;
    handler.endElementNs = endElement;
    handler.characters = characters;
    handler.ignorableWhitespace = characters;
    handler.comment = comment;

    Copier copier{xmlNewTextWriter(xmlOutputBufferCreateIO(toStandardOutput, nullptr, nullptr, nullptr)), {}};
    xmlTextWriterStartDocument(copier.writer, "1.0", "UTF-8", nullptr);
    xmlParserCtxtPtr parser = xmlCreatePushParserCtxt(&handler, &copier, nullptr, 0, arguments[1]);
    xmlCtxtUseOptions(parser, XML_PARSE_HUGE | XML_PARSE_NOENT);
    const bool done = parse(file, parser);
    xmlFreeParserCtxt(parser);
    xmlTextWriterEndDocument(copier.writer);
    xmlFreeTextWriter(copier.writer);
    std::fclose(file);
    return done && std::fflush(stdout) == 0 ? 0 : 1;
}
