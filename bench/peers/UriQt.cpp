#include "support/Contest.h"
#include "support/UriLoad.h"

#include <QUrl>

namespace Quillon::Bench {

namespace {

template <class Object, class Make, class Work>
void enterQt(const char* workload, const std::vector<std::string>& texts, Make make, Work work) {
    enter(workload, "Qt", [&texts, make, work] {
        std::vector<Object> objects;
        for (const std::string& text : texts)
            objects.push_back(make(text));
        return Round(Load{texts.size()}, [work, objects] {
            for (const Object& object : objects)
                work(object);
        });
    });
}

QString textOf(const std::string& text) {
    return QString::fromStdString(text);
}
QUrl urlOf(const std::string& text) {
    return QUrl(textOf(text), QUrl::StrictMode);
}

const Entries entries([] {
    enterQt<QString>("uri.construct", uris(), textOf, [](const QString& text) {
        const QUrl url(text, QUrl::StrictMode);
        benchmark::DoNotOptimize(url.isValid()); // parses, if it has not been parsed yet
    });
    enterQt<QUrl>("uri.recompose", uris(), urlOf,
                  [](const QUrl& url) { benchmark::DoNotOptimize(url.toString(QUrl::FullyEncoded)); });
    enterQt<QUrl>("uri.resolve", relativeReferences(), urlOf, [base = urlOf(baseUri())](const QUrl& url) {
        benchmark::DoNotOptimize(base.resolved(url));
    });
    enterQt<QUrl>("uri.normalize", looseUris(), urlOf, [](const QUrl& url) {
        benchmark::DoNotOptimize(url.adjusted(QUrl::NormalizePathSegments));
    });
});

} // namespace

} // namespace Quillon::Bench
