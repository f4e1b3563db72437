#include "model/DeviceTuning.h"

#include "model/RecordText.h"

namespace korvi {

DeviceTuning::DeviceTuning(const std::string& device, const std::string& port,
                           const std::string& tuning)
    : DeviceTuning(-1, device, port, tuning) {}

DeviceTuning::DeviceTuning(int64_t id, const std::string& device, const std::string& port,
                           const std::string& tuning)
    : mId(id), mDevice(device), mPort(port), mTuning(tuning), mDirty(true) {}

std::string DeviceTuning::toString() const {
    std::string out;
    recordtext::line(out, "id", mId);
    recordtext::line(out, "device", mDevice);
    recordtext::line(out, "port", mPort);
    out += "tuning=" + mTuning;
    return out;
}

}  // namespace korvi
