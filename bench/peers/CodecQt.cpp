// Qt's Base64 has no line breaks when it encodes; it passes over them when it decodes.

#include "support/CodecLoad.h"
#include "support/Contest.h"

#include <QByteArray>

namespace Quillon::Bench {

namespace {

template <class Work>
void enterQt(const char* workload, Work work) {
    enter(workload, "Qt", [work] { return Round(Load{1, kCodecBytes}, work); });
}

QByteArray view(const std::string& text) {
    return QByteArray::fromRawData(text.data(), static_cast<qsizetype>(text.size()));
}

QByteArray binary() {
    return QByteArray::fromRawData(reinterpret_cast<const char*>(codecBinary().data()), kCodecBytes);
}

const Entries entries([] {
    enterQt("codec.base64-encode", [] { benchmark::DoNotOptimize(binary().toBase64()); });
    enterQt("codec.base64-decode",
            [] { benchmark::DoNotOptimize(QByteArray::fromBase64(view(base64Text()))); });
    enterQt("codec.hex-encode", [] { benchmark::DoNotOptimize(binary().toHex()); });
    enterQt("codec.hex-decode", [] { benchmark::DoNotOptimize(QByteArray::fromHex(view(hexText()))); });
});

} // namespace

} // namespace Quillon::Bench
