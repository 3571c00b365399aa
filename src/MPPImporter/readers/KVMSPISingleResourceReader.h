#pragma once

#include "MPPImporter/readers/KVMSPIMPPResourceReader.h"
#include "MPPImporter/readers/KVMSPISingleObjectReaderBase.h"

// One resource of the resource reader: it holds the resource's UID and the UID of its own calendar,
// and answers the resource reader's field operations for that UID.
class KVMSPISingleResourceReader : public KVMSPISingleObjectReaderBase {
public:
    // Finds the calendar that belongs to the resource: the first calendar of the project's calendar
    // reader whose resource is this one.
    KVMSPISingleResourceReader(int32_t uid, KVMSPIMPPResourceReader& reader);
    // A reader to test a query's filter on: a resource reader is light, so the same as the full one.
    static std::unique_ptr<KVMSPISingleResourceReader>
    initForFilterWithResourceUID(int32_t uid, KVMSPIMPPResourceReader& reader);

    // The row number; false when the resource reader doesn't know it.
    bool resourceID(int32_t& value, TVError* error = nullptr) const;
    // -1 when the resource has no calendar of its own. Always true.
    bool resourceCalendarUID(int32_t& value, TVError* error = nullptr) const;

    bool resourceCost(double& value, TVError* error = nullptr) const {
        return forward(&KVMSPIMPPAbsResourceReader::resourceCost, value, error);
    }
    bool resourceCostPerUse(double& value, TVError* error = nullptr) const {
        return forward(&KVMSPIMPPAbsResourceReader::resourceCostPerUse, value, error);
    }
    bool resourceMaxUnits(double& value, TVError* error = nullptr) const {
        return forward(&KVMSPIMPPAbsResourceReader::resourceMaxUnits, value, error);
    }
    bool resourceStandardRate(double& value, TVError* error = nullptr) const {
        return forward(&KVMSPIMPPAbsResourceReader::resourceStandardRate, value, error);
    }
    bool resourceType(int16_t& value, TVError* error = nullptr) const {
        return forward(&KVMSPIMPPAbsResourceReader::resourceType, value, error);
    }
    bool resourceIsCostResource(uint8_t& value, TVError* error = nullptr) const {
        return forward(&KVMSPIMPPAbsResourceReader::resourceIsCostResource, value, error);
    }
    bool resourceUID(int32_t& value, TVError* error = nullptr) const {
        return forward(&KVMSPIMPPAbsResourceReader::resourceUID, value, error);
    }
    bool resourceWork(TVTimeSpan& value, TVError* error = nullptr) const {
        return forward(&KVMSPIMPPAbsResourceReader::resourceWork, value, error);
    }
    bool resourceAvailableFrom(TVDate& value, TVError* error = nullptr) const {
        return forward(&KVMSPIMPPAbsResourceReader::resourceAvailableFrom, value, error);
    }
    bool resourceAvailableTo(TVDate& value, TVError* error = nullptr) const {
        return forward(&KVMSPIMPPAbsResourceReader::resourceAvailableTo, value, error);
    }
    bool resourceEmailAddress(std::string& value, TVError* error = nullptr) const {
        return forward(&KVMSPIMPPAbsResourceReader::resourceEmailAddress, value, error);
    }
    bool resourceName(std::string& value, TVError* error = nullptr) const {
        return forward(&KVMSPIMPPAbsResourceReader::resourceName, value, error);
    }
    bool resourceNotes(std::string& value, TVError* error = nullptr) const {
        return forward(&KVMSPIMPPAbsResourceReader::resourceNotes, value, error);
    }
    bool resourceAvailability(std::vector<MPPResourceAvailabilityPeriod>& value,
                              TVError* error = nullptr) const {
        return forward(&KVMSPIMPPAbsResourceReader::resourceAvailability, value, error);
    }
    bool resourceCustomFields(std::vector<std::unique_ptr<KVMSPISingleExtendedAttribute>>& value,
                              TVError* error = nullptr) const {
        return forward(&KVMSPIMPPAbsResourceReader::resourceCustomFields, value, error);
    }
    bool hasBaseline(int32_t index, bool& value, TVError* error = nullptr) const {
        return m_resourceReader.hasBaseline(uid(), index, value, error);
    }

protected:
    std::unique_ptr<KVMSPIXQAdapter> newXQAdapter() override;

private:
    template <typename Value>
    bool forward(bool (KVMSPIMPPAbsResourceReader::*operation)(int32_t, Value&, TVError*), Value& value,
                 TVError* error) const {
        return (m_resourceReader.*operation)(uid(), value, error);
    }
    // The UID of the calendar whose resource is this one, -1 for none.
    int32_t findCalendarUID() const;

    KVMSPIMPPResourceReader& m_resourceReader;
    int32_t m_calendarUID;
};
