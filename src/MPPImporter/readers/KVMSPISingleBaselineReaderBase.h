#pragma once

#include "MPPImporter/file/KVMSPIMPPDataDirectoryReader.h"
#include "MPPImporter/file/KVMSPIMPPPropertyList.h"
#include "MPPImporter/readers/KVMSPIMPPAbsBaselineReader.h"
#include "MPPImporter/readers/KVMSPISingleObjectReaderBase.h"
#include "MPPImporter/readers/MPPObjectFieldReads.h"

#include <cstdint>
#include <initializer_list>
#include <string>
#include <utility>

// What the copies of one baseline share: the baseline number, checked at creation, the version's
// property list, and the reads of the object's fields, whose catalogue rows know where each layout keeps
// baseline 0 and the numbered baselines 1 to 10.
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

    // Reads this baseline's copy of a field; false where the layout doesn't hold it or the object holds no
    // value.
    template <typename Value>
    bool read(MPPField field, Value& value) const {
        return MPPObjectFieldReads(reader()).read(field, uid(), value, nullptr, m_baselineNumber);
    }

    // "<`kind` UID=n baseline=m>  name=YES name=NO ", one entry for each flag in order.
    std::string describe(const char* kind, std::initializer_list<std::pair<const char*, bool>> flags) const;

private:
    int32_t m_baselineNumber;
    const KVMSPIMPPPropertyList& m_MPPPropertyList;
};
