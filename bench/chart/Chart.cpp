// Draws the results as SVG, with the library's own writer: one group of bars for each workload, the fastest on top,
// long bars for high speed.
//
// Standard input: lines of "title, measure, competitor, value, seconds", separated by tabs, a workload's together.

#include "support/Text.h"

#include "xml/sax/AttributesImpl.h"
#include "xml/sax/SaxException.h"
#include "xml/sax/writer/StrictWriter.h"

#include <algorithm>
#include <cstdio>
#include <iostream>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace {

using Quillon::Xml::XmlString;
using namespace Quillon::Xml::Sax;

struct Bar {
    std::string competitor;
    double value;
    double seconds;
};

struct Group {
    std::string title, measure;
    std::vector<Bar> bars;
};

std::vector<Group> readGroups(std::istream& in) {
    std::vector<Group> groups;
    for (std::string line; std::getline(in, line);) {
        std::istringstream fields(line);
        std::string title, measure, competitor, value, seconds;
        std::getline(fields, title, '\t');
        std::getline(fields, measure, '\t');
        std::getline(fields, competitor, '\t');
        std::getline(fields, value, '\t');
        std::getline(fields, seconds);
        if (groups.empty() || groups.back().title != title)
            groups.push_back({title, measure, {}});
        groups.back().bars.push_back({competitor, std::stod(value), std::stod(seconds)});
    }
    return groups;
}

/// Elements of SVG through the writer.
class Svg {
public:
    using Attributes = std::vector<std::pair<const char*, std::string>>;

    explicit Svg(std::ostream& out) : writer_(out) { writer_.startDocument(); }

    void open(const char* name, const Attributes& attributes) {
        if (open_.empty())
            writer_.startPrefixMapping(none_, uri_);
        AttributesImpl list;
        for (const auto& [attribute, value] : attributes)
            list.addAttribute(none_, text(attribute), text(attribute), text("CDATA"), text(value));
        open_.push_back(text(name));
        writer_.startElement(uri_, open_.back(), open_.back(), list);
    }

    void close() {
        writer_.endElement(uri_, open_.back(), open_.back());
        open_.pop_back();
        if (open_.empty()) {
            writer_.endPrefixMapping(none_);
            writer_.endDocument();
        }
    }

    void element(const char* name, const Attributes& attributes, const std::string& content = {}) {
        open(name, attributes);
        const XmlString units = text(content);
        writer_.characters(units.data(), 0, units.size());
        close();
    }

    void words(const char* style, double x, double y, const std::string& content) {
        element("text", {{"class", style}, {"x", number(x)}, {"y", number(y)}}, content);
    }

    void box(const char* style, double x, double y, double width, double height, double radius) {
        element("rect", {{"class", style},
                         {"x", number(x)},
                         {"y", number(y)},
                         {"width", number(width)},
                         {"height", number(height)},
                         {"rx", number(radius)}});
    }

    static std::string number(double value) {
        char digits[32];
        std::snprintf(digits, sizeof digits, "%.4g", value);
        return digits;
    }

private:
    static XmlString text(const std::string& utf8) {
        return Quillon::Xml::makeString(reinterpret_cast<const unsigned char*>(utf8.c_str()));
    }

    StrictWriter writer_;
    const XmlString none_ = text(""), uri_ = text("http://www.w3.org/2000/svg");
    std::vector<XmlString> open_;
};

// The page: three columns; a group goes where there is most room.
constexpr double kMargin = 28, kHead = 92, kGap = 34;
constexpr int kColumns = 3;
constexpr double kNameWidth = 124, kBarWidth = 128, kValueWidth = 78;
constexpr double kGroupWidth = kNameWidth + kBarWidth + kValueWidth;
constexpr double kTitleHeight = 22, kLine = 18, kBarHeight = 12, kGroupGap = 20;
constexpr double kWidth = 2 * kMargin + kColumns * kGroupWidth + (kColumns - 1) * kGap;

