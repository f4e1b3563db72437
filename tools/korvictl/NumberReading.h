// What the tuning reader makes of a number or a list of numbers written in a tuning file, and
// what it silently drops: korvictl warns about every text it does not read whole.
#pragma once

#include <string>
#include <vector>

namespace korvi::ctl {

struct NumberReading {
    std::vector<int> numbers;
    std::string ignoredRest;  // text the reader stops at, "" when it reads it all
    std::string overflow;     // the first number too large for 32 bits
    bool emptyItem = false;   // two commas in a row
};

// Reads text as the reader reads a list (string2IntVector) and notes what it skips or drops.
NumberReading readNumbers(const std::string& text);

// "1,2,3", or "nothing" for an empty list.
std::string listText(const std::vector<int>& numbers);

}  // namespace korvi::ctl
