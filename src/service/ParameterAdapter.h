// Maps the small parameter ids that clients use (100 to 116) onto the service's parameters. Each
// id has a strategy that knows its parameter, its value count, the range its values are clamped
// to and the level of a profile it lives at (profile, profile endpoint, GEQ preset, or one fixed
// endpoint).
#pragma once

#include <memory>
#include <vector>

#include "model/Endpoint.h"
#include "model/Parameter.h"
#include "model/Port.h"

namespace korvi {

class AxContext;

class ParameterAdapter {
public:
    class ParameterStrategy {
    public:
        ParameterStrategy(int min, int max, Parameter parameter, int length)
            : mMin(min), mMax(max), mParameter(parameter), mLength(length) {}
        virtual ~ParameterStrategy() = default;

        virtual void setParameter(AxContext* context, int profileId, std::vector<int>& values) = 0;
        // Only strategies that live at a profile endpoint answer the endpoint variants.
        virtual void setParameter(AxContext* context, int profileId, Endpoint endpoint,
                                  std::vector<int>& values);
        virtual std::vector<int> getParameter(AxContext* context, int profileId) = 0;
        virtual std::vector<int> getParameter(AxContext* context, int profileId, Endpoint endpoint);
        virtual Parameter getParameter() const { return mParameter; }
        virtual int getParamLength() const { return mLength; }

    protected:
        // Raises values below the range to min and lowers values above it to max, in place. The
        // count of values is not checked: a list of another length passes on as it is.
        void clamp(std::vector<int>& values) const;

        int mMin;
        int mMax;
        Parameter mParameter;
        int mLength;
    };

    // A value of the profile record itself.
    class ProfileParameterStrategy : public ParameterStrategy {
    public:
        using ParameterStrategy::ParameterStrategy;
        using ParameterStrategy::getParameter;
        using ParameterStrategy::setParameter;
        void setParameter(AxContext* context, int profileId, std::vector<int>& values) override;
        std::vector<int> getParameter(AxContext* context, int profileId) override;
    };

    // A value of the profile's endpoint records: set on all three, read from the speaker's.
    class ProfileEndpointParameterStrategy : public ParameterStrategy {
    public:
        using ParameterStrategy::ParameterStrategy;
        using ParameterStrategy::getParameter;
        void setParameter(AxContext* context, int profileId, std::vector<int>& values) override;
        void setParameter(AxContext* context, int profileId, Endpoint endpoint,
                          std::vector<int>& values) override;
        std::vector<int> getParameter(AxContext* context, int profileId) override;
        std::vector<int> getParameter(AxContext* context, int profileId,
                                      Endpoint endpoint) override;
    };

    // A value of the profile's GEQ preset.
    class ProfileGeqParameterStrategy : public ParameterStrategy {
    public:
        using ParameterStrategy::ParameterStrategy;
        using ParameterStrategy::getParameter;
        using ParameterStrategy::setParameter;
        void setParameter(AxContext* context, int profileId, std::vector<int>& values) override;
        std::vector<int> getParameter(AxContext* context, int profileId) override;
    };

    // A value of one fixed endpoint record of the profile. The port only says which output the
    // id was made for; nothing reads it.
    class VirtualizerStrategy : public ParameterStrategy {
    public:
        VirtualizerStrategy(int min, int max, Parameter parameter, int length, Endpoint endpoint,
                            Port port)
            : ParameterStrategy(min, max, parameter, length), mEndpoint(endpoint), mPort(port) {}
        using ParameterStrategy::getParameter;
        using ParameterStrategy::setParameter;
        void setParameter(AxContext* context, int profileId, std::vector<int>& values) override;
        std::vector<int> getParameter(AxContext* context, int profileId) override;
        Port getPort() const { return mPort; }

    private:
        Endpoint mEndpoint;
        Port mPort;
    };

    // Reads the IEQ preset count from the context once, for the range of id 104.
    explicit ParameterAdapter(AxContext* context);
    ~ParameterAdapter();
    ParameterAdapter(const ParameterAdapter&) = delete;
    ParameterAdapter& operator=(const ParameterAdapter&) = delete;

    int getParameterLength(int id);
    void setParameter(int profileId, int id, std::vector<int>& values);
    std::vector<int> getParameter(int profileId, int id);
    void setProfileEndpointParameter(int profileId, Endpoint endpoint, int id,
                                     std::vector<int>& values);
    std::vector<int> getProfileEndpointParameter(int profileId, Endpoint endpoint, int id);

private:
    static constexpr int kFirstId = 100;

    // The strategy of id, or null; an out-of-range index is reported through outOfRange.
    ParameterStrategy* find(int id, bool* outOfRange) const;

    AxContext* mContext;  // borrowed
    // Indexed by id - 100; entry 0 (id 100) is empty.
    std::vector<std::unique_ptr<ParameterStrategy>> mStrategies;
};

}  // namespace korvi
