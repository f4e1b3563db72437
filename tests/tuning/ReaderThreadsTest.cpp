// The reader in a process with other XML users and hostile files: it leaves the XML library's
// global state alone (other users' input handlers survive, parsers on several threads agree),
// and files a tuning file never looks like are refused before they cost time or memory.
#include <gtest/gtest.h>

#include <libxml/parser.h>
#include <libxml/xmlIO.h>

#include <chrono>
#include <cstring>
#include <string>
#include <thread>
#include <vector>

#include "support/LogCapture.h"
#include "support/TempDeviceRoot.h"
#include "tuning/TuningFileParser.h"

namespace korvi {
namespace {

using test::LogCapture;
using test::TempDeviceRoot;

// Another libxml2 user in the process: an input handler for "korvi-test:" names that serves a
// fixed document.
constexpr const char* kScheme = "korvi-test:";
const std::string kServed = "<served/>";
size_t gServedOffset = 0;

int matchScheme(const char* name) {
    return std::strncmp(name, kScheme, std::strlen(kScheme)) == 0;
}
void* openServed(const char*) {
    gServedOffset = 0;
    return &gServedOffset;
}
int readServed(void*, char* buffer, int length) {
    const size_t n = std::min(static_cast<size_t>(length), kServed.size() - gServedOffset);
    std::memcpy(buffer, kServed.data() + gServedOffset, n);
    gServedOffset += n;
    return static_cast<int>(n);
}
int closeServed(void*) {
    return 0;
}

bool otherUserCanRead() {
    xmlDoc* doc = xmlReadFile("korvi-test:doc", nullptr, XML_PARSE_NOERROR | XML_PARSE_NOWARNING);
    const bool ok = doc != nullptr;
    xmlFreeDoc(doc);
    return ok;
}

// What a parse of the sample file yields, in a few numbers.
std::vector<size_t> summary(const std::string& path) {
    TuningFileParser parser;
    if (parser.setTuningFile(path) != 0) return {};
    DeviceData* data = parser.getDeviceData();
    return {data->getIeqPresets().size(), data->getProfiles().size(),
            data->getProfileEndpoints().size(), data->getTunings().size(),
            data->getDeviceTunings().size()};
}

TEST(ReaderNeighbours, OtherXmlUsersKeepTheirStateAndParsersOnManyThreadsAgree) {
    TempDeviceRoot root;
    const std::string path = root.copyFromData("vendor/etc/korvi/wem-default.xml");
    // The library's own handlers first, as any program that calls xmlInitParser has them.
    xmlInitParser();
    ASSERT_GE(xmlRegisterInputCallbacks(matchScheme, openServed, readServed, closeServed), 0);
    struct Unregister {
        ~Unregister() { xmlPopInputCallbacks(); }
    } unregister;
    ASSERT_TRUE(otherUserCanRead());
    const std::vector<size_t> expected = summary(path);
    ASSERT_EQ(expected.size(), 5u);
    // The reader came and went; the other user's handler is still registered.
    EXPECT_TRUE(otherUserCanRead());

    std::vector<std::thread> threads;
    std::vector<int> mismatches(4, 0);
    for (size_t t = 0; t < mismatches.size(); ++t) {
        threads.emplace_back([&, t] {
            for (int i = 0; i < 50; ++i) mismatches[t] += summary(path) != expected;
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(mismatches, std::vector<int>(4, 0));
    EXPECT_TRUE(otherUserCanRead());
}

TEST(ReaderNeighbours, EntityDeclarationsAndOversizedFilesAreRefused) {
    TempDeviceRoot root;
    const std::string flat =
            "<?xml version=\"1.0\"?>\n<!DOCTYPE wem [<!ENTITY e \"" + std::string(200000, 'A') +
            "\">]>\n<wem>\n<profile id=\"0\" name=\"";
    std::string refs;
    for (int i = 0; i < 2000; ++i) refs += "&e;";
    const std::string small = "<?xml version=\"1.0\"?>\n<!DOCTYPE wem [<!ENTITY n \"1\">]>\n"
                              "<wem>\n<profile id=\"&n;\" name=\"p\">\n</profile>\n</wem>\n";
    const std::string pentity = "<?xml version=\"1.0\"?>\n<!DOCTYPE wem [<!ENTITY % p \"x\">]>\n"
                                "<wem>\n<profile id=\"0\" name=\"p\">\n</profile>\n</wem>\n";
    // A well-formed file just over the limit: padding in a comment.
    const std::string body = "<wem>\n<profile id=\"0\" name=\"p\">\n</profile>\n</wem>\n";
    const std::string oversized =
            "<!--" + std::string(TagIterator::kMaxFileBytes - body.size() - 7, ' ') + "-->\n" + body;
    const std::string atLimit = std::string(oversized).erase(4, 1);
    ASSERT_EQ(static_cast<long long>(oversized.size()), TagIterator::kMaxFileBytes + 1);

    struct Case {
        const char* name;
        std::string content;
        int result;
        std::string message;
    };
    const std::string dir = root.path("vendor/etc/korvi/");
    const std::vector<Case> cases = {
            {"flat.xml", flat + refs + "\">\n</profile>\n</wem>\n", -22,
             dir + "flat.xml declares entities, which a tuning file never needs: refused"},
            {"small.xml", small, -22,
             dir + "small.xml declares entities, which a tuning file never needs: refused"},
            {"pentity.xml", pentity, -22,
             dir + "pentity.xml declares entities, which a tuning file never needs: refused"},
            {"big.xml", oversized, -22,
             dir + "big.xml is 4194305 bytes, more than the 4194304 a tuning file may have: "
                   "refused"},
            {"limit.xml", atLimit, 0, ""},
    };
    for (const Case& c : cases) {
        const std::string path = root.write(std::string("vendor/etc/korvi/") + c.name, c.content);
        LogCapture logs;
        const auto start = std::chrono::steady_clock::now();
        TuningFileParser parser;
        EXPECT_EQ(parser.setTuningFile(path), c.result) << c.name;
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5)) << c.name;
        if (c.result == 0) {
            EXPECT_EQ(parser.getNumOfProfiles(), 1) << c.name;
        } else {
            EXPECT_TRUE(logs.contains(ANDROID_LOG_ERROR, "TagIterator", c.message))
                    << c.name << "\n" << logs.dump();
            EXPECT_EQ(parser.getDeviceData(), nullptr) << c.name;
        }
    }
}

}  // namespace
}  // namespace korvi
