#include "tuning/ValueSetter.h"

namespace korvi {

namespace {

// Appends value to a comma-joined text; the reader of the joined text skips comma runs, so an
// empty value only leaves an extra comma behind.
void appendJoined(std::string& text, const std::string& value) {
    if (!text.empty()) text += ',';
    text += value;
}

}  // namespace

SimpleValueSetter::SimpleValueSetter(const std::string& nodeName, Parameter parameter)
    : ValueSetter(nodeName, {parameter}) {}

void SimpleValueSetter::set(ParameterValues& target, TagIterator& it) const {
    std::vector<std::string> attrs;
    it.parseNodeWithName({"value"}, attrs);
    const std::string text = attrs.empty() ? std::string() : attrs[0];
    int value = 0;
    if (text == "true") {
        value = 1;
    } else if (!text.empty() && text != "false") {
        value = string2Int(text);
    }
    target.set(mParameters[0], {value});
}

RowDataValueSetter::RowDataValueSetter(const std::string& nodeName, Parameter parameter)
    : ValueSetter(nodeName, {parameter}) {}

std::vector<int> RowDataValueSetter::readRow(TagIterator& it) const {
    std::vector<std::string> attrs;
    it.parseNodeAll(attrs);
    std::vector<int> row;
    if (!attrs.empty()) string2IntVector(attrs[0], row);
    return row;
}

void RowDataValueSetter::set(ParameterValues& target, TagIterator& it) const {
    target.set(mParameters[0], readRow(it));
}

DrcRowDataValueSetter::DrcRowDataValueSetter(const std::string& nodeName, Parameter parameter)
    : RowDataValueSetter(nodeName, parameter) {}

void DrcRowDataValueSetter::set(ParameterValues& target, TagIterator& it) const {
    std::vector<int> row = readRow(it);
    // The DRC metadata always goes to the effect with at least one word.
    if (row.empty()) row.push_back(0);
    target.set(mParameters[0], row);
}

MixMatrixValueSetter::MixMatrixValueSetter(const std::string& nodeName, Parameter parameter)
    : ValueSetter(nodeName, {parameter}) {}

void MixMatrixValueSetter::set(ParameterValues& target, TagIterator& it) const {
    std::vector<int> matrix;
    it.pushNode();
    it.childrenNext();  // onto the container element
    if (!it.isChildrenValid()) {
        it.popNode();
        target.set(mParameters[0], matrix);
        return;
    }
    it.childrenNext();  // onto the first row
    while (it.isCurValid()) {
        std::vector<std::string> attrs;
        it.parseNodeAll(attrs);
        if (!attrs.empty()) string2IntVector(attrs[0], matrix);
        it.next();
    }
    it.popNode();
    target.set(mParameters[0], matrix);
}

const std::vector<std::string> VirtualBassValueSetter::kAttrNames = {"frequency_low",
                                                                     "frequency_high"};

VirtualBassValueSetter::VirtualBassValueSetter(const std::string& nodeName, Parameter low,
                                               Parameter high)
    : ValueSetter(nodeName, {low, high}) {}

void VirtualBassValueSetter::set(ParameterValues& target, TagIterator& it) const {
    std::vector<std::string> attrs;
    it.parseNodeWithName(kAttrNames, attrs);
    if (attrs.size() < kAttrNames.size()) return;  // not an element
    for (size_t i = 0; i < kAttrNames.size(); ++i) {
        // A frequency the element does not carry is not stored at all.
        if (!attrs[i].empty()) target.set(mParameters[i], {string2Int(attrs[i])});
    }
}

VirtualBassSubgainValueSetter::VirtualBassSubgainValueSetter(const std::string& nodeName,
                                                             Parameter parameter)
    : ValueSetter(nodeName, {parameter}) {}

void VirtualBassSubgainValueSetter::set(ParameterValues& target, TagIterator& it) const {
    std::vector<int> gains;
    it.parseNodeIntVector(gains);
    target.set(mParameters[0], gains);
}

namespace {

// The IEQ and GEQ curves: their bands stand three levels below the named element. Each band
// adds its two attribute values to two comma-joined texts, so the n-th number of both lists
// comes from the n-th band. With a band name, other elements at that level are ignored.
void readCurve(ParameterValues& target, TagIterator& it, const std::vector<std::string>& attrNames,
               const std::vector<Parameter>& parameters, const char* bandName) {
    std::string texts[2];
    it.pushNode();
    it.childrenNext();
    it.childrenNext();
    it.childrenNext();
    while (it.isCurValid()) {
        if (bandName == nullptr || (it.isElementNode() && it.getNodeName() == bandName)) {
            std::vector<std::string> attrs;
            it.parseNodeWithName(attrNames, attrs);
            if (attrs.size() >= 2) {
                appendJoined(texts[0], attrs[0]);
                appendJoined(texts[1], attrs[1]);
            }
        }
        it.next();
    }
    it.popNode();
    for (int i = 0; i < 2; ++i) {
        std::vector<int> values;
        string2IntVector(texts[i], values);
        target.set(parameters[i], values);
    }
}

}  // namespace

const std::vector<std::string> IeqValueSetter::kAttrNames = {"frequency", "target"};

IeqValueSetter::IeqValueSetter(const std::string& nodeName, Parameter frequency, Parameter target)
    : ValueSetter(nodeName, {frequency, target}) {}

void IeqValueSetter::set(ParameterValues& target, TagIterator& it) const {
    readCurve(target, it, kAttrNames, mParameters, "band_ieq");
}

const std::vector<std::string> GeqValueSetter::kAttrNames = {"frequency", "gain"};

GeqValueSetter::GeqValueSetter(const std::string& nodeName, Parameter frequency, Parameter gain)
    : ValueSetter(nodeName, {frequency, gain}) {}

void GeqValueSetter::set(ParameterValues& target, TagIterator& it) const {
    readCurve(target, it, kAttrNames, mParameters, nullptr);
}

namespace {

// Bands that are the direct children of the named element, one integer per attribute name and
// band; convert turns the i-th attribute text into its number.
template <typename Convert>
void readBands(ParameterValues& target, TagIterator& it, const std::vector<std::string>& attrNames,
               const std::vector<Parameter>& parameters, Convert convert) {
    std::vector<std::vector<int>> columns(attrNames.size());
    it.pushNode();
    it.childrenNext();
    while (it.isCurValid()) {
        std::vector<std::string> attrs;
        it.parseNodeWithName(attrNames, attrs);
        // Text and comment nodes between the bands carry no attributes and add nothing.
        if (attrs.size() >= attrNames.size()) {
            for (size_t i = 0; i < attrNames.size(); ++i) columns[i].push_back(convert(i, attrs[i]));
        }
        it.next();
    }
    it.popNode();
    for (size_t i = 0; i < attrNames.size() && i < parameters.size(); ++i) {
        target.set(parameters[i], columns[i]);
    }
}

}  // namespace

const std::vector<std::string> AudioOptimizerValueSetter::kAttrNames = {
    "frequency", "gain_left", "gain_right", "gain_left_surround", "gain_right_surround"};

AudioOptimizerValueSetter::AudioOptimizerValueSetter(const std::string& nodeName,
                                                     const std::vector<Parameter>& parameters)
    : ValueSetter(nodeName, parameters) {}

void AudioOptimizerValueSetter::set(ParameterValues& target, TagIterator& it) const {
    readBands(target, it, kAttrNames, mParameters,
              [](size_t, const std::string& text) { return string2Int(text); });
}

const std::vector<std::string> RegulatorTuningValueSetter::kAttrNames = {
    "frequency", "threshold_low", "threshold_high", "isolated_band"};

RegulatorTuningValueSetter::RegulatorTuningValueSetter(const std::string& nodeName,
                                                       const std::vector<Parameter>& parameters)
    : ValueSetter(nodeName, parameters) {}

void RegulatorTuningValueSetter::set(ParameterValues& target, TagIterator& it) const {
    readBands(target, it, kAttrNames, mParameters, [](size_t i, const std::string& text) {
        // Whether a band is isolated is written "true" exactly; "True" or "1" mean not isolated.
        if (i == 3) return text == "true" ? 1 : 0;
        return string2Int(text);
    });
}

}  // namespace korvi
