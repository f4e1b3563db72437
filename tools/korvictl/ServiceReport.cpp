#include "ServiceReport.h"

#include <cstdio>
#include <algorithm>
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

const char* amplifierName(int type) {
    switch (type) {
        case 1: return "aw882xx";
        case 2: return "fs19xx";
        default: return "none";
    }
}

std::string startupText(const ServiceSession& session) {
    const StartupReport& s = session.startup();
    std::string database;
    if (s.database == "built") {
        database = "built (no database before), signature " + s.newSignature;
    } else if (s.database == "rebuilt") {
        database = "rebuilt: new signature " + s.newSignature + " (was " + s.oldSignature + ")";
    } else {
        database = "reused: signature " + s.newSignature + " unchanged";
    }
    std::string text = "device root     " + session.root() + "\n" +
                       "amplifier       " + amplifierName(s.amplifierType) + " (type " +
                       std::to_string(s.amplifierType) + ")\n" +
                       "factory file    " + s.factoryFile + "\n" +
                       "database        " + database + "\n" +
                       "format version  " + s.formatVersion + "\n";
    if (!s.oemNote.empty()) text += "OEM merge       " + s.oemNote + "\n";
    for (const std::string& line : s.oemAdded) text += "OEM added       " + line + "\n";
    for (const std::string& line : s.oemDropped) text += "OEM dropped     " + line + "\n";
    return text;
}

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
    constexpr size_t kWidth = 100;
    std::string text;
    for (const auto& [device, params] : state) {
        text += "  " + deviceHeading(device) + "\n";
        // By code, several to a line, so a device fits a few lines of a terminal.
        std::map<std::string, std::string> byCode;
        for (const auto& [id, values] : params) {
            byCode[BlobFormatter::codeText(id)] = BlobFormatter::codeText(id) + valuesText(values);
        }
        std::string line = "   ";
        for (const auto& entry : byCode) {
            if (line.size() > 3 && line.size() + 2 + entry.second.size() > kWidth) {
                text += line + "\n";
                line = "   ";
            }
            line += (line.size() > 3 ? "  " : " ") + entry.second;
        }
        if (line.size() > 3) text += line + "\n";
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

namespace {

// One parameter's change in a few words: "DVLE 1->0", "+GEBS 1 2", "-GEBS", or for long lists
// "IEBS: 20 of 41 values".
std::string changeText(const std::string& code, const std::vector<int32_t>* was,
                       const std::vector<int32_t>* now) {
    constexpr size_t kShortList = 6;
    if (was == nullptr) return "+" + code + valuesText(*now);
    if (now == nullptr) return "-" + code;
    if (was->size() <= kShortList && now->size() <= kShortList) {
        std::string before = valuesText(*was);
        std::string after = valuesText(*now);
        return code + before + " ->" + after;
    }
    size_t changed = 0;
    for (size_t i = 0; i < std::max(was->size(), now->size()); ++i) {
        if (i >= was->size() || i >= now->size() || (*was)[i] != (*now)[i]) ++changed;
    }
    return code + ": " + std::to_string(changed) + " of " + std::to_string(now->size()) +
           " values";
}

}  // namespace

std::string effectDiff(const EffectState& before, const EffectState& after) {
    constexpr size_t kWidth = 100;
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
        std::set<int32_t> ids;
        for (const auto& entry : old) ids.insert(entry.first);
        for (const auto& entry : now) ids.insert(entry.first);
        std::map<std::string, std::string> changes;  // by code
        for (int32_t id : ids) {
            auto was = old.find(id);
            auto is = now.find(id);
            const auto* wasValues = was == old.end() ? nullptr : &was->second;
            const auto* isValues = is == now.end() ? nullptr : &is->second;
            if (wasValues != nullptr && isValues != nullptr && *wasValues == *isValues) continue;
            const std::string code = BlobFormatter::codeText(id);
            changes[code] = changeText(code, wasValues, isValues);
        }
        if (changes.empty()) continue;
        char heading[32];
        snprintf(heading, sizeof(heading), "  %-15s", BlobFormatter::deviceText(static_cast<int32_t>(device)).c_str());
        std::string line = heading;
        const size_t indent = line.size();
        for (const auto& entry : changes) {
            if (line.size() > indent && line.size() + 3 + entry.second.size() > kWidth) {
                text += line + "\n";
                line = std::string(indent, ' ');
            }
            line += (line.size() > indent ? "   " : "") + entry.second;
        }
        text += line + "\n";
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
