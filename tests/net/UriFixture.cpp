#include "net/UriFixture.h"

#include "net/URISyntaxException.h"
#include "runtime/HostServices.h"

#include <cstring>

namespace Quillon::Testing {

namespace {

const unsigned char* bytes(const std::string& text) {
    return reinterpret_cast<const unsigned char*>(text.c_str());
}

const unsigned char* bytesOrNull(const std::optional<std::string>& text) {
    return text ? bytes(*text) : nullptr;
}

bool sameText(const unsigned char* text, const std::optional<std::string>& model) {
    if (!text || !model)
        return !text && !model;
    return std::strcmp(reinterpret_cast<const char*>(text), model->c_str()) == 0;
}

std::optional<std::string> optionalText(const unsigned char* text) {
    return text ? std::optional<std::string>(textOf(text)) : std::nullopt;
}

} // namespace

unsigned char* hostText(const char* text) {
    if (!text)
        return nullptr;
    const std::size_t room = std::strlen(text) + 1;
    void* copy = Runtime::hostServices().allocate(room);
    return static_cast<unsigned char*>(std::memcpy(copy, text, room));
}

std::string textOf(const unsigned char* text) {
    return text ? reinterpret_cast<const char*>(text) : "(null)";
}

UriPtr parsed(const std::string& text) {
    return UriPtr(Net::URI::construct(bytes(text)));
}

std::string recomposed(const Net::URI& uri) {
    unsigned char* text = uri.recompose();
    std::string copy = textOf(text);
    Runtime::release(text);
    return copy;
}

std::string show(const Net::URI& uri) {
    ModelUri contents;
    contents.scheme = optionalText(uri.getScheme());
    contents.authority = optionalText(uri.getAuthority());
    contents.path = optionalText(uri.getPath());
    contents.query = optionalText(uri.getQuery());
    contents.fragment = optionalText(uri.getFragment());
    contents.userInfo = optionalText(uri.getUserInfo());
    contents.host = optionalText(uri.getHost());
    contents.port = uri.getPort();
    return show(contents);
}

std::string show(const ModelUri& uri) {
    std::string shown;
    const auto add = [&shown](const char* name, const std::optional<std::string>& text) {
        if (text)
            shown += std::string(shown.empty() ? "" : " ") + name + "='" + *text + "'";
    };
    add("scheme", uri.scheme);
    add("authority", uri.authority);
    add("path", uri.path);
    add("query", uri.query);
    add("fragment", uri.fragment);
    add("userInfo", uri.userInfo);
    add("host", uri.host);
    if (uri.port != -1)
        shown += (shown.empty() ? "port=" : " port=") + std::to_string(uri.port);
    return shown;
}

Net::URI fromModel(const ModelUri& uri) {
    Net::URI result(bytesOrNull(uri.scheme), bytesOrNull(uri.authority), bytesOrNull(uri.path),
                    bytesOrNull(uri.query), bytesOrNull(uri.fragment));
    if (uri.userInfo)
        result.setUserInfo(hostText(uri.userInfo->c_str()));
    if (uri.host)
        result.setHost(hostText(uri.host->c_str()));
    return result;
}

bool same(const Net::URI& uri, const ModelUri& model) {
    return sameText(uri.getScheme(), model.scheme) && sameText(uri.getAuthority(), model.authority)
           && sameText(uri.getPath(), model.path) && sameText(uri.getQuery(), model.query)
           && sameText(uri.getFragment(), model.fragment) && sameText(uri.getUserInfo(), model.userInfo)
           && sameText(uri.getHost(), model.host) && uri.getPort() == model.port;
}

std::string outcome(const std::string& text) {
    try {
        return show(*parsed(text));
    } catch (const Net::URISyntaxException& fault) {
        return std::string(fault.getReason()) + " @" + std::to_string(fault.getIndex());
    }
}

std::string modelOutcome(const std::string& text) {
    const ModelParse result = modelParse(text);
    if (result.fault)
        return result.fault->reason + " @" + std::to_string(result.fault->index);
    return show(modelCopy(result.uri));
}

} // namespace Quillon::Testing
