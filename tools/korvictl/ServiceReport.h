// What korvictl shows of a running service: its state as a client sees it, and the effect's
// parameters per device, whole or as the difference between two looks.
#pragma once

#include <string>

#include "JsonWriter.h"
#include "ServiceSession.h"

namespace korvi::ctl {

// "aw882xx" for amplifier type 1, ...
const char* amplifierName(int type);

// What start-up did: amplifier, factory file, database built/reused/rebuilt, format version,
// OEM tunings added and dropped with the service's reason.
std::string startupText(const ServiceSession& session);

// On/off, the profiles with the selected one marked, and per port the selected tuning device and
// the devices offered; everything read through the service's public methods.
std::string stateText(android::KorviManagerService& service);
void stateJson(android::KorviManagerService& service, JsonWriter* json);

// One block per device ("speaker (0x2)") with one line per parameter: code and values.
std::string effectText(const EffectState& state);
void effectJson(const EffectState& state, JsonWriter* json);

// The parameters that differ from before to after, per device, packed into lines:
//   "  speaker   DVLE 1 -> 0   +GEBG 1 2   -VBON   IEBS: 20 of 41 values".
std::string effectDiff(const EffectState& before, const EffectState& after);

// "0x2a" style hex of a value list, and notification payloads as "ff ff ff ff 00 00 00 00".
std::string hexBytes(const std::vector<uint8_t>& bytes);

}  // namespace korvi::ctl
