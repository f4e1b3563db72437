// The three kinds of record rows, told apart by their custom_name column: the factory row written
// from the tuning file, the user's working copy and the rows added from the OEM extra file. Both
// store layers use the names, so they live below both.
#pragma once

namespace korvi {

inline constexpr const char* kDefaultRowName = "default";
inline constexpr const char* kCustomRowName = "custom";
inline constexpr const char* kOemRowName = "oem";

}  // namespace korvi
