// Which parameters each value element of a tuning file sets, learnt from the value setters
// themselves: every setter reads one probe element and the parameters it stores are noted. So the
// tool never keeps a second copy of the setter table that could drift from the reader's.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "model/Parameter.h"

namespace korvi::ctl {

class ValueElementMap {
public:
    // Element name -> the parameters its setter stores, in parameter order. Built on first use;
    // empty when the probe could not be written (the callers then check nothing).
    static const std::map<std::string, std::vector<Parameter>>& parametersByElement();

private:
    static std::map<std::string, std::vector<Parameter>> probe();
};

}  // namespace korvi::ctl
