#pragma once

#include "MPPCommon/support/TVDate.h"

#include <memory>
#include <optional>
#include <string>
#include <unicode/uversion.h>

U_NAMESPACE_BEGIN
class TimeZone;
U_NAMESPACE_END

// A time zone of the zone database: its offset from GMT and its daylight-saving state at an instant.
// Copies share one immutable zone.
class TVTimeZone {
public:
    // The platform's zone (the TZ variable honoured), read once and kept until
    // resetSystemTimeZone().
    static TVTimeZone systemTimeZone();
    // Reads the platform's zone again, e.g. after TZ was changed with setenv.
    static void resetSystemTimeZone();

    // A fixed zone; none beyond the widest offset the database allows.
    static std::optional<TVTimeZone> forSecondsFromGMT(int64_t seconds);
    static constexpr int64_t kMaxSecondsFromGMT = 18 * 3600;
    static TVTimeZone gmt();
    // A zone of the database by its identifier, or none when the database doesn't know it.
    static std::optional<TVTimeZone> withName(const std::string& name);

    std::string name() const;
    int32_t secondsFromGMT(TVDate date) const;
    bool isDaylightSavingTime(TVDate date) const;
    int32_t daylightSavingTimeOffset(TVDate date) const;

    const icu::TimeZone& icuZone() const { return *m_zone; }

private:
    explicit TVTimeZone(std::shared_ptr<const icu::TimeZone> zone) : m_zone(std::move(zone)) {}
    struct Offsets {
        int32_t raw = 0;
        int32_t daylight = 0;
    };
    Offsets offsetsAt(TVDate date) const;

    std::shared_ptr<const icu::TimeZone> m_zone;
};
