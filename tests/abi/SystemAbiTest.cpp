// Layout of the classes and records of plug-ins, loaders and system exceptions: what programs that were built against
// an earlier build of the library rely on.
#include "abi/VirtualSlot.h"
#include "runtime/HostServices.h"
#include "system/IllegalStateException.h"
#include "system/MessageCodeException.h"
#include "system/OutOfRangeException.h"
#include "system/PluginNotFoundException.h"
#include "system/QVPI_Arguments.h"
#include "system/QVPI_Plugin.h"
#include "system/QVPI_PluginLoader.h"
#include "system/ServiceProvisioning.h"
#include "system/SharedLibraryLoader.h"
#include "system/SharedLibraryNotFoundException.h"
#include "system/SymbolNotFoundException.h"
#include "xml/sax/AttachedThread.h"
#include "xml/sax/ServiceFactory.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <type_traits>

extern "C" const std::size_t sizesOfPluginRecords[6];

namespace Quillon {
namespace {

using Testing::virtualSlotOf;
using Xml::Sax::BasicServiceFactory;
using Xml::Sax::ServiceFactory;

constexpr std::size_t kWord = sizeof(void*);

/// The pointer that stands `index` words behind the start of `object`.
template <class T>
void* wordOf(const T& object, std::size_t index) {
    void* word = nullptr;
    std::memcpy(&word, reinterpret_cast<const char*>(&object) + index * kWord, sizeof word);
    return word;
}

TEST(SystemAbiTest, RecordsAreTheSameInCAndCpp) {
    const std::size_t sizes[] = {sizeof(QVPI_Plugin_),      sizeof(QVPI_PluginFunctions),
                                 sizeof(QVPI_PluginOption), sizeof(QVPI_PluginInitArgs),
                                 sizeof(SaxSvc_),           sizeof(SaxSvcFunctions)};
    for (int i = 0; i < 6; ++i)
        EXPECT_EQ(sizes[i], sizesOfPluginRecords[i]);
    EXPECT_EQ(0u, offsetof(QVPI_Plugin_, functions));
    EXPECT_EQ(4 * kWord, offsetof(QVPI_PluginFunctions, version));
    EXPECT_EQ(7 * kWord, offsetof(QVPI_PluginFunctions, detachThread));
    EXPECT_EQ(4 * kWord, offsetof(SaxSvcFunctions, version));
    EXPECT_EQ(8u, offsetof(QVPI_PluginInitArgs, options));
    EXPECT_EQ(8 + kWord, offsetof(QVPI_PluginInitArgs, quiet));
}

TEST(SystemAbiTest, RecordsAreAlsoNamedInTheirNamespaces) {
    static_assert(std::is_same_v<QVPI_Plugin_, System::QVPI_Plugin_>);
    static_assert(std::is_same_v<QVPI_PluginFunctions, System::QVPI_PluginFunctions>);
    static_assert(std::is_same_v<QVPI_PluginOption, System::QVPI_PluginOption>);
    static_assert(std::is_same_v<QVPI_PluginInitArgs, System::QVPI_PluginInitArgs>);
    static_assert(std::is_same_v<QVPI_CreatePluginFunction, System::QVPI_CreatePluginFunction>);
    static_assert(std::is_same_v<SaxSvc_, Xml::Sax::SaxSvc_>);
    static_assert(std::is_same_v<SaxSvcFunctions, Xml::Sax::SaxSvcFunctions>);
}

TEST(SystemAbiTest, EntryTakesRecordArgumentsAndLoader) {
    static_assert(std::is_same_v<QVPI_CreatePluginFunction, std::int32_t (*)(QVPI_Plugin_**, void*, void*)>);
}

TEST(SystemAbiTest, MessageTableIsEightWordsOnA32BitPlatform) {
    using Runtime::MessageTable;
    EXPECT_EQ(0u, offsetof(MessageTable, count));
    EXPECT_EQ(4u, offsetof(MessageTable, facility));
    EXPECT_EQ(8u, offsetof(MessageTable, codes));
    EXPECT_EQ(8 + kWord, offsetof(MessageTable, names));
    EXPECT_EQ(8 + 2 * kWord, offsetof(MessageTable, formats));
    EXPECT_EQ(8 + 3 * kWord, offsetof(MessageTable, facilityText));
    EXPECT_EQ(8 + 4 * kWord, offsetof(MessageTable, reserved1));
    EXPECT_EQ(12 + 4 * kWord, offsetof(MessageTable, reserved2));
    EXPECT_EQ(16 + 4 * kWord, sizeof(MessageTable));
}

TEST(SystemAbiTest, SharedLibraryIsDestructorAndSymbol) {
    EXPECT_EQ(kWord, sizeof(System::SharedLibrary));
    EXPECT_EQ(2u, virtualSlotOf(&System::SharedLibrary::getSymbol));
    static_assert(std::is_abstract_v<System::SharedLibrary>);
}

TEST(SystemAbiTest, SharedLibraryLoaderIsDestructorAndLoad) {
    struct Calls : System::SharedLibraryLoader {
        boost::shared_ptr<System::SharedLibrary> doLoadSharedLibrary(const char*, bool) override {
            return boost::shared_ptr<System::SharedLibrary>();
        }
    };
    EXPECT_EQ(kWord, sizeof(System::SharedLibraryLoader));
    EXPECT_EQ(2u, virtualSlotOf(&Calls::doLoadSharedLibrary));
    static_assert(std::is_abstract_v<System::SharedLibraryLoader>);
}

class LoaderLayout : public System::QVPI_PluginLoader {
public:
    using QVPI_PluginLoader::findPlugin;
    using QVPI_PluginLoader::initPlugin;
    explicit LoaderLayout(const boost::shared_ptr<QVPI_PluginLoader>& parent) : QVPI_PluginLoader(parent) {}
    boost::shared_ptr<QVPI_Plugin_> findPlugin(const char*) const override {
        return boost::shared_ptr<QVPI_Plugin_>();
    }
    virtual void firstOfItsOwn() {}
};

TEST(SystemAbiTest, PluginLoaderHoldsItsParent) {
    const auto parent = System::QVPI_PluginLoader::getSystemPluginLoader();
    const LoaderLayout loader(parent);
    EXPECT_EQ(3 * kWord, sizeof(System::QVPI_PluginLoader));
    EXPECT_EQ(parent.get(), wordOf(loader, 1));
}

TEST(SystemAbiTest, PluginLoaderIsInitFindAndDestructor) {
    EXPECT_EQ(0u, virtualSlotOf(&LoaderLayout::initPlugin));
    EXPECT_EQ(1u, virtualSlotOf(&LoaderLayout::findPlugin));
    EXPECT_EQ(4u, virtualSlotOf(&LoaderLayout::firstOfItsOwn)) << "behind the destructor";
}

TEST(SystemAbiTest, ArgumentsHoldTheSevenFunctionsInOrder) {
    System::QVPI_Arguments arguments;
    const auto offsetOf = [&](const auto& field) {
        return static_cast<std::size_t>(reinterpret_cast<const char*>(&field)
                                        - reinterpret_cast<const char*>(&arguments));
    };
    EXPECT_EQ(8 * kWord, sizeof arguments);
    EXPECT_EQ(1 * kWord, offsetOf(arguments.abort));
    EXPECT_EQ(2 * kWord, offsetOf(arguments.exit));
    EXPECT_EQ(3 * kWord, offsetOf(arguments.vprintf));
    EXPECT_EQ(4 * kWord, offsetOf(arguments.malloc));
    EXPECT_EQ(5 * kWord, offsetOf(arguments.realloc));
    EXPECT_EQ(6 * kWord, offsetOf(arguments.calloc));
    EXPECT_EQ(7 * kWord, offsetOf(arguments.free));
    EXPECT_EQ(2u, virtualSlotOf(&System::QVPI_Arguments::handleQvpiPluginOption));
}

TEST(SystemAbiTest, ServiceProvisioningHasNeitherDataNorSlots) {
    static_assert(std::is_empty_v<System::ServiceProvisioning>);
    static_assert(!std::is_polymorphic_v<System::ServiceProvisioning>);
}

QVPI_Plugin_ somePlugin;

TEST(SystemAbiTest, ServiceFactoryHoldsPluginAndSelf) {
    const boost::shared_ptr<QVPI_Plugin_> plugin(&somePlugin, [](QVPI_Plugin_*) {});
    const ServiceFactory factory(plugin);
    EXPECT_EQ(5 * kWord, sizeof(ServiceFactory));
    EXPECT_EQ(sizeof(ServiceFactory), sizeof(BasicServiceFactory<ServiceFactory, SaxSvc_>));
    EXPECT_EQ(plugin.get(), wordOf(factory, 1));
    EXPECT_EQ(nullptr, wordOf(factory, 3));
    EXPECT_EQ(nullptr, wordOf(factory, 4));
    static_assert(std::has_virtual_destructor_v<BasicServiceFactory<ServiceFactory, SaxSvc_>>);
    static_assert(std::is_convertible_v<ServiceFactory*, BasicServiceFactory<ServiceFactory, SaxSvc_>*>);
    static_assert(std::is_base_of_v<System::ServiceProvisioning, ServiceFactory>);
    static_assert(!std::is_convertible_v<ServiceFactory*, System::ServiceProvisioning*>, "private base");
}

TEST(SystemAbiTest, MessageCodeExceptionAddsOneWord) {
    using Identified = System::IdentifiableException<System::UserException, std::string>;
    const System::CataloguedException exception("An identifier", 1);
    EXPECT_EQ(sizeof(Identified) + kWord, sizeof(System::CataloguedException));
    EXPECT_EQ(exception.getIdentifierText(), wordOf(exception, sizeof(Identified) / kWord));
}

TEST(SystemAbiTest, IdentifiableExceptionIsUserThenIdentifiableThenIdentifier) {
    using Identified = System::IdentifiableException<System::UserException, std::string>;
    const Identified exception("An identifier");
    const auto* const start = reinterpret_cast<const char*>(&exception);
    const auto offsetOf = [&](const void* part) { return static_cast<const char*>(part) - start; };
    EXPECT_EQ(0, offsetOf(static_cast<const System::UserException*>(&exception)));
    EXPECT_EQ(std::ptrdiff_t{sizeof(System::UserException)},
              offsetOf(static_cast<const System::Identifiable*>(&exception)));
    EXPECT_EQ(std::ptrdiff_t{sizeof(System::UserException) + kWord}, offsetOf(&exception.getIdentifier()));
}

template <class Kind>
constexpr bool
    isBareInterface = sizeof(Kind)
                          == kWord&& std::is_abstract_v<Kind> && !std::is_base_of_v<std::exception, Kind>;

TEST(SystemAbiTest, ExceptionInterfacesCarryNoData) {
    static_assert(isBareInterface<System::SharedLibraryNotFoundException>);
    static_assert(isBareInterface<System::SymbolNotFoundException>);
    static_assert(isBareInterface<System::OutOfRangeException>);
    static_assert(isBareInterface<System::IllegalStateException>);
    static_assert(isBareInterface<System::PluginNotFoundException>);
}

} // namespace
} // namespace Quillon
