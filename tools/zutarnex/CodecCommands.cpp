#include "Commands.h"
#include "Document.h"
#include "Failure.h"
#include "OutputFile.h"
#include "xml/codec/Base64BinaryCodec.h"
#include "xml/codec/HexBinaryCodec.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <array>
#include <cstdint>
#include <memory>
#include <string>

namespace Quillon::Tool {

namespace {

using Xml::cteErrorCode;

constexpr std::size_t kPiece = 65536;

/// A place in the input, told as a byte offset and as a line and column.
struct Place {
    std::uint64_t offset = 0, line = 1, column = 1;

    void advance(const unsigned char* from, const unsigned char* to) {
        offset += static_cast<std::uint64_t>(to - from);
        const auto lines = static_cast<std::uint64_t>(std::count(from, to, '\n'));
        const auto lastLine =
            std::find(std::make_reverse_iterator(to), std::make_reverse_iterator(from), '\n').base();
        column = lines == 0 ? column + static_cast<std::uint64_t>(to - from)
                            : static_cast<std::uint64_t>(to - lastLine) + 1;
        line += lines;
    }
};

const char* textOf(cteErrorCode code) {
    return code == Xml::cteIncompleteInput ? "the input ends in the middle of a unit"
                                           : "a character outside the alphabet, or padding out of place";
}

/// One direction of one codec, fed piece by piece.
template <class Codec>
class CodecStream {
public:
    using Operation = void (Codec::*)(unsigned char**, const unsigned char*, const unsigned char**,
                                      const unsigned char*, bool, cteErrorCode*);

    CodecStream(Operation operation, OutputFile& out, const std::string& name)
        : operation_(operation), file_(out), name_(name) {}

    void feed(const unsigned char* in, const unsigned char* inEnd, bool isLast) {
        if (in == inEnd && !isLast)
            return;
        for (cteErrorCode code = Xml::cteOutputFull; code == Xml::cteOutputFull;) {
            const unsigned char* const before = in;
            unsigned char* out = room_.data();
            code = Xml::cteNoError;
            (codec_.*operation_)(&out, room_.data() + room_.size(), &in, inEnd, isLast, &code);
            file_.stream().write(reinterpret_cast<const char*>(room_.data()), out - room_.data());
            file_.check();
            place_.advance(before, in);
            if (code == Xml::cteIncompleteInput || code == Xml::cteInvalidInput)
                fail(code);
        }
    }

private:
    [[noreturn]] void fail(cteErrorCode code) const {
        throw Failure{BadInput, name_ + ':' + std::to_string(place_.line) + ':'
                                    + std::to_string(place_.column) + ": error: byte "
                                    + std::to_string(place_.offset) + ": " + textOf(code)};
    }

    Codec codec_;
    Operation operation_;
    OutputFile& file_;
    const std::string& name_;
    Place place_;
    std::array<unsigned char, 2 * kPiece> room_;
};

/// Padding is valid in the last call only, but may stand far from the end of the input, behind it nothing but white
/// space. So the text is fed up to the first `=`; what follows is gathered, without the white space that a valid
/// text may have there in any amount, and fed as the last piece.
class PaddingGate {
public:
    /// How much of the piece may be fed at once.
    const unsigned char* gate(const unsigned char* in, const unsigned char* inEnd) {
        const unsigned char* padding = rest_.empty() ? std::find(in, inEnd, '=') : in;
        for (const unsigned char* p = padding; p != inEnd && rest_.size() < kMost; ++p)
            if (rest_.empty() || !isSpace(*p))
                rest_.push_back(*p);
        return padding;
    }
    const std::string& rest() const { return rest_; }

private:
    static constexpr std::size_t kMost = 8; ///< more than any valid text has
    static bool isSpace(unsigned char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

    std::string rest_;
};

struct CodecOptions {
    std::string file = "-";
    std::string output = "-";
};

/// Reads the whole input in pieces. `feed` gets each, and an empty one at the end with `isLast`.
template <class Feed>
void forEachPiece(Document& input, Feed feed) {
    const auto piece = std::make_unique<std::array<unsigned char, kPiece>>();
    while (const unsigned int count = input.read(piece->data(), kPiece))
        feed(piece->data(), piece->data() + count, false);
    feed(piece->data(), piece->data(), true);
}

template <class Codec, bool hasPadding>
ExitStatus recode(const CodecOptions& options, typename CodecStream<Codec>::Operation operation) {
    Document input(options.file);
    OutputFile out(options.output);
    const auto stream = std::make_unique<CodecStream<Codec>>(operation, out, input.name());
    PaddingGate padding;
    forEachPiece(input, [&](const unsigned char* in, const unsigned char* inEnd, bool isLast) {
        if (hasPadding && !isLast)
            inEnd = padding.gate(in, inEnd);
        if (!isLast)
            return stream->feed(in, inEnd, false);
        const auto* rest = reinterpret_cast<const unsigned char*>(padding.rest().data());
        stream->feed(rest, rest + padding.rest().size(), true);
    });
    out.commit();
    return Done;
}

template <class Codec, bool hasPadding>
void addDirection(CLI::App& codec, ExitStatus& status, const char* name, const char* help,
                  typename CodecStream<Codec>::Operation operation) {
    auto options = std::make_shared<CodecOptions>();
    CLI::App* command = codec.add_subcommand(name, help);
    command->add_option("FILE", options->file, "What to read; - is standard input")->capture_default_str();
    command->add_option("-o,--output", options->output,
                        "Where to write; a file is replaced only when all went well");
    command->callback([options, operation, &status] {
        status =
            reportingFailures(options->file, [&] { return recode<Codec, hasPadding>(*options, operation); });
    });
}

template <class Codec, bool hasPadding>
void addCodec(CLI::App& app, ExitStatus& status, const char* name, const char* help, const char* encodeHelp,
              const char* decodeHelp) {
    CLI::App* codec = app.add_subcommand(name, help);
    codec->require_subcommand(1);
    addDirection<Codec, false>(*codec, status, "encode", encodeHelp, &Codec::encode);
    addDirection<Codec, hasPadding>(*codec, status, "decode", decodeHelp, &Codec::decode);
}

} // namespace

void addCodecCommands(CLI::App& app, ExitStatus& status) {
    addCodec<Xml::Base64BinaryCodec, true>(app, status, "base64", "Write bytes as Base64 text, or read it",
                                           "Write FILE as lines of 76 characters",
                                           "Read the text in FILE; white space counts nowhere");
    addCodec<Xml::HexBinaryCodec, false>(
        app, status, "hex", "Write bytes as hexadecimal digits, or read them",
        "Write FILE as upper-case digits, without line breaks",
        "Read the digits in FILE, upper-case only; white space counts nowhere");
}

} // namespace Quillon::Tool
