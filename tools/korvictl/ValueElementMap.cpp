#include "ValueElementMap.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>

#include "model/Tuning.h"
#include "tuning/SetterCollection.h"
#include "tuning/TagIterator.h"
#include "tuning/TuningFileParser.h"

namespace korvi::ctl {

const std::map<std::string, std::vector<Parameter>>& ValueElementMap::parametersByElement() {
    static const std::map<std::string, std::vector<Parameter>> kMap = probe();
    return kMap;
}

std::map<std::string, std::vector<Parameter>> ValueElementMap::probe() {
    std::map<std::string, std::vector<Parameter>> out;
    // One element per setter, carrying every attribute a setter looks for; the setters with
    // bands store their (empty) lists all the same, which is all that is asked here.
    std::string xml = "<probe>\n";
    for (const ValueSetter* setter : SetterCollection::kAllValueSetters) {
        xml += "<" + setter->getNodeName() +
               " value=\"1\" frequency_low=\"1\" frequency_high=\"1\"/>\n";
    }
    xml += "</probe>\n";

    const char* tmp = getenv("TMPDIR");
    std::string path = std::string(tmp != nullptr && *tmp != '\0' ? tmp : "/tmp") +
                       "/korvictl-probe-XXXXXX";
    const int fd = mkstemp(path.data());
    if (fd < 0) return out;
    const bool written = write(fd, xml.data(), xml.size()) == static_cast<ssize_t>(xml.size());
    close(fd);
    TagIterator it;
    const bool loaded = written && it.init(path) == 0;
    unlink(path.c_str());
    if (!loaded) return out;

    for (; it.isCurValid(); it.next()) {
        if (!it.isElementNode()) continue;
        const std::string name = it.getNodeName();
        const ValueSetter* setter = TuningFileParser::sSetterCollection.getValueSetter(name);
        if (setter == nullptr) continue;
        Tuning scratch("", SPEAKER, false);
        setter->set(scratch, it);
        for (const auto& entry : scratch.mValues) out[name].push_back(entry.first);
    }
    return out;
}

}  // namespace korvi::ctl
