#include "KeyedHash.h"

#include <bit>
#include <chrono>
#include <unistd.h>

namespace Quillon::SaxEngine {

namespace {

struct Key {
    std::uint64_t low, high;
};

Key drawKey() {
    Key key;
    if (getentropy(&key, sizeof key) != 0) { // a kernel without getrandom: better a weak key than none
        key.low = static_cast<std::uint64_t>(std::chrono::steady_clock::now().time_since_epoch().count());
        key.high = reinterpret_cast<std::uintptr_t>(&key) ^ static_cast<std::uint64_t>(getpid()) << 32;
    }
    return key;
}

/// The state of SipHash, with one round per block and three at the end.
struct State {
    std::uint64_t v0, v1, v2, v3;

    explicit State(Key key)
        : v0(key.low ^ 0x736f6d6570736575u), v1(key.high ^ 0x646f72616e646f6du),
          v2(key.low ^ 0x6c7967656e657261u), v3(key.high ^ 0x7465646279746573u) {}

    void round() {
        v0 += v1;
        v1 = std::rotl(v1, 13) ^ v0;
        v0 = std::rotl(v0, 32);
        v2 += v3;
        v3 = std::rotl(v3, 16) ^ v2;
        v0 += v3;
        v3 = std::rotl(v3, 21) ^ v0;
        v2 += v1;
        v1 = std::rotl(v1, 17) ^ v2;
        v2 = std::rotl(v2, 32);
    }
    void absorb(std::uint64_t block) {
        v3 ^= block;
        round();
        v0 ^= block;
    }
    std::uint64_t finish() {
        v2 ^= 0xff;
        for (int i = 0; i < 3; ++i)
            round();
        return v0 ^ v1 ^ v2 ^ v3;
    }
};

} // namespace

std::uint64_t keyedHash(UnitSpan units) {
    static const Key key = drawKey();
    State state(key);
    std::uint32_t i = 0;
    for (; i + 4 <= units.size; i += 4) {
        std::uint64_t block;
        std::memcpy(&block, units.data + i, sizeof block);
        state.absorb(block);
    }
    std::uint64_t last = static_cast<std::uint64_t>(units.size) << 56;
    for (int shift = 0; i < units.size; ++i, shift += 16)
        last |= static_cast<std::uint64_t>(units.data[i]) << shift;
    state.absorb(last);
    return state.finish();
}

} // namespace Quillon::SaxEngine
