// Entity-expansion attacks end at Expat's amplification limits, which each parse sets.
#include "saxengine/ReadingFixture.h"
#include "support/SharedData.h"

#include "xml/sax/DefaultHandler2.h"

#include <filesystem>
#include <gmock/gmock.h>

namespace Quillon::Xml::Sax {
namespace {

using namespace Testing;

class HostileDocumentsTest : public ReadingFixture {
protected:
    static Outcome readFile(const std::string& path) {
        SaxEngineReader reader; // without a recording handler: the attacks are many megabytes of events
        DefaultHandler2 quiet;
        reader.setContentHandler(&quiet);
        reader.setFeature(SC_Features_ExternalGeneralEntities(), true);
        reader.setFeature(SC_Features_ExternalParameterEntities(), true);
        return outcomeOf([&] { reader.parse(makeString(path.c_str())); });
    }
    static std::vector<std::string> documents(const std::string& prefix) {
        std::vector<std::string> paths;
        for (const auto& entry :
             std::filesystem::directory_iterator(sharedDataPath("hostile/entity-expansion")))
            if (entry.path().filename().string().starts_with(prefix) && entry.path().extension() == ".xml")
                paths.push_back(entry.path().string());
        return paths;
    }
};

TEST_F(HostileDocumentsTest, EveryAttackIsRefusedByTheNamedLimit) {
    if (!hasSharedData("entity-expansion attacks"))
        return;
    const std::vector<std::string> attacks = documents("lol_");
    EXPECT_EQ(10u, attacks.size());
    for (const std::string& path : attacks) {
        const Outcome outcome = readFile(path);
        EXPECT_TRUE(outcome.isParseException) << path << " " << outcome.message;
        EXPECT_NE(std::string::npos, outcome.message.find("amplification limit"))
            << path << " " << outcome.message;
    }
}

TEST_F(HostileDocumentsTest, HarmlessRelativesAreAccepted) {
    if (!hasSharedData("harmless entity expansions"))
        return;
    const std::vector<std::string> harmless = documents("good");
    EXPECT_EQ(2u, harmless.size());
    for (const std::string& path : harmless) {
        const Outcome outcome = readFile(path);
        EXPECT_FALSE(outcome.threw) << path << " " << outcome.message;
    }
}

/// The limit fires without any data from outside, too.
TEST_F(HostileDocumentsTest, BillionLaughsAreRefused) {
    std::string document = "<!DOCTYPE a [<!ENTITY e0 \"0123456789\">";
    for (int i = 1; i < 10; ++i) {
        const std::string inner = "&e" + std::to_string(i - 1) + ";";
        document += "<!ENTITY e" + std::to_string(i) + " \"";
        for (int k = 0; k < 10; ++k)
            document += inner;
        document += "\">";
    }
    document += "]><a>&e9;</a>";
    DefaultHandler2 quiet;
    reader().setContentHandler(&quiet);
    EXPECT_THAT(refused(document).message, ::testing::HasSubstr("amplification limit"));
}

} // namespace
} // namespace Quillon::Xml::Sax
