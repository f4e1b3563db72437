// Decoding of client requests and queries from untrusted bytes. Every input sits in a heap
// buffer of exactly its own size, so a read past its end is caught by AddressSanitizer.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "service/ClientBytes.h"
#include "service/ClientQuery.h"
#include "service/ClientRequest.h"

namespace korvi {
namespace {

// Bytes in a heap block of exactly their size (one byte block for an empty input, not exposed).
struct ExactBytes {
    explicit ExactBytes(const std::vector<uint8_t>& bytes)
        : size(bytes.size()), data(new uint8_t[bytes.empty() ? 1 : bytes.size()]) {
        if (!bytes.empty()) memcpy(data.get(), bytes.data(), bytes.size());
    }
    size_t size;
    std::unique_ptr<uint8_t[]> data;
};

std::vector<uint8_t> le(std::initializer_list<int32_t> words) {
    std::vector<uint8_t> bytes;
    for (int32_t w : words) {
        uint32_t u = static_cast<uint32_t>(w);
        for (int i = 0; i < 4; ++i) bytes.push_back(static_cast<uint8_t>(u >> (8 * i)));
    }
    return bytes;
}

std::vector<uint8_t> event(uint8_t number, std::initializer_list<int32_t> words,
                           std::vector<uint8_t> tail = {}) {
    std::vector<uint8_t> bytes = {0, 0, 0, number};
    std::vector<uint8_t> rest = le(words);
    bytes.insert(bytes.end(), rest.begin(), rest.end());
    bytes.insert(bytes.end(), tail.begin(), tail.end());
    return bytes;
}

TEST(ClientRequestTest, DecodesEveryEventAndRejectsWhatIsNotOne) {
    struct Case {
        std::string name;
        std::vector<uint8_t> bytes;
        ClientRequest::Status status;
        uint32_t eventWord;
        int32_t event, word1, paramId, port;
        std::vector<int> values;
    };
    const std::vector<Case> cases = {
        {"empty", {}, ClientRequest::NO_EVENT_WORD, 0, -1, 0, 0, 0, {}},
        {"three bytes", {0, 0, 0}, ClientRequest::NO_EVENT_WORD, 0, -1, 0, 0, 0, {}},
        {"on", event(0, {1}), ClientRequest::OK, 0, 0, 1, 0, 0, {}},
        {"on without flag", event(0, {}), ClientRequest::HEADER_TOO_SHORT, 0, 0, 0, 0, 0, {}},
        {"event written backwards", {1, 0, 0, 0, 1, 0, 0, 0}, ClientRequest::NOT_AN_EVENT, 1, -1,
         0, 0, 0, {}},
        {"leading byte set", {0, 0, 1, 1}, ClientRequest::NOT_AN_EVENT, 0x01010000, -1, 0, 0, 0,
         {}},
        {"event 13", event(13, {0}), ClientRequest::NOT_AN_EVENT, 0x0d000000, -1, 0, 0, 0, {}},
        {"reserved 3", event(3, {}), ClientRequest::RESERVED, 0x03000000, 3, 0, 0, 0, {}},
        {"reserved 11", event(11, {5}), ClientRequest::RESERVED, 0x0b000000, 11, 0, 0, 0, {}},
        {"save", event(9, {}), ClientRequest::OK, 0x09000000, 9, 0, 0, 0, {}},
        {"select", event(10, {-3}), ClientRequest::OK, 0x0a000000, 10, -3, 0, 0, {}},
        {"reset", event(12, {2}), ClientRequest::OK, 0x0c000000, 12, 2, 0, 0, {}},
        {"reset short", event(12, {}, {2, 0, 0}), ClientRequest::HEADER_TOO_SHORT, 0x0c000000,
         12, 0, 0, 0, {}},
        {"set, values and a partial word", event(1, {2, 113, 77, -5, 0x01020304}, {9, 9, 9}),
         ClientRequest::OK, 0x01000000, 1, 2, 113, 0, {-5, 0x01020304}},
        {"set, header only", event(1, {2, 113, 77}), ClientRequest::OK, 0x01000000, 1, 2, 113, 0,
         {}},
        {"set, header only and three bytes", event(1, {2, 113, 77}, {1, 2, 3}), ClientRequest::OK,
         0x01000000, 1, 2, 113, 0, {}},
        {"set, header cut", event(1, {2, 113}, {0, 0, 0}), ClientRequest::HEADER_TOO_SHORT,
         0x01000000, 1, 0, 0, 0, {}},
        {"port set", event(2, {1, 3, 103, 0, 1}), ClientRequest::OK, 0x02000000, 2, 1, 103, 3,
         {1}},
        {"port set, header cut", event(2, {1, 3, 103}, {0, 0, 0}),
         ClientRequest::HEADER_TOO_SHORT, 0x02000000, 2, 0, 0, 0, {}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        ExactBytes bytes(c.bytes);
        ClientRequest request = ClientRequest::decode(bytes.data.get(), bytes.size);
        EXPECT_EQ(c.status, request.status());
        EXPECT_EQ(c.eventWord, request.eventWord());
        EXPECT_EQ(c.event, request.event());
        EXPECT_EQ(c.word1, request.word1());
        EXPECT_EQ(c.paramId, request.paramId());
        EXPECT_EQ(c.port, request.port());
        EXPECT_EQ(c.values, request.values());
    }
    EXPECT_EQ(ClientRequest::NO_EVENT_WORD, ClientRequest::decode(nullptr, 16).status());
}

TEST(ClientQueryTest, DecodesQueriesAndTheirFieldsOnlyFromBytesThatExist) {
    struct Case {
        std::string name;
        std::vector<uint8_t> bytes;
        ClientQuery::Status status;
        uint32_t query;
        int32_t paramId, profileId, port;
    };
    auto query = [](uint8_t number, std::vector<uint8_t> rest) {
        std::vector<uint8_t> bytes = {0, 0, 0, number};
        bytes.insert(bytes.end(), rest.begin(), rest.end());
        return bytes;
    };
    auto words = [](std::initializer_list<int32_t> w) { return le(w); };
    std::vector<uint8_t> portByte = words({110});
    portByte.push_back(0x35);
    const std::vector<Case> cases = {
        {"three bytes", {0, 0, 0}, ClientQuery::INPUT_TOO_SHORT, 0, 0, 0, 0},
        {"on/off", query(0, {}), ClientQuery::OK, 0, 0, 0, 0},
        {"parameter", query(1, words({103, 2})), ClientQuery::OK, 1, 103, 2, 0},
        {"parameter without profile", query(1, words({103})), ClientQuery::INPUT_TOO_SHORT, 1, 0,
         0, 0},
        {"port parameter", query(2, portByte), ClientQuery::OK, 2, 110, 3, 5},
        {"port parameter without byte 8", query(2, words({110})), ClientQuery::INPUT_TOO_SHORT, 2,
         0, 0, 0},
        {"profile count, extra bytes", query(3, words({7})), ClientQuery::OK, 3, 0, 0, 0},
        {"modified", query(11, words({-1})), ClientQuery::OK, 11, 0, -1, 0},
        {"modified without profile", query(11, {1, 0, 0}), ClientQuery::INPUT_TOO_SHORT, 11, 0, 0,
         0},
        {"mono", query(13, {}), ClientQuery::OK, 13, 0, 0, 0},
        {"query 14", query(14, {}), ClientQuery::UNKNOWN, 14, 0, 0, 0},
        {"written backwards", {1, 0, 0, 0}, ClientQuery::UNKNOWN, 0x01000000, 0, 0, 0},
        {"second byte set", {0, 1, 0, 0}, ClientQuery::UNKNOWN, 0x00010000, 0, 0, 0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        ExactBytes bytes(c.bytes);
        ClientQuery decoded = ClientQuery::decode(bytes.data.get(), bytes.size);
        EXPECT_EQ(c.status, decoded.status());
        EXPECT_EQ(c.query, decoded.query());
        EXPECT_EQ(c.paramId, decoded.paramId());
        EXPECT_EQ(c.profileId, decoded.profileId());
        EXPECT_EQ(c.port, decoded.port());
    }
}

TEST(ClientBytesTest, ReadsOnlyWholeFieldsInsideTheBytes) {
    ExactBytes bytes({0x11, 0x22, 0x33, 0x44, 0x55, 0x66});
    ClientBytes view(bytes.data.get(), bytes.size);
    EXPECT_TRUE(view.has(2, 4));
    EXPECT_FALSE(view.has(3, 4));
    EXPECT_FALSE(view.has(7, 0));
    EXPECT_FALSE(view.has(1, SIZE_MAX));  // no wrap-around of offset + length
    EXPECT_EQ(0x66554433u, view.littleEndian(2));
    EXPECT_EQ(0x33445566u, view.bigEndian(2));
    EXPECT_EQ(0u, view.littleEndian(3));
    EXPECT_EQ(0u, view.bigEndian(3));
    EXPECT_EQ(0x66, view.byte(5));
    EXPECT_EQ(0, view.byte(6));
    EXPECT_EQ((std::vector<int>{0x55443322}), view.wordsFrom(1));
    EXPECT_TRUE(view.wordsFrom(3).empty());
    EXPECT_TRUE(view.wordsFrom(9).empty());
    EXPECT_EQ(0u, ClientBytes(nullptr, 8).size());
}

TEST(ClientQueryTest, AnswersAreWrittenOnlyWhenTheyFitTheClientsBuffer) {
    const std::vector<int> values = {-576, 1, 576};
    for (size_t outSize : {0u, 4u, 11u, 12u}) {
        SCOPED_TRACE(outSize);
        ExactBytes out(std::vector<uint8_t>(outSize, 0xee));
        bool fits = outSize >= 12;
        EXPECT_EQ(fits, ClientQuery::writeValues(values, out.data.get(), outSize));
        std::vector<uint8_t> written(out.data.get(), out.data.get() + outSize);
        std::vector<uint8_t> expected(outSize, 0xee);
        if (fits) expected = le({-576, 1, 576});
        EXPECT_EQ(expected, written);

        EXPECT_EQ(outSize >= 4, ClientQuery::writeValue(-2, out.data.get(), outSize));
        if (outSize >= 4) {
            EXPECT_EQ(le({-2}), std::vector<uint8_t>(out.data.get(), out.data.get() + 4));
        }
    }
    EXPECT_TRUE(ClientQuery::writeValues({}, ExactBytes({}).data.get(), 0));
    EXPECT_FALSE(ClientQuery::writeValues(values, nullptr, 64));
    EXPECT_FALSE(ClientQuery::writeValue(1, nullptr, 64));
}

}  // namespace
}  // namespace korvi
