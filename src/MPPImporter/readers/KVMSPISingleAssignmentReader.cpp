#include "MPPImporter/readers/KVMSPISingleAssignmentReader.h"

KVMSPISingleAssignmentReader::KVMSPISingleAssignmentReader(int32_t uid, KVMSPIMPPAssignmentReader& reader)
    : KVMSPISingleAssignmentReader(uid, reader, true) {}

std::unique_ptr<KVMSPISingleAssignmentReader>
KVMSPISingleAssignmentReader::initForFilterWithAssignmentUID(int32_t uid, KVMSPIMPPAssignmentReader& reader) {
    return std::unique_ptr<KVMSPISingleAssignmentReader>(
        new KVMSPISingleAssignmentReader(uid, reader, false));
}

KVMSPISingleAssignmentReader::KVMSPISingleAssignmentReader(int32_t uid, KVMSPIMPPAssignmentReader& reader,
                                                           bool withPhases)
    : KVMSPISingleObjectReaderBase(uid, reader), m_assignmentReader(reader) {
    int32_t value = -1;
    if (reader.assignmentResourceUID(uid, value)) {
        m_resourceUID = value;
    }
    if (reader.assignmentTaskUID(uid, value)) {
        m_taskUID = value;
    }
    if (withPhases) {
        const auto& map = reader.assignmentTimephasedDataMap();
        if (const auto found = map.find(uid); found != map.end()) {
            m_timephasedDataReaders = found->second;
        }
    }
}

bool KVMSPISingleAssignmentReader::assignmentUID(int32_t& value, TVError* /*error*/) const {
    value = uid();
    return true;
}

bool KVMSPISingleAssignmentReader::assignmentResourceUID(int32_t& value, TVError* /*error*/) const {
    value = m_resourceUID;
    return true;
}

bool KVMSPISingleAssignmentReader::assignmentTaskUID(int32_t& value, TVError* /*error*/) const {
    value = m_taskUID;
    return true;
}
