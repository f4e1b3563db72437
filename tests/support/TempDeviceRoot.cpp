#include "support/TempDeviceRoot.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "common/DeviceRoot.h"

namespace fs = std::filesystem;

namespace korvi::test {

namespace {
std::string stripLeadingSlash(const std::string& p) {
    return (!p.empty() && p[0] == '/') ? p.substr(1) : p;
}
}  // namespace

TempDeviceRoot::TempDeviceRoot() : mPreviousRoot(getDeviceRoot()) {
    std::string pattern = (fs::temp_directory_path() / "korvi-root-XXXXXX").string();
    char* made = mkdtemp(pattern.data());
    if (made == nullptr) {
        ADD_FAILURE() << "cannot create a temporary device root";
        return;
    }
    mDir = made;
    for (const char* sub : {"vendor/etc/korvi", "data/vendor/korvi", "sys/kernel/smartpa"}) {
        fs::create_directories(fs::path(mDir) / sub);
    }
    setDeviceRoot(mDir);
}

TempDeviceRoot::~TempDeviceRoot() {
    setDeviceRoot(mPreviousRoot);
    std::error_code ignored;
    if (!mDir.empty()) fs::remove_all(mDir, ignored);
}

std::string TempDeviceRoot::path(const std::string& relative) const {
    return (fs::path(mDir) / stripLeadingSlash(relative)).string();
}

std::string TempDeviceRoot::write(const std::string& relative, const std::string& content) const {
    fs::path p = path(relative);
    fs::create_directories(p.parent_path());
    std::ofstream out(p, std::ios::binary | std::ios::trunc);
    out << content;
    return p.string();
}

std::string TempDeviceRoot::copyFromData(const std::string& relative) const {
    return copyFromData(relative, relative);
}

std::string TempDeviceRoot::copyFromData(const std::string& dataRelative,
                                         const std::string& relative) const {
    fs::path to = path(relative);
    fs::create_directories(to.parent_path());
    fs::copy_file(fs::path(dataDir()) / stripLeadingSlash(dataRelative), to,
                  fs::copy_options::overwrite_existing);
    return to.string();
}

bool TempDeviceRoot::exists(const std::string& relative) const {
    return fs::exists(path(relative));
}

std::string TempDeviceRoot::read(const std::string& relative) const {
    std::ifstream in(path(relative), std::ios::binary);
    std::stringstream ss;
    ss << in.rdbuf();
    return ss.str();
}

std::string TempDeviceRoot::dataDir() {
#ifdef KORVI_DATA_DIR
    return KORVI_DATA_DIR;
#else
    return "data";
#endif
}

}  // namespace korvi::test
