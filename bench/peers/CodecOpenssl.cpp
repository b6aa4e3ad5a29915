// OpenSSL's Base64 has lines of 64 characters when it encodes.

#include "support/CodecLoad.h"
#include "support/Contest.h"

#include <openssl/crypto.h>
#include <openssl/evp.h>

#include <cstdlib>
#include <memory>

namespace Quillon::Bench {

namespace {

using Bytes = std::vector<unsigned char>;

struct FreeContext {
    void operator()(EVP_ENCODE_CTX* context) const { EVP_ENCODE_CTX_free(context); }
};
using Context = std::unique_ptr<EVP_ENCODE_CTX, FreeContext>;

void encode(EVP_ENCODE_CTX* context, Bytes& room) {
    int length = 0, rest = 0;
    EVP_EncodeInit(context);
    EVP_EncodeUpdate(context, room.data(), &length, codecBinary().data(), kCodecBytes);
    EVP_EncodeFinal(context, room.data() + length, &rest);
    benchmark::ClobberMemory();
}

void decode(EVP_ENCODE_CTX* context, Bytes& room) {
    int length = 0, rest = 0;
    EVP_DecodeInit(context);
    const auto* text = reinterpret_cast<const unsigned char*>(base64Text().data());
    if (EVP_DecodeUpdate(context, room.data(), &length, text, static_cast<int>(base64Text().size())) < 0
        || EVP_DecodeFinal(context, room.data() + length, &rest) < 0)
        std::abort();
    benchmark::ClobberMemory();
}

template <class Work>
void enterBase64(const char* workload, Work work) {
    enter(workload, "OpenSSL", [work] {
        return Round(Load{1, kCodecBytes},
                     [work, context = Context(EVP_ENCODE_CTX_new()),
                      room = Bytes(2 * kCodecBytes)]() mutable { work(context.get(), room); });
    });
}

const Entries entries([] {
    const Load load{1, kCodecBytes};
    enterBase64("codec.base64-encode", encode);
    enterBase64("codec.base64-decode", decode);
    enter("codec.hex-encode", "OpenSSL", [load] {
        return Round(load, [room = std::vector<char>(2 * kCodecBytes + 1)]() mutable {
            std::size_t length = 0;
            OPENSSL_buf2hexstr_ex(room.data(), room.size(), &length, codecBinary().data(), kCodecBytes, '\0');
            benchmark::ClobberMemory();
        });
    });
    enter("codec.hex-decode", "OpenSSL", [load] {
        return Round(load, [room = Bytes(kCodecBytes)]() mutable {
            std::size_t length = 0;
            OPENSSL_hexstr2buf_ex(room.data(), room.size(), &length, hexText().c_str(), '\0');
            benchmark::ClobberMemory();
        });
    });
});

} // namespace

} // namespace Quillon::Bench
