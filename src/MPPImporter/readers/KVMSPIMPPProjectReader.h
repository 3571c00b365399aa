#pragma once

#include "MPPImporter/file/KVMSPIMPPReader.h"
#include "MPPImporter/file/KVMSPOLE2DirectoryReader.h"
#include "MPPImporter/format/MPPFieldCatalog.h"
#include "MPPImporter/readers/KVMSPIMPPAbsProjectReader.h"

#include <memory>
#include <string>

// The reader of the plan's data directory ("   114"): it owns the reader of the project's "Props"
// stream and one reader for each object store the directory holds; a missing store leaves its
// reader absent. Project properties are read on each request.
class KVMSPIMPPProjectReader : public KVMSPOLE2DirectoryReader, public KVMSPIMPPAbsProjectReader {
public:
    KVMSPIMPPProjectReader(std::unique_ptr<SSLStorage> directory, std::string name,
                           KVMSPIParentReader* parentReader);
    ~KVMSPIMPPProjectReader() override;

    // What the file reader is given to make the project reader of its data directory.
    static KVMSPIMPPReader::ProjectReaderFactory projectReaderFactory();

    int32_t baselineNumber() const override { return m_baselineNumber; }
    void setBaselineNumber(int32_t baselineNumber) override;

    KVMSPIPropsReader* propsReader() const override { return m_propsReader.get(); }
    KVMSPIMPPAbsAssignmentReader* assignmentReader() const override { return m_assignmentReader.get(); }
    KVMSPIMPPAbsCalendarReader* calendarReader() const override { return m_calendarReader.get(); }
    KVMSPIMPPAbsConstraintReader* constraintReader() const override { return m_constraintReader.get(); }
    KVMSPIMPPAbsOutlCodeReader* outlCodeReader() const override { return m_outlCodeReader.get(); }
    KVMSPIMPPAbsResourceReader* resourceReader() const override { return m_resourceReader.get(); }
    KVMSPIMPPAbsTaskReader* taskReader() const override { return m_taskReader.get(); }

    // The property set readers at the root of the file, asked of the file reader.
    KVMSPIPropsReader* docPropsReader() const;
    KVMSPIPropsReader* summaryInfoReader() const;
    KVMSPIPropsReader* docSummaryInfoReader() const;

    bool propCurrencyCode(std::string& value, TVError* error = nullptr) override;
    bool propCurrencyDigits(int16_t& value, TVError* error = nullptr) override;
    bool propCurrencySymbolPosition(int16_t& value, TVError* error = nullptr) override;
    bool propCurrencySymbol(std::string& value, TVError* error = nullptr) override;
    bool propDaysPerMonth(int16_t& value, TVError* error = nullptr) override;
    bool propDefaultCalendarName(std::string& value, TVError* error = nullptr) override;
    bool propDurationUnits(int16_t& value, TVError* error = nullptr) override;
    bool propMinutesPerDay(int32_t& value, TVError* error = nullptr) override;
    bool propMinutesPerWeek(int32_t& value, TVError* error = nullptr) override;
    bool propFinishDate(TVDate& value, TVError* error = nullptr) override;
    bool propStartDate(TVDate& value, TVError* error = nullptr) override;
    bool propScheduleFromStart(bool& value, TVError* error = nullptr) override;
    bool propWeekStartDay(int16_t& value, TVError* error = nullptr) override;
    bool propWorkUnits(int16_t& value, TVError* error = nullptr) override;

    bool customFieldDoubleValue(double& value, KVMPPVarDataReader& varDataReader, int32_t uid,
                                int32_t property, int32_t* outlCode, TVError* error = nullptr) override;
    bool customFieldDurationValue(TVTimeSpan& value, KVMPPVarDataReader& varDataReader, int32_t uid,
                                  int32_t property, int32_t* outlCode, TVError* error = nullptr) override;
    bool customFieldIntValue(int32_t& value, KVMPPVarDataReader& varDataReader, int32_t uid, int32_t property,
                             int32_t* outlCode, TVError* error = nullptr) override;
    bool customFieldTimestampValue(TVDate& value, KVMPPVarDataReader& varDataReader, int32_t uid,
                                   int32_t property, int32_t* outlCode, TVError* error = nullptr) override;
    bool customFieldUnicodeValue(std::string& value, KVMPPVarDataReader& varDataReader, int32_t uid,
                                 int32_t property, int32_t* outlCode, TVError* error = nullptr) override;
    bool customFieldOutlineCodeValue(std::string& value, KVMPPVarDataReader& varDataReader, int32_t uid,
                                     int32_t property, int32_t* outlCode, TVError* error = nullptr) override;

protected:
    std::unique_ptr<KVMSPIXQAdapter> newXQAdapter() override;

private:
    // Reads a project property by its catalogue row.
    template <typename Value>
    bool readField(MPPField field, Value& value, TVError* error);
    // The common frame of the custom field operations: `direct()` reads the value itself,
    // `marked(outline code UID)` reads it through the outline code store.
    template <typename Direct, typename Marked>
    bool readCustomField(KVMPPVarDataReader& varDataReader, int32_t uid, int32_t property, int32_t* outlCode,
                         TVError* error, Direct direct, Marked marked);
    void takePropsError(TVError* error) const;
    // The parent as the file reader, if it is one.
    KVMSPIMPPReader* fileReader() const;

    int32_t m_baselineNumber = -1;
    std::unique_ptr<KVMSPIPropsReader> m_propsReader;
    std::unique_ptr<KVMSPIMPPAbsAssignmentReader> m_assignmentReader;
    std::unique_ptr<KVMSPIMPPAbsCalendarReader> m_calendarReader;
    std::unique_ptr<KVMSPIMPPAbsConstraintReader> m_constraintReader;
    std::unique_ptr<KVMSPIMPPAbsOutlCodeReader> m_outlCodeReader;
    std::unique_ptr<KVMSPIMPPAbsResourceReader> m_resourceReader;
    std::unique_ptr<KVMSPIMPPAbsTaskReader> m_taskReader;
};