constexpr const char* kStyle = R"(
text { font-family: "Segoe UI", "Noto Sans", "DejaVu Sans", Helvetica, Arial, sans-serif; font-size: 12px }
.page { fill: #ffffff }
.head { font-size: 20px; font-weight: 600; fill: #1b2430 }
.note { fill: #5b6675 }
.title { font-size: 13px; font-weight: 600; fill: #1b2430 }
.name, .value { fill: #5b6675 }
.name { text-anchor: end }
.our-name { text-anchor: end }
.our-name, .our-value { font-weight: 600; fill: #0b62c4 }
.bar { fill: #b4bfcc }
.our-bar { fill: #1a7fe0 }
@media (prefers-color-scheme: dark) {
  .page { fill: #0f141b }
  .head, .title { fill: #e8edf3 }
  .note, .name, .value { fill: #9aa7b6 }
  .our-name, .our-value { fill: #6cb4ff }
  .bar { fill: #4a5665 }
  .our-bar { fill: #2f8ff0 }
}
)";

double heightOf(const Group& group) {
    return kTitleHeight + kLine * static_cast<double>(group.bars.size()) + kGroupGap;
}

bool isOurs(const Bar& bar) {
    return bar.competitor.rfind("zutarnex", 0) == 0;
}

/// Three digits.
std::string shortNumber(double value) {
    char digits[32];
    std::snprintf(digits, sizeof digits, value < 100 ? "%.3g" : "%.0f", value);
    return digits;
}

void drawBar(Svg& svg, const Bar& bar, double share, const std::string& measure, double x, double y) {
    const double width = std::max(1.5, kBarWidth * share), baseline = y + kBarHeight - 2;
    const bool ours = isOurs(bar);
    svg.words(ours ? "our-name" : "name", x + kNameWidth - 8, baseline, bar.competitor);
    svg.box(ours ? "our-bar" : "bar", x + kNameWidth, y, width, kBarHeight, 2);
    svg.words(ours ? "our-value" : "value", x + kNameWidth + width + 6, baseline,
              shortNumber(bar.value) + " " + measure);
}

void drawGroup(Svg& svg, const Group& group, double x, double y) {
    svg.words("title", x, y + 12, group.title);
    y += kTitleHeight;
    double fastest = group.bars.front().seconds;
    for (const Bar& bar : group.bars)
        fastest = std::min(fastest, bar.seconds);
    for (const Bar& bar : group.bars) {
        drawBar(svg, bar, fastest / bar.seconds, group.measure, x, y);
        y += kLine;
    }
}

struct Place {
    int column;
    double y;
};

/// Where each group begins, and in the last element how high the page is.
std::vector<Place> placed(const std::vector<Group>& groups) {
    std::vector<double> bottoms(kColumns, kHead);
    std::vector<Place> places;
    for (const Group& group : groups) {
        const auto column = std::min_element(bottoms.begin(), bottoms.end());
        places.push_back({static_cast<int>(column - bottoms.begin()), *column});
        *column += heightOf(group);
    }
    places.push_back({0, *std::max_element(bottoms.begin(), bottoms.end())});
    return places;
}

void draw(Svg& svg, const std::vector<Group>& groups) {
    const std::vector<Place> places = placed(groups);
    const std::string width = Svg::number(kWidth), height = Svg::number(places.back().y + kMargin / 2);
    svg.open("svg", {{"width", width}, {"height", height}, {"viewBox", "0 0 " + width + " " + height}});
    svg.element("title", {}, "The library and its peers, workload by workload");
    svg.element("style", {}, kStyle);
    svg.element("rect", {{"class", "page"}, {"width", "100%"}, {"height", "100%"}, {"rx", "10"}});
    svg.words("head", kMargin, kMargin + 20, "libzutarnex beside its peers");
    svg.words(
        "note", kMargin, kMargin + 42,
        "Long bars are fast. Each group is one workload; medians of one run on one machine, see RESULTS.md.");
    for (std::size_t i = 0; i < groups.size(); ++i)
        drawGroup(svg, groups[i], kMargin + places[i].column * (kGroupWidth + kGap), places[i].y);
    svg.close();
}

} // namespace

int main() {
    const std::vector<Group> groups = readGroups(std::cin);
    try {
        Svg svg(std::cout);
        draw(svg, groups);
    } catch (const SaxException&) {
        std::cerr << "bench_chart: the chart could not be written\n";
        return 1;
    }
    return std::cout.flush() ? 0 : 1;
}
