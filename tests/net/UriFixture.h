#ifndef ZUTARNEX_TESTS_NET_URIFIXTURE_H
#define ZUTARNEX_TESTS_NET_URIFIXTURE_H

#include "net/URI.h"
#include "net/UriModel.h"
#include "support/HostFixture.h"

#include <memory>
#include <string>

namespace Quillon::Testing {

using UriPtr = std::unique_ptr<Net::URI>;

/// What a setter takes: a copy from the host's allocator, null for null.
unsigned char* hostText(const char* text);
/// "(null)" for null.
std::string textOf(const unsigned char* text);

/// construct(), with the URI owned.
UriPtr parsed(const std::string& text);
/// recompose(), with the block freed.
std::string recomposed(const Net::URI& uri);

/// The components that are there, and the port if it is: `scheme='x' path='b' port=8`.
std::string show(const Net::URI& uri);
std::string show(const ModelUri& uri);

/// The same URI by the constructor of five components; userInfo and host are set, the port is not.
Net::URI fromModel(const ModelUri& uri);
/// Whether all components and the port are the same.
bool same(const Net::URI& uri, const ModelUri& model);

/// How construct() ends for `text`: `reason @index`, or what show() gives.
std::string outcome(const std::string& text);
std::string modelOutcome(const std::string& text);

class UriFixture : public HostFixture {};

} // namespace Quillon::Testing

#endif
