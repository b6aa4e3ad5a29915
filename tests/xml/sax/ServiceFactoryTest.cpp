#include "xml/sax/ServiceFactory.h"

#include "plugins/TestModule.h"
#include "support/HostFixture.h"
#include "system/DlCalls.h"
#include "system/MessageCodeException.h"
#include "system/PluginNotFoundException.h"
#include "xml/sax/AttachedThread.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <thread>

namespace Quillon::Xml::Sax {
namespace {

using Testing::TestModule;
using Factory = boost::shared_ptr<ServiceFactory>;

const char* const kFakeName = "zutarnex_test_fake_saxengine";

class ServiceFactoryTest : public Testing::HostFixture {
protected:
    void warmUp() override {
        ServiceFactory::create();
        module_.reset();
    }

    // A real engine may lie beside the library; here the fake one is loaded in its stead.
    const Testing::DlRedirection redirection_{"libsaxengine.so", "libzutarnex_test_fake_saxengine.so"};
    const TestModule module_{kFakeName};
};

TEST_F(ServiceFactoryTest, CreateLoadsTheModuleOnce) {
    const Factory factory = ServiceFactory::create();
    ASSERT_TRUE(factory);
    const Factory other = ServiceFactory::create();
    EXPECT_NE(factory, other);
    EXPECT_EQ(factory->getService(), other->getService());
    EXPECT_EQ(1, module_.state().created);
}

TEST_F(ServiceFactoryTest, CreatePassesTheHostsServices) {
    module_.state().readsOptions = 1;
    const Factory factory = ServiceFactory::create();
    EXPECT_EQ(7u, module_.state().argsCount);
    EXPECT_STREQ("exit", module_.state().options[0].name);
}

TEST_F(ServiceFactoryTest, CreatedFactoryKnowsItsOwner) {
    const Factory factory = ServiceFactory::create();
    EXPECT_EQ(factory, factory->getSelf());
    EXPECT_EQ(1, factory.use_count()) << "the self pointer is weak";
}

TEST_F(ServiceFactoryTest, FactoryOverAPluginHasNoSelf) {
    const ServiceFactory factory(System::ServiceProvisioning::doCreate("saxengine"));
    EXPECT_FALSE(factory.getSelf());
    EXPECT_NE(nullptr, factory.getService());
}

TEST_F(ServiceFactoryTest, CopyHasNoSelf) {
    const Factory factory = ServiceFactory::create();
    const ServiceFactory copy(*factory);
    EXPECT_FALSE(copy.getSelf());
    EXPECT_EQ(factory->getService(), copy.getService());
    const Factory owned(new ServiceFactory(*factory));
    EXPECT_FALSE(owned->getSelf());
}

TEST_F(ServiceFactoryTest, AssignmentTakesThePluginOnly) {
    const Factory source = ServiceFactory::create();
    const Factory target = ServiceFactory::create();
    ServiceFactory empty{boost::shared_ptr<QVPI_Plugin_>()};
    empty = *source;
    EXPECT_EQ(source->getService(), empty.getService());
    EXPECT_FALSE(empty.getSelf());
    *target = empty;
    EXPECT_EQ(target, target->getSelf());
}

TEST_F(ServiceFactoryTest, FactoriesShareThePluginAndTheLastDestroysIt) {
    Factory factory = ServiceFactory::create();
    {
        const ServiceFactory copy(*factory);
        factory.reset();
        EXPECT_EQ(0, module_.state().destroyed);
    }
    EXPECT_EQ(1, module_.state().destroyed);
}

TEST_F(ServiceFactoryTest, ModuleStaysOpenAndIsUsedAgain) {
    ServiceFactory::create();
    EXPECT_EQ(1, module_.state().destroyed);
    const Factory again = ServiceFactory::create();
    EXPECT_EQ(2, module_.state().created);
    EXPECT_NE(nullptr, again->getService());
}

TEST_F(ServiceFactoryTest, ServiceIsThePluginsRecord) {
    const boost::shared_ptr<QVPI_Plugin_> plugin = System::ServiceProvisioning::doCreate("saxengine");
    const ServiceFactory factory(plugin);
    EXPECT_EQ(static_cast<void*>(plugin.get()), factory.getService());
}

TEST_F(ServiceFactoryTest, ServiceOfAFactoryWithoutPluginIsNull) {
    EXPECT_EQ(nullptr, ServiceFactory(boost::shared_ptr<QVPI_Plugin_>()).getService());
}

TEST_F(ServiceFactoryTest, ServicesOwnOperationsAreReached) {
    const Factory factory = ServiceFactory::create();
    SaxSvc_* const service = factory->getService();
    EXPECT_STREQ("fake engine 1.0", service->functions->engineName(service));
    void* reader = nullptr;
    EXPECT_EQ(0, service->functions->createReader(service, &reader));
    EXPECT_NE(nullptr, reader);
    service->functions->setMaximumDepth(service, reader, 5);
    service->functions->destroyReader(service, reader);
    EXPECT_EQ(static_cast<void*>(service), module_.state().lastRecord);
}

TEST_F(ServiceFactoryTest, VersionIsAskedTwice) {
    const Factory factory = ServiceFactory::create();
    module_.state().versionAsked = 0;
    factory->validateInterface(factory->getService());
    EXPECT_EQ(2, module_.state().versionAsked);
}

TEST_F(ServiceFactoryTest, SecondVersionIsNotLookedAt) {
    const Factory factory = ServiceFactory::create();
    module_.state().changesVersion = 1;
    for (const std::int32_t later : {0x20000, 0, -1}) {
        module_.state().versionAsked = 0;
        module_.state().laterVersion = later;
        factory->validateInterface(factory->getService());
        EXPECT_EQ(2, module_.state().versionAsked);
    }
}

TEST_F(ServiceFactoryTest, MinorVersionDoesNotCount) {
    const Factory factory = ServiceFactory::create();
    for (const std::int32_t version : {0x10000, 0x10005, 0x1FFFF}) {
        module_.state().version = version;
        factory->validateInterface(factory->getService());
    }
}

TEST_F(ServiceFactoryTest, CreateDoesNotValidateTheService) {
    const Factory factory = ServiceFactory::create();
    EXPECT_EQ(2, module_.state().versionAsked) << "by the plug-in loader, not by the factory";
}

TEST_F(ServiceFactoryTest, ErrorsOfThePluginLoaderPass) {
    module_.state().version = 0x20000;
    try {
        ServiceFactory::create();
        ADD_FAILURE() << "no exception";
    } catch (const System::CataloguedException& exception) {
        EXPECT_EQ("\"Plug-in [saxengine] has incompatible QVPI version number.\"", exception.getMessage());
    }
}

TEST_F(ServiceFactoryTest, AttachAndDetachReachThePlugin) {
    int context = 0;
    module_.state().attachContext = &context;
    const Factory factory = ServiceFactory::create();
    EXPECT_EQ(&context, factory->attachThread());
    EXPECT_EQ(1, module_.state().attached);
    EXPECT_EQ(0, module_.state().detached);
    factory->detachThread();
    EXPECT_EQ(1, module_.state().detached);
}

TEST_F(ServiceFactoryTest, AttachedThreadIsAttachedFromBeginToEnd) {
    int context = 0;
    module_.state().attachContext = &context;
    const Factory factory = ServiceFactory::create();
    {
        const AttachedThread attached(factory);
        EXPECT_EQ(&context, attached.context());
        EXPECT_EQ(1, module_.state().attached);
        EXPECT_EQ(0, module_.state().detached);
    }
    EXPECT_EQ(1, module_.state().detached);
}

TEST_F(ServiceFactoryTest, SecondThreadIsAttachedForItself) {
    const Factory factory = ServiceFactory::create();
    static std::thread::id attaching, detaching;
    module_.state().onAttach = [](void*) { attaching = std::this_thread::get_id(); };
    module_.state().onDetach = [](void*) { detaching = std::this_thread::get_id(); };
    const AttachedThread here(factory);
    std::thread::id other;
    std::thread([&] {
        other = std::this_thread::get_id();
        const AttachedThread there(factory);
        EXPECT_EQ(other, attaching);
        EXPECT_EQ(0, module_.state().detached);
    }).join();
    EXPECT_EQ(other, detaching);
    EXPECT_EQ(2, module_.state().attached);
    EXPECT_EQ(1, module_.state().detached);
}

TEST_F(ServiceFactoryTest, AttachedThreadKeepsTheFactory) {
    Factory factory = ServiceFactory::create();
    {
        const AttachedThread attached(factory);
        factory.reset();
        EXPECT_EQ(0, module_.state().destroyed);
    }
    EXPECT_EQ(1, module_.state().detached);
    EXPECT_EQ(1, module_.state().destroyed);
}

TEST_F(ServiceFactoryTest, AttachedThreadDetachesWhenAnExceptionPasses) {
    const Factory factory = ServiceFactory::create();
    try {
        const AttachedThread attached(factory);
        throw 7;
    } catch (int) {
    }
    EXPECT_EQ(1, module_.state().detached);
}

TEST_F(ServiceFactoryTest, CreateWithoutHostMemoryThrows) {
    Testing::everyAllocationFails([] { ServiceFactory::create(); },
                                  [&] { EXPECT_EQ(module_.state().created, module_.state().destroyed); });
}

TEST_F(ServiceFactoryTest, CreateWithoutMemoryLeavesTheSharedPluginAlone) {
    const Factory holder = ServiceFactory::create();
    Testing::everyNewFails([] { ServiceFactory::create(); });
    EXPECT_EQ(1, module_.state().created);
    EXPECT_EQ(0, module_.state().destroyed);
}

class ServiceFactoryDeathTest : public ServiceFactoryTest {};

/// In a process of its own, where no engine was opened yet.
TEST(MissingEngineDeathTest, IsPluginNotFound) {
    EXPECT_EXIT(
        {
            const Testing::DlRedirection redirection("libsaxengine.so", "libzutarnex_test_not_there.so");
            try {
                ServiceFactory::create();
            } catch (const System::PluginNotFoundException& exception) {
                const auto& message = dynamic_cast<const System::CataloguedException&>(exception);
                std::fprintf(stderr, "%s|%s\n", message.getIdentifierText(), message.what());
                std::_Exit(5);
            }
        },
        ::testing::ExitedWithCode(5),
        "^KAVOLT:PluginNotFound\\|Plug-in \\[saxengine\\] module not found\\.\n$");
}

constexpr char kIncompatible[] = "^fatal error 3: Incompatible SPEI version\n$";

TEST_F(ServiceFactoryDeathTest, OtherMajorVersionEndsTheProcess) {
    const Factory factory = ServiceFactory::create();
    for (const std::int32_t version : {0, 0xFFFF, 0x20000, -1}) {
        module_.state().version = version;
        EXPECT_EXIT(factory->validateInterface(factory->getService()), ::testing::ExitedWithCode(3),
                    kIncompatible)
            << version;
    }
}

TEST_F(ServiceFactoryDeathTest, RightSecondVersionDoesNotMendAWrongOne) {
    const Factory factory = ServiceFactory::create();
    module_.state().versionAsked = 0;
    module_.state().version = 0x20000;
    module_.state().changesVersion = 1;
    module_.state().laterVersion = 0x10000;
    EXPECT_EXIT(factory->validateInterface(factory->getService()), ::testing::ExitedWithCode(3),
                kIncompatible);
}

TEST_F(ServiceFactoryDeathTest, NoServiceIsIncompatible) {
    const ServiceFactory factory{boost::shared_ptr<QVPI_Plugin_>()};
    EXPECT_EXIT(factory.validateInterface(factory.getService()), ::testing::ExitedWithCode(3), kIncompatible);
}

TEST_F(ServiceFactoryDeathTest, ThreadThatCannotAttachEndsTheProcess) {
    const Factory factory = ServiceFactory::create();
    module_.state().attachStatus = -1;
    EXPECT_EXIT(AttachedThread attached(factory), ::testing::ExitedWithCode(3),
                "^fatal error 3: Failed to attach current thread to plugin\n$");
}

TEST_F(ServiceFactoryDeathTest, ThreadThatCannotDetachEndsTheProcess) {
    const Factory factory = ServiceFactory::create();
    module_.state().detachStatus = 1;
    EXPECT_EXIT(AttachedThread attached(factory), ::testing::ExitedWithCode(3),
                "^fatal error 3: Failed to detach current thread from plug-in\n$");
}

TEST_F(ServiceFactoryDeathTest, NoFactoryCannotAttach) {
    EXPECT_EXIT(AttachedThread attached{Factory()}, ::testing::ExitedWithCode(3),
                "^fatal error 3: Failed to attach current thread to plugin\n$");
}

} // namespace
} // namespace Quillon::Xml::Sax
