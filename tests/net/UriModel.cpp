#include "net/UriModel.h"

#include <algorithm>
#include <climits>
#include <cstring>

namespace Quillon::Testing {

namespace {

bool isOneOf(char c, const char* characters) {
    return c != 0 && std::strchr(characters, c) != nullptr;
}
bool isDigit(char c) {
    return c >= '0' && c <= '9';
}
bool isAlpha(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}
bool isHexDigit(char c) {
    return isDigit(c) || (c >= 'A' && c <= 'F') || (c >= 'a' && c <= 'f');
}
bool isUnreserved(char c) {
    return isAlpha(c) || isDigit(c) || isOneOf(c, "-._~");
}
bool isSubDelim(char c) {
    return isOneOf(c, "!$&'()*+,;=");
}
bool isSchemeCharacter(char c) {
    return isAlpha(c) || isDigit(c) || isOneOf(c, "+-.");
}
bool isUserInfoCharacter(char c) {
    return isUnreserved(c) || isSubDelim(c) || c == ':';
}
bool isRegNameCharacter(char c) {
    return isUnreserved(c) || isSubDelim(c);
}
bool isPchar(char c) {
    return isUnreserved(c) || isSubDelim(c) || c == ':' || c == '@';
}
bool isSegmentNzNcCharacter(char c) {
    return isPchar(c) && c != ':';
}
bool isPathCharacter(char c) {
    return isPchar(c) || c == '/';
}
bool isQueryCharacter(char c) {
    return isPchar(c) || c == '/' || c == '?';
}

/// The number that the leading digits of `text` spell.
int decimal(const std::string& text) {
    long long value = 0;
    for (std::size_t i = 0; i < text.size() && isDigit(text[i]); ++i) {
        value = value * 10 + (text[i] - '0');
        if (value > INT_MAX)
            return INT_MAX;
    }
    return static_cast<int>(value);
}

/// Each function that can meet a fault returns false then, and has noted the fault.
class ModelParser {
public:
    explicit ModelParser(const std::string& text) : text_(text) {}

    ModelParse parse() {
        ModelParse result;
        if (parseReference())
            result.uri = uri_;
        else
            result.fault = fault_;
        return result;
    }

private:
    bool fail(const std::string& reason, std::size_t index) {
        fault_ = ModelFault{reason, index};
        return false;
    }

    bool startsAt(std::size_t position, const char* what) const {
        return text_.compare(position, std::strlen(what), what) == 0;
    }
    /// The first of `characters` from `position` on, or the end.
    std::size_t firstOf(const char* characters, std::size_t position) const {
        const std::size_t found = text_.find_first_of(characters, position);
        return found == std::string::npos ? text_.size() : found;
    }
    std::string between(std::size_t start, std::size_t end) const { return text_.substr(start, end - start); }

    bool validate(std::size_t start, std::size_t end, bool (*isMember)(char), const std::string& name) {
        std::size_t position = start;
        while (position < end) {
            if (isMember(text_[position])) {
                position += 1;
            } else if (text_[position] == '%') {
                if (position + 3 > end || !isHexDigit(text_[position + 1])
                    || !isHexDigit(text_[position + 2]))
                    return fail("Malformed escape pair", position);
                position += 3;
            } else {
                return fail("Illegal character in " + name, position);
            }
        }
        return true;
    }

    bool parseReference() {
        const std::size_t stop = firstOf(":/?#", 0);
        bool hasScheme = false;
        std::size_t position = 0;
        if (stop < text_.size() && text_[stop] == ':') {
            hasScheme = true;
            if (!parseScheme(stop))
                return false;
            position = stop + 1;
        }

        const std::size_t pathEnd = firstOf("?#", position);
        std::size_t pathStart = position;
        if (startsAt(position, "//")) {
            if (!parseAuthority(position + 2, &pathStart)
                || !validate(pathStart, pathEnd, isPathCharacter, "path"))
                return false;
        } else if (startsAt(position, "/")) {
            if (!validate(position, pathEnd, isPathCharacter, "absolute path"))
                return false;
        } else if (hasScheme) {
            if (!validate(position, pathEnd, isPathCharacter, "rootless path"))
                return false;
        } else if (!validateSegments(position, pathEnd)) {
            return false;
        }
        uri_.path = between(pathStart, pathEnd);
        return parseQueryAndFragment(pathEnd);
    }

