#ifndef ZUTARNEX_BENCH_SUPPORT_DOCUMENT_H
#define ZUTARNEX_BENCH_SUPPORT_DOCUMENT_H

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace Quillon::Bench {

struct Event {
    enum Kind { Start, End, Text };

    Kind kind;
    std::u16string text; ///< the element's name, or the text
    std::vector<std::pair<std::u16string, std::u16string>> attributes;
};

/// A document that a writer's workload writes, event by event, as UTF-8.
struct Document {
    const char* workload;
    std::vector<Event> events; ///< between the start and the end of the document
};

/// Each is made at the first call:
/// `writer.records`     1,000 records: an element with two attributes, three fields with short texts
/// `writer.prose`       paragraphs of 1,000 letters, one in 200 to be escaped
/// `writer.cjk`         paragraphs of 1,000 ideographs
/// `writer.attributes`  elements without content, each with ten attributes of twelve characters
const std::vector<Document>& writerDocuments();

} // namespace Quillon::Bench

#endif
