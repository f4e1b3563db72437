// Which tuning (by name) a named device on a port uses.
#pragma once

#include <cstdint>
#include <string>

namespace korvi {

class DeviceTuning {
public:
    // A device tuning starts dirty also when read from the database, on purpose.
    DeviceTuning(const std::string& device, const std::string& port, const std::string& tuning);
    DeviceTuning(int64_t id, const std::string& device, const std::string& port,
                 const std::string& tuning);

    virtual int64_t getId() const { return mId; }
    virtual bool isDirty() const { return mDirty; }
    virtual void setDirty(bool dirty) { mDirty = dirty; }
    virtual ~DeviceTuning() = default;

    const std::string& getDevice() const { return mDevice; }
    const std::string& getPort() const { return mPort; }
    const std::string& getTuning() const { return mTuning; }

    // Four lines; the last one has no newline and no values follow.
    std::string toString() const;

private:
    int64_t mId;
    std::string mDevice;
    std::string mPort;
    std::string mTuning;
    bool mDirty;
};

}  // namespace korvi
