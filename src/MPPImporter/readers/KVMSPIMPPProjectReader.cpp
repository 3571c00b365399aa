#include "MPPImporter/readers/KVMSPIMPPProjectReader.h"

#include "MPPCommon/storage/SSLStorage.h"
#include "MPPCommon/storage/SSLStream.h"
#include "MPPImporter/file/KVMPPVarDataReader.h"
#include "MPPImporter/file/KVMSPIMPPPropertyList.h"
#include "MPPImporter/file/KVMSPIPropsReader.h"
#include "MPPImporter/format/MPPFormatConstants.h"
#include "MPPImporter/query/frame/KVMSPIXQAdapter.h"
#include "MPPImporter/query/frame/KVMSPIXQAdapterFactory.h"
#include "MPPImporter/readers/KVMSPIMPPAssignmentReader.h"
#include "MPPImporter/readers/KVMSPIMPPCalendarReader.h"
#include "MPPImporter/readers/KVMSPIMPPConstraintReader.h"
#include "MPPImporter/readers/KVMSPIMPPOutlCodeReader.h"
#include "MPPImporter/readers/KVMSPIMPPResourceReader.h"
#include "MPPImporter/readers/KVMSPIMPPTaskReader.h"
#include "MPPImporter/readers/MPPPropsFieldReads.h"

#include <utility>

namespace {

constexpr const char* kProjectPropsStreamName = "Props";

// The high byte of a custom field's first word that marks a reference to an
// outline code, whose UID follows at offset 2.
constexpr int32_t kOutlineCodeMarkMask = 0xFF00;
constexpr int32_t kOutlineCodeMark = 0x0700;
constexpr int32_t kOutlineCodeUIDOffset = 2;
constexpr TVTimeSpan kMicrosecondsPerTenthOfMinute = 6000000;

// The reader of the storage `name` under `directory`, if the directory holds
// it.
template <typename Reader>
std::unique_ptr<Reader> openStorageReader(SSLStorage& directory, const char* name,
                                          KVMSPIParentReader* parent) {
    std::unique_ptr<SSLStorage> storage = directory.childStorageWithName(name);
    if (!storage || directory.lastError() != 0) {
        return nullptr;
    }
    return std::make_unique<Reader>(std::move(storage), name, parent);
}

} // namespace

KVMSPIMPPProjectReader::KVMSPIMPPProjectReader(std::unique_ptr<SSLStorage> directory, std::string name,
                                               KVMSPIParentReader* parentReader)
    : KVMSPOLE2DirectoryReader(std::move(directory), std::move(name), parentReader) {
    SSLStorage& storage = this->directory();
    std::unique_ptr<SSLStream> props = storage.childStreamWithName(kProjectPropsStreamName);
    if (props && storage.lastError() == 0) {
        m_propsReader = std::make_unique<KVMSPIPropsReader>(std::move(props));
    }
    // In this order: the task reader reads custom field values through the outline code reader.
    m_assignmentReader = openStorageReader<KVMSPIMPPAssignmentReader>(storage, kAssignmentStorageName, this);
    m_calendarReader = openStorageReader<KVMSPIMPPCalendarReader>(storage, kCalendarStorageName, this);
    m_constraintReader = openStorageReader<KVMSPIMPPConstraintReader>(storage, kConstraintStorageName, this);
    m_outlCodeReader = openStorageReader<KVMSPIMPPOutlCodeReader>(storage, kOutlCodeStorageName, this);
    m_resourceReader = openStorageReader<KVMSPIMPPResourceReader>(storage, kResourceStorageName, this);
    m_taskReader = openStorageReader<KVMSPIMPPTaskReader>(storage, kTaskStorageName, this);
}

KVMSPIMPPProjectReader::~KVMSPIMPPProjectReader() = default;

std::unique_ptr<KVMSPIXQAdapter> KVMSPIMPPProjectReader::newXQAdapter() {
    return KVMSPIXQAdapterFactory::installed().newAdapter(*this);
}

KVMSPIMPPReader::ProjectReaderFactory KVMSPIMPPProjectReader::projectReaderFactory() {
    return [](std::unique_ptr<SSLStorage> directory, const std::string& name, KVMSPIMPPReader& parent) {
        return std::make_unique<KVMSPIMPPProjectReader>(std::move(directory), name, &parent);
    };
}

