// What a URI holds: components, copying, and building one from a text. What is done with it: UriOperations.cpp.
#include "net/URI.h"

#include "net/UriParserInternal.h"
#include "xml/NullPointerException.h"

#include <new>
#include <utility>

namespace Quillon::Net {

namespace {

void replace(unsigned char*& component, unsigned char* text) noexcept {
    if (component && component != text)
        Runtime::release(component);
    component = text;
}

void replaceIfPresent(unsigned char*& component, OwnedText text) noexcept {
    if (text)
        replace(component, text.release());
}

/// The copy that a parsed URI owns.
unsigned char* stored(TextRange range) {
    if (!range.isPresent())
        return nullptr;
    OwnedText text = tryDuplicate(range);
    if (!text)
        throwOutOfMemory();
    return text.release();
}

} // namespace

URI::URI() noexcept = default;

// Delegates: once URI() is done, the destructor frees what a failed copy leaves behind.
URI::URI(const unsigned char* scheme, const unsigned char* authority, const unsigned char* path,
         const unsigned char* query, const unsigned char* fragment)
    : URI() {
    setScheme(duplicate(scheme).release());
    setAuthority(duplicate(authority).release());
    setPath(duplicate(path).release());
    setQuery(duplicate(query).release());
    setFragment(duplicate(fragment).release());
}

URI::URI(const URI& other) {
    copy(other);
}

URI::~URI() {
    cleanup();
}

URI& URI::operator=(const URI& other) {
    if (this == &other)
        return *this;
    URI copied(other); // first, so that nothing is lost when memory runs out
    setScheme(std::exchange(copied.scheme_, nullptr));
    setAuthority(std::exchange(copied.authority_, nullptr));
    setPath(std::exchange(copied.path_, nullptr));
    setQuery(std::exchange(copied.query_, nullptr));
    setFragment(std::exchange(copied.fragment_, nullptr));
    setUserInfo(std::exchange(copied.userInfo_, nullptr));
    setHost(std::exchange(copied.host_, nullptr));
    return *this;
}

// All of it or nothing.
void URI::copy(const URI& other) {
    OwnedText scheme = duplicate(other.scheme_);
    OwnedText authority = duplicate(other.authority_);
    OwnedText path = duplicate(other.path_);
    OwnedText query = duplicate(other.query_);
    OwnedText fragment = duplicate(other.fragment_);
    OwnedText userInfo = duplicate(other.userInfo_);
    OwnedText host = duplicate(other.host_);
    replaceIfPresent(scheme_, std::move(scheme));
    replaceIfPresent(authority_, std::move(authority));
    replaceIfPresent(path_, std::move(path));
    replaceIfPresent(query_, std::move(query));
    replaceIfPresent(fragment_, std::move(fragment));
    replaceIfPresent(userInfo_, std::move(userInfo));
    replaceIfPresent(host_, std::move(host));
}

void URI::cleanup() noexcept {
    setScheme(nullptr);
    setAuthority(nullptr);
    setPath(nullptr);
    setQuery(nullptr);
    setFragment(nullptr);
    setUserInfo(nullptr);
    setHost(nullptr);
}

URI* URI::construct(const unsigned char* text) {
    if (!text)
        Xml::NullPointerException::doThrow();
    const UriParts parts = parseUri(text);
    std::unique_ptr<URI> uri(new (std::nothrow) URI);
    if (!uri)
        throwOutOfMemory();
    uri->scheme_ = stored(parts.scheme);
    uri->authority_ = stored(parts.authority);
    uri->path_ = stored(parts.path);
    uri->query_ = stored(parts.query);
    uri->fragment_ = stored(parts.fragment);
    uri->userInfo_ = stored(parts.userInfo);
    uri->host_ = stored(parts.host);
    // Deliberate: as if a temporary had been copied, the port is left out (tests/net/UriParserTest.cpp,
    // PortIsNotDelivered).
    return uri.release();
}

unsigned char* URI::getScheme() const noexcept {
    return scheme_;
}

unsigned char* URI::getAuthority() const noexcept {
    return authority_;
}

unsigned char* URI::getPath() const noexcept {
    return path_;
}

unsigned char* URI::getQuery() const noexcept {
    return query_;
}

unsigned char* URI::getFragment() const noexcept {
    return fragment_;
}

unsigned char* URI::getUserInfo() const noexcept {
    return userInfo_;
}

unsigned char* URI::getHost() const noexcept {
    return host_;
}

int URI::getPort() const noexcept {
    return port_;
}

void URI::setScheme(unsigned char* scheme) noexcept {
    replace(scheme_, scheme);
}

void URI::setAuthority(unsigned char* authority) noexcept {
    replace(authority_, authority);
}

void URI::setPath(unsigned char* path) noexcept {
    replace(path_, path);
}

void URI::setQuery(unsigned char* query) noexcept {
    replace(query_, query);
}

void URI::setFragment(unsigned char* fragment) noexcept {
    replace(fragment_, fragment);
}

void URI::setUserInfo(unsigned char* userInfo) noexcept {
    replace(userInfo_, userInfo);
}

void URI::setHost(unsigned char* host) noexcept {
    replace(host_, host);
}

void URI::setPort(int port) noexcept {
    port_ = port;
}

} // namespace Quillon::Net
