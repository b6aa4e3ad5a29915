// The plug-in module as the host sees it: its entry, its record and what it makes of the creation options.
#include "support/HostFixture.h"
#include "system/QVPI_Plugin.h"
#include "system/SharedLibraryLoader.h"
#include "xml/sax/SaxSvc.h"
#include "xml/sax/XmlReader.h"

#include <cstdlib>

namespace Quillon::SaxEngine {
namespace {

class ModuleTest : public Testing::HostFixture {
protected:
    void warmUp() override { entry(); }

    static QVPI_CreatePluginFunction entry() {
        static const boost::shared_ptr<System::SharedLibrary> library =
            System::SharedLibraryLoader::createSharedLibraryLoader()->loadSharedLibrary(SAXENGINE_MODULE,
                                                                                        true);
        return reinterpret_cast<QVPI_CreatePluginFunction>(library->getSymbol("QVPI_CreatePlugin"));
    }
    static std::int32_t create(QVPI_Plugin_** plugin, const QVPI_PluginOption* options, std::uint32_t count) {
        QVPI_PluginInitArgs arguments{0x00010000, count, options, 1};
        return entry()(plugin, &arguments, nullptr);
    }
};

int requests = 0, blocks = 0;

void* countingMalloc(std::size_t bytes) {
    ++requests;
    ++blocks;
    return std::malloc(bytes);
}
void* countingRealloc(void* block, std::size_t bytes) {
    ++requests;
    blocks += block ? 0 : 1;
    return std::realloc(block, bytes);
}
void* countingCalloc(std::size_t count, std::size_t size) {
    ++blocks;
    return std::calloc(count, size);
}
void countingFree(void* block) {
    blocks -= block ? 1 : 0;
    std::free(block);
}

TEST_F(ModuleTest, RecordIsThatOfAPluginAndOfTheService) {
    QVPI_Plugin_* plugin = nullptr;
    ASSERT_EQ(0, create(&plugin, nullptr, 0));
    auto* service = reinterpret_cast<SaxSvc_*>(plugin);
    EXPECT_EQ(1, plugin->functions->version(plugin) >> 16);
    EXPECT_EQ(1, service->functions->version(plugin) >> 16);
    void* context = nullptr;
    EXPECT_EQ(0, plugin->functions->attachThread(plugin, &context));
    EXPECT_NE(nullptr, context);
    void* reader = nullptr;
    EXPECT_EQ(0, service->functions->createReader(service, &reader));
    ASSERT_NE(nullptr, reader);
    EXPECT_EQ(nullptr, static_cast<Xml::Sax::XmlReader*>(reader)->getContentHandler());
    service->functions->setMaximumDepth(service, reader, 5);
    EXPECT_NE(nullptr, service->functions->engineName(service));
    service->functions->destroyReader(service, reader);
    EXPECT_EQ(0, plugin->functions->detachThread(plugin));
    plugin->functions->destroy(plugin);
}

TEST_F(ModuleTest, EachCreationMakesARecordOfItsOwn) {
    QVPI_Plugin_ *one = nullptr, *two = nullptr;
    ASSERT_EQ(0, create(&one, nullptr, 0));
    ASSERT_EQ(0, create(&two, nullptr, 0));
    EXPECT_NE(one, two);
    one->functions->destroy(one);
    two->functions->destroy(two);
}

TEST_F(ModuleTest, ExpatUsesTheMemoryOfTheHost) {
    const QVPI_PluginOption options[] = {{"malloc", reinterpret_cast<void*>(countingMalloc)},
                                         {"realloc", reinterpret_cast<void*>(countingRealloc)},
                                         {"calloc", reinterpret_cast<void*>(countingCalloc)},
                                         {"free", reinterpret_cast<void*>(countingFree)}};
    QVPI_Plugin_* plugin = nullptr;
    ASSERT_EQ(0, create(&plugin, options, 4));
    auto* service = reinterpret_cast<SaxSvc_*>(plugin);
    void* reader = nullptr;
    ASSERT_EQ(0, service->functions->createReader(service, &reader));
    requests = blocks = 0;
    EXPECT_ANY_THROW(static_cast<Xml::Sax::XmlReader*>(reader)->parse(Xml::makeString("/dev/null")));
    EXPECT_GT(requests, 3);
    EXPECT_EQ(0, blocks) << "what Expat took it gave back";
    service->functions->destroyReader(service, reader);
    plugin->functions->destroy(plugin);
}

TEST_F(ModuleTest, IncompleteMemoryFailsTheCreation) {
    const QVPI_PluginOption options[] = {{"malloc", reinterpret_cast<void*>(countingMalloc)},
                                         {"free", reinterpret_cast<void*>(countingFree)}};
    QVPI_Plugin_* plugin = nullptr;
    EXPECT_NE(0, create(&plugin, options, 2));
    EXPECT_EQ(nullptr, plugin);
    EXPECT_NE(0, entry()(&plugin, nullptr, nullptr)) << "no options at all";
    EXPECT_EQ(nullptr, plugin);
}

TEST_F(ModuleTest, UnknownOptionMeansNothing) {
    const QVPI_PluginOption options[] = {{"colour", nullptr}};
    QVPI_Plugin_* plugin = nullptr;
    ASSERT_EQ(0, create(&plugin, options, 1));
    plugin->functions->destroy(plugin);
}

} // namespace
} // namespace Quillon::SaxEngine
