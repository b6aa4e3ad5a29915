#include "support/Contest.h"
#include "support/TranscodingLoad.h"

#include <QStringConverter>

namespace Quillon::Bench {

namespace {

const Entries entries([] {
    for (const TranscodingText& text : transcodingTexts()) {
        enter(std::string("transcoding.to-utf8.") + text.kind, "Qt", [&text] {
            return Round(Load{1, text.utf16.size() * sizeof(char16_t)},
                         [&text, room = std::vector<char>(4 * text.utf16.size())]() mutable {
                             QStringEncoder encoder(QStringConverter::Utf8);
                             benchmark::DoNotOptimize(
                                 encoder.appendToBuffer(room.data(), QStringView(text.utf16)));
                             benchmark::ClobberMemory();
                         });
        });
        enter(std::string("transcoding.to-utf16.") + text.kind, "Qt", [&text] {
            return Round(Load{1, text.utf8.size()}, [&text, room = std::vector<QChar>(text.utf8.size()
                                                                                      + 2)]() mutable {
                QStringDecoder decoder(QStringConverter::Utf8);
                benchmark::DoNotOptimize(decoder.appendToBuffer(
                    room.data(), QByteArrayView(text.utf8.data(), static_cast<qsizetype>(text.utf8.size()))));
                benchmark::ClobberMemory();
            });
        });
    }
});

} // namespace

} // namespace Quillon::Bench
