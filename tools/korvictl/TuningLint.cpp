#include "TuningLint.h"

#include <algorithm>
#include <cstdlib>

#include <android/log.h>

#include "NumberReading.h"
#include "Quoted.h"

#include "common/IntText.h"
#include "model/GeqPreset.h"
#include "model/IeqPreset.h"
#include "model/Parameter.h"
#include "model/Port.h"
#include "tuning/FormatFamily.h"
#include "tuning/SetterCollection.h"
#include "tuning/ValueSetter.h"

namespace korvi::ctl {

namespace {

std::string nameOf(const xmlNode* node) {
    return node->name != nullptr ? reinterpret_cast<const char*>(node->name) : "";
}

std::string attrText(const xmlNode* node, const xmlAttr* a) {
    xmlChar* value = xmlNodeListGetString(node->doc, a->children, 1);
    if (value == nullptr) return "";
    std::string text(reinterpret_cast<const char*>(value));
    xmlFree(value);
    return text;
}

// The attributes the element itself carries, as the reader sees them: defaults a DTD would add
// are not among them.
std::string attr(const xmlNode* node, const char* name) {
    for (const xmlAttr* a = node->properties; a != nullptr; a = a->next) {
        if (xmlStrEqual(a->name, reinterpret_cast<const xmlChar*>(name))) return attrText(node, a);
    }
    return "";
}

std::vector<const xmlNode*> elementChildren(const xmlNode* node) {
    std::vector<const xmlNode*> out;
    for (const xmlNode* c = node->children; c != nullptr; c = c->next) {
        if (c->type == XML_ELEMENT_NODE) out.push_back(c);
    }
    return out;
}

// Edit distance, for suggesting the value element a misspelt name was meant to be.
size_t distance(const std::string& a, const std::string& b) {
    std::vector<size_t> row(b.size() + 1);
    for (size_t j = 0; j <= b.size(); ++j) row[j] = j;
    for (size_t i = 1; i <= a.size(); ++i) {
        size_t diagonal = row[0];
        row[0] = i;
        for (size_t j = 1; j <= b.size(); ++j) {
            const size_t above = row[j];
            row[j] = std::min({row[j] + 1, row[j - 1] + 1,
                               diagonal + (a[i - 1] == b[j - 1] ? 0 : 1)});
            diagonal = above;
        }
    }
    return row[b.size()];
}

// Where a value element of this parameter belongs in a file.
const char* placeOf(Parameter p) {
    if (Tuning::kValidParams.count(p) != 0) return "a tuning's data block";
    if (Profile::kValidParams.count(p) != 0) return "a profile";
    if (ProfileEndpoint::kValidParams.count(p) != 0) return "an endpoint_type";
    if (IeqPreset::kValidParams.count(p) != 0) return "an IEQ preset";
    if (GeqPreset::kValidParams.count(p) != 0) return "a GEQ preset";
    return "no record";
}

std::string suggestionFor(const std::string& name) {
    std::string best;
    size_t bestDistance = 4;  // farther than three edits is no longer a typo
    for (const ValueSetter* setter : SetterCollection::kAllValueSetters) {
        const std::string candidate = setter->getNodeName();
        const size_t d = distance(name, candidate);
        if (d < bestDistance) {
            bestDistance = d;
            best = candidate;
        }
    }
    return best.empty() ? "" : " (did you mean <" + best + ">?)";
}

}  // namespace

TuningLint::TuningLint(xmlDoc* doc, TuningFileParser& reader) : mDoc(doc), mReader(reader) {
    const std::string version =
            reader.getDeviceData() != nullptr ? reader.getDeviceData()->getFormatVersion() : "";
    const FormatFamily family(version);
    mFamily32 = family.is32();
    mFormat322 = family.is322();
    mFormat330 = family.is330();
}

bool TuningLint::namesPresetsByText() const { return mFamily32 || mFormat330; }

int TuningLint::ieqPresetId(const std::string& text) {
    if (!namesPresetsByText()) return decimal2Int(text);
    // The reader logs an invalid name; it did so already while reading, and the warning says
    // it again with the line, so this second lookup stays quiet.
    const int priority = __android_log_get_minimum_priority();
    __android_log_set_minimum_priority(ANDROID_LOG_SILENT);
    const int id = mReader.getIeqPresetIdByName(text);
    __android_log_set_minimum_priority(priority);
    return id;
}

void TuningLint::checkNumberText(const xmlNode* node, const std::string& name,
                                 const std::string& text, const std::string& where,
                                 NumberKind kind) {
    if (text.empty()) return;
    const NumberReading reading = readNumbers(text);
    const std::string what = name + "=" + quoted(text) + " in " + where;
    // What the reader keeps: a list stops at the first bad number, a single number is what the
    // reader's own conversion makes of the text.
    const std::string kept = kind == NumberKind::kList     ? listText(reading.numbers)
                             : kind == NumberKind::kSingle ? std::to_string(string2Int(text))
                                                           : std::to_string(decimal2Int(text));
    if (!reading.overflow.empty()) {
        warn(node, "number-overflow",
             what + ": " + reading.overflow + " does not fit in 32 bits; the service reads " +
                     kept + (kind == NumberKind::kList ? " and ignores the rest" : ""));
    } else if (!reading.ignoredRest.empty()) {
        warn(node, "not-a-number",
             what + " is not plain decimal; the service reads " + kept + " and ignores " +
                     quoted(reading.ignoredRest));
    } else if (reading.emptyItem) {
        warn(node, "empty-list-item",
             what + " has an empty list item; the service skips it and reads " +
                     listText(reading.numbers));
    }
}

// Every attribute of a value element and its bands is a number or a list of them, except the
// regulator's isolated_band, which is a word, and a single value written "true" or "false". Curve bands add their two lists band by band, so
// both lists must come out equally long, or the effect receives mispaired bands.
void TuningLint::checkNumbers(const xmlNode* element, const std::string& where, bool withOwn,
                              NumberKind kind) {
    std::map<std::string, size_t> listLengths;
    std::vector<const xmlNode*> pending = {element};
    while (!pending.empty()) {
        const xmlNode* node = pending.back();
        pending.pop_back();
        const bool band = nameOf(node).compare(0, 5, "band_") == 0;
        for (const xmlAttr* a = withOwn || node != element ? node->properties : nullptr;
             a != nullptr; a = a->next) {
            const std::string name = reinterpret_cast<const char*>(a->name);
            if (name == "isolated_band") continue;
            const std::string text = attrText(node, a);
            // A single value may also be written as a switch.
            if (name == "value" && (text == "true" || text == "false")) continue;
            if (text.empty() && node != element) {
                warn(node, "empty-list-item",
                     name + "=\"\" in a band of " + where +
                             " is empty; the service reads no number for this band");
            }
            checkNumberText(node, name, text, where, band ? NumberKind::kSingle : kind);
            if (band) listLengths[name] += readNumbers(text).numbers.size();
        }
        for (const xmlNode* child : elementChildren(node)) pending.push_back(child);
    }
    const auto frequency = listLengths.find("frequency");
    if (frequency == listLengths.end()) return;
    for (const auto& [name, length] : listLengths) {
        if (length == frequency->second) continue;
        warn(element, "band-mismatch",
             (withOwn ? "<" + nameOf(element) + "> in " : std::string()) + where + " has " +
                     std::to_string(frequency->second) + " frequency values but " +
                     std::to_string(length) + " " + name +
                     " values; the service pairs them in order, so bands are mispaired");
        return;
    }
}

void TuningLint::warn(const xmlNode* node, const std::string& kind, const std::string& message) {
    mWarnings.push_back({xmlGetLineNo(node), kind, message});
}

std::vector<LintWarning> TuningLint::run() {
    mWarnings.clear();
    mTuningOrder.clear();
    mProfileOrder.clear();
    mDevices.clear();
    mKeptTunings.clear();
    mIeqPresetIds.clear();
    for (FirstSeen* seen : {&mIeqIds, &mIeqNames, &mGeqIds, &mProfileIds, &mProfileNames,
                            &mTuningNames, &mDeviceIds}) {
        seen->clear();
    }
    const xmlNode* root = xmlDocGetRootElement(mDoc);
    if (root == nullptr || mReader.getDeviceData() == nullptr) return mWarnings;
    // The root is the one element the reader enters without stepping over a child.
    for (const xmlNode* child : elementChildren(root)) checkIndentation(child);
    collectIeqPresetIds(root);
    for (const xmlNode* child : elementChildren(root)) {
        const std::string name = nameOf(child);
        if (name == "preset") {
            checkPreset(child);
        } else if (name == "profile") {
            checkProfile(child);
        } else if (name == "tuning") {
            checkTuning(child);
        } else if (name != "format_version" && name != "tool_version" &&
                   name != "authorized_technologies") {
            warn(child, "unknown-element",
                 "<" + name + "> is not an element of a tuning file; the service ignores it");
        }
    }
    checkDevicesHaveTunings();
    checkProfileIds();
    std::stable_sort(mWarnings.begin(), mWarnings.end(),
                     [](const LintWarning& a, const LintWarning& b) { return a.line < b.line; });
    return mWarnings;
}

TuningLint::RecordIds TuningLint::recordIds() const {
    RecordIds ids;
    for (const auto& [node, id] : mProfileOrder) ids.profileIds.push_back(id);
    ids.ieqPresetIds = mIeqPresetIds;
    for (const auto& [key, line] : mGeqIds) ids.geqProfileIds.insert(std::stoi(key));
    return ids;
}

void TuningLint::checkIndentation(const xmlNode* node) {
    const xmlNode* first = node->children;
    if (first != nullptr && first->type == XML_ELEMENT_NODE) {
        const std::string child = "<" + nameOf(first) + ">";
        warn(node, "not-indented",
             "<" + nameOf(node) + "> starts with " + child +
                     " without a line break: the reader steps over the first child node, so " +
                     child + " is ignored");
    }
    for (const xmlNode* child : elementChildren(node)) checkIndentation(child);
}

// Includes may stand before the presets they select, so the ids are known first.
void TuningLint::collectIeqPresetIds(const xmlNode* root) {
    for (const xmlNode* child : elementChildren(root)) {
        if (nameOf(child) == "preset" && attr(child, "type") == "ieq") {
            mIeqPresetIds.insert(ieqPresetId(attr(child, "id")));
        }
    }
}

void TuningLint::checkDuplicate(FirstSeen& seen, const xmlNode* node, const std::string& key,
                                const std::string& what) {
    const auto [it, inserted] = seen.emplace(key, xmlGetLineNo(node));
    if (!inserted) {
        warn(node, "duplicate", "duplicate " + what + " (first at line " +
                                        std::to_string(it->second) + ")");
    }
}

// The preset and output-mode readers descend by position: each step goes to the second child
// node, which must be the element that holds the next level. A comment or a second text node in
// that place hides the whole level.
void TuningLint::checkDescent(const xmlNode* node, int levels, const std::string& what) {
    for (int level = 0; level < levels; ++level) {
        const xmlNode* first = node->children;
        // No child elements: nothing to read, and nothing hidden. A first child element is
        // reported as not indented already.
        if (first == nullptr || first->type == XML_ELEMENT_NODE || elementChildren(node).empty()) {
            return;
        }
        const xmlNode* second = first->next;
        if (second != nullptr && second->type == XML_ELEMENT_NODE) {
            node = second;
            continue;
        }
        const std::string found = second == nullptr                  ? "nothing"
                                  : second->type == XML_COMMENT_NODE ? "a comment"
                                                                     : "text";
        warn(node, "not-indented",
             "<" + nameOf(node) + "> must have its first child element right after the line "
             "break; the reader steps to the second child node and finds " + found +
                     ", so it does not read " + what);
        return;
    }
}

void TuningLint::checkPreset(const xmlNode* preset) {
    const std::string type = attr(preset, "type");
    if (type == "ieq" || type == "geq") {
        checkDescent(preset, 2, "the preset's bands");
        checkNumbers(preset, type + " preset " + quoted(attr(preset, "id")), false,
                     NumberKind::kList);
    }
    const std::string idText = attr(preset, "id");
    if (type == "geq" || (type == "ieq" && !namesPresetsByText())) {
        checkNumberText(preset, "id", idText, "a preset", NumberKind::kClamped);
    }
    if (type == "ieq") {
        const int id = ieqPresetId(idText);
        const std::string name = namesPresetsByText() && id >= 0 && id < 4
                                         ? FormatFamily::kIeqPresetNames[id]
                                         : attr(preset, "name");
        if (namesPresetsByText() && id == 0 && idText.find("off") == std::string::npos) {
            warn(preset, "missing-ieq-preset",
                 "IEQ preset id " + quoted(idText) +
                         " names no IEQ preset (off, detailed, balanced, warm); the service "
                         "makes it preset 0 \"off\"");
        }
        checkDuplicate(mIeqIds, preset, std::to_string(id), "IEQ preset id " + std::to_string(id));
        checkDuplicate(mIeqNames, preset, name, "IEQ preset name " + quoted(name));
    } else if (type == "geq") {
        const int profileId = decimal2Int(idText);
        checkDuplicate(mGeqIds, preset, std::to_string(profileId),
                       "GEQ preset for profile " + std::to_string(profileId));
    } else {
        warn(preset, "ignored-element",
             "preset type " + quoted(type) +
                     " is neither \"ieq\" nor \"geq\"; the service ignores this preset");
    }
}

// The service selects profiles by the ids 0 to n-1 of its n profiles; a profile with another id
// can never be selected.
void TuningLint::checkProfileIds() {
    const long count = static_cast<long>(mProfileOrder.size());
    for (const auto& [node, id] : mProfileOrder) {
        if (id >= 0 && id < count) continue;
        warn(node, "profile-id-range",
             "profile id " + std::to_string(id) + " is outside 0.." + std::to_string(count - 1) +
                     " (the file has " + std::to_string(count) +
                     " profiles); the service can never select this profile");
    }
}

void TuningLint::checkProfile(const xmlNode* profile) {
    checkNumberText(profile, "id", attr(profile, "id"), "a profile", NumberKind::kSingle);
    const int id = string2Int(attr(profile, "id"));
    mProfileOrder.emplace_back(profile, id);
    const std::string name = attr(profile, "name");
    const std::string text = "profile " + std::to_string(id) + " " + quoted(name);
    checkDuplicate(mProfileIds, profile, std::to_string(id), "profile id " + std::to_string(id));
    checkDuplicate(mProfileNames, profile, name, "profile name " + quoted(name));

    std::set<Endpoint> endpoints;
    bool hasInclude = false;
    for (const xmlNode* child : elementChildren(profile)) {
        const std::string childName = nameOf(child);
        if (childName == "endpoint_type") {
            checkEndpoint(child, text, endpoints);
        } else if (childName == "include") {
            if (mFamily32) {
                hasInclude = true;
                checkInclude(child, text);
            } else {
                warn(child, "ignored-element",
                     "<include> directly below a profile is read in 3.2 files only; put it "
                     "first in each <endpoint_type>");
            }
        } else if (childName == "ieq-enable" || childName == "ieq-amount") {
            // Kept aside and handed to the endpoints built after it, in 3.2 files only.
            if (!mFamily32) {
                warn(child, "ignored-element",
                     "<" + childName + "> directly below a profile is read in 3.2 files only; "
                     "put it in each <endpoint_type>");
            } else if (!endpoints.empty()) {
                warn(child, "ignored-element",
                     "<" + childName + "> of " + text + " reaches only the endpoint_types after "
                     "it; put it before the first one");
            }
        } else {
            checkValueElement(child, text, Profile::kValidParams);
        }
    }
    if (mFamily32 && !hasInclude) {
        warn(profile, "missing-ieq-preset",
             text + " has no <include preset=...>; the service selects IEQ preset 0 \"off\" "
             "for its endpoints");
    }
    std::string missing;
    for (int e = SPEAKER; e <= OTHER; ++e) {
        if (endpoints.count(static_cast<Endpoint>(e)) != 0) continue;
        missing += std::string(missing.empty() ? "" : ", ") + endpointName(static_cast<Endpoint>(e));
    }
    if (!missing.empty()) {
        warn(profile, "missing-endpoint", text + " has no endpoint_type for " + missing);
    }
}

void TuningLint::checkEndpoint(const xmlNode* endpoint, const std::string& profileText,
                               std::set<Endpoint>& seen) {
    const std::string idText = attr(endpoint, "id");
    Endpoint e = OTHER;
    if (idText == "speaker") {
        e = SPEAKER;
    } else if (idText == "headphone") {
        e = HEADPHONE;
    } else if (idText != "other") {
        warn(endpoint, "unknown-endpoint",
             "endpoint_type id " + quoted(idText) +
                     " is not speaker, headphone or other; the service makes it an \"other\" "
                     "endpoint");
    }
    const std::string text = profileText + " endpoint " + endpointName(e);
    if (!seen.insert(e).second) {
        warn(endpoint, "duplicate", profileText + " has a second " + endpointName(e) + " endpoint");
    }

    const std::vector<const xmlNode*> children = elementChildren(endpoint);
    for (size_t i = 0; i < children.size(); ++i) {
        const xmlNode* child = children[i];
        const std::string childName = nameOf(child);
        if (childName != "include") {
            checkValueElement(child, text, ProfileEndpoint::kValidParams);
            const char* fixed = replacedByReader(childName);
            if (fixed != nullptr) {
                warn(child, "ignored-element",
                     "<" + childName + "> in " + text + " is replaced by the reader in format " +
                             mReader.getDeviceData()->getFormatVersion() + " (" + fixed + ")");
            }
        } else if (i == 0 && !mFamily32) {
            checkInclude(child, text);
        } else {
            warn(child, "ignored-element",
                 mFamily32 ? "<include> in an endpoint is not read in 3.2 files; the profile's "
                             "include selects the IEQ preset"
                           : "<include> is read only as the first element of an endpoint_type; "
                             "this one is ignored");
        }
    }
}

void TuningLint::checkInclude(const xmlNode* include, const std::string& where) {
    const bool byName = namesPresetsByText();
    const std::string text = attr(include, byName ? "preset" : "ieq_preset");
    if (!byName) checkNumberText(include, "ieq_preset", text, where, NumberKind::kClamped);
    const int id = ieqPresetId(text);
    if (byName && id == 0 && text.find("off") == std::string::npos) {
        warn(include, "missing-ieq-preset",
             where + " includes IEQ preset " + quoted(text) +
                     ", which names no preset; the service selects preset 0 \"off\"");
    } else if (mIeqPresetIds.count(id) == 0) {
        warn(include, "missing-ieq-preset",
             where + " selects IEQ preset " + std::to_string(id) +
                     ", which this file does not define");
    }
}

void TuningLint::checkTuning(const xmlNode* tuning) {
    const std::string name = attr(tuning, "name");
    mTuningOrder.push_back(name);
    const std::string text = "tuning " + quoted(name);
    checkDuplicate(mTuningNames, tuning, name, "tuning name " + quoted(name));
    const std::string mono = attr(tuning, "mono_device");
    if (!mono.empty() && mono != "true" && mono != "false") {
        warn(tuning, "not-a-boolean",
             text + ": mono_device " + quoted(mono) +
                     " is neither \"true\" nor \"false\"; the service reads it as not mono");
    }
    for (const char* name : {"orientation", "output_channels"}) {
        checkNumberText(tuning, name, attr(tuning, name), text, NumberKind::kSingle);
    }
    const std::string endpoint = attr(tuning, "endpoint_type");
    if (endpoint != "speaker" && endpoint != "headphone" && endpoint != "other") {
        warn(tuning, "unknown-endpoint",
             text + ": endpoint_type " + quoted(endpoint) +
                     " is not speaker, headphone or other; the service makes it a speaker tuning");
    }

    std::vector<const xmlNode*> devices;
    const xmlNode* data = nullptr;
    for (const xmlNode* child : elementChildren(tuning)) {
        const std::string childName = nameOf(child);
        if (data != nullptr) {
            warn(child, "ignored-element",
                 "<" + childName + "> after the data block of " + text + " is ignored");
        } else if (childName == "device_id") {
            devices.push_back(child);
        } else {
            data = child;
        }
    }
    for (const xmlNode* device : devices) {
        const std::string id = attr(device, "id");
        const std::string port = attr(device, "endpoint_port");
        checkDuplicate(mDeviceIds, device, id, "device id " + quoted(id));
        if (kPortNameToEndpoint.count(port) == 0) {
            warn(device, "unknown-port",
                 "device " + quoted(id) + ": endpoint_port " + quoted(port) +
                         " is none of internal_speaker, hdmi, miracast, headphone, bluetooth, "
                         "usb, other");
        }
        mDevices.emplace_back(device, name);
    }
    if (data == nullptr) {
        warn(tuning, "dropped-tuning",
             text + " has no data block; the service drops it (its devices stay)");
        return;
    }
    mKeptTunings.insert(name);
    checkDataBlock(data, text);
}

// A device names its tuning by text only, so it is dangling only when no tuning of that name
// survives anywhere in the file.
void TuningLint::checkDevicesHaveTunings() {
    for (const auto& [device, tuningName] : mDevices) {
        if (mKeptTunings.count(tuningName) != 0) continue;
        warn(device, "dangling-device",
             "device " + quoted(attr(device, "id")) + " points at tuning " + quoted(tuningName) +
                     ", which the service does not have");
    }
}

void TuningLint::checkDataBlock(const xmlNode* data, const std::string& tuningText) {
    for (const xmlNode* child : elementChildren(data)) {
        checkValueElement(child, tuningText, Tuning::kValidParams);
        if (mFormat322 && nameOf(child) == "bass-mbdrc-enable") {
            warn(child, "ignored-element",
                 "<bass-mbdrc-enable> in " + tuningText + " is replaced by the reader in format " +
                         mReader.getDeviceData()->getFormatVersion() + " (it stores 0)");
        }
    }
}

// The endpoint values the older formats cannot carry: the reader stores its own after the
// endpoint's elements, so an element of the file would be lost.
const char* TuningLint::replacedByReader(const std::string& name) const {
    if (!mFamily32) return nullptr;
    if (name == "ieq-enable" || name == "ieq-amount") return "the profile's value";
    if (name == "headphone-virtualizer-steerer-source-distance") return "it stores 4";
    if (mFormat322 && (name == "hearing-protection-enable" || name == "virtualizer-start-band")) {
        return "it stores 0";
    }
    return nullptr;
}

void TuningLint::checkValueElement(const xmlNode* element, const std::string& where,
                                   const std::set<Parameter>& owned) {
    const std::string name = nameOf(element);
    if (name == "output-mode") checkDescent(element, 1, "the mix matrix");
    const ValueSetter* setter = TuningFileParser::sSetterCollection.getValueSetter(name);
    if (setter == nullptr) {
        warn(element, "unknown-element",
             "<" + name + "> in " + where + " is not a value element; the service ignores it" +
                     suggestionFor(name));
        return;
    }
    const bool single = dynamic_cast<const SimpleValueSetter*>(setter) != nullptr;
    checkNumbers(element, where, true, single ? NumberKind::kSingle : NumberKind::kList);
    // The reader stores a value element in whatever record it stands in; the settings database
    // keeps only the values a record owns, so a value in the wrong section is lost there.
    for (const Parameter p : setter->getParameters()) {
        if (owned.count(p) != 0) continue;
        warn(element, "misplaced-value",
             "<" + name + "> in " + where + " sets " + kParameterNames[p] + ", which belongs in " +
                     placeOf(p) + "; the settings database does not keep it here");
        return;
    }
}

}  // namespace korvi::ctl
