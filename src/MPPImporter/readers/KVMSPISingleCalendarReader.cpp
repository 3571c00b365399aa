#include "MPPImporter/readers/KVMSPISingleCalendarReader.h"

#include "MPPImporter/readers/MPPCalendarDataBlock.h"
#include "MPPImporter/readers/MPPDefaultCalendarWeek.h"

KVMSPISingleCalendarReader::KVMSPISingleCalendarReader(ForFilter, int32_t uid,
                                                       KVMSPIMPPCalendarReader& reader)
    : KVMSPISingleObjectReaderBase(uid, reader), m_reader(reader) {}

std::unique_ptr<KVMSPISingleCalendarReader>
KVMSPISingleCalendarReader::forFilter(int32_t uid, KVMSPIMPPCalendarReader& reader) {
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
    return MPPDefaultCalendarWeek::hasDefaultWorkingHours() && calendarBaseCalendarUID(base) &&
           (base == -1 || base == uid());
}
