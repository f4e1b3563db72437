// Unrecoverable data errors (an unknown profile id, a missing endpoint record) end the process
// with exit status -1 after one error line under the caller's tag. Programming errors do not come
// here: they abort through LOG_ALWAYS_FATAL.
#pragma once

namespace korvi {

[[noreturn]] void fatalExit(const char* tag, const char* fmt, ...) __attribute__((format(printf, 2, 3)));

}  // namespace korvi
