// korvictl boot and shell, run as the built program over a temporary device root: what start-up
// reports on a first, second and changed-file run, what a scripted session shows, and the exit
// status a script sees.
#include <gtest/gtest.h>

#include <fstream>
#include <string>

#include "support/TempDeviceRoot.h"
#include "support/ToolRun.h"

namespace korvi::test {
namespace {

class ServiceCommandsTest : public ::testing::Test {
protected:
    void SetUp() override {
        for (const char* f : {"vendor/etc/korvi/wem-default.xml", "data/vendor/korvi/wem-extra.xml",
                              "sys/kernel/smartpa/smartpa_type"}) {
            mRoot.copyFromData(f);
        }
    }
    // Runs a shell session over the root with script as its input file.
    ToolRun shell(const std::string& script) {
        const std::string path = mRoot.write("session.korvi", script);
        return runKorvictl({"shell", "--root", mRoot.dir(), path});
    }
    TempDeviceRoot mRoot;
};

TEST_F(ServiceCommandsTest, BootReportsBuiltThenReusedThenRebuiltDatabase) {
    ToolRun first = runKorvictl({"boot", "--root", mRoot.dir()});
    ASSERT_EQ(first.status, 0) << first.err;
    EXPECT_NE(first.out.find("amplifier       aw882xx (type 1)\n"
                             "factory file    /vendor/etc/korvi/wem-default.xml\n"
                             "database        built (no database before), signature "),
              std::string::npos)
            << first.out;
    EXPECT_NE(first.out.find("OEM added       tuning oem_neckband_n7\n"
                             "OEM added       device oem_neckband_n7 on port bluetooth, tuning "
                             "oem_neckband_n7\n"),
              std::string::npos);
    EXPECT_NE(first.out.find("OEM dropped     Found OEM tuning [earbuds_e2] already exists in the "
                             "default tuning XML, drop it.\n"),
              std::string::npos);
    EXPECT_NE(first.out.find("  * 0 Dynamic\n    1 Movie\n"), std::string::npos);
    EXPECT_NE(first.out.find("effect parameters, 7 devices\n  speaker (0x2)\n"), std::string::npos);
    EXPECT_NE(first.out.find("  profile (0x40000000)\n"), std::string::npos);

    ToolRun second = runKorvictl({"boot", "--root", mRoot.dir(), "--json"});
    ASSERT_EQ(second.status, 0) << second.err;
    EXPECT_NE(second.out.find("\"database\": \"reused\""), std::string::npos) << second.out;
    EXPECT_NE(second.out.find("\"oemMerge\": \"not merged: the OEM file is merged when the factory "
                              "file changed (or on reload)\",\n    \"oemAdded\": [],"),
              std::string::npos)
            << second.out;

    std::ofstream(mRoot.path("vendor/etc/korvi/wem-default.xml"), std::ios::app) << "\n";
    ToolRun third = runKorvictl({"boot", "--root", mRoot.dir()});
    ASSERT_EQ(third.status, 0) << third.err;
    EXPECT_NE(third.out.find("database        rebuilt: new signature "), std::string::npos)
            << third.out;
}

TEST_F(ServiceCommandsTest, ShellShowsWhatEachOperationDidAndGoesOnAfterAnError) {
    ToolRun run = shell(
            "profile Movie\n"
            "no-such-operation 1\n"
            "set port headphone volume-leveler-enable 0\n"
            "get port headphone volume-leveler-enable\n"
            "get volume-leveler-enable\n"
            "set 117 1\n"
            "tuning headphone studio_monitor_hp3\n"
            "int DTFV\n"
            "reload\n");
    ASSERT_EQ(run.status, 0) << run.err;
    const std::string expected =
            "> profile Movie\n"
            "request 00 00 00 0a 01 00 00 00\n"
            "effect:\n"
            "  speaker        DEA 6 -> 8   DED 0 -> 2   DEON 0 -> 1   DSB 96 -> 128   DVLA 4 -> 5"
            "   MDEE 0 -> 1\n";
    EXPECT_NE(run.out.find(expected), std::string::npos) << run.out;
    EXPECT_NE(run.out.find("  profile        DRCM 1 0 0 0 -> 2 0 0 0   GEBS: 18 of 41 values"
                           "   MIEE 1 -> 0\n"),
              std::string::npos);
    EXPECT_NE(run.out.find("> no-such-operation 1\n"
                           "error: unknown operation 'no-such-operation' (try 'help')\n"
                           "> set port headphone"),
              std::string::npos);
    // The headphone endpoint feeds the headphone, Bluetooth and USB devices, and nothing else.
    EXPECT_NE(run.out.find("effect:\n  headphone      DVLE 1 -> 0\n  bluetooth_a2dp DVLE 1 -> 0\n"
                           "  usb_device     DVLE 1 -> 0\n> get"),
              std::string::npos);
    EXPECT_NE(run.out.find("volume-leveler-enable = 0\n> get volume-leveler-enable\n"
                           "volume-leveler-enable = 1\n"),
              std::string::npos);
    EXPECT_NE(run.out.find("error: unknown parameter '117'"), std::string::npos);
    EXPECT_NE(run.out.find("effect:\n  headphone      AOBS: 40 of 62 values   BEB 128 -> 120\n"),
              std::string::npos);
    EXPECT_NE(run.out.find("DTFV = 3005000\n"), std::string::npos);
    EXPECT_NE(run.out.find("> reload\nnotified: (empty update)\n"), std::string::npos);
}

TEST_F(ServiceCommandsTest, UsageErrorsExitTwoAndAnUnusableRootExitsOne) {
    for (const std::vector<std::string>& args :
         std::vector<std::vector<std::string>>{{"boot", "--bogus"}, {"boot", "--root"},
                                               {"shell", "a", "b"}, {"shell", "--json"}}) {
        ToolRun run = runKorvictl(args);
        EXPECT_EQ(run.status, 2) << args.back();
        EXPECT_EQ(run.err.rfind("korvictl: ", 0), 0u) << run.err;
    }
    ToolRun missing = runKorvictl({"boot", "--root", mRoot.path("nowhere")});
    EXPECT_EQ(missing.status, 1);
    EXPECT_EQ(missing.err, "korvictl: device root " + mRoot.path("nowhere") + " is not a directory\n");
}

}  // namespace
}  // namespace korvi::test
