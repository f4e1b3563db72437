// Every fixed path of the service ("/vendor/etc/korvi/...", "/data/vendor/korvi/...",
// "/sys/kernel/smartpa/smartpa_type") is resolved here, below a process-wide root prefix. On a
// device the root is empty; the host tool and the tests point it at a directory laid out like one.
#pragma once

#include <string>

namespace korvi {

// Sets the root prefix; a trailing '/' is dropped so "<root>" + "/vendor/..." stays one path.
void setDeviceRoot(const std::string& dir);

const std::string& getDeviceRoot();

// Returns absolutePath below the current root ("/vendor/etc/x" -> "<root>/vendor/etc/x").
std::string devicePath(const std::string& absolutePath);

}  // namespace korvi
