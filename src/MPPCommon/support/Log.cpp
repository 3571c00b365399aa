#include "MPPCommon/support/Log.h"

#include <cerrno>
#include <chrono>
#include <cstdarg>
#include <cstdio>
#include <ctime>
#include <unistd.h>

namespace {

TVLogSink& logSink() {
    static TVLogSink sink;
    return sink;
}

std::string timeStamp() {
    using namespace std::chrono;
    auto now = system_clock::now();
    std::time_t seconds = system_clock::to_time_t(now);
    auto millis = duration_cast<milliseconds>(now.time_since_epoch()).count() % 1000;
    std::tm local{};
    localtime_r(&seconds, &local);
    char buffer[40];
    std::strftime(buffer, sizeof buffer, "%Y-%m-%d %H:%M:%S", &local);
    return stringWithFormat("%s.%03lld", buffer, static_cast<long long>(millis));
}

} // namespace

void tvSetLogSink(TVLogSink sink) { logSink() = std::move(sink); }

void tvLog(const std::string& line) {
    if (logSink()) {
        logSink()(line);
        return;
    }
    std::string text = stringWithFormat("%s %s[%d] ", timeStamp().c_str(), program_invocation_short_name,
                                        static_cast<int>(getpid())) +
                       line + "\n";
    std::fwrite(text.data(), 1, text.size(), stderr);
}

std::string stringWithFormat(const char* format, ...) {
    va_list args;
    va_start(args, format);
    va_list copy;
    va_copy(copy, args);
    int length = std::vsnprintf(nullptr, 0, format, copy);
    va_end(copy);
    std::string result;
    if (length > 0) {
        result.resize(static_cast<size_t>(length));
        std::vsnprintf(result.data(), result.size() + 1, format, args);
    }
    va_end(args);
    return result;
}
