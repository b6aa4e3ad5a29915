#include "support/Contest.h"
#include "support/TranscodingLoad.h"

#include <iconv.h>

#include <memory>

namespace Quillon::Bench {

namespace {

class Converter {
public:
    Converter(const char* to, const char* from) : iconv_(iconv_open(to, from)) {}
    Converter(const Converter&) = delete;
    Converter& operator=(const Converter&) = delete;
    ~Converter() { iconv_close(iconv_); }

    void convert(const void* text, std::size_t bytes, std::vector<char>& room) {
        char* in = static_cast<char*>(const_cast<void*>(text)); // iconv does not write there
        char* out = room.data();
        std::size_t left = room.size();
        benchmark::DoNotOptimize(iconv(iconv_, &in, &bytes, &out, &left));
        benchmark::ClobberMemory();
    }

private:
    iconv_t iconv_;
};

void enterIconv(const std::string& workload, const char* to, const char* from, const void* text,
                std::size_t bytes) {
    enter(workload, "iconv", [=] {
        return Round(Load{1, bytes}, [=, converter = std::make_shared<Converter>(to, from),
                                      room = std::vector<char>(3 * bytes)]() mutable {
            converter->convert(text, bytes, room);
        });
    });
}

const Entries entries([] {
    for (const TranscodingText& text : transcodingTexts()) {
        enterIconv(std::string("transcoding.to-utf8.") + text.kind, "UTF-8", "UTF-16LE", text.utf16.data(),
                   text.utf16.size() * sizeof(char16_t));
        enterIconv(std::string("transcoding.to-utf16.") + text.kind, "UTF-16LE", "UTF-8", text.utf8.data(),
                   text.utf8.size());
    }
});

} // namespace

} // namespace Quillon::Bench
