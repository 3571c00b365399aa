#pragma once

#include "MPPCommon/support/TVDate.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

// The integer at the start of a text: leading white space, an optional sign and digits, held to
// the range of 32 bits; 0 when there is none.
int32_t intValue(std::string_view text);

// The text without any "\n".
std::string stringByReplacingOccurrencesOfNewline(const std::string& text);

// Bytes as text: format 0 one character per byte (Latin-1), 1 decimal numbers, 2 hexadecimal pairs
// with a blank before every fourth byte after the first. Any other format gives an empty text.
std::string initWithBytes(const uint8_t* bytes, size_t length, int format);

// A count of tenths of a minute as "h:mm:ss".
std::string initWithDuration(int64_t tenthsOfMinute);
// A time span as "h:mm:ss".
std::string initWithTimeSpan(TVTimeSpan span);
// A count of seconds as "hh:mm:ss" for logs; the fraction is dropped and hours may run past 99.
std::string hourMinSecFromDuration(double seconds);
// A time span as an MSPDI duration "PThhHmmMssS"; a negative span gives "PT0H00M00S".
std::string initWithDurationTimeSpan(TVTimeSpan span);
