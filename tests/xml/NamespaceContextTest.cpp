#include "xml/NamespaceContext.h"

#include "support/HostFixture.h"
#include "support/Text.h"

#include <gtest/gtest.h>

#include <memory>

namespace Quillon::Xml {
namespace {

using Testing::show;
using Testing::text;

/// One binding: p stands for urn:x.
class OneBinding : public NamespaceContext {
public:
    XmlString getNamespaceURI(const XmlString& prefix) const override {
        return prefix.compare(text(u"p")) == 0 ? text(u"urn:x") : XmlString();
    }
    XmlString getPrefix(const XmlString& uri) const override {
        return uri.compare(text(u"urn:x")) == 0 ? text(u"p") : XmlString();
    }
    std::vector<XmlString> getPrefixes(const XmlString& uri) const override {
        return getPrefix(uri).isNull() ? std::vector<XmlString>() : std::vector<XmlString>{getPrefix(uri)};
    }
};

class NamespaceContextTest : public Testing::HostFixture {};

TEST_F(NamespaceContextTest, IsImplementedByUsersAndUsedThroughTheInterface) {
    const std::unique_ptr<NamespaceContext> context(new OneBinding);
    EXPECT_EQ("urn:x", show(context->getNamespaceURI(text(u"p"))));
    EXPECT_TRUE(context->getNamespaceURI(text(u"q")).isNull());
    EXPECT_EQ("p", show(context->getPrefix(text(u"urn:x"))));
    EXPECT_EQ(1u, context->getPrefixes(text(u"urn:x")).size());
    EXPECT_TRUE(context->getPrefixes(text(u"urn:y")).empty());
}

} // namespace
} // namespace Quillon::Xml
