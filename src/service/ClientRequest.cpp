#include "service/ClientRequest.h"

#include "service/ClientBytes.h"

namespace korvi {

size_t ClientRequest::headerSize(int32_t event) {
    switch (event) {
        case EVENT_ON_OFF:
        case EVENT_SELECT_PROFILE:
        case EVENT_RESET_PROFILE:
            return 8;
        case EVENT_SET_PARAMETER:
            return 16;  // word 3 is part of the header but carries nothing
        case EVENT_SET_PORT_PARAMETER:
            return 20;  // word 4 likewise
        default:
            return 4;
    }
}

ClientRequest ClientRequest::decode(const void* data, size_t size) {
    ClientRequest request;
    request.mSize = size;
    ClientBytes bytes(data, size);
    if (!bytes.has(0, 4)) return request;

    request.mEventWord = bytes.littleEndian(0);
    // The event number is the word's last byte; rotating the little-endian word left by eight
    // bits brings it to the bottom and the three leading bytes above it, so one comparison
    // rejects both a non-zero leading byte and an event past 12.
    uint32_t rotated = (request.mEventWord << 8) | (request.mEventWord >> 24);
    if (rotated > EVENT_RESET_PROFILE) {
        request.mStatus = NOT_AN_EVENT;
        return request;
    }
    request.mEvent = static_cast<int32_t>(rotated);

    size_t header = headerSize(request.mEvent);
    if (!bytes.has(0, header)) {
        request.mStatus = HEADER_TOO_SHORT;
        return request;
    }
    switch (request.mEvent) {
        case EVENT_ON_OFF:
        case EVENT_SELECT_PROFILE:
        case EVENT_RESET_PROFILE:
            request.mWord1 = bytes.signedWord(4);
            break;
        case EVENT_SET_PARAMETER:
            request.mWord1 = bytes.signedWord(4);
            request.mParamId = bytes.signedWord(8);
            request.mValues = bytes.wordsFrom(header);
            break;
        case EVENT_SET_PORT_PARAMETER:
            request.mWord1 = bytes.signedWord(4);
            request.mPort = bytes.signedWord(8);
            request.mParamId = bytes.signedWord(12);
            request.mValues = bytes.wordsFrom(header);
            break;
        case EVENT_SAVE:
            break;
        default:
            request.mStatus = RESERVED;
            return request;
    }
    request.mStatus = OK;
    return request;
}

}  // namespace korvi
