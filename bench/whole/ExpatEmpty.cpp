// Parses a file with Expat and does nothing with it: what reading costs before anybody has done anything. Compiled
// twice, for Expat with characters of 8 and of 16 bits.

#include <expat.h>

#include <cstdio>
#include <cstdlib>

#include <fcntl.h>
#include <unistd.h>

int main(int, char** arguments) {
    constexpr int kPiece = 65536;
    const int file = open(arguments[1], O_RDONLY);
    XML_Parser parser = XML_ParserCreate(nullptr);
    for (;;) {
        void* buffer = XML_GetBuffer(parser, kPiece);
        const auto count = static_cast<int>(read(file, buffer, kPiece));
        if (count < 0 || XML_ParseBuffer(parser, count, count == 0) != XML_STATUS_OK) {
            std::fprintf(stderr, "%s cannot be parsed\n", arguments[1]);
            return 1;
        }
        if (count == 0)
            break;
    }
    XML_ParserFree(parser);
    return close(file);
}
