// The client parameter ids through a real service context: which record each id writes, how its
// values are clamped, and the different answers to id 100 and to ids past the table.

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "ServiceStateFixture.h"
#include "service/ParameterAdapter.h"
#include "support/LogCapture.h"

namespace korvi::test {
namespace {

using Values = std::vector<int>;

enum Level { kProfile, kAllEndpoints, kGeq, kSpeakerOnly, kHeadphoneOnly };

struct IdCase {
    int id;
    Level level;
    Parameter parameter;
    int length;
    Values in;
    Values expected;  // what the caller's list holds afterwards and what is stored
};

// Everything an id could write in profile 1: its profile, GEQ and endpoint values.
std::map<std::string, Values> snapshot(AxContext* context, Parameter parameter) {
    return {{"profile", context->getProfileParameter(1, parameter)},
            {"geq", context->getProfileGeqParameter(1, parameter)},
            {"speaker", context->getProfileParameter(1, SPEAKER, parameter)},
            {"headphone", context->getProfileParameter(1, HEADPHONE, parameter)},
            {"other", context->getProfileParameter(1, OTHER, parameter)}};
}

std::vector<std::string> written(Level level) {
    switch (level) {
        case kProfile: return {"profile"};
        case kGeq: return {"geq"};
        case kAllEndpoints: return {"speaker", "headphone", "other"};
        case kSpeakerOnly: return {"speaker"};
        case kHeadphoneOnly: return {"headphone"};
    }
    return {};
}

using ParameterAdapterTest = ServiceStateTest;

TEST_F(ParameterAdapterTest, EachIdClampsAndWritesItsOwnLevel) {
    AxContext* context = start();
    ASSERT_NE(context, nullptr);
    ParameterAdapter adapter(context);

    Values gains(20, 100);
    gains[0] = -600;
    gains[1] = 577;
    gains[2] = -576;
    gains[19] = 576;
    Values clampedGains = gains;
    clampedGains[0] = -576;
    clampedGains[1] = 576;

    // Both ends of every range, each from a value the records do not hold yet.
    const IdCase cases[] = {
        // The virtualizer switches take their values unclamped, each on its own endpoint.
        {101, kHeadphoneOnly, VIRTUALIZER_ENABLE, 1, {5}, {5}},
        {102, kSpeakerOnly, VIRTUALIZER_ENABLE, 1, {-3}, {-3}},
        {103, kAllEndpoints, VOLUME_LEVELER_ENABLE, 1, {-7}, {0}},
        {103, kAllEndpoints, VOLUME_LEVELER_ENABLE, 1, {7}, {1}},
        {104, kAllEndpoints, IEQ_ID, 1, {3}, {3}},
        {105, kAllEndpoints, DIALOG_ENHANCER_ENABLE, 1, {-2}, {0}},
        {105, kAllEndpoints, DIALOG_ENHANCER_ENABLE, 1, {2}, {1}},
        {106, kAllEndpoints, GRAPHIC_EQUALIZER_ENABLE, 1, {9}, {1}},
        {106, kAllEndpoints, GRAPHIC_EQUALIZER_ENABLE, 1, {-9}, {0}},
        {107, kAllEndpoints, IEQ_AMOUNT, 1, {17}, {16}},
        {107, kAllEndpoints, IEQ_AMOUNT, 1, {-1}, {0}},
        {108, kAllEndpoints, DIALOG_ENHANCER_AMOUNT, 1, {-1}, {0}},
        {108, kAllEndpoints, DIALOG_ENHANCER_AMOUNT, 1, {17}, {16}},
        {109, kAllEndpoints, DIALOG_ENHANCER_DUCKING, 1, {99}, {16}},
        {109, kAllEndpoints, DIALOG_ENHANCER_DUCKING, 1, {-99}, {0}},
        {110, kGeq, GEQ_GAIN, 20, gains, clampedGains},
        {111, kAllEndpoints, BASS_ENHANCER_ENABLE, 1, {3}, {1}},
        {111, kAllEndpoints, BASS_ENHANCER_ENABLE, 1, {-3}, {0}},
        // Set on every endpoint, but the context keeps virtual bass to the speaker.
        {112, kSpeakerOnly, VIRTUAL_BASS_ENABLE, 1, {-4}, {0}},
        {112, kSpeakerOnly, VIRTUAL_BASS_ENABLE, 1, {4}, {1}},
        {113, kAllEndpoints, HEADPHONE_VIRTUALIZER_STEERER_SOURCE_DISTANCE, 1, {100}, {64}},
        {113, kAllEndpoints, HEADPHONE_VIRTUALIZER_STEERER_SOURCE_DISTANCE, 1, {0}, {4}},
        {114, kProfile, REVERB_SUPPRESSION_ENABLE, 1, {2}, {1}},
        {114, kProfile, REVERB_SUPPRESSION_ENABLE, 1, {-2}, {0}},
        {115, kProfile, REVERB_SUPPRESSION_AMOUNT, 1, {10}, {9}},
        {115, kProfile, REVERB_SUPPRESSION_AMOUNT, 1, {-10}, {0}},
        {116, kAllEndpoints, VOLUME_LEVELER_AMOUNT, 1, {11}, {10}},
        {116, kAllEndpoints, VOLUME_LEVELER_AMOUNT, 1, {-2}, {0}},
    };
    for (const IdCase& c : cases) {
        SCOPED_TRACE("id " + std::to_string(c.id));
        EXPECT_EQ(adapter.getParameterLength(c.id), c.length);
        std::map<std::string, Values> expected = snapshot(context, c.parameter);
        for (const std::string& level : written(c.level)) {
            EXPECT_NE(expected[level], c.expected) << level << " already holds the value";
            expected[level] = c.expected;
        }
        Values values = c.in;
        adapter.setParameter(1, c.id, values);
        EXPECT_EQ(values, c.expected);
        EXPECT_EQ(snapshot(context, c.parameter), expected);
        EXPECT_EQ(adapter.getParameter(1, c.id), c.expected);
    }

    // The IEQ selection is clamped to the context's preset count (4 in the sample file).
    Values preset{9};
    adapter.setParameter(2, 104, preset);
    EXPECT_EQ(preset, Values{context->getNumOfIeqPresets()});
    EXPECT_EQ(preset, Values{4});
}

TEST_F(ParameterAdapterTest, EndpointCallsReachOnlyEndpointStrategies) {
    AxContext* context = start();
    ASSERT_NE(context, nullptr);
    ParameterAdapter adapter(context);

    const std::map<std::string, Values> before = snapshot(context, IEQ_AMOUNT);
    Values amount{20};
    adapter.setProfileEndpointParameter(1, HEADPHONE, 107, amount);
    std::map<std::string, Values> expected = before;
    expected["headphone"] = {16};
    EXPECT_EQ(snapshot(context, IEQ_AMOUNT), expected);
    EXPECT_EQ(adapter.getProfileEndpointParameter(1, HEADPHONE, 107), Values{16});
    EXPECT_EQ(adapter.getProfileEndpointParameter(1, SPEAKER, 107), before.at("speaker"));

    // Profile-level, GEQ and virtualizer ids ignore the endpoint variants.
    for (const auto& [id, parameter] : {std::pair{114, REVERB_SUPPRESSION_ENABLE},
                                        std::pair{110, GEQ_GAIN}, std::pair{101, VIRTUALIZER_ENABLE}}) {
        SCOPED_TRACE(id);
        const std::map<std::string, Values> unchanged = snapshot(context, parameter);
        Values values(20, 1);
        adapter.setProfileEndpointParameter(1, HEADPHONE, id, values);
        EXPECT_EQ(snapshot(context, parameter), unchanged);
        EXPECT_TRUE(adapter.getProfileEndpointParameter(1, HEADPHONE, id).empty());
    }
}

TEST_F(ParameterAdapterTest, UnknownIdsAnswerDifferentlyPerOperation) {
    AxContext* context = start();
    ASSERT_NE(context, nullptr);
    ParameterAdapter adapter(context);
    const std::map<std::string, Values> before = snapshot(context, VOLUME_LEVELER_ENABLE);

    LogCapture logs;
    auto reported = [&](int id) {
        const std::vector<LogLine> lines = logs.linesWithTag("ParameterAdapter");
        logs.clear();
        return lines.size() == 1 && lines[0].priority == ANDROID_LOG_ERROR &&
               lines[0].message == "param id " + std::to_string(id) + " not supported";
    };
    for (int id : {100, 117, 99}) {
        SCOPED_TRACE(id);
        EXPECT_EQ(adapter.getParameterLength(id), 1);
        EXPECT_TRUE(reported(id));
        EXPECT_TRUE(adapter.getParameter(0, id).empty());
        EXPECT_TRUE(reported(id));
        EXPECT_TRUE(adapter.getProfileEndpointParameter(0, SPEAKER, id).empty());
        EXPECT_TRUE(reported(id));
    }

    // Setting id 100 is reported; ids past the table are dropped without a word.
    Values one{1};
    adapter.setParameter(1, 100, one);
    EXPECT_TRUE(reported(100));
    adapter.setProfileEndpointParameter(1, SPEAKER, 100, one);
    EXPECT_TRUE(reported(100));
    adapter.setParameter(1, 117, one);
    adapter.setProfileEndpointParameter(1, SPEAKER, 117, one);
    EXPECT_TRUE(logs.linesWithTag("ParameterAdapter").empty());
    EXPECT_EQ(snapshot(context, VOLUME_LEVELER_ENABLE), before);
}

}  // namespace
}  // namespace korvi::test
