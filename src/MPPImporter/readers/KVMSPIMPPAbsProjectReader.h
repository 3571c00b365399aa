#pragma once

#include "MPPCommon/support/TVDate.h"
#include "MPPCommon/support/TVError.h"

#include <cstdint>
#include <string>

class KVMPPVarDataReader;
class KVMSPIMPPAbsAssignmentReader;
class KVMSPIMPPAbsCalendarReader;
class KVMSPIMPPAbsConstraintReader;
class KVMSPIMPPAbsOutlCodeReader;
class KVMSPIMPPAbsResourceReader;
class KVMSPIMPPAbsTaskReader;
class KVMSPIPropsReader;

// The root of the object readers of a plan: the project's properties, the readers of its object
// stores (each may be absent), the selected baseline, and the decoding of custom field values that
// tasks and resources share. Property and custom field operations answer false when the value is
// absent or unreadable and then give the Props reader's error; text operations append to `value`.
class KVMSPIMPPAbsProjectReader {
public:
    virtual ~KVMSPIMPPAbsProjectReader() = default;

    // -1 for the actual plan, else 0 to 10. Setting it passes it on to the assignment, resource and
    // task readers.
    virtual int32_t baselineNumber() const = 0;
    virtual void setBaselineNumber(int32_t baselineNumber) = 0;

    virtual KVMSPIPropsReader* propsReader() const = 0;
    virtual KVMSPIMPPAbsAssignmentReader* assignmentReader() const = 0;
    virtual KVMSPIMPPAbsCalendarReader* calendarReader() const = 0;
    virtual KVMSPIMPPAbsConstraintReader* constraintReader() const = 0;
    virtual KVMSPIMPPAbsOutlCodeReader* outlCodeReader() const = 0;
    virtual KVMSPIMPPAbsResourceReader* resourceReader() const = 0;
    virtual KVMSPIMPPAbsTaskReader* taskReader() const = 0;

    virtual bool propCurrencyCode(std::string& value, TVError* error = nullptr) = 0;
    virtual bool propCurrencyDigits(int16_t& value, TVError* error = nullptr) = 0;
    virtual bool propCurrencySymbolPosition(int16_t& value, TVError* error = nullptr) = 0;
    virtual bool propCurrencySymbol(std::string& value, TVError* error = nullptr) = 0;
    virtual bool propDaysPerMonth(int16_t& value, TVError* error = nullptr) = 0;
    virtual bool propDefaultCalendarName(std::string& value, TVError* error = nullptr) = 0;
    virtual bool propDurationUnits(int16_t& value, TVError* error = nullptr) = 0;
    virtual bool propMinutesPerDay(int32_t& value, TVError* error = nullptr) = 0;
    virtual bool propMinutesPerWeek(int32_t& value, TVError* error = nullptr) = 0;
    virtual bool propFinishDate(TVDate& value, TVError* error = nullptr) = 0;
    virtual bool propStartDate(TVDate& value, TVError* error = nullptr) = 0;
    virtual bool propScheduleFromStart(bool& value, TVError* error = nullptr) = 0;
    virtual bool propWeekStartDay(int16_t& value, TVError* error = nullptr) = 0;
    virtual bool propWorkUnits(int16_t& value, TVError* error = nullptr) = 0;

    // The value of a custom field of the object `uid` under `property` of `varDataReader`. A value
    // that refers to an outline code is read from the outline code store; `outlCode`, when given, is
    // set to 1 then and to 0 for a value read directly.
    virtual bool customFieldDoubleValue(double& value, KVMPPVarDataReader& varDataReader, int32_t uid,
                                        int32_t property, int32_t* outlCode, TVError* error = nullptr) = 0;
    // Stored in tenths of a minute.
    virtual bool customFieldDurationValue(TVTimeSpan& value, KVMPPVarDataReader& varDataReader, int32_t uid,
                                          int32_t property, int32_t* outlCode, TVError* error = nullptr) = 0;
    virtual bool customFieldIntValue(int32_t& value, KVMPPVarDataReader& varDataReader, int32_t uid,
                                     int32_t property, int32_t* outlCode, TVError* error = nullptr) = 0;
    virtual bool customFieldTimestampValue(TVDate& value, KVMPPVarDataReader& varDataReader, int32_t uid,
                                           int32_t property, int32_t* outlCode, TVError* error = nullptr) = 0;
    virtual bool customFieldUnicodeValue(std::string& value, KVMPPVarDataReader& varDataReader, int32_t uid,
                                         int32_t property, int32_t* outlCode, TVError* error = nullptr) = 0;
    virtual bool customFieldOutlineCodeValue(std::string& value, KVMPPVarDataReader& varDataReader,
                                             int32_t uid, int32_t property, int32_t* outlCode,
                                             TVError* error = nullptr) = 0;
};
