// A temporary directory laid out like a device (vendor/etc/korvi, data/vendor/korvi,
// sys/kernel/smartpa), made the service's device root while the object lives and removed with
// everything in it afterwards; the previous root is restored.
//
//   TempDeviceRoot root;
//   root.copyFromData("vendor/etc/korvi/wem-default.xml");   // a bundled sample file
//   root.write("sys/kernel/smartpa/smartpa_type", "fs19xx\n");
#pragma once

#include <string>

namespace korvi::test {

class TempDeviceRoot {
public:
    TempDeviceRoot();
    ~TempDeviceRoot();
    TempDeviceRoot(const TempDeviceRoot&) = delete;
    TempDeviceRoot& operator=(const TempDeviceRoot&) = delete;

    // The root directory, without a trailing slash.
    const std::string& dir() const { return mDir; }
    // The absolute host path of a path below the root ("vendor/etc/korvi/x.xml" or "/vendor/...").
    std::string path(const std::string& relative) const;
    // Writes a file below the root, creating its directories; returns its host path.
    std::string write(const std::string& relative, const std::string& content) const;
    // Copies a file of the repository's data/ directory to the same place below the root.
    std::string copyFromData(const std::string& relative) const;
    // Copies a file of the repository's data/ directory to another place below the root.
    std::string copyFromData(const std::string& dataRelative, const std::string& relative) const;
    bool exists(const std::string& relative) const;
    std::string read(const std::string& relative) const;

    // The repository's data/ directory (the sample device files).
    static std::string dataDir();

private:
    std::string mDir;
    std::string mPreviousRoot;
};

}  // namespace korvi::test
