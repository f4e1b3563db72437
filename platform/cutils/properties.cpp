#include <cutils/properties.h>

#include <android-base/parseint.h>
#include <android-base/properties.h>

#include <cstring>
#include <string>

extern "C" int property_get(const char* key, char* value, const char* default_value) {
    if (key == nullptr || value == nullptr) return -1;
    std::string v = android::base::GetProperty(key, "");
    if (v.empty() && default_value != nullptr) v = default_value;
    size_t len = v.size() < PROPERTY_VALUE_MAX - 1 ? v.size() : PROPERTY_VALUE_MAX - 1;
    memcpy(value, v.data(), len);
    value[len] = '\0';
    return static_cast<int>(len);
}

extern "C" int32_t property_get_int32(const char* key, int32_t default_value) {
    if (key == nullptr) return default_value;
    std::string v = android::base::GetProperty(key, "");
    int32_t result = default_value;
    if (v.empty() || !android::base::ParseInt(v, &result)) return default_value;
    return result;
}

extern "C" int property_set(const char* key, const char* value) {
    if (key == nullptr || value == nullptr) return -1;
    if (strlen(value) >= PROPERTY_VALUE_MAX) return -1;
    return android::base::SetProperty(key, value) ? 0 : -1;
}
