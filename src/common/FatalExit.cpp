#include "common/FatalExit.h"

#include <android/log.h>

#include <cstdarg>
#include <cstdlib>

namespace korvi {

void fatalExit(const char* tag, const char* fmt, ...) {
    va_list args;
    va_start(args, fmt);
    __android_log_vprint(ANDROID_LOG_ERROR, tag, fmt, args);
    va_end(args);
    exit(-1);
}

}  // namespace korvi