    bool parseScheme(std::size_t end) {
        if (end == 0)
            return fail("Expecting scheme name", 0);
        if (!isAlpha(text_[0]))
            return fail("Illegal character in scheme name", 0);
        uri_.scheme = between(0, end);
        return validate(1, end, isSchemeCharacter, "scheme name");
    }

    bool validateSegments(std::size_t start, std::size_t end) {
        std::size_t slash = std::min(text_.find('/', start), end);
        if (!validate(start, slash, isSegmentNzNcCharacter, "segment-nz-nc"))
            return false;
        while (slash < end) {
            const std::size_t next = std::min(text_.find('/', slash + 1), end);
            if (!validate(slash + 1, next, isPchar, "segment"))
                return false;
            slash = next;
        }
        return true;
    }

    bool parseQueryAndFragment(std::size_t position) {
        if (startsAt(position, "?")) {
            const std::size_t end = firstOf("#", position);
            if (!validate(position + 1, end, isQueryCharacter, "query"))
                return false;
            uri_.query = between(position + 1, end);
            position = end;
        }
        if (startsAt(position, "#")) {
            if (position + 2 < text_.size()
                && !validate(position + 2, text_.size(), isQueryCharacter, "query"))
                return false;
            uri_.fragment = text_.substr(position + 1);
        }
        return true;
    }

    bool parseAuthority(std::size_t start, std::size_t* end) {
        std::size_t position = start;
        const std::size_t stop = firstOf("@[/?#", position);
        if (stop < text_.size() && text_[stop] == '@') {
            if (!validate(position, stop, isUserInfoCharacter, "userinfo"))
                return false;
            uri_.userInfo = between(position, stop);
            position = stop + 1;
        }
        if (!parseHost(&position) || !parsePort(&position))
            return false;
        uri_.authority = between(start, position);
        *end = position;
        return true;
    }

    bool parseHost(std::size_t* position) {
        if (startsAt(*position, "["))
            return parseIpLiteral(position);
        const std::size_t start = *position;
        const std::size_t end = firstOf(":/?#", start);
        std::size_t afterAddress = start;
        const bool isAddress = readIpv4(&afterAddress, end) && afterAddress == end;
        if (!isAddress && !validate(start, end, isRegNameCharacter, "reg-name"))
            return false;
        if (start != end)
            uri_.host = between(start, end);
        *position = end;
        return true;
    }

    bool parsePort(std::size_t* position) {
        if (!startsAt(*position, ":"))
            return true;
        const std::size_t start = *position + 1;
        const std::size_t end = firstOf("/?#", start);
        if (!validate(start, end, isDigit, "port"))
            return false;
        if (start != end)
            uri_.port = decimal(between(start, end));
        *position = end;
        return true;
    }

    bool readIpv4(std::size_t* position, std::size_t end) {
        for (int octet = 1; octet <= 4; ++octet) {
            const std::size_t start = *position;
            while (*position < end && isDigit(text_[*position]))
                ++*position;
            if (*position == start)
                return fail(octet == 1 ? "Expecting IPv4 address" : "Malformed IPv4 address", start);
            if (decimal(between(start, *position)) > 255)
                return fail("Malformed IPv4 address", start);
            if (octet == 4)
                break;
            if (*position == end || text_[*position] != '.')
                return fail("Malformed IPv4 address", *position);
            ++*position;
        }
        return true;
    }

    bool parseIpLiteral(std::size_t* position) {
        const std::size_t open = *position;
        const std::size_t close = firstOf("]?#", open);
        if (close == text_.size() || text_[close] != ']')
            return fail("Expecting closing bracket for IP Literal address", close);
        if (close == open + 1)
            return fail("Expecting non-empty IPv6 address", close);
        if (!checkIpv6(open + 1, close))
            return false;
        uri_.host = between(open, close + 1);
        *position = close + 1;
        return true;
    }

