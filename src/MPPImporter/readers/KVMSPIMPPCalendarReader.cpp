#include "MPPImporter/readers/KVMSPIMPPCalendarReader.h"

#include "MPPCommon/storage/SSLStorage.h"
#include "MPPCommon/storage/SSLStream.h"
#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVException.h"
#include "MPPImporter/file/KVMPPVarDataReader.h"
#include "MPPImporter/file/KVMSPIMPPPropertyList.h"
#include "MPPImporter/file/KVMSPIPropsReader.h"
#include "MPPImporter/format/MPPCalendarPropertyKeys.h"
#include "MPPImporter/format/MPPVersionTables.h"
#include "MPPImporter/readers/KVMSPIMPPAbsProjectReader.h"
#include "MPPImporter/readers/MPPDefaultCalendarWeek.h"
#include "MPPImporter/readers/MPPObjectFieldReads.h"

namespace {

constexpr int32_t kNone = -1;
// The calendar that the file's own first base calendar has; it can't be based on itself.
constexpr int32_t kFirstCalendarUID = 1;
constexpr int16_t kDayFollowsBase = 1;
constexpr int16_t kDayHeldInRecord = 0;

} // namespace

KVMSPIMPPCalendarReader::KVMSPIMPPCalendarReader(std::unique_ptr<SSLStorage> directory, std::string name,
                                                 KVMSPIParentReader* parentReader)
    : KVMSPIMPPDataDirectoryReader(std::move(directory), std::move(name), parentReader),
      _layout(MPPCalendarDataBlock::Layout::forVersion(*mppVersionTables(MPPPropertyList().mppVersion()))),
      _defaultWeek(readDefaultWeek(parentReader)) {
    const auto calendarData = MPPObjectFieldReads(*this).place(MPPField::calendarData);
    _propCalendarData = calendarData ? static_cast<int32_t>(calendarData->position) : kNone;
    if (_propCalendarData >= 0) {
        readCalendarBlocks();
    }
}

KVMSPIMPPCalendarReader::~KVMSPIMPPCalendarReader() = default;

MPPDefaultCalendarWeek KVMSPIMPPCalendarReader::readDefaultWeek(KVMSPIParentReader* parentReader) const {
    const auto property = MPPPropertyList().propertyID(kCalendarDefaultWeekBlockKey);
    auto* project = dynamic_cast<KVMSPIMPPAbsProjectReader*>(parentReader);
    if (!property || project == nullptr || project->propsReader() == nullptr) {
        return {};
    }
    return {*project->propsReader(), static_cast<int32_t>(*property), _layout.weekDayWorkingTimesOffset};
}

void KVMSPIMPPCalendarReader::readCalendarBlocks() {
    KVMPPVarDataReader* reader = varDataReader();
    if (reader == nullptr) {
        return;
    }
    SSLStream& stream = reader->dataStream();
    const int64_t streamSize = int64_t{stream.position()} + stream.bytesAvailable();
    for (int32_t uid : uniqueIDs()) {
        if (!hasCalendarDataForUID(uid) || _blocks.contains(uid)) {
            continue;
        }
        std::optional<MPPCalendarDataBlock>& block = _blocks[uid];
        int32_t size = 0;
        int32_t streamOffset = 0;
        // A block that claims more bytes than the stream holds is corrupt: it is not allocated.
        if (!reader->getDataSize(size, uid, _propCalendarData) ||
            !reader->validateObjectUID(uid, _propCalendarData, 0, size, &streamOffset, nullptr) ||
            int64_t{streamOffset} + size > streamSize) {
            continue;
        }
        std::vector<uint8_t> bytes(static_cast<size_t>(size));
        if (reader->readDataByteArray(bytes.data(), size, uid, _propCalendarData, 0)) {
            block.emplace(std::move(bytes), _layout);
        } else {
            reader->processError();
        }
    }
}

const MPPCalendarDataBlock* KVMSPIMPPCalendarReader::block(int32_t uid) const {
    const auto found = _blocks.find(uid);
    if (found == _blocks.end() || !found->second) {
        return nullptr;
    }
    return &*found->second;
}

const MPPCalendarDataBlock* KVMSPIMPPCalendarReader::exceptionBlock(int32_t uid, TVError* error) const {
    const MPPCalendarDataBlock* found = _propCalendarData >= 0 ? block(uid) : nullptr;
    if (found == nullptr) {
        takeVarDataError(error);
    }
    return found;
}

void KVMSPIMPPCalendarReader::takeVarDataError(TVError* error) const {
    if (varDataReader() != nullptr && varDataReader()->error()) {
        setError(error, *varDataReader()->error());
    }
}

