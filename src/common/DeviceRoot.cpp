#include "common/DeviceRoot.h"

#include <mutex>

namespace korvi {

namespace {

std::mutex sRootLock;

std::string& root() {
    static std::string sRoot;
    return sRoot;
}

}  // namespace

void setDeviceRoot(const std::string& dir) {
    std::lock_guard<std::mutex> lock(sRootLock);
    std::string r = dir;
    while (r.size() > 1 && r.back() == '/') r.pop_back();
    if (r == "/") r.clear();
    root() = r;
}

const std::string& getDeviceRoot() {
    std::lock_guard<std::mutex> lock(sRootLock);
    return root();
}

std::string devicePath(const std::string& absolutePath) {
    std::lock_guard<std::mutex> lock(sRootLock);
    return root() + absolutePath;
}

}  // namespace korvi
