#include "ServiceReport.h"

#include <cstdio>
#include <cstring>
#include <map>
#include <set>

#include "effect/BlobFormatter.h"
#include "model/Port.h"
#include "service/KorviManagerService.h"

namespace korvi::ctl {

namespace {

constexpr uint32_t kQueryProfileCount = 3;
constexpr uint32_t kQuerySelectedProfile = 10;
constexpr uint32_t kCodeSfxOn = 0x5346584F;  // "SFXO"

// A one-word query of getSfxParam (the query number is written most significant byte first).
int queryWord(android::KorviManagerService& service, uint32_t query) {
    const uint8_t in[4] = {0, 0, 0, static_cast<uint8_t>(query)};
    int32_t out = -1;
    service.getSfxParam(const_cast<uint8_t*>(in), sizeof(in), &out, sizeof(out));
    return out;
}

std::vector<std::string> offeredDevices(android::KorviManagerService& service, int port) {
    const int len = service.getAvailableTuningDevicesLen(port);
    std::vector<char> packed(len > 0 ? static_cast<size_t>(len) : 0);
    std::vector<std::string> names;
    if (packed.empty() || service.getAvailableTuningDevices(port, packed.data(), len) != 0) {
        return names;
    }
    for (size_t at = 0; at < packed.size();) {
        const size_t end = strnlen(packed.data() + at, packed.size() - at);
        names.emplace_back(packed.data() + at, end);
        at += end + 1;
    }
    return names;
}

std::string valuesText(const std::vector<int32_t>& values) {
    std::string text;
    for (int32_t v : values) text += " " + std::to_string(v);
    return text;
}

std::string deviceHeading(uint32_t device) {
    char hex[16];
    snprintf(hex, sizeof(hex), "0x%x", device);
    const std::string name = BlobFormatter::deviceText(static_cast<int32_t>(device));
    return name == hex ? name : name + " (" + hex + ")";
}

}  // namespace

std::string stateText(android::KorviManagerService& service) {
    std::string text = std::string("effect ") +
                       (service.getIntParam(kCodeSfxOn) == 1 ? "on" : "off") + "\nprofiles\n";
    const int selected = queryWord(service, kQuerySelectedProfile);
    const int count = queryWord(service, kQueryProfileCount);
    for (int id = 0; id < count; ++id) {
        text += (id == selected ? "  * " : "    ") + std::to_string(id) + " " +
                service.getProfileName(id) + "\n";
    }
    text += "ports (selected tuning device; offered)\n";
    for (int port = 0; port < kPortCount; ++port) {
        char line[96];
        snprintf(line, sizeof(line), "  %-17s %-26s", kPortNames[port],
                 service.getSelectedTuningDevice(port).c_str());
        text += line;
        std::string offered;
        for (const std::string& name : offeredDevices(service, port)) {
            offered += (offered.empty() ? "" : ", ") + name;
        }
        text += offered + "\n";
    }
    return text;
}

void stateJson(android::KorviManagerService& service, JsonWriter* json) {
    json->beginObject();
    json->key("on");
    json->value(service.getIntParam(kCodeSfxOn) == 1);
    json->key("selectedProfile");
    json->value(queryWord(service, kQuerySelectedProfile));
    json->key("profiles");
    json->beginArray();
    const int count = queryWord(service, kQueryProfileCount);
    for (int id = 0; id < count; ++id) json->value(service.getProfileName(id));
    json->endArray();
    json->key("ports");
    json->beginArray();
    for (int port = 0; port < kPortCount; ++port) {
        json->beginObject();
        json->key("port");
        json->value(kPortNames[port]);
        json->key("selected");
        json->value(service.getSelectedTuningDevice(port));
        json->key("offered");
        json->beginArray();
        for (const std::string& name : offeredDevices(service, port)) json->value(name);
        json->endArray();
        json->endObject();
    }
    json->endArray();
    json->endObject();
}

std::string effectText(const EffectState& state) {
    std::string text;
    for (const auto& [device, params] : state) {
        text += "  " + deviceHeading(device) + "\n";
        for (const auto& [id, values] : params) {
            text += "    " + BlobFormatter::codeText(id) + valuesText(values) + "\n";
        }
    }
    return text;
}

void effectJson(const EffectState& state, JsonWriter* json) {
    json->beginArray();
    for (const auto& [device, params] : state) {
        json->beginObject();
        json->key("device");
        json->value(BlobFormatter::deviceText(static_cast<int32_t>(device)));
        json->key("id");
        json->value(static_cast<long long>(device));
        json->key("parameters");
        json->beginObject();
        for (const auto& [id, values] : params) {
            json->key(BlobFormatter::codeText(id));
            json->value(std::vector<int>(values.begin(), values.end()));
        }
        json->endObject();
        json->endObject();
    }
    json->endArray();
}

std::string effectDiff(const EffectState& before, const EffectState& after) {
    static const std::map<int32_t, std::vector<int32_t>> kNone;
    std::set<uint32_t> devices;
    for (const auto& entry : before) devices.insert(entry.first);
    for (const auto& entry : after) devices.insert(entry.first);
    std::string text;
    for (uint32_t device : devices) {
        auto b = before.find(device);
        auto a = after.find(device);
        const auto& old = b == before.end() ? kNone : b->second;
        const auto& now = a == after.end() ? kNone : a->second;
        const std::string name = BlobFormatter::deviceText(static_cast<int32_t>(device));
        for (const auto& [id, values] : now) {
            auto was = old.find(id);
            const std::string code = BlobFormatter::codeText(id);
            if (was == old.end()) {
                text += "  + " + name + " " + code + valuesText(values) + "\n";
            } else if (was->second != values) {
                text += "    " + name + " " + code + valuesText(was->second) + " ->" +
                        valuesText(values) + "\n";
            }
        }
        for (const auto& [id, values] : old) {
            if (now.count(id) == 0) {
                text += "  - " + name + " " + BlobFormatter::codeText(id) + "\n";
            }
        }
    }
    return text;
}

std::string hexBytes(const std::vector<uint8_t>& bytes) {
    std::string text;
    char byte[4];
    for (uint8_t b : bytes) {
        snprintf(byte, sizeof(byte), "%s%02x", text.empty() ? "" : " ", b);
        text += byte;
    }
    return text;
}

}  // namespace korvi::ctl
