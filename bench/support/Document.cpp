#include "support/Document.h"

#include "support/Random.h"
#include "support/Text.h"

namespace Quillon::Bench {

namespace {

using Attributes = std::vector<std::pair<std::u16string, std::u16string>>;

class Builder {
public:
    explicit Builder(const char* workload) : document_{workload, {}} { start(u"root"); }

    void start(const std::u16string& name, Attributes attributes = {}) {
        document_.events.push_back({Event::Start, name, std::move(attributes)});
        open_.push_back(name);
    }
    void end() {
        document_.events.push_back({Event::End, open_.back(), {}});
        open_.pop_back();
    }
    void text(const std::u16string& text) { document_.events.push_back({Event::Text, text, {}}); }
    void field(const std::u16string& name, const std::u16string& value) {
        start(name);
        text(value);
        end();
    }
    Document finish() {
        end();
        return std::move(document_);
    }

private:
    Document document_;
    std::vector<std::u16string> open_;
};

std::u16string number(std::uint32_t value) {
    const std::string digits = std::to_string(value);
    return {digits.begin(), digits.end()};
}

Document records() {
    Random random(1);
    Builder builder("writer.records");
    for (std::uint32_t i = 0; i < 1000; ++i) {
        builder.start(u"record", {{u"id", number(100000 + i)}, {u"kind", asciiName(6, random)}});
        builder.field(u"name", asciiProse(random.between(8, 16), random));
        builder.field(u"place", asciiProse(random.between(6, 14), random));
        builder.field(u"price", number(random.between(100, 99999)));
        builder.end();
    }
    return builder.finish();
}

template <class Paragraph>
Document paragraphs(const char* workload, Paragraph paragraph) {
    Builder builder(workload);
    for (int i = 0; i < 100; ++i)
        builder.field(u"p", paragraph());
    return builder.finish();
}

Document prose() {
    Random random(2);
    return paragraphs("writer.prose", [&] {
        std::u16string text = asciiProse(1000, random);
        for (std::size_t i = random.below(200); i < text.size(); i += random.between(100, 300))
            text[i] = random.below(2) ? u'&' : u'<';
        return text;
    });
}

Document cjk() {
    Random random(3);
    return paragraphs("writer.cjk", [&] { return cjkProse(1000, random); });
}

Document attributes() {
    Random random(4);
    Builder builder("writer.attributes");
    for (int i = 0; i < 500; ++i) {
        Attributes attributes;
        for (char16_t letter = u'a'; letter < u'k'; ++letter)
            attributes.emplace_back(std::u16string(u"attr-") + letter, asciiName(12, random));
        builder.start(u"item", std::move(attributes));
        builder.end();
    }
    return builder.finish();
}

} // namespace

const std::vector<Document>& writerDocuments() {
    static const std::vector<Document> documents = {records(), prose(), cjk(), attributes()};
    return documents;
}

} // namespace Quillon::Bench
