#include <hidl/HidlSupport.h>

#include <algorithm>
#include <string>

namespace android {
namespace hardware {

std::string Status::description() const {
    return isOk() ? "No error" : "Exception " + std::to_string(mException);
}

}  // namespace hardware

namespace hidl {
namespace base {
namespace V1_0 {

hardware::Return<bool> IBase::linkToDeath(const sp<hardware::hidl_death_recipient>& recipient,
                                          uint64_t cookie) {
    if (recipient == nullptr) return false;
    Mutex::Autolock lock(mLinksLock);
    mLinks.push_back({recipient, cookie});
    return true;
}

hardware::Return<bool> IBase::unlinkToDeath(const sp<hardware::hidl_death_recipient>& recipient) {
    Mutex::Autolock lock(mLinksLock);
    auto it = std::find_if(mLinks.begin(), mLinks.end(),
                           [&](const Link& link) { return link.recipient == recipient; });
    if (it == mLinks.end()) return false;
    mLinks.erase(it);
    return true;
}

void IBase::notifyDeath() {
    std::vector<Link> links;
    {
        Mutex::Autolock lock(mLinksLock);
        links.swap(mLinks);
    }
    // Called without the lock: a recipient may unlink or drop this object from its callback.
    wp<IBase> self(this);
    for (const Link& link : links) {
        sp<hardware::hidl_death_recipient> recipient = link.recipient.promote();
        if (recipient != nullptr) recipient->serviceDied(link.cookie, self);
    }
}

}  // namespace V1_0
}  // namespace base
}  // namespace hidl
}  // namespace android
