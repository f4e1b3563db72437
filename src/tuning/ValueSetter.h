// Value setters turn one element of a tuning file into parameter values. Each knows its element
// name, the parameter(s) the element yields and how the element lays out its numbers; `set` reads
// the element under the iterator's current node and stores the integers into a record. Every
// setter that descends into the element returns the iterator to the element before it returns.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "model/Parameter.h"
#include "model/ParameterValues.h"
#include "tuning/TagIterator.h"

namespace korvi {

class ValueSetter {
public:
    virtual ~ValueSetter() = default;
    virtual std::string getNodeName() const { return mNodeName; }
    // Parses the current element of it and stores the result into target through
    // ParameterValues::set (so target becomes dirty; admissibility is the caller's affair).
    virtual void set(ParameterValues& target, TagIterator& it) const = 0;
    // The parameters the element yields, in the order its values fill them.
    const std::vector<Parameter>& getParameters() const { return mParameters; }

protected:
    ValueSetter(const std::string& nodeName, std::vector<Parameter> parameters)
        : mNodeName(nodeName), mParameters(std::move(parameters)) {}

    const std::string mNodeName;
    const std::vector<Parameter> mParameters;
};

// One integer from the "value" attribute: "true" is 1, "false" or no attribute is 0.
class SimpleValueSetter : public ValueSetter {
public:
    SimpleValueSetter(const std::string& nodeName, Parameter parameter);
    void set(ParameterValues& target, TagIterator& it) const override;

};

// A row of integers, carried by the element's first attribute; empty without an attribute.
class RowDataValueSetter : public ValueSetter {
public:
    RowDataValueSetter(const std::string& nodeName, Parameter parameter);
    void set(ParameterValues& target, TagIterator& it) const override;

protected:
    // The row as written, possibly empty.
    std::vector<int> readRow(TagIterator& it) const;
};

// A row that is never empty: an element without numbers stores {0}.
class DrcRowDataValueSetter : public RowDataValueSetter {
public:
    DrcRowDataValueSetter(const std::string& nodeName, Parameter parameter);
    void set(ParameterValues& target, TagIterator& it) const override;
};

// The output mix matrix: a container element below the named one, holding one element per
// matrix row; each row's first attribute is a list of numbers, and all rows are concatenated.
class MixMatrixValueSetter : public ValueSetter {
public:
    MixMatrixValueSetter(const std::string& nodeName, Parameter parameter);
    void set(ParameterValues& target, TagIterator& it) const override;

};

// A pair of frequencies, "frequency_low" into the first parameter and "frequency_high" into
// the second, each as a one-element list.
class VirtualBassValueSetter : public ValueSetter {
public:
    static const std::vector<std::string> kAttrNames;

    VirtualBassValueSetter(const std::string& nodeName, Parameter low, Parameter high);
    void set(ParameterValues& target, TagIterator& it) const override;

};

// One sub-gain per attribute of the element, in document order.
class VirtualBassSubgainValueSetter : public ValueSetter {
public:
    VirtualBassSubgainValueSetter(const std::string& nodeName, Parameter parameter);
    void set(ParameterValues& target, TagIterator& it) const override;

};

// IEQ target curve: "band_ieq" elements three levels below the element, each giving one
// "frequency" (first parameter) and one "target" (second parameter).
class IeqValueSetter : public ValueSetter {
public:
    static const std::vector<std::string> kAttrNames;

    IeqValueSetter(const std::string& nodeName, Parameter frequency, Parameter target);
    void set(ParameterValues& target, TagIterator& it) const override;

};

// GEQ bands three levels below the element, every element there giving one "frequency" and one
// "gain"; band element names are not checked.
class GeqValueSetter : public ValueSetter {
public:
    static const std::vector<std::string> kAttrNames;

    GeqValueSetter(const std::string& nodeName, Parameter frequency, Parameter gain);
    void set(ParameterValues& target, TagIterator& it) const override;

};

// Audio-optimizer bands, the element's children: five attributes per band, the i-th attribute
// name filling the i-th parameter.
class AudioOptimizerValueSetter : public ValueSetter {
public:
    static const std::vector<std::string> kAttrNames;

    AudioOptimizerValueSetter(const std::string& nodeName, const std::vector<Parameter>& parameters);
    void set(ParameterValues& target, TagIterator& it) const override;

};

// Regulator bands, the element's children: frequency, both thresholds and whether the band is
// isolated (exactly "true" is 1, any other text 0).
class RegulatorTuningValueSetter : public ValueSetter {
public:
    static const std::vector<std::string> kAttrNames;

    RegulatorTuningValueSetter(const std::string& nodeName, const std::vector<Parameter>& parameters);
    void set(ParameterValues& target, TagIterator& it) const override;

};

}  // namespace korvi
