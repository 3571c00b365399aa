#include "MPPImporter/readers/KVMSPISingleCalendarReader.h"

#include "MPPCommon/support/PosixRegex.h"
#include "MPPImporter/format/MPPCalendarDataBlock.h"
#include "MPPImporter/query/frame/KVMSPIXQAdapter.h"
#include "MPPImporter/query/frame/KVMSPIXQAdapterFactory.h"

KVMSPISingleCalendarReader::KVMSPISingleCalendarReader(ForFilter, int32_t uid,
                                                       KVMSPIMPPCalendarReader& reader)
    : KVMSPISingleObjectReaderBase(uid, reader), m_reader(reader) {}

std::unique_ptr<KVMSPISingleCalendarReader>
KVMSPISingleCalendarReader::initForFilterWithCalendarUID(int32_t uid, KVMSPIMPPCalendarReader& reader) {
    return std::unique_ptr<KVMSPISingleCalendarReader>(
        new KVMSPISingleCalendarReader(ForFilter{}, uid, reader));
}

KVMSPISingleCalendarReader::KVMSPISingleCalendarReader(int32_t uid, KVMSPIMPPCalendarReader& reader)
    : KVMSPISingleCalendarReader(ForFilter{}, uid, reader) {
    calendarIsBaseCalendar(_isBaseCalendar);
    _hasCalendarData = m_reader.hasCalendarDataForUID(uid);
    if (_hasCalendarData) {
        int32_t count = 0;
        calendarExceptionsCount(count);
        for (int32_t index = 0; index < count; ++index) {
            _exceptionReaders.push_back(std::make_unique<KVMSPISingleExceptionReader>(index, *this));
        }
    } else if (!showsDefaultWeek()) {
        return;
    }
    for (int32_t dayType = 1; dayType <= MPPCalendarDataBlock::kDaysInWeek; ++dayType) {
        _weekDayReaders.push_back(std::make_unique<KVMSPISingleWeekDayReader>(dayType, *this));
    }
}

bool KVMSPISingleCalendarReader::showsDefaultWeek() const {
    int32_t base = 0;
    return m_reader.defaultWeek().hasDefaultWorkingHours() && calendarBaseCalendarUID(base) &&
           (base == -1 || base == uid());
}

KVMSPIXQPredicate KVMSPISingleCalendarReader::predicateWithString(const std::optional<std::string>& text) {
    if (!text) {
        return {};
    }
    static const PosixRegex name("Name=\"([[:alnum:] ]*)\"", 2);
    static const PosixRegex resourceUID("ResourceUID=([[:digit:]]+)", 2);
    if (const std::optional<std::vector<std::string>> groups = predicateGroups(name, 1, *text)) {
        return [expected = groups->front()](KVMSPIXQuery& object) {
            std::string value;
            return predicateObject<KVMSPISingleCalendarReader>(object).calendarName(value) &&
                   value == expected;
        };
    }
    if (const std::optional<std::vector<std::string>> groups = predicateGroups(resourceUID, 1, *text)) {
        const int32_t expected = predicateIntValue(groups->front());
        return [expected](KVMSPIXQuery& object) {
            int32_t value = -1;
            return predicateObject<KVMSPISingleCalendarReader>(object).calendarResourceUID(value) &&
                   value == expected;
        };
    }
    return KVMSPISingleObjectReaderBase::predicateWithString(text);
}

std::unique_ptr<KVMSPIXQAdapter> KVMSPISingleCalendarReader::newXQAdapter() {
    return KVMSPIXQAdapterFactory::installed().newAdapter(*this);
}
