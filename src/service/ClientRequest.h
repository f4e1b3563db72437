// One client request of the "setp" kind, decoded from the bytes another process sent. The bytes
// are untrusted: every field is read only when the request is long enough to hold it.
//
// Layout: word 0 is the event word, written most significant byte first (three zero bytes, then
// the event number); the remaining words are 32-bit little-endian integers whose meaning depends
// on the event.
#pragma once

#include <stddef.h>
#include <stdint.h>

#include <vector>

namespace korvi {

class ClientRequest {
public:
    enum Event : int32_t {
        EVENT_ON_OFF = 0,
        EVENT_SET_PARAMETER = 1,
        EVENT_SET_PORT_PARAMETER = 2,
        EVENT_SAVE = 9,
        EVENT_SELECT_PROFILE = 10,
        EVENT_RESET_PROFILE = 12,
    };

    enum Status {
        OK,                 // an event with every header field present
        NO_EVENT_WORD,      // fewer than four bytes: not even an event word
        NOT_AN_EVENT,       // the event word is not three zero bytes and an event up to 12
        RESERVED,           // events 3-8 and 11: accepted words that ask for nothing
        HEADER_TOO_SHORT,   // the request ends inside the header its event needs
    };

    static ClientRequest decode(const void* data, size_t size);

    // Bytes the header of an event occupies; values (events 1 and 2) follow it.
    static size_t headerSize(int32_t event);

    Status status() const { return mStatus; }
    // The first four bytes read as a little-endian integer (0 for NO_EVENT_WORD).
    uint32_t eventWord() const { return mEventWord; }
    int32_t event() const { return mEvent; }
    size_t size() const { return mSize; }

    // Word 1 of events 0 (on flag), 1, 2, 10 and 12 (profile id).
    int32_t word1() const { return mWord1; }
    // The client parameter id of events 1 and 2.
    int32_t paramId() const { return mParamId; }
    // The port of event 2.
    int32_t port() const { return mPort; }
    // The whole 32-bit values after the header of events 1 and 2; a trailing partial word is
    // not a value.
    const std::vector<int>& values() const { return mValues; }

private:
    ClientRequest() = default;

    Status mStatus = NO_EVENT_WORD;
    uint32_t mEventWord = 0;
    int32_t mEvent = -1;
    size_t mSize = 0;
    int32_t mWord1 = 0;
    int32_t mParamId = 0;
    int32_t mPort = 0;
    std::vector<int> mValues;
};

}  // namespace korvi
