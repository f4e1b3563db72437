// Listens to one effective parameter view: learns which view it translates from (and for which
// endpoint kind and mono setting), then hears of every parameter whose effective value changed.
#pragma once

#include "model/Endpoint.h"
#include "model/Parameter.h"

namespace korvi {

class ParameterValues;

class ParamChangeObserver {
public:
    virtual ~ParamChangeObserver() = default;
    // The view being observed, with the endpoint kind and mono flag of its current tuning
    // (OTHER and false before any tuning is set).
    virtual void setSource(ParameterValues* values, Endpoint endpoint, bool mono) = 0;
    // One parameter of the view changed its value.
    virtual void onParameterChanged(Parameter parameter) = 0;
};

}  // namespace korvi
