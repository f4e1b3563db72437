// korvictl params: the parameter catalogue, read off the service's own tables.
#include <cstdio>
#include <set>
#include <utility>

#include "Command.h"
#include "model/GeqPreset.h"
#include "model/IeqPreset.h"
#include "model/Parameter.h"
#include "model/Profile.h"
#include "model/ProfileEndpoint.h"
#include "model/Tuning.h"

namespace korvi::ctl {

namespace {

const char* ownerOf(Parameter p) {
    static const std::pair<const char*, const std::set<Parameter>*> kOwners[] = {
        {"Tuning", &Tuning::kValidParams},
        {"Profile", &Profile::kValidParams},
        {"ProfileEndpoint", &ProfileEndpoint::kValidParams},
        {"IeqPreset", &IeqPreset::kValidParams},
        {"GeqPreset", &GeqPreset::kValidParams},
    };
    for (const auto& [name, valid] : kOwners) {
        if (valid->count(p) != 0) return name;
    }
    return "none";
}

}  // namespace

int runParams(const std::vector<std::string>& args) {
    if (!args.empty()) return usageError("params takes no arguments");
    printf("%-3s %-52s %s\n", "#", "column", "owner");
    for (int n = 0; n < kParameterCount; ++n) {
        const Parameter p = static_cast<Parameter>(n);
        printf("%-3d %-52s %s\n", n, kParameterNames[n], ownerOf(p));
    }
    return 0;
}

}  // namespace korvi::ctl
