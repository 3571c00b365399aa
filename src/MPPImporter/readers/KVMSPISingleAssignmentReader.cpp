#include "MPPImporter/readers/KVMSPISingleAssignmentReader.h"

#include "MPPCommon/support/PosixRegex.h"
#include "MPPImporter/query/frame/KVMSPIXQAdapter.h"
#include "MPPImporter/query/frame/KVMSPIXQAdapterFactory.h"

#include <utility>

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

bool KVMSPISingleAssignmentReader::showsNoWork() const {
    return m_resourceUID == kMPPUnassignedResourceUID && m_assignmentReader.appVersion() < kMSPDIVersion_2010;
}

bool KVMSPISingleAssignmentReader::shown(bool read, double& value) const {
    if (read && showsNoWork()) {
        value = 0.0;
    }
    return read;
}

bool KVMSPISingleAssignmentReader::shownWork(double& value, TVError* error) const {
    return shown(assignmentWork(value, error), value);
}

bool KVMSPISingleAssignmentReader::shownRemainingWork(double& value, TVError* error) const {
    return shown(assignmentRemainingWork(value, error), value);
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

std::optional<std::pair<KVMSPIMPPAssignmentReader::Owner, int32_t>>
KVMSPISingleAssignmentReader::ownerWithString(const std::optional<std::string>& text) {
    if (!text) {
        return std::nullopt;
    }
    using Owner = KVMSPIMPPAssignmentReader::Owner;
    static const PosixRegex resourceUID("ResourceUID=([[:digit:]]*)", 2);
    static const PosixRegex taskUID("TaskUID=([[:digit:]]*)", 2);
    for (const auto& [expression, owner] : {std::pair<const PosixRegex&, Owner>(resourceUID, Owner::resource),
                                            std::pair<const PosixRegex&, Owner>(taskUID, Owner::task)}) {
        if (const std::optional<std::vector<std::string>> groups = predicateGroups(expression, 1, *text)) {
            return std::pair(owner, predicateIntValue(groups->front()));
        }
    }
    return std::nullopt;
}

KVMSPIXQPredicate KVMSPISingleAssignmentReader::predicateWithString(const std::optional<std::string>& text) {
    if (const auto owner = ownerWithString(text)) {
        using UIDOperation = bool (KVMSPISingleAssignmentReader::*)(int32_t&, TVError*) const;
        const UIDOperation operation = owner->first == KVMSPIMPPAssignmentReader::Owner::task
                                           ? &KVMSPISingleAssignmentReader::assignmentTaskUID
                                           : &KVMSPISingleAssignmentReader::assignmentResourceUID;
        return [value = owner->second, operation](KVMSPIXQuery& object) {
            int32_t uid = -1;
            return (predicateObject<KVMSPISingleAssignmentReader>(object).*operation)(uid, nullptr) &&
                   uid == value;
        };
    }
    return KVMSPISingleObjectReaderBase::predicateWithString(text);
}

std::unique_ptr<KVMSPIXQAdapter> KVMSPISingleAssignmentReader::newXQAdapter() {
    return KVMSPIXQAdapterFactory::installed().newAdapter(*this);
}
