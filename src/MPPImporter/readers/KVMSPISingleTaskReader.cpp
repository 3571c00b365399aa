#include "MPPImporter/readers/KVMSPISingleTaskReader.h"

#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVException.h"
#include "MPPImporter/query/frame/KVMSPIXQAdapter.h"
#include "MPPImporter/query/frame/KVMSPIXQAdapterFactory.h"
#include "MPPImporter/readers/KVMSPIMPPAbsProjectReader.h"

namespace {

int32_t requireValidUID(int32_t uid, const KVMSPIMPPTaskReader& reader) {
    tvAssert(reader.isValidUID(uid),
             stringWithFormat("Attempt to create reader for task with invalid UID=%ld (may be deleted task).",
                              static_cast<long>(uid)));
    return uid;
}

} // namespace

KVMSPISingleTaskReader::KVMSPISingleTaskReader(int32_t uid, KVMSPIMPPTaskReader& reader)
    : KVMSPISingleObjectReaderBase(requireValidUID(uid, reader), reader), m_taskReader(reader) {
    auto* project = dynamic_cast<KVMSPIMPPAbsProjectReader*>(reader.parentReader());
    tvAssert(project != nullptr, "A task reader needs a project reader.");
    KVMSPIMPPAbsConstraintReader* constraints = project->constraintReader();
    tvAssert(constraints != nullptr, "A task reader needs a constraint reader.");
    const KVMSPITaskPredecessorMap& links = constraints->taskPredcessorMap();
    const auto found = links.find(uid);
    if (found != links.end()) {
        m_predecessorLinkReaders = found->second;
    }
}

bool KVMSPISingleTaskReader::taskUID(int32_t& value, TVError* /*error*/) const {
    value = uid();
    return true;
}

bool KVMSPISingleTaskReader::taskID(int32_t& value, TVError* /*error*/) const {
    const int64_t id = m_taskReader.objectIDforUniqueID(uid());
    if (id < 0) {
        return false;
    }
    value = static_cast<int32_t>(id);
    return true;
}

std::unique_ptr<KVMSPISingleTaskReader>
KVMSPISingleTaskReader::initForFilterWithTaskUID(int32_t uid, KVMSPIMPPTaskReader& reader) {
    return std::make_unique<KVMSPISingleTaskReader>(uid, reader);
}

std::unique_ptr<KVMSPIXQAdapter> KVMSPISingleTaskReader::newXQAdapter() {
    return KVMSPIXQAdapterFactory::installed().newAdapter(*this);
}
