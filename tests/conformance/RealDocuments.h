#ifndef ZUTARNEX_TESTS_CONFORMANCE_REALDOCUMENTS_H
#define ZUTARNEX_TESTS_CONFORMANCE_REALDOCUMENTS_H

#include "xml/sax/EntityResolver.h"

#include <string>
#include <vector>

namespace Quillon::Testing {

/// The documents of shared/data/real, as paths.
std::vector<std::string> realDocuments();

/// Answers the URLs of the XHTML DTDs and entity sets with the copies beside the documents, DTDs that are not there with
/// nothing in them, and leaves everything else to the reader.
class RealDocumentResolver : public Xml::Sax::EntityResolver {
public:
    ~RealDocumentResolver() override;
    Xml::Sax::InputSource* resolveEntity(const Xml::XmlString& publicId,
                                         const Xml::XmlString& systemId) override;
};

} // namespace Quillon::Testing

#endif