bool KVMSPIMPPCalendarReader::hasCalendarDataForUID(int32_t uid) {
    return _propCalendarData >= 0 && varDataReader() != nullptr &&
           varDataReader()->hasDataForObjectUID(uid, _propCalendarData);
}

bool KVMSPIMPPCalendarReader::calendarUID(int32_t uid, int32_t& value, TVError*) {
    value = uid;
    return true;
}

bool KVMSPIMPPCalendarReader::calendarBaseCalendarUID(int32_t uid, int32_t& value, TVError* error) {
    int32_t base = 0;
    if (!MPPObjectFieldReads(*this).read(MPPField::calendarBaseUID, uid, base, error)) {
        return false;
    }
    value = (base == 0 || (uid == kFirstCalendarUID && base == kFirstCalendarUID)) ? kNone : base;
    return true;
}

bool KVMSPIMPPCalendarReader::calendarIsBaseCalendar(int32_t uid, bool& value, TVError* error) {
    int32_t base = kNone;
    if (!calendarBaseCalendarUID(uid, base, error)) {
        return false;
    }
    value = base == kNone;
    return true;
}

bool KVMSPIMPPCalendarReader::calendarResourceUID(int32_t uid, int32_t& value, TVError* error) {
    if (!MPPPropertyList().propertyOffset(kCalendarResourceUIDKey)) {
        value = kNone;
        return false;
    }
    int32_t resource = 0;
    if (!MPPObjectFieldReads(*this).read(MPPField::calendarResourceUID, uid, resource, error)) {
        return false;
    }
    // Only derived calendars belong to a resource, and 0 is the unnamed resource 0 (the interchange
    // file names its calendar as that resource's). The files mark no resource with -1, but application
    // 15 writes 0 for the base calendars.
    bool isBaseCalendar = false;
    value = resource < 0 || !calendarIsBaseCalendar(uid, isBaseCalendar, error) || isBaseCalendar ? kNone
                                                                                                  : resource;
    return true;
}

bool KVMSPIMPPCalendarReader::calendarName(int32_t uid, std::string& value, TVError* error) {
    return MPPObjectFieldReads(*this).read(MPPField::calendarName, uid, value, error);
}

bool KVMSPIMPPCalendarReader::calendarExceptionsCount(int32_t uid, int32_t& value, TVError* error) {
    const MPPCalendarDataBlock* found = exceptionBlock(uid, error);
    if (found == nullptr) {
        return false;
    }
    value = found->exceptionsCount();
    return true;
}

bool KVMSPIMPPCalendarReader::calendarExceptionRecurrenceType(int32_t uid, int32_t index, int32_t& type,
                                                              int32_t& occurrenceCount,
                                                              std::optional<TVDate>& fromDate,
                                                              std::optional<TVDate>& toDate, TVError* error) {
    const MPPCalendarDataBlock* found = exceptionBlock(uid, error);
    const auto recurrence = found != nullptr ? found->exceptionRecurrence(index) : std::nullopt;
    if (!recurrence) {
        return false;
    }
    fromDate = recurrence->fromDate;
    toDate = recurrence->toDate;
    if (!recurrence->type || !recurrence->occurrenceCount) {
        return false;
    }
    type = *recurrence->type;
    occurrenceCount = *recurrence->occurrenceCount;
    return true;
}

bool KVMSPIMPPCalendarReader::calendarExceptionRecurrenceParameter(int32_t uid, int32_t index, int32_t type,
                                                                   std::vector<int32_t>& value,
                                                                   TVError* error) {
    const MPPCalendarDataBlock* found = exceptionBlock(uid, error);
    return found != nullptr && found->exceptionRecurrenceParameters(index, type, value);
}

bool KVMSPIMPPCalendarReader::calendarExceptionTimePeriodFromDate(int32_t uid, int32_t index, TVDate& value,
                                                                  TVError* error) {
    const MPPCalendarDataBlock* found = exceptionBlock(uid, error);
    const auto recurrence = found != nullptr ? found->exceptionRecurrence(index) : std::nullopt;
    if (!recurrence || !recurrence->fromDate) {
        return false;
    }
    value = *recurrence->fromDate;
    return true;
}

bool KVMSPIMPPCalendarReader::calendarExceptionTimePeriodToDate(int32_t uid, int32_t index, TVDate& value,
                                                                TVError* error) {
    const MPPCalendarDataBlock* found = exceptionBlock(uid, error);
    const auto recurrence = found != nullptr ? found->exceptionRecurrence(index) : std::nullopt;
    if (!recurrence || !recurrence->toDate) {
        return false;
    }
    value = *recurrence->toDate;
    return true;
}

