// Host stand-in for <cutils/properties.h>: the system-property calls the service makes, over
// libbase's in-process host properties. Debian's own header of this path needs bionic.
#pragma once

#include <stdint.h>

#define PROPERTY_KEY_MAX 32
#define PROPERTY_VALUE_MAX 92

#ifdef __cplusplus
extern "C" {
#endif

// Copies the property's value (or default_value when it is unset or empty) into value, at most
// PROPERTY_VALUE_MAX - 1 characters plus the terminator, and returns the length copied.
int property_get(const char* key, char* value, const char* default_value);

// Returns the property read as a decimal (or 0x-prefixed) 32-bit integer, or default_value when it
// is unset, empty, not a number or out of range.
int32_t property_get_int32(const char* key, int32_t default_value);

// Stores the property; returns 0 on success and -1 when the key or value is too long or null.
int property_set(const char* key, const char* value);

#ifdef __cplusplus
}
#endif
