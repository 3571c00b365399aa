#include "MPPImporter/readers/KVMSPISingleResourceReader.h"

#include "MPPImporter/query/frame/KVMSPIXQAdapter.h"
#include "MPPImporter/query/frame/KVMSPIXQAdapterFactory.h"
#include "MPPImporter/readers/KVMSPIMPPAbsCalendarReader.h"
#include "MPPImporter/readers/KVMSPIMPPAbsProjectReader.h"

KVMSPISingleResourceReader::KVMSPISingleResourceReader(int32_t uid, KVMSPIMPPResourceReader& reader)
    : KVMSPISingleObjectReaderBase(uid, reader), m_resourceReader(reader), m_calendarUID(findCalendarUID()) {}

int32_t KVMSPISingleResourceReader::findCalendarUID() const {
    const auto* project = dynamic_cast<const KVMSPIMPPAbsProjectReader*>(m_resourceReader.parentReader());
    KVMSPIMPPAbsCalendarReader* calendars = project != nullptr ? project->calendarReader() : nullptr;
    if (calendars == nullptr) {
        return -1;
    }
    for (const int32_t calendar : calendars->uniqueIDs()) {
        int32_t resource = -1;
        if (calendars->calendarResourceUID(calendar, resource) && resource == uid()) {
            int32_t calendarUID = -1;
            return calendars->calendarUID(calendar, calendarUID) ? calendarUID : -1;
        }
    }
    return -1;
}

bool KVMSPISingleResourceReader::resourceID(int32_t& value, TVError* /*error*/) const {
    const int64_t id = m_resourceReader.objectIDforUniqueID(uid());
    if (id < 0) {
        return false;
    }
    value = static_cast<int32_t>(id);
    return true;
}

bool KVMSPISingleResourceReader::resourceCalendarUID(int32_t& value, TVError* /*error*/) const {
    value = m_calendarUID;
    return true;
}

std::unique_ptr<KVMSPISingleResourceReader>
KVMSPISingleResourceReader::initForFilterWithResourceUID(int32_t uid, KVMSPIMPPResourceReader& reader) {
    return std::make_unique<KVMSPISingleResourceReader>(uid, reader);
}

std::unique_ptr<KVMSPIXQAdapter> KVMSPISingleResourceReader::newXQAdapter() {
    return KVMSPIXQAdapterFactory::installed().newAdapter(*this);
}
