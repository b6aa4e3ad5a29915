// The default host's conversions to and from the code page of the current LC_CTYPE locale.
#include "runtime/CStringInternal.h"
#include "runtime/DefaultHostInternal.h"
#include "runtime/IconvInternal.h"
#include "runtime/Transcoding.h"

#include <cstring>
#include <langinfo.h>

namespace Quillon::Runtime {

unsigned short* localCodePageToUtf16(const char* text) {
    if (!text)
        return nullptr;
    const char* codePage = ::nl_langinfo(CODESET);
    const std::size_t byteCount = std::strlen(text);
    return std::strcmp(codePage, "UTF-8") == 0 ? utf8ToUtf16(text, static_cast<std::ptrdiff_t>(byteCount))
                                               : decodedByIconv(codePage, text, byteCount);
}

char* utf16ToLocalCodePage(const unsigned short* text) {
    return text ? utf16ToEncoding(::nl_langinfo(CODESET), text, unitCountOf(text)) : nullptr;
}

} // namespace Quillon::Runtime