    bool checkIpv6(std::size_t start, std::size_t end) {
        std::size_t position = start;
        if (!readGroups(&position, end))
            return false;
        const std::string rest = between(position, end);
        if (rest.substr(0, 2) == "::") {
            position += 2;
            return readGroups(&position, end);
        }
        const bool hasGroups = position != start;
        if (hasGroups && rest.substr(0, 1) == ":") {
            position += 1;
            if (!readIpv4(&position, end))
                return false;
        }
        return checkPrefixLength(position, end);
    }

    bool readGroups(std::size_t* position, std::size_t end) {
        std::size_t start = *position;
        for (;;) {
            std::size_t stop = start;
            while (stop < end && isHexDigit(text_[stop]))
                ++stop;
            const std::string group = between(start, stop), rest = between(stop, end);
            const bool beginsIpv4 = !rest.empty() && rest[0] == '.';
            if (group.empty() || beginsIpv4)
                return true;
            if (group.size() > 4)
                return fail("IPv6 hexadecimal digit sequence too long", start);
            *position = stop;
            if (rest == ":")
                return fail("Expecting digits for an IPv6 address", end);
            const bool goesOn = rest.size() >= 2 && rest[0] == ':' && rest[1] != ':';
            if (!goesOn)
                return true;
            start = stop + 1;
        }
    }

    bool checkPrefixLength(std::size_t position, std::size_t end) {
        const std::string rest = between(position, end);
        if (rest.empty() || rest[0] != '/')
            return true;
        if (rest.size() == 1 || !isDigit(rest[1]))
            return fail("Expecting IPv6 prefix length", position + 1);
        if (decimal(rest.substr(1)) > 128)
            return fail("IPv6 prefix length is greater than 128", position + 1);
        return true;
    }

    const std::string& text_;
    ModelUri uri_;
    ModelFault fault_{};
};

std::string lowered(std::string text) {
    for (char& c : text)
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c - 'A' + 'a');
    return text;
}

bool equalWithoutCase(const std::optional<std::string>& a, const std::optional<std::string>& b) {
    if (!a && !b)
        return true;
    if (!a || !b)
        return false;
    return lowered(*a) == lowered(*b);
}

bool startsWith(const std::string& text, const std::string& start) {
    return text.compare(0, start.size(), start) == 0;
}

void removeLastSegment(std::string& output) {
    const std::size_t slash = output.rfind('/');
    output = slash == std::string::npos ? "" : output.substr(0, slash);
}

} // namespace

ModelParse modelParse(const std::string& text) {
    return ModelParser(text).parse();
}

ModelUri modelCopy(const ModelUri& uri) {
    ModelUri copy = uri;
    copy.port = -1;
    return copy;
}

std::string modelWithoutDotSegments(const std::string& path) {
    std::string input = path, output;
    while (!input.empty()) {
        if (startsWith(input, "../")) {
            input = input.substr(3);
        } else if (startsWith(input, "./")) {
            input = input.substr(2);
        } else if (startsWith(input, "/./")) {
            input = input.substr(2);
        } else if (input == "/.") {
            input = "/";
        } else if (startsWith(input, "/../")) {
            input = input.substr(3);
            removeLastSegment(output);
        } else if (input == "/..") {
            input = "/";
            removeLastSegment(output);
        } else if (input == "." || input == "..") {
            break;
        } else {
            const std::size_t next = input.find('/', 1);
            output += input.substr(0, next);
            input = next == std::string::npos ? "" : input.substr(next);
        }
    }
    return output;
}

std::string modelMerge(const ModelUri& base, const std::string& reference) {
    const std::string path = base.path.value_or("");
    if (base.authority && path.empty())
        return "/" + reference;
    const std::size_t slash = path.rfind('/');
    if (slash == std::string::npos)
        return reference;
    return path.substr(0, slash + 1) + reference;
}