bool KVMSPIMPPCalendarReader::calendarExceptionWorkingTimes(int32_t uid, int32_t index,
                                                            std::vector<MPPWorkingTimeRange>& value,
                                                            TVError* error) {
    const MPPCalendarDataBlock* found = exceptionBlock(uid, error);
    return found != nullptr && found->exceptionWorkingTimes(index, value);
}

int32_t KVMSPIMPPCalendarReader::dayIndexOfDayType(int32_t dayType) {
    tvAssert(dayType >= 1 && dayType <= MPPCalendarDataBlock::kDaysInWeek,
             stringWithFormat("Unexpected dayType: %d.", dayType));
    return dayType - 1;
}

std::optional<MPPCalendarRecord> KVMSPIMPPCalendarReader::readWeekDayDataByteArray(int32_t uid,
                                                                                   int32_t dayIndex) const {
    if (const MPPCalendarDataBlock* found = block(uid)) {
        return found->dayRecord(dayIndex);
    }
    return _defaultWeek.dayRecord(dayIndex);
}

bool KVMSPIMPPCalendarReader::calendarWeekDayDayWorking(int32_t uid, int32_t dayType, bool& value, TVError*) {
    if (_propCalendarData < 0) {
        return false;
    }
    // A chain of base calendars can't be longer than the calendars there are; a loop in a corrupt
    // file ends there.
    value = weekDayDayWorking(uid, dayIndexOfDayType(dayType), static_cast<int32_t>(uniqueIDs().size()));
    return true;
}

bool KVMSPIMPPCalendarReader::weekDayDayWorking(int32_t uid, int32_t dayIndex, int32_t depth) {
    const auto day = readWeekDayDataByteArray(uid, dayIndex);
    const auto status = day ? MPPCalendarDataBlock::dayStatus(*day) : std::nullopt;
    if (status && *status != kDayFollowsBase) {
        const auto working = MPPCalendarDataBlock::dayHasWorkingRanges(*day);
        if (working) {
            return *working;
        }
    }
    int32_t base = kNone;
    if (status == kDayFollowsBase && depth > 0 && calendarBaseCalendarUID(uid, base) && base >= 0) {
        return weekDayDayWorking(base, dayIndex, depth - 1);
    }
    return MPPDefaultCalendarWeek::isDefaultWorkingDay(dayIndex);
}

bool KVMSPIMPPCalendarReader::calendarWeekDayWorkingTimes(int32_t uid, int32_t dayType,
                                                          std::vector<MPPWorkingTimeRange>& value,
                                                          TVError* error) {
    if (_propCalendarData < 0) {
        return false;
    }
    const int32_t dayIndex = dayIndexOfDayType(dayType);
    const auto day = readWeekDayDataByteArray(uid, dayIndex);
    const auto status = day ? MPPCalendarDataBlock::dayStatus(*day) : std::nullopt;
    if (!status) {
        const auto& defaults = MPPDefaultCalendarWeek::defaultWorkingTimes(dayIndex);
        value.insert(value.end(), defaults.begin(), defaults.end());
        return true;
    }
    if (*status == kDayHeldInRecord) {
        return MPPCalendarDataBlock::dayWorkingTimes(*day, value);
    }
    bool isBaseCalendar = false;
    if (calendarIsBaseCalendar(uid, isBaseCalendar, error) && isBaseCalendar &&
        MPPDefaultCalendarWeek::isDefaultWorkingDay(dayIndex)) {
        const auto& defaults = MPPDefaultCalendarWeek::defaultWorkingTimes(dayIndex);
        value.insert(value.end(), defaults.begin(), defaults.end());
    }
    return true;
}

bool KVMSPIMPPCalendarReader::calendarWeekDayFollowsBase(int32_t uid, int32_t dayType, bool& value,
                                                         TVError* error) {
    bool isBaseCalendar = false;
    if (_propCalendarData < 0 || !calendarIsBaseCalendar(uid, isBaseCalendar, error)) {
        return false;
    }
    const MPPCalendarDataBlock* found = block(uid);
    const auto day = found != nullptr ? found->dayRecord(dayIndexOfDayType(dayType)) : std::nullopt;
    const auto status = day ? MPPCalendarDataBlock::dayStatus(*day) : std::nullopt;
    value = !isBaseCalendar && (found == nullptr || status == kDayFollowsBase);
    return true;
}

bool KVMSPIMPPCalendarReader::calendarWeekDayTimePeriodFromDate(int32_t, int32_t, TVDate&, TVError*) {
    return false;
}

bool KVMSPIMPPCalendarReader::calendarWeekDayTimePeriodToDate(int32_t, int32_t, TVDate&, TVError*) {
    return false;
}
