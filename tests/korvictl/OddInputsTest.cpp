// The host tool on inputs that are not plain files of a sane size: directories, endless streams,
// pipes, words with a leading zero, and a file with many thousands of profiles.
#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <csignal>
#include <string>
#include <thread>
#include <vector>

#include "support/TempDeviceRoot.h"
#include "support/ToolRun.h"

namespace korvi::test {
namespace {

// A FIFO whose writer thread offers `prefix` and then zeros, up to `limit` bytes, until the
// reading end goes away; written() tells how much the reader took.
class Fifo {
public:
    Fifo(const std::string& path, std::string prefix, size_t limit) : mPath(path) {
        signal(SIGPIPE, SIG_IGN);
        EXPECT_EQ(mkfifo(path.c_str(), 0600), 0);
        mThread = std::thread([this, prefix, limit] {
            const int fd = open(mPath.c_str(), O_WRONLY);
            if (fd < 0) return;
            std::string chunk = prefix;
            while (mWritten < limit) {
                chunk.resize(65536, '\0');
                const ssize_t n = write(fd, chunk.data(), chunk.size());
                if (n <= 0) break;
                mWritten += static_cast<size_t>(n);
                chunk.clear();
            }
            close(fd);
        });
    }
    ~Fifo() {
        if (mThread.joinable()) mThread.join();
    }
    size_t written() {
        mThread.join();
        return mWritten;
    }

private:
    std::string mPath;
    std::atomic<size_t> mWritten{0};
    std::thread mThread;
};

TEST(OddInputs, BlobRefusesDirectoriesStopsOnEndlessStreamsAndReadsWordsAsDecimal) {
    TempDeviceRoot root;
    ToolRun dir = runKorvictlMerged("blob " + root.dir());
    EXPECT_EQ(dir.status, 1);
    EXPECT_EQ(dir.out, "korvictl: cannot read " + root.dir() + ": is a directory\n");

    // A valid empty blob and then 256 MiB of zeros: the tool stops a word after the blob.
    const std::string fifo = root.path("blob.fifo");
    Fifo stream(fifo, std::string("\x02\0\0\0\0\0\0\0", 8), size_t{256} << 20);
    ToolRun endless = runKorvictlMerged("blob " + fifo);
    EXPECT_EQ(endless.status, 1);
    EXPECT_EQ(endless.out, "korvictl: invalid parameter blob: words after the last entry\n");
    EXPECT_LT(stream.written(), size_t{4} << 20);

    // 010 is ten, not eight (which would be the headphone device).
    EXPECT_EQ(runKorvictlMerged("blob --words 010 0").out, "target 0xa, 0 entries\n");
    EXPECT_EQ(runKorvictlMerged("blob --words 0X8 0").out, "target headphone, 0 entries\n");
}

TEST(OddInputs, InspectRefusesPipesWithOneLine) {
    TempDeviceRoot root;
    const std::string fifo = root.path("tuning.fifo");
    Fifo stream(fifo, "<wem>\n</wem>\n", 1);
    ToolRun piped = runKorvictlMerged("inspect " + fifo);
    EXPECT_EQ(piped.status, 1);
    EXPECT_EQ(piped.out, "korvictl: inspect: " + fifo +
                                 ": cannot read: not a regular file (save a pipe's output to a "
                                 "file first)\n");
    // The writer is still waiting for a reader: let it go.
    const int fd = open(fifo.c_str(), O_RDONLY | O_NONBLOCK);
    stream.written();
    close(fd);
}

// Seconds `inspect --brief` takes on a file of n profiles with their three endpoints.
double inspectSeconds(const TempDeviceRoot& root, int n) {
    std::string xml = "<wem>\n<format_version major=\"4\" minor=\"0\" maintenance=\"0\"/>\n";
    for (int i = 0; i < n; ++i) {
        const std::string id = std::to_string(i);
        xml += "<profile id=\"" + id + "\" name=\"p" + id + "\">\n";
        for (const char* e : {"speaker", "headphone", "other"}) {
            xml += std::string("<endpoint_type id=\"") + e + "\">\n</endpoint_type>\n";
        }
        xml += "</profile>\n";
    }
    const std::string path = root.write("many-" + std::to_string(n) + ".xml", xml + "</wem>\n");
    const auto start = std::chrono::steady_clock::now();
    ToolRun run = runKorvictl({"inspect", "--brief", path});
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_NE(run.out.find("Profiles: " + std::to_string(n) + "\n"), std::string::npos);
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

TEST(OddInputs, InspectTimeGrowsLinearlyWithTheProfiles) {
    TempDeviceRoot root;
    const double small = inspectSeconds(root, 4000);
    const double large = inspectSeconds(root, 16000);
    // Four times the profiles: about four times the time; profiles times endpoints is sixteen.
    EXPECT_LT(large, 8 * small + 0.2) << small << " s, then " << large << " s";
}

}  // namespace
}  // namespace korvi::test