std::string modelRelativePath(const std::string& base, const std::string& target) {
    if (base.empty() || target.empty() || base[0] != target[0])
        return target;
    std::size_t common = 0;
    while (common < base.size() && common < target.size() && base[common] == target[common])
        ++common;
    const std::size_t slash = target.substr(0, common).rfind('/');
    if (slash == std::string::npos || slash == 0)
        return target;
    const std::string remainder = target.substr(slash + 1), left = base.substr(common);
    std::string result;
    for (const char c : left)
        if (c == '/')
            result += "../";
    if (left.find('/') == std::string::npos
        && (remainder.empty() || remainder.find(':') != std::string::npos))
        result += "./";
    return result + remainder;
}

std::string modelRecompose(const ModelUri& uri) {
    std::string text;
    if (uri.scheme)
        text += *uri.scheme + ":";
    if (uri.authority)
        text += "//" + *uri.authority;
    if (uri.path)
        text += *uri.path;
    if (uri.query)
        text += "?" + *uri.query;
    if (uri.fragment)
        text += "#" + *uri.fragment;
    return text;
}

ModelUri modelResolve(const ModelUri& reference, const ModelUri& base, bool strict) {
    ModelUri r = reference, t;
    const std::string path = r.path.value_or("");
    if (!strict && r.scheme.value_or("") == base.scheme.value_or(""))
        r.scheme.reset();
    if (r.scheme) {
        t.scheme = r.scheme;
        t.authority = r.authority;
        t.path = modelWithoutDotSegments(path);
        t.query = r.query;
    } else if (r.authority) {
        t.scheme = base.scheme;
        t.authority = r.authority;
        t.path = modelWithoutDotSegments(path);
        t.query = r.query;
    } else if (path.empty()) {
        t.scheme = base.scheme;
        t.authority = base.authority;
        t.path = base.path.value_or("");
        t.query = r.query ? r.query : base.query;
    } else {
        t.scheme = base.scheme;
        t.authority = base.authority;
        t.path = modelWithoutDotSegments(path[0] == '/' ? path : modelMerge(base, path));
        t.query = r.query;
    }
    t.fragment = r.fragment;
    return t;
}

ModelUri modelRelativize(const ModelUri& target, const ModelUri& base) {
    const ModelUri& u = target;
    const ModelUri& b = base;
    const std::string targetPath = u.path.value_or(""), basePath = b.path.value_or("");
    ModelUri n;
    if (u.scheme && b.scheme && !equalWithoutCase(u.scheme, b.scheme)) {
        n.scheme = u.scheme;
        n.authority = u.authority;
        n.path = targetPath;
        n.query = u.query;
        n.fragment = u.fragment;
        return n;
    }
    if (b.authority && u.authority && !equalWithoutCase(u.authority, b.authority)) {
        n.authority = u.authority;
        n.path = targetPath;
        n.query = u.query;
        n.fragment = u.fragment;
        return n;
    }
    if (!b.authority)
        n.authority = u.authority;
    if (equalWithoutCase(targetPath, basePath)) {
        n.path = "";
        if (u.query && b.query && !equalWithoutCase(u.query, b.query))
            n.query = u.query;
        n.fragment = u.fragment;
        return n;
    }
    n.path = modelRelativePath(basePath, targetPath);
    n.query = u.query;
    n.fragment = u.fragment;
    return n;
}

ModelUri modelNormalize(const ModelUri& uri) {
    ModelUri n = modelCopy(uri);
    if (n.scheme)
        n.scheme = lowered(*n.scheme);
    if (n.host)
        n.host = lowered(*n.host);
    n.path = modelWithoutDotSegments(uri.path.value_or(""));
    return n;
}

bool modelEqual(const ModelUri& a, const ModelUri& b) {
    return equalWithoutCase(a.scheme, b.scheme) && equalWithoutCase(a.fragment, b.fragment)
           && equalWithoutCase(a.path, b.path) && equalWithoutCase(a.query, b.query)
           && equalWithoutCase(a.authority, b.authority);
}

} // namespace Quillon::Testing
