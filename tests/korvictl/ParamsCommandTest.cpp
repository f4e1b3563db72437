// korvictl params, run as a user runs it.
#include <gtest/gtest.h>

#include <cstdio>
#include <sstream>
#include <string>
#include <vector>

#include "support/ToolRun.h"

namespace {

using korvi::test::runKorvictlMerged;
using korvi::test::ToolRun;

TEST(KorvictlParams, PrintsTheWholeCatalogueWithOwners) {
    const ToolRun run = runKorvictlMerged("params");
    ASSERT_EQ(run.status, 0) << run.out;
    std::istringstream in(run.out);
    std::string line;
    std::getline(in, line);  // header
    int rows = 0;
    std::string owners;
    while (std::getline(in, line)) {
        std::istringstream fields(line);
        int number;
        std::string column, owner;
        fields >> number >> column >> owner;
        EXPECT_EQ(number, rows);
        if (number == 0) { EXPECT_EQ(column, "audio_optimizer_enable"); }
        if (number == 73) { EXPECT_EQ(column, "virtual_bass_mix_freq_high"); }
        owners += owner.empty() ? '?' : (owner == "none" ? '-' : owner == "ProfileEndpoint" ? 'E' : owner[0]);
        ++rows;
    }
    EXPECT_EQ(rows, 96);
    EXPECT_EQ(owners,
              "TTTTTTTTETTTTTETTTTTPEEEGGEEEEEEETEEIIIPPPPETTTETTTTTTTTTTTTTTTPPEETTETTTTTTTTTTTT-ETTETEETEEETP");
}

TEST(KorvictlParams, HelpAndUsageErrors) {
    ToolRun help = runKorvictlMerged("params --help");
    EXPECT_EQ(help.status, 0);
    EXPECT_NE(help.out.find("usage: korvictl params"), std::string::npos) << help.out;
    ToolRun top = runKorvictlMerged("--help");
    EXPECT_EQ(top.status, 0);
    EXPECT_NE(top.out.find("params"), std::string::npos);
    ToolRun extra = runKorvictlMerged("params extra");
    EXPECT_EQ(extra.status, 2);
    EXPECT_NE(extra.out.find("korvictl: params takes no arguments"), std::string::npos) << extra.out;
    ToolRun unknown = runKorvictlMerged("frobnicate");
    EXPECT_EQ(unknown.status, 2);
    EXPECT_NE(unknown.out.find("unknown command 'frobnicate'"), std::string::npos) << unknown.out;
}

}  // namespace
