#include "net/UriComparison.h"

#include "net/URISyntaxException.h"
#include "runtime/HostServices.h"

namespace Quillon::Testing {

using Net::URI;
using Net::URISyntaxException;

namespace {

void compareResult(const char* operation, const URI* result, const ModelUri& expected, const ModelUri& left,
                   const ModelUri& right) {
    const UriPtr owned(const_cast<URI*>(result));
    if (!same(*result, expected))
        ADD_FAILURE() << operation << "\n  of: " << show(left) << "\n  and: " << show(right)
                      << "\n  library: " << show(*result) << "\n  model: " << show(expected);
}

} // namespace

UriPtr comparedParse(const std::string& text, ModelUri* contents) {
    const ModelParse model = modelParse(text);
    try {
        UriPtr uri = parsed(text);
        const ModelUri expected = modelCopy(model.uri);
        if (model.fault || !same(*uri, expected))
            ADD_FAILURE() << text << "\n  library: " << show(*uri) << "\n  model: " << modelOutcome(text);
        if (contents)
            *contents = expected;
        return uri;
    } catch (const URISyntaxException& fault) {
        if (!model.fault || model.fault->reason != fault.getReason()
            || model.fault->index != fault.getIndex())
            ADD_FAILURE() << text << "\n  library: " << outcome(text) << "\n  model: " << modelOutcome(text);
        return nullptr;
    }
}

void compareResolve(const URI& reference, const ModelUri& r, const URI& base, const ModelUri& b) {
    compareResult("strict resolve", reference.resolve(base, true), modelResolve(r, b, true), r, b);
    compareResult("lax resolve", reference.resolve(base, false), modelResolve(r, b, false), r, b);
}

void compareRelativize(const URI& target, const ModelUri& t, const URI& base, const ModelUri& b) {
    compareResult("relativize", target.relativize(base), modelRelativize(t, b), t, b);
}

void compareNormalize(const URI& uri, const ModelUri& u) {
    compareResult("normalize", uri.normalize(), modelNormalize(u), u, u);
}

void compareRecompose(const URI& uri, const ModelUri& u) {
    unsigned char* text = uri.recompose();
    if (modelRecompose(u) != reinterpret_cast<const char*>(text))
        ADD_FAILURE() << "recompose " << show(u) << "\n  library: " << text
                      << "\n  model: " << modelRecompose(u);
    Runtime::release(text);
}

void compareEqual(const URI& left, const ModelUri& l, const URI& right, const ModelUri& r) {
    if ((left == right) != modelEqual(l, r))
        ADD_FAILURE() << show(l) << "\n  and: " << show(r) << "\n  model: " << modelEqual(l, r);
}

void comparePair(const URI& left, const ModelUri& l, const URI& right, const ModelUri& r) {
    compareResolve(left, l, right, r);
    compareRelativize(left, l, right, r);
    compareEqual(left, l, right, r);
}

} // namespace Quillon::Testing
