// The library-wide helpers: device-root paths, integer text, the fatal-exit helper and the
// system-property shim.
#include <gtest/gtest.h>

#include <climits>
#include <random>
#include <sstream>

#include "common/DeviceRoot.h"
#include "common/FatalExit.h"
#include "common/IntText.h"

#include <cutils/properties.h>

namespace korvi {
namespace {

TEST(DeviceRoot, PrefixesFixedPathsAndDropsTrailingSlashes) {
    const std::string previous = getDeviceRoot();
    setDeviceRoot("/tmp/dev/");
    EXPECT_EQ(getDeviceRoot(), "/tmp/dev");
    EXPECT_EQ(devicePath("/vendor/etc/korvi/wem-default.xml"), "/tmp/dev/vendor/etc/korvi/wem-default.xml");
    setDeviceRoot("");
    EXPECT_EQ(devicePath("/sys/kernel/smartpa/smartpa_type"), "/sys/kernel/smartpa/smartpa_type");
    setDeviceRoot("/");
    EXPECT_EQ(devicePath("/data/vendor/korvi"), "/data/vendor/korvi");
    setDeviceRoot(previous);
}

TEST(IntText, ReadsNumbersSeparatedByCommasBlanksOrBoth) {
    std::vector<int> v;
    string2IntVector("10, 20,30", v);
    EXPECT_EQ(v, (std::vector<int>{10, 20, 30}));
    v.clear();
    string2IntVector("1, -2,3", v);
    EXPECT_EQ(v, (std::vector<int>{1, -2, 3}));
    v.clear();
    string2IntVector("  4 5,,6, x 7", v);  // stops at the first character that is no separator
    EXPECT_EQ(v, (std::vector<int>{4, 5, 6}));
    v = {9};
    string2IntVector("", v);  // appends, never clears
    EXPECT_EQ(v, (std::vector<int>{9}));

    EXPECT_EQ(string2Int("  -17abc"), -17);
    EXPECT_EQ(string2Int("abc"), 0);
    EXPECT_EQ(string2Int(""), 0);
    EXPECT_EQ(int2String(-5), "-5");
    EXPECT_EQ(intVector2String({1, -2, 3}), "1,-2,3");
    EXPECT_EQ(intVector2String({}), "");
    std::vector<int> back;
    string2IntVector(intVector2String({INT_MIN, 0, INT_MAX}), back);
    EXPECT_EQ(back, (std::vector<int>{INT_MIN, 0, INT_MAX}));
}

TEST(FatalExitDeathTest, LogsAndExitsWithMinusOne) {
    EXPECT_EXIT(fatalExit("AxContext", "unknown profile id %d", 7), ::testing::ExitedWithCode(255),
                "unknown profile id 7");
}

TEST(Properties, ReadsWritesAndFallsBack) {
    EXPECT_EQ(property_set("persist.vendor.korvi.test", "42"), 0);
    EXPECT_EQ(property_get_int32("persist.vendor.korvi.test", -1), 42);
    char value[PROPERTY_VALUE_MAX];
    EXPECT_EQ(property_get("persist.vendor.korvi.test", value, "x"), 2);
    EXPECT_STREQ(value, "42");
    EXPECT_EQ(property_get("persist.vendor.korvi.unset", value, "dflt"), 4);
    EXPECT_STREQ(value, "dflt");
    EXPECT_EQ(property_get_int32("persist.vendor.korvi.unset", 7), 7);
    EXPECT_EQ(property_set("persist.vendor.korvi.test", "not a number"), 0);
    EXPECT_EQ(property_get_int32("persist.vendor.korvi.test", 3), 3);
    EXPECT_EQ(property_set("persist.vendor.korvi.test", std::string(PROPERTY_VALUE_MAX, 'a').c_str()), -1);
}

}  // namespace
}  // namespace korvi

namespace {

// What the readers of numbers must agree with: extraction from a string stream.
std::vector<int> streamIntVector(const std::string& text) {
    std::istringstream in(text);
    std::vector<int> out;
    int value = 0;
    while (in >> value) {
        out.push_back(value);
        while (in.peek() == ',' || in.peek() == ' ') in.get();
    }
    return out;
}

int streamInt(const std::string& text) {
    std::istringstream in(text);
    int value = 0;
    in >> value;
    return value;
}

}  // namespace

// The readers work on the text in place; every input here, fixed or random, must give what
// stream extraction gives: signs, blanks of every kind, limits, overflow, stray characters.
TEST(IntText, ReadsLikeStreamExtraction) {
    using korvi::string2Int;
    using korvi::string2IntVector;
    std::vector<std::string> texts = {
        "2147483647", "2147483648", "-2147483648", "-2147483649", "99999999999999999999999",
        "-99999999999999999999999,5", "1,2147483648,3", "+7", "+-7", "-+7", "-", "+", "- 5",
        "\t\n\v\f\r 12", "12\t13\n14", "1,\t2", "1 ,2", ",1", " ,1", "1,,,   ,2", "007,-0", "0x1F",
        "3.5", "5-6", "1e3", "42abc,7", "1;2", "\xef\xbb\xbf" "1", "00000000000000000000001",
        "4294967297", "-2147483647,-2147483648,-2147483649,1",
    };
    std::mt19937 random(20261122);
    const std::string alphabet = "0123456789999-+, \t\nx";
    for (int i = 0; i < 3000; ++i) {
        std::string text;
        const int length = static_cast<int>(random() % 24);
        for (int c = 0; c < length; ++c) text += alphabet[random() % alphabet.size()];
        texts.push_back(text);
    }
    for (const std::string& text : texts) {
        std::vector<int> read = {-1};  // appends after what is there
        string2IntVector(text, read);
        std::vector<int> expected = streamIntVector(text);
        expected.insert(expected.begin(), -1);
        ASSERT_EQ(read, expected) << "list \"" << text << "\"";
        ASSERT_EQ(string2Int(text), streamInt(text)) << "number \"" << text << "\"";
    }
}
