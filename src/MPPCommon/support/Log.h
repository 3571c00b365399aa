#pragma once

#include <functional>
#include <string>

// The platform log: one plain line per call on standard error, with a time stamp, the process name
// and the process id in front. Lines carry no level and never change a result.
void tvLog(const std::string& line);

// printf-style formatting into a std::string; texts of the form "%@" are written "%s" here.
std::string stringWithFormat(const char* format, ...) __attribute__((format(printf, 1, 2)));

// Tests capture the log by installing a sink; an empty function restores standard error.
using TVLogSink = std::function<void(const std::string& line)>;
void tvSetLogSink(TVLogSink sink);
