#define LOG_TAG "ParameterAdapter"

#include "service/ParameterAdapter.h"

#include <log/log.h>

#include "context/AxContext.h"

namespace korvi {

namespace {

constexpr Endpoint kAllEndpoints[] = {SPEAKER, HEADPHONE, OTHER};

}  // namespace

void ParameterAdapter::ParameterStrategy::setParameter(AxContext* /*context*/, int /*profileId*/,
                                                       Endpoint /*endpoint*/,
                                                       std::vector<int>& /*values*/) {}

std::vector<int> ParameterAdapter::ParameterStrategy::getParameter(AxContext* /*context*/,
                                                                   int /*profileId*/,
                                                                   Endpoint /*endpoint*/) {
    return {};
}

void ParameterAdapter::ParameterStrategy::clamp(std::vector<int>& values) const {
    for (int& value : values) {
        if (value < mMin) {
            value = mMin;
        } else if (value > mMax) {
            value = mMax;
        }
    }
}

void ParameterAdapter::ProfileParameterStrategy::setParameter(AxContext* context, int profileId,
                                                              std::vector<int>& values) {
    clamp(values);
    context->setProfileParameter(profileId, mParameter, values);
}

std::vector<int> ParameterAdapter::ProfileParameterStrategy::getParameter(AxContext* context,
                                                                          int profileId) {
    return context->getProfileParameter(profileId, mParameter);
}

void ParameterAdapter::ProfileEndpointParameterStrategy::setParameter(AxContext* context,
                                                                      int profileId,
                                                                      std::vector<int>& values) {
    clamp(values);
    for (Endpoint endpoint : kAllEndpoints) {
        context->setProfileParameter(profileId, endpoint, mParameter, values);
    }
}

void ParameterAdapter::ProfileEndpointParameterStrategy::setParameter(AxContext* context,
                                                                      int profileId,
                                                                      Endpoint endpoint,
                                                                      std::vector<int>& values) {
    clamp(values);
    context->setProfileParameter(profileId, endpoint, mParameter, values);
}

std::vector<int> ParameterAdapter::ProfileEndpointParameterStrategy::getParameter(
        AxContext* context, int profileId) {
    return context->getProfileParameter(profileId, SPEAKER, mParameter);
}

std::vector<int> ParameterAdapter::ProfileEndpointParameterStrategy::getParameter(
        AxContext* context, int profileId, Endpoint endpoint) {
    return context->getProfileParameter(profileId, endpoint, mParameter);
}

void ParameterAdapter::ProfileGeqParameterStrategy::setParameter(AxContext* context, int profileId,
                                                                 std::vector<int>& values) {
    clamp(values);
    context->setProfileGeqParameter(profileId, mParameter, values);
}

std::vector<int> ParameterAdapter::ProfileGeqParameterStrategy::getParameter(AxContext* context,
                                                                             int profileId) {
    return context->getProfileGeqParameter(profileId, mParameter);
}

// The virtualizer switches of one output pass their values on unclamped, unlike every other id.
void ParameterAdapter::VirtualizerStrategy::setParameter(AxContext* context, int profileId,
                                                         std::vector<int>& values) {
    context->setProfileParameter(profileId, mEndpoint, mParameter, values);
}

std::vector<int> ParameterAdapter::VirtualizerStrategy::getParameter(AxContext* context,
                                                                     int profileId) {
    return context->getProfileParameter(profileId, mEndpoint, mParameter);
}

ParameterAdapter::ParameterAdapter(AxContext* context) : mContext(context) {
    using Endpoints = ProfileEndpointParameterStrategy;
    const int ieqPresets = context->getNumOfIeqPresets();
    mStrategies.resize(1);  // id 100 has no strategy
    mStrategies.push_back(std::make_unique<VirtualizerStrategy>(0, 1, VIRTUALIZER_ENABLE, 1,
                                                                HEADPHONE, PORT_HEADPHONE));
    mStrategies.push_back(std::make_unique<VirtualizerStrategy>(0, 1, VIRTUALIZER_ENABLE, 1,
                                                                SPEAKER, PORT_INTERNAL_SPEAKER));
    mStrategies.push_back(std::make_unique<Endpoints>(0, 1, VOLUME_LEVELER_ENABLE, 1));
    mStrategies.push_back(std::make_unique<Endpoints>(0, ieqPresets, IEQ_ID, 1));
    mStrategies.push_back(std::make_unique<Endpoints>(0, 1, DIALOG_ENHANCER_ENABLE, 1));
    mStrategies.push_back(std::make_unique<Endpoints>(0, 1, GRAPHIC_EQUALIZER_ENABLE, 1));
    mStrategies.push_back(std::make_unique<Endpoints>(0, 16, IEQ_AMOUNT, 1));
    mStrategies.push_back(std::make_unique<Endpoints>(0, 16, DIALOG_ENHANCER_AMOUNT, 1));
    mStrategies.push_back(std::make_unique<Endpoints>(0, 16, DIALOG_ENHANCER_DUCKING, 1));
    mStrategies.push_back(std::make_unique<ProfileGeqParameterStrategy>(-576, 576, GEQ_GAIN, 20));
    mStrategies.push_back(std::make_unique<Endpoints>(0, 1, BASS_ENHANCER_ENABLE, 1));
    mStrategies.push_back(std::make_unique<Endpoints>(0, 1, VIRTUAL_BASS_ENABLE, 1));
    mStrategies.push_back(
            std::make_unique<Endpoints>(4, 64, HEADPHONE_VIRTUALIZER_STEERER_SOURCE_DISTANCE, 1));
    mStrategies.push_back(
            std::make_unique<ProfileParameterStrategy>(0, 1, REVERB_SUPPRESSION_ENABLE, 1));
    mStrategies.push_back(
            std::make_unique<ProfileParameterStrategy>(0, 9, REVERB_SUPPRESSION_AMOUNT, 1));
    mStrategies.push_back(std::make_unique<Endpoints>(0, 10, VOLUME_LEVELER_AMOUNT, 1));
}

ParameterAdapter::~ParameterAdapter() = default;

ParameterAdapter::ParameterStrategy* ParameterAdapter::find(int id, bool* outOfRange) const {
    // Ids below 100 come out negative here and count as out of range like ids past the table.
    const long index = static_cast<long>(id) - kFirstId;
    *outOfRange = index < 0 || index >= static_cast<long>(mStrategies.size());
    return *outOfRange ? nullptr : mStrategies[static_cast<size_t>(index)].get();
}

int ParameterAdapter::getParameterLength(int id) {
    bool outOfRange = false;
    ParameterStrategy* strategy = find(id, &outOfRange);
    if (strategy == nullptr) {
        ALOGE("param id %d not supported", id);
        return 1;
    }
    return strategy->getParamLength();
}

// Setting an id past the table is silently ignored while the empty id 100 is reported: the two
// cases reach different checks on purpose, and clients rely on neither being an error.
void ParameterAdapter::setParameter(int profileId, int id, std::vector<int>& values) {
    bool outOfRange = false;
    ParameterStrategy* strategy = find(id, &outOfRange);
    if (outOfRange) {
        return;
    }
    if (strategy == nullptr) {
        ALOGE("param id %d not supported", id);
        return;
    }
    strategy->setParameter(mContext, profileId, values);
}

std::vector<int> ParameterAdapter::getParameter(int profileId, int id) {
    bool outOfRange = false;
    ParameterStrategy* strategy = find(id, &outOfRange);
    if (strategy == nullptr) {
        ALOGE("param id %d not supported", id);
        return {};
    }
    return strategy->getParameter(mContext, profileId);
}

void ParameterAdapter::setProfileEndpointParameter(int profileId, Endpoint endpoint, int id,
                                                   std::vector<int>& values) {
    bool outOfRange = false;
    ParameterStrategy* strategy = find(id, &outOfRange);
    if (outOfRange) {
        return;
    }
    if (strategy == nullptr) {
        ALOGE("param id %d not supported", id);
        return;
    }
    strategy->setParameter(mContext, profileId, endpoint, values);
}

std::vector<int> ParameterAdapter::getProfileEndpointParameter(int profileId, Endpoint endpoint,
                                                               int id) {
    bool outOfRange = false;
    ParameterStrategy* strategy = find(id, &outOfRange);
    if (strategy == nullptr) {
        ALOGE("param id %d not supported", id);
        return {};
    }
    return strategy->getParameter(mContext, profileId, endpoint);
}

}  // namespace korvi
