// What is done with parsed URIs.
#include "net/URI.h"

#include "net/UriPathInternal.h"

#include <algorithm>

namespace Quillon::Net {

namespace {

unsigned char lowerCase(unsigned char c) noexcept {
    return c >= 'A' && c <= 'Z' ? static_cast<unsigned char>(c + ('a' - 'A')) : c;
}

OwnedText lowerCaseCopy(const unsigned char* text) {
    if (!text)
        return nullptr;
    const TextRange whole = wholeOf(text);
    OwnedText copy = allocateText(whole.size());
    *std::transform(whole.begin, whole.end, copy.get(), lowerCase) = 0;
    return copy;
}

bool equalsWithoutCase(TextRange a, TextRange b) noexcept {
    if (a.size() != b.size())
        return false;
    for (const unsigned char *left = a.begin, *right = b.begin; left != a.end; ++left, ++right)
        if (lowerCase(*left) != lowerCase(*right))
            return false;
    return true;
}

/// Absent ones are equal to each other only.
bool sameComponent(const unsigned char* a, const unsigned char* b) noexcept {
    return (a == nullptr) == (b == nullptr) && equalsWithoutCase(wholeOf(a), wholeOf(b));
}

bool isEmpty(const unsigned char* text) noexcept {
    return !text || !*text;
}

/// Byte by byte; absent is the same as empty.
bool sameScheme(const unsigned char* a, const unsigned char* b) noexcept {
    if (isEmpty(a) || isEmpty(b))
        return isEmpty(a) && isEmpty(b);
    return std::strcmp(reinterpret_cast<const char*>(a), reinterpret_cast<const char*>(b)) == 0;
}

} // namespace

unsigned char* URI::recompose() const {
    const TextRange scheme = wholeOf(scheme_), authority = wholeOf(authority_), path = wholeOf(path_),
                    query = wholeOf(query_), fragment = wholeOf(fragment_);
    std::uint64_t length = path.size();
    length += scheme_ ? std::uint64_t{scheme.size()} + 1 : 0;
    length += authority_ ? std::uint64_t{authority.size()} + 2 : 0;
    length += query_ ? std::uint64_t{query.size()} + 1 : 0;
    length += fragment_ ? std::uint64_t{fragment.size()} + 1 : 0;

    OwnedText text = allocateText(length);
    unsigned char* out = text.get();
    if (scheme_) {
        out = append(out, scheme);
        *out++ = ':';
    }
    if (authority_) {
        *out++ = '/';
        *out++ = '/';
        out = append(out, authority);
    }
    out = append(out, path);
    if (query_) {
        *out++ = '?';
        out = append(out, query);
    }
    if (fragment_) {
        *out++ = '#';
        out = append(out, fragment);
    }
    *out = 0;
    return text.release();
}

URI* URI::resolve(const URI& base, bool strict) const {
    const bool keepsScheme = scheme_ && (strict || !sameScheme(scheme_, base.scheme_));
    const bool keepsAuthority = keepsScheme || authority_;
    auto target = std::make_unique<URI>();
    target->setScheme(duplicate(keepsScheme ? scheme_ : base.scheme_).release());
    target->setAuthority(duplicate(keepsAuthority ? authority_ : base.authority_).release());
    target->setFragment(duplicate(fragment_).release());
    if (!keepsAuthority && isEmpty(path_)) {
        target->setPath(duplicateOrEmpty(base.path_).release());
        target->setQuery(duplicate(query_ ? query_ : base.query_).release());
        return target.release();
    }
    const bool standsAlone = keepsAuthority || *path_ == '/';
    OwnedText path = standsAlone
                         ? duplicateOrEmpty(path_)
                         : mergePaths(wholeOf(base.path_), base.authority_ != nullptr, wholeOf(path_));
    removeDotSegments(path.get());
    target->setPath(path.release());
    target->setQuery(duplicate(query_).release());
    return target.release();
}

URI* URI::relativize(const URI& base) const {
    auto reference = std::make_unique<URI>();
    reference->setFragment(duplicate(fragment_).release());

    const bool otherScheme = scheme_ && base.scheme_ && !sameComponent(scheme_, base.scheme_);
    const bool otherAuthority = authority_ && base.authority_ && !sameComponent(authority_, base.authority_);
    if (otherScheme)
        reference->setScheme(duplicate(scheme_).release());
    if (otherScheme || otherAuthority || !base.authority_)
        reference->setAuthority(duplicate(authority_).release());
    if (otherScheme || otherAuthority) {
        reference->setPath(duplicateOrEmpty(path_).release());
        reference->setQuery(duplicate(query_).release());
        return reference.release();
    }

    const TextRange from = wholeOf(base.path_), to = wholeOf(path_);
    if (equalsWithoutCase(from, to)) {
        reference->setPath(duplicateOrEmpty(nullptr).release());
        // Deliberate: see the header.
        if (query_ && base.query_ && !sameComponent(query_, base.query_))
            reference->setQuery(duplicate(query_).release());
        return reference.release();
    }
    reference->setPath(relativePath(from, to).release());
    reference->setQuery(duplicate(query_).release());
    return reference.release();
}

URI* URI::normalize() const {
    auto normal = std::make_unique<URI>();
    normal->setScheme(lowerCaseCopy(scheme_).release());
    normal->setAuthority(duplicate(authority_).release());
    normal->setQuery(duplicate(query_).release());
    normal->setFragment(duplicate(fragment_).release());
    normal->setUserInfo(duplicate(userInfo_).release());
    normal->setHost(lowerCaseCopy(host_).release());
    OwnedText path = duplicateOrEmpty(path_);
    removeDotSegments(path.get());
    normal->setPath(path.release());
    return normal.release();
}

bool URI::operator==(const URI& other) const noexcept {
    return this == &other
           || (sameComponent(scheme_, other.scheme_) && sameComponent(fragment_, other.fragment_)
               && sameComponent(path_, other.path_) && sameComponent(query_, other.query_)
               && sameComponent(authority_, other.authority_));
}

} // namespace Quillon::Net
