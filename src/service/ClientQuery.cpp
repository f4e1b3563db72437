#include "service/ClientQuery.h"

#include <string.h>

#include "service/ClientBytes.h"

namespace korvi {

size_t ClientQuery::inputSize(uint32_t query) {
    switch (query) {
        case QUERY_PARAMETER:
            return 12;
        case QUERY_PORT_PARAMETER:
            return 9;
        case QUERY_PROFILE_MODIFIED:
            return 8;
        default:
            return 4;
    }
}

ClientQuery ClientQuery::decode(const void* in, size_t inSize) {
    ClientQuery query;
    ClientBytes bytes(in, inSize);
    if (!bytes.has(0, 4)) return query;
    query.mQuery = bytes.bigEndian(0);
    if (query.mQuery > kLastQuery) {
        query.mStatus = UNKNOWN;
        return query;
    }
    if (!bytes.has(0, inputSize(query.mQuery))) return query;
    switch (query.mQuery) {
        case QUERY_PARAMETER:
            query.mParamId = bytes.signedWord(4);
            query.mProfileId = bytes.signedWord(8);
            break;
        case QUERY_PORT_PARAMETER:
            query.mParamId = bytes.signedWord(4);
            query.mProfileId = bytes.byte(8) >> 4;
            query.mPort = bytes.byte(8) & 0x0f;
            break;
        case QUERY_PROFILE_MODIFIED:
            query.mProfileId = bytes.signedWord(4);
            break;
        default:
            break;
    }
    query.mStatus = OK;
    return query;
}

bool ClientQuery::writeValues(const std::vector<int>& values, void* out, size_t outSize) {
    size_t length = values.size() * sizeof(int32_t);
    if (out == nullptr || length > outSize) return false;
    if (length > 0) memcpy(out, values.data(), length);
    return true;
}

bool ClientQuery::writeValue(int32_t value, void* out, size_t outSize) {
    if (out == nullptr || outSize < sizeof(int32_t)) return false;
    memcpy(out, &value, sizeof(value));
    return true;
}

}  // namespace korvi
