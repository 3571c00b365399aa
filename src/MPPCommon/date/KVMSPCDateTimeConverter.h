#pragma once

#include "MPPCommon/support/TVDate.h"

#include <optional>
#include <string>

// Formatter-based conversions between the three date forms: MSPDI text (wall clock, no zone),
// TVNX text (with a zone) and MPP dates (instants). Texts are trimmed of white space and line ends
// first; zone-less texts are read and written in the system zone.
class KVMSPCDateTimeConverter {
public:
    static std::optional<TVDate> mppFromMspdiDateTime(const std::string& text);
    static std::optional<TVDate> mppFromMspdiDateOnly(const std::string& text);
    static std::optional<TVDate> mppFromTvnxDateTime(const std::string& text);
    static std::optional<TVDate> mppFromTvnxDateOnly(const std::string& text);

    static std::string mspdiFromMppDateTime(TVDate date);
    static std::string mspdiFromMppDateOnly(TVDate date);
    static std::optional<std::string> mspdiFromTvnxDateTime(const std::string& text);
    static std::optional<std::string> mspdiFromTvnxDateOnly(const std::string& text);

    // With forceUTC the text is in GMT and ends in "Z"; otherwise in the system zone, with the
    // offset written "+hh:mm:ss".
    static std::string tvnxFromMppDateTime(TVDate date, bool forceUTC = false);
    static std::string tvnxFromMppDateOnly(TVDate date, bool forceUTC = false);
    static std::optional<std::string> tvnxFromMspdiDateTime(const std::string& text, bool forceUTC = false);
    static std::optional<std::string> tvnxFromMspdiDateOnly(const std::string& text, bool forceUTC = false);

    // Rewrites the numeric zone at the end of a formatted date into the bundle's form.
    static std::string ensureISOTimeZoneFormat(const std::string& text, bool forceUTC);
};
