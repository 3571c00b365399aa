#pragma once

#include "MPPCommon/support/TVDate.h"
#include "MPPImporter/file/KVMPPVarDataReader.h"
#include "MPPImporter/file/KVMSPIMPPDataDirectoryReader.h"
#include "MPPImporter/file/KVMSPIMPPPropertyList.h"
#include "MPPImporter/readers/KVMSPIMPPAbsBaselineReader.h"
#include "MPPImporter/readers/KVMSPISingleObjectReaderBase.h"
#include "MPPImporter/readers/MPPObjectFieldReads.h"

#include <cstdint>
#include <initializer_list>
#include <string>
#include <utility>

// What the task and resource copies of one baseline share: the baseline number, checked at creation,
// the version's property list, and the reads of the object's fields. Baselines 1 to 10 are custom
// field values of the object's variable data, under a group key indexed by the baseline number;
// baseline 0 has keys of its own in the fixed item or the variable data.
class KVMSPISingleBaselineReaderBase : public KVMSPISingleObjectReaderBase,
                                       public KVMSPIMPPAbsBaselineReader {
public:
    static constexpr int32_t kLastBaselineNumber = 10;

    int32_t baselineNumber() const override { return m_baselineNumber; }

protected:
    // `invalidNumberFormat` is the assertion text for a number outside 0 to 10, with %d for it.
    KVMSPISingleBaselineReaderBase(int32_t uid, int32_t baselineNumber, KVMSPIMPPDataDirectoryReader& reader,
                                   const char* invalidNumberFormat);

    const KVMSPIMPPPropertyList& MPPPropertyList() const { return m_MPPPropertyList; }

    // The custom field value under the group key's property for this baseline; false when the
    // version has no such key, the store no variable data or the plan no project reader, or the object
    // holds no value.
    bool readGroupDouble(int32_t groupKey, double& value) const;
    bool readGroupInt(int32_t groupKey, int32_t& value) const;
    bool readGroupTimestamp(int32_t groupKey, TVDate& value) const;

    // The reads of the object's fields by key.
    MPPObjectFieldReads fields() const { return MPPObjectFieldReads(reader()); }

    // "<`kind` UID=n baseline=m>  name=YES name=NO ", one entry for each flag in order.
    std::string describe(const char* kind, std::initializer_list<std::pair<const char*, bool>> flags) const;

private:
    template <typename Read>
    bool readGroup(int32_t groupKey, Read read) const;

    int32_t m_baselineNumber;
    const KVMSPIMPPPropertyList& m_MPPPropertyList;
};
