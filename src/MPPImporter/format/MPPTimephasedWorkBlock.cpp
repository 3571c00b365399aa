#include "MPPImporter/format/MPPTimephasedWorkBlock.h"

#include "MPPImporter/format/MPPMemRead.h"

namespace {

constexpr size_t kRecordCountSize = 2;
constexpr size_t kFirstRecordOffset = 40;
constexpr size_t kRecordSize = 28;
constexpr size_t kWorkOffsetInRecord = 4;

} // namespace

std::vector<MPPTimephasedWorkRecord> MPPTimephasedWorkBlock::records() const {
    std::vector<MPPTimephasedWorkRecord> records;
    if (m_size < kRecordCountSize) {
        return records;
    }
    const int32_t count = memReadShort(m_bytes, 0);
    for (int32_t index = 0; index < count; ++index) {
        const size_t recordOffset = kFirstRecordOffset + kRecordSize * static_cast<size_t>(index);
        if (recordOffset + kRecordSize > m_size) {
            break;
        }
        const int32_t offset = memReadDurationInt(m_bytes, static_cast<int32_t>(recordOffset));
        if (offset < 0) {
            break;
        }
        records.push_back({offset, memReadDurationDouble(
                                       m_bytes, static_cast<int32_t>(recordOffset + kWorkOffsetInRecord))});
    }
    return records;
}
