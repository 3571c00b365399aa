#include "MPPCommon/date/TVTimeZone.h"

#include "MPPCommon/support/Log.h"

#include <cmath>
#include <cstdlib>
#include <ctime>
#include <string>
#include <unicode/simpletz.h>
#include <unicode/timezone.h>

namespace {

std::shared_ptr<const icu::TimeZone>& cachedSystemZone() {
    static std::shared_ptr<const icu::TimeZone> zone;
    return zone;
}

} // namespace

TVTimeZone TVTimeZone::systemTimeZone() {
    auto& zone = cachedSystemZone();
    if (!zone) {
        zone.reset(icu::TimeZone::createDefault());
    }
    return TVTimeZone(zone);
}

void TVTimeZone::resetSystemTimeZone() {
    tzset();
    icu::TimeZone::adoptDefault(icu::TimeZone::detectHostTimeZone());
    cachedSystemZone().reset();
}

std::optional<TVTimeZone> TVTimeZone::forSecondsFromGMT(int64_t seconds) {
    if (seconds < -kMaxSecondsFromGMT || seconds > kMaxSecondsFromGMT) {
        return std::nullopt;
    }
    const int64_t minutes = std::abs(seconds) / 60;
    const std::string id =
        seconds == 0 ? std::string("GMT")
                     : stringWithFormat("GMT%c%02d%02d", seconds < 0 ? '-' : '+',
                                        static_cast<int>(minutes / 60), static_cast<int>(minutes % 60));
    return TVTimeZone(std::make_shared<icu::SimpleTimeZone>(static_cast<int32_t>(seconds * 1000),
                                                            icu::UnicodeString::fromUTF8(id)));
}

TVTimeZone TVTimeZone::gmt() {
    return TVTimeZone(std::shared_ptr<const icu::TimeZone>(icu::TimeZone::getGMT()->clone()));
}

std::optional<TVTimeZone> TVTimeZone::withName(const std::string& name) {
    std::shared_ptr<const icu::TimeZone> zone(
        icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8(name)));
    if (*zone == icu::TimeZone::getUnknown()) {
        return std::nullopt;
    }
    return TVTimeZone(std::move(zone));
}

std::string TVTimeZone::name() const {
    icu::UnicodeString id;
    std::string text;
    m_zone->getID(id).toUTF8String(text);
    return text;
}

TVTimeZone::Offsets TVTimeZone::offsetsAt(TVDate date) const {
    Offsets offsets{m_zone->getRawOffset(), 0};
    if (std::isfinite(date.seconds)) {
        UErrorCode status = U_ZERO_ERROR;
        m_zone->getOffset(date.seconds * 1000.0, false, offsets.raw, offsets.daylight, status);
        if (U_FAILURE(status)) {
            offsets = Offsets{m_zone->getRawOffset(), 0};
        }
    }
    return offsets;
}

int32_t TVTimeZone::secondsFromGMT(TVDate date) const {
    const Offsets offsets = offsetsAt(date);
    return (offsets.raw + offsets.daylight) / 1000;
}

bool TVTimeZone::isDaylightSavingTime(TVDate date) const {
    return offsetsAt(date).daylight != 0;
}

int32_t TVTimeZone::daylightSavingTimeOffset(TVDate date) const {
    return offsetsAt(date).daylight / 1000;
}
