#include "support/Contest.h"
#include "support/TranscodingLoad.h"

#include <unicode/ustring.h>

namespace Quillon::Bench {

namespace {

const Entries entries([] {
    for (const TranscodingText& text : transcodingTexts()) {
        const auto units = static_cast<std::int32_t>(text.utf16.size());
        const auto bytes = static_cast<std::int32_t>(text.utf8.size());
        enter(std::string("transcoding.to-utf8.") + text.kind, "ICU", [&text, units] {
            return Round(Load{1, text.utf16.size() * sizeof(char16_t)},
                         [&text, units, room = std::vector<char>(3 * text.utf16.size())]() mutable {
                             UErrorCode error = U_ZERO_ERROR;
                             std::int32_t length = 0;
                             u_strToUTF8(room.data(), static_cast<std::int32_t>(room.size()), &length,
                                         text.utf16.data(), units, &error);
                             benchmark::DoNotOptimize(length);
                             benchmark::ClobberMemory();
                         });
        });
        enter(std::string("transcoding.to-utf16.") + text.kind, "ICU", [&text, bytes] {
            return Round(Load{1, text.utf8.size()},
                         [&text, bytes, room = std::u16string(text.utf8.size(), u' ')]() mutable {
                             UErrorCode error = U_ZERO_ERROR;
                             std::int32_t length = 0;
                             u_strFromUTF8(room.data(), static_cast<std::int32_t>(room.size()), &length,
                                           text.utf8.data(), bytes, &error);
                             benchmark::DoNotOptimize(length);
                             benchmark::ClobberMemory();
                         });
        });
    }
});

} // namespace

} // namespace Quillon::Bench
