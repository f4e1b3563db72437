// The problems of a tuning file that the service reads past in silence, found by walking the
// document the way the reader does, so that every warning can name the element's line.
#pragma once

#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <libxml/tree.h>

#include "model/Endpoint.h"
#include "model/Parameter.h"
#include "tuning/TuningFileParser.h"

namespace korvi::ctl {

struct LintWarning {
    long line;
    // A short, stable class name for scripts: "unknown-element", "ignored-element",
    // "duplicate", "dropped-tuning", "dangling-device", "missing-ieq-preset",
    // "missing-endpoint", "unknown-endpoint", "unknown-port", "not-indented", "misplaced-value",
    // "not-a-number", "number-overflow", "empty-list-item", "band-mismatch",
    // "profile-id-range", "not-a-boolean".
    std::string kind;
    std::string message;
};

class TuningLint {
public:
    // reader: the parser that has read the same file; its format version decides how presets and
    // includes are named, and it turns preset names into ids. Both are borrowed.
    TuningLint(xmlDoc* doc, TuningFileParser& reader);

    // Every warning, ordered by line.
    std::vector<LintWarning> run();

    // Tuning names in the order the file writes them (after run()).
    const std::vector<std::string>& tuningOrder() const { return mTuningOrder; }

    // The ids the lint took the file's records to have (after run()), for checking that it reads
    // them as the reader does: profile ids in file order, IEQ preset ids, GEQ preset profile ids.
    struct RecordIds {
        std::vector<int> profileIds;
        std::set<int> ieqPresetIds;
        std::set<int> geqProfileIds;
    };
    RecordIds recordIds() const;

private:
    // The first element with the same key, for duplicate reports.
    using FirstSeen = std::map<std::string, long>;

    void warn(const xmlNode* node, const std::string& kind, const std::string& message);
    void checkIndentation(const xmlNode* node);
    void collectIeqPresetIds(const xmlNode* root);
    void checkDescent(const xmlNode* node, int levels, const std::string& what);
    void checkPreset(const xmlNode* preset);
    void checkProfile(const xmlNode* profile);
    void checkEndpoint(const xmlNode* endpoint, const std::string& profileText,
                       std::set<Endpoint>& seen);
    void checkInclude(const xmlNode* include, const std::string& where);
    void checkTuning(const xmlNode* tuning);
    void checkDevicesHaveTunings();
    void checkProfileIds();
    // How the reader converts a text: as a list (string2IntVector), as one number
    // (string2Int) or as one clamped number (decimal2Int).
    enum class NumberKind { kList, kSingle, kClamped };
    // withOwn: the element's own attributes too, not only those of its descendants.
    void checkNumbers(const xmlNode* element, const std::string& where, bool withOwn,
                      NumberKind kind);
    void checkNumberText(const xmlNode* node, const std::string& name, const std::string& text,
                         const std::string& where, NumberKind kind);
    const char* replacedByReader(const std::string& name) const;
    void checkDataBlock(const xmlNode* data, const std::string& tuningName);
    // owned: the parameters the record of that section admits.
    void checkValueElement(const xmlNode* element, const std::string& where,
                           const std::set<Parameter>& owned);
    void checkDuplicate(FirstSeen& seen, const xmlNode* node, const std::string& key,
                        const std::string& what);

    // The IEQ preset id an include or a preset's "id" text stands for, as the reader takes it.
    int ieqPresetId(const std::string& text);
    bool namesPresetsByText() const;

    xmlDoc* mDoc;
    TuningFileParser& mReader;
    bool mFamily32;
    bool mFormat322;
    bool mFormat330;
    std::set<int> mIeqPresetIds;
    FirstSeen mIeqIds, mIeqNames, mGeqIds, mProfileIds, mProfileNames, mTuningNames, mDeviceIds;
    std::vector<std::string> mTuningOrder;
    std::vector<std::pair<const xmlNode*, int>> mProfileOrder;
    // Every device_id with the name of its tuning, and the tunings that keep their data block.
    std::vector<std::pair<const xmlNode*, std::string>> mDevices;
    std::set<std::string> mKeptTunings;
    std::vector<LintWarning> mWarnings;
};

}  // namespace korvi::ctl
