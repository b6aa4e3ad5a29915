#include "SystemIdentifier.h"

#include "Text.h"
#include "runtime/HostServices.h"
#include "xml/XmlStringConversion.h"
#include "xml/sax/SaxException.h"

#include <cerrno>
#include <memory>
#include <optional>
#include <string_view>
#include <unistd.h>
#include <vector>

namespace Quillon::SaxEngine {

namespace {

bool isAlpha(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}
bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

int hexValue(char c) {
    if (isDigit(c))
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    return c >= 'A' && c <= 'F' ? c - 'A' + 10 : -1;
}

/// The length of the scheme in front of a colon; 0: there is none.
std::size_t schemeLength(std::string_view text) {
    if (text.empty() || !isAlpha(text[0]))
        return 0;
    std::size_t i = 1;
    while (i < text.size()
           && (isAlpha(text[i]) || isDigit(text[i]) || text[i] == '+' || text[i] == '-' || text[i] == '.'))
        ++i;
    return i < text.size() && text[i] == ':' ? i : 0;
}

/// The five components, as RFC 3986, appendix B, parts them.
struct Components {
    std::optional<std::string_view> scheme, authority, query, fragment;
    std::string_view path;

    explicit Components(std::string_view text) {
        if (const std::size_t length = schemeLength(text)) {
            scheme = text.substr(0, length);
            text.remove_prefix(length + 1);
        }
        fragment = cutAt(text, '#');
        query = cutAt(text, '?');
        if (text.starts_with("//")) {
            text.remove_prefix(2);
            authority = text.substr(0, text.find('/'));
            text.remove_prefix(authority->size());
        }
        path = text;
    }

private:
    static std::optional<std::string_view> cutAt(std::string_view& text, char mark) {
        const std::size_t at = text.find(mark);
        if (at == std::string_view::npos)
            return std::nullopt;
        const std::string_view tail = text.substr(at + 1);
        text = text.substr(0, at);
        return tail;
    }
};

/// RFC 3986, section 5.2.4.
std::string withoutDotSegments(std::string_view in) {
    std::string out;
    while (!in.empty()) {
        if (in.starts_with("../")) {
            in.remove_prefix(3);
        } else if (in.starts_with("./") || in.starts_with("/./")) {
            in.remove_prefix(2);
        } else if (in == "/.") {
            in = "/";
        } else if (in.starts_with("/../") || in == "/..") {
            in = in == "/.." ? "/" : in.substr(3);
            const std::size_t slash = out.rfind('/');
            out.resize(slash == std::string::npos ? 0 : slash);
        } else if (in == "." || in == "..") {
            in = {};
        } else {
            const std::size_t end = in.find('/', 1);
            out += in.substr(0, end);
            in.remove_prefix(end == std::string_view::npos ? in.size() : end);
        }
    }
    return out;
}

/// RFC 3986, section 5.2.3.
std::string mergedPath(const Components& base, std::string_view path) {
    if (base.authority && base.path.empty())
        return "/" + std::string(path);
    const std::size_t slash = base.path.rfind('/');
    return std::string(base.path.substr(0, slash == std::string_view::npos ? 0 : slash + 1))
           + std::string(path);
}

std::string composed(const Components& from, const std::optional<std::string_view>& authority,
                     std::string_view path, const std::optional<std::string_view>& query,
                     const std::optional<std::string_view>& fragment) {
    std::string uri;
    if (from.scheme)
        uri.append(*from.scheme).append(":");
    if (authority)
        uri.append("//").append(*authority);
    uri.append(path);
    if (query)
        uri.append("?").append(*query);
    if (fragment)
        uri.append("#").append(*fragment);
    return uri;
}

/// Every byte but those that may stand in a path as they are becomes an escape.
std::string escapedPath(std::string_view path) {
    static constexpr char kHex[] = "0123456789ABCDEF";
    static constexpr std::string_view kPlain = "-._~!$&'()*+,;=:@/";
    std::string uri;
    for (const char c : path) {
        const auto byte = static_cast<unsigned char>(c);
        if (isAlpha(c) || isDigit(c) || kPlain.find(c) != std::string_view::npos)
            uri += c;
        else
            uri.append({'%', kHex[byte >> 4], kHex[byte & 15]});
    }
    return uri;
}

std::string currentFolderUri() {
    std::vector<char> buffer(256);
    while (!::getcwd(buffer.data(), buffer.size())) {
        if (errno != ERANGE)
            return "file:///"; // a folder that was removed: its relative names mean nothing
        buffer.resize(2 * buffer.size());
    }
    std::string path = buffer.data();
    if (path.back() != '/')
        path += '/';
    return "file://" + escapedPath(path);
}

struct ReleaseToHost {
    void operator()(char* block) const { Runtime::release(block); }
};

/// A path in the bytes of the file system: in the local code page if that has all its characters, else in UTF-8.
std::string pathBytes(const std::string& path) {
    const Xml::XmlString units = fromUtf8(path);
    const std::unique_ptr<char, ReleaseToHost> native(Xml::XmlStringConversion::toNative(units));
    return Xml::makeString(native.get()).compare(units) == 0 ? std::string(native.get()) : path;
}

[[noreturn]] void refuse(const std::string& systemId, const char* why) {
    throw Xml::Sax::SaxException(fromUtf8("cannot open \"" + systemId + "\": " + why));
}

std::string unescapedPath(const std::string& systemId, std::string_view path) {
    std::string bytes;
    for (std::size_t i = 0; i < path.size(); ++i) {
        if (path[i] != '%') {
            bytes += path[i];
            continue;
        }
        const int high = i + 2 < path.size() ? hexValue(path[i + 1]) : -1;
        const int low = i + 2 < path.size() ? hexValue(path[i + 2]) : -1;
        if (high < 0 || low < 0)
            refuse(systemId, "a percent sign without two hexadecimal digits");
        if (high == 0 && low == 0)
            refuse(systemId, "a file name cannot hold a zero byte");
        bytes += static_cast<char>(high << 4 | low);
        i += 2;
    }
    return bytes;
}

} // namespace

std::string absoluteUri(const std::string& systemId) {
    if (schemeLength(systemId) != 0)
        return systemId;
    const std::string path = escapedPath(pathBytes(systemId));
    if (path.starts_with('/'))
        return "file://" + withoutDotSegments(path);
    // "./" keeps a first segment with a colon from being taken for a scheme.
    return resolvedUri(currentFolderUri(), "./" + path);
}

std::string resolvedUri(const std::string& base, const std::string& reference) {
    if (base.empty())
        return resolvedUri(currentFolderUri(), reference);
    const Components r(reference), b(base);
    if (r.scheme)
        return composed(r, r.authority, withoutDotSegments(r.path), r.query, r.fragment);
    if (r.authority)
        return composed(b, r.authority, withoutDotSegments(r.path), r.query, r.fragment);
    if (r.path.empty())
        return composed(b, b.authority, b.path, r.query ? r.query : b.query, r.fragment);
    const std::string path(r.path.starts_with('/') ? std::string(r.path) : mergedPath(b, r.path));
    return composed(b, b.authority, withoutDotSegments(path), r.query, r.fragment);
}

std::string pathOf(const std::string& systemId) {
    if (schemeLength(systemId) == 0)
        return pathBytes(systemId);
    const Components uri(systemId);
    if (!equalsIgnoringCase(*uri.scheme, "file"))
        refuse(systemId, "only files are read, no network is reached");
    if (uri.authority && !uri.authority->empty() && !equalsIgnoringCase(*uri.authority, "localhost"))
        refuse(systemId, "the file is on another host");
    if (!uri.path.starts_with('/'))
        refuse(systemId, "a file: URI needs an absolute path");
    if (uri.query)
        refuse(systemId, "a file: URI has no query");
    return unescapedPath(systemId, uri.path); // a fragment is no part of what is opened
}

} // namespace Quillon::SaxEngine