void KVMSPIMPPProjectReader::setBaselineNumber(int32_t baselineNumber) {
    m_baselineNumber = baselineNumber;
    // Calendars, links and outline codes have no baselines.
    if (m_assignmentReader) {
        m_assignmentReader->setBaselineNumber(baselineNumber);
    }
    if (m_resourceReader) {
        m_resourceReader->setBaselineNumber(baselineNumber);
    }
    if (m_taskReader) {
        m_taskReader->setBaselineNumber(baselineNumber);
    }
}

KVMSPIMPPReader* KVMSPIMPPProjectReader::fileReader() const {
    return dynamic_cast<KVMSPIMPPReader*>(parentReader());
}

KVMSPIPropsReader* KVMSPIMPPProjectReader::docPropsReader() const {
    KVMSPIMPPReader* reader = fileReader();
    return reader != nullptr ? reader->docPropsReader() : nullptr;
}

KVMSPIPropsReader* KVMSPIMPPProjectReader::summaryInfoReader() const {
    KVMSPIMPPReader* reader = fileReader();
    return reader != nullptr ? reader->summaryInfoReader() : nullptr;
}

KVMSPIPropsReader* KVMSPIMPPProjectReader::docSummaryInfoReader() const {
    KVMSPIMPPReader* reader = fileReader();
    return reader != nullptr ? reader->docSummaryInfoReader() : nullptr;
}

void KVMSPIMPPProjectReader::takePropsError(TVError* error) const {
    if (m_propsReader && m_propsReader->error()) {
        setError(error, *m_propsReader->error());
    }
}

template <typename Value>
bool KVMSPIMPPProjectReader::readField(MPPField field, Value& value, TVError* error) {
    return MPPPropsFieldReads(m_propsReader.get(), MPPPropertyList(), appVersion()).read(field, value, error);
}

bool KVMSPIMPPProjectReader::propCurrencyCode(std::string& value, TVError* error) {
    return readField(MPPField::projectCurrencyCode, value, error);
}

bool KVMSPIMPPProjectReader::propCurrencyDigits(int16_t& value, TVError* error) {
    return readField(MPPField::projectCurrencyDigits, value, error);
}

bool KVMSPIMPPProjectReader::propCurrencySymbolPosition(int16_t& value, TVError* error) {
    return readField(MPPField::projectCurrencySymbolPosition, value, error);
}

bool KVMSPIMPPProjectReader::propCurrencySymbol(std::string& value, TVError* error) {
    return readField(MPPField::projectCurrencySymbol, value, error);
}

bool KVMSPIMPPProjectReader::propDaysPerMonth(int16_t& value, TVError* error) {
    return readField(MPPField::projectDaysPerMonth, value, error);
}

bool KVMSPIMPPProjectReader::propDefaultCalendarName(std::string& value, TVError* error) {
    return readField(MPPField::projectDefaultCalendarName, value, error);
}

bool KVMSPIMPPProjectReader::propDurationUnits(int16_t& value, TVError* error) {
    return readField(MPPField::projectDurationUnits, value, error);
}

bool KVMSPIMPPProjectReader::propMinutesPerDay(int32_t& value, TVError* error) {
    return readField(MPPField::projectMinutesPerDay, value, error);
}

bool KVMSPIMPPProjectReader::propMinutesPerWeek(int32_t& value, TVError* error) {
    return readField(MPPField::projectMinutesPerWeek, value, error);
}

bool KVMSPIMPPProjectReader::propFinishDate(TVDate& value, TVError* error) {
    return readField(MPPField::projectFinishDate, value, error);
}

bool KVMSPIMPPProjectReader::propStartDate(TVDate& value, TVError* error) {
    return readField(MPPField::projectStartDate, value, error);
}

bool KVMSPIMPPProjectReader::propScheduleFromStart(bool& value, TVError* error) {
    return readField(MPPField::projectScheduleFromStart, value, error);
}

bool KVMSPIMPPProjectReader::propWeekStartDay(int16_t& value, TVError* error) {
    return readField(MPPField::projectWeekStartDay, value, error);
}

bool KVMSPIMPPProjectReader::propWorkUnits(int16_t& value, TVError* error) {
    return readField(MPPField::projectWorkUnits, value, error);
}

