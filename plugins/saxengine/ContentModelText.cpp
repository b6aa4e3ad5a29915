#include "ContentModelText.h"

#include <string_view>

namespace Quillon::SaxEngine {

namespace {

/// A group that is open: its next child is `nextChild`.
struct OpenGroup {
    const XML_Content* group;
    unsigned int nextChild;
};

class Formatter {
public:
    std::vector<XML_Char> format(const XML_Content& model) {
        if (model.type == XML_CTYPE_EMPTY)
            append("EMPTY");
        else if (model.type == XML_CTYPE_ANY)
            append("ANY");
        else
            formatParticles(model);
        return std::move(text_);
    }

private:
    void formatParticles(const XML_Content& model) {
        begin(model);
        while (!open_.empty()) {
            OpenGroup& top = open_.back();
            if (top.nextChild == top.group->numchildren) {
                const XML_Content& group = *top.group;
                open_.pop_back();
                end(group);
                continue;
            }
            if (top.nextChild != 0 || top.group->type == XML_CTYPE_MIXED)
                text_.push_back(top.group->type == XML_CTYPE_SEQ ? u',' : u'|');
            begin(top.group->children[top.nextChild++]);
        }
    }

    void begin(const XML_Content& particle) {
        if (particle.type == XML_CTYPE_NAME) {
            for (const XML_Char* unit = particle.name; *unit; ++unit)
                text_.push_back(*unit);
            appendQuantifier(particle);
            return;
        }
        text_.push_back(u'(');
        if (particle.type == XML_CTYPE_MIXED)
            append("#PCDATA");
        open_.push_back({&particle, 0});
    }

    void end(const XML_Content& group) {
        text_.push_back(u')');
        appendQuantifier(group);
    }

    void appendQuantifier(const XML_Content& particle) {
        static constexpr const char* kQuantifiers[] = {"", "?", "*", "+"};
        append(kQuantifiers[particle.quant]);
    }

    void append(std::string_view ascii) { text_.insert(text_.end(), ascii.begin(), ascii.end()); }

    std::vector<XML_Char> text_;
    std::vector<OpenGroup> open_;
};

} // namespace

std::vector<XML_Char> contentModelText(const XML_Content& model) {
    return Formatter().format(model);
}

} // namespace Quillon::SaxEngine