template <typename Direct, typename Marked>
bool KVMSPIMPPProjectReader::readCustomField(KVMPPVarDataReader& varDataReader, int32_t uid, int32_t property,
                                             int32_t* outlCode, TVError* error, Direct direct,
                                             Marked marked) {
    int16_t tag = 0;
    if (!varDataReader.readDataShort(tag, uid, property, 0)) {
        tag = 0;
    }
    const bool isMarked = (tag & kOutlineCodeMarkMask) == kOutlineCodeMark;
    bool read = false;
    if (isMarked) {
        int32_t outlineCodeUID = 0;
        read = m_outlCodeReader &&
               varDataReader.readDataInt(outlineCodeUID, uid, property, kOutlineCodeUIDOffset) &&
               marked(*m_outlCodeReader, outlineCodeUID);
    } else {
        read = direct();
    }
    if (!read) {
        takePropsError(error);
        return false;
    }
    if (outlCode != nullptr) {
        *outlCode = isMarked ? 1 : 0;
    }
    return true;
}

bool KVMSPIMPPProjectReader::customFieldDoubleValue(double& value, KVMPPVarDataReader& varDataReader,
                                                    int32_t uid, int32_t property, int32_t* outlCode,
                                                    TVError* error) {
    return readCustomField(
        varDataReader, uid, property, outlCode, error,
        [&] { return varDataReader.readDataAsDouble(value, uid, property, 0); },
        [&](KVMSPIMPPAbsOutlCodeReader& codes, int32_t code) {
            return codes.outlcodeDoubleValue(code, value);
        });
}

bool KVMSPIMPPProjectReader::customFieldDurationValue(TVTimeSpan& value, KVMPPVarDataReader& varDataReader,
                                                      int32_t uid, int32_t property, int32_t* outlCode,
                                                      TVError* error) {
    int32_t tenthsOfMinute = 0;
    if (!customFieldIntValue(tenthsOfMinute, varDataReader, uid, property, outlCode, error)) {
        return false;
    }
    value = tenthsOfMinute * kMicrosecondsPerTenthOfMinute;
    return true;
}

bool KVMSPIMPPProjectReader::customFieldIntValue(int32_t& value, KVMPPVarDataReader& varDataReader,
                                                 int32_t uid, int32_t property, int32_t* outlCode,
                                                 TVError* error) {
    return readCustomField(
        varDataReader, uid, property, outlCode, error,
        [&] { return varDataReader.readDataInt(value, uid, property, 0); },
        [&](KVMSPIMPPAbsOutlCodeReader& codes, int32_t code) { return codes.outlcodeIntValue(code, value); });
}

bool KVMSPIMPPProjectReader::customFieldTimestampValue(TVDate& value, KVMPPVarDataReader& varDataReader,
                                                       int32_t uid, int32_t property, int32_t* outlCode,
                                                       TVError* error) {
    return readCustomField(
        varDataReader, uid, property, outlCode, error,
        [&] { return varDataReader.readDataTimestamp(value, uid, property, 0); },
        [&](KVMSPIMPPAbsOutlCodeReader& codes, int32_t code) {
            return codes.outlcodeTimestampValue(code, value);
        });
}

bool KVMSPIMPPProjectReader::customFieldUnicodeValue(std::string& value, KVMPPVarDataReader& varDataReader,
                                                     int32_t uid, int32_t property, int32_t* outlCode,
                                                     TVError* error) {
    return readCustomField(
        varDataReader, uid, property, outlCode, error,
        [&] { return varDataReader.readDataUnicode(&value, uid, property, 0); },
        [&](KVMSPIMPPAbsOutlCodeReader& codes, int32_t code) {
            return codes.outlcodeUnicodeValue(code, value);
        });
}

// Both forms hold an outline code's UID at offset 2: a plain value names the
// code's data, a marked one its text.
bool KVMSPIMPPProjectReader::customFieldOutlineCodeValue(std::string& value,
                                                         KVMPPVarDataReader& varDataReader, int32_t uid,
                                                         int32_t property, int32_t* outlCode,
                                                         TVError* error) {
    return readCustomField(
        varDataReader, uid, property, outlCode, error,
        [&] {
            int32_t code = 0;
            return m_outlCodeReader &&
                   varDataReader.readDataInt(code, uid, property, kOutlineCodeUIDOffset) &&
                   m_outlCodeReader->outlcodeOutlCodeData(code, value);
        },
        [&](KVMSPIMPPAbsOutlCodeReader& codes, int32_t code) {
            return codes.outlcodeUnicodeValue(code, value);
        });
}
