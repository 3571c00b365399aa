#include "tool/inspect/InspectedPlan.h"

#include "MPPCommon/storage/SSLRoot.h"
#include "MPPImporter/file/KVMSPIMPPReader.h"
#include "MPPImporter/file/KVMSPIMPPVersionReader.h"
#include "MPPImporter/readers/KVMSPIMPPProjectReader.h"

InspectedPlan::InspectedPlan(const std::string& path, bool acceptDowngraded, int32_t baselineNumber)
    : m_root(std::make_unique<SSLRoot>(path)) {
    if (m_root->lastError() != 0) {
        return;
    }
    const KVMSPIMPPVersionReader versionReader(path, KVMSPIMPPProjectReader::projectReaderFactory());
    m_reader = versionReader.getMppReader(*m_root, acceptDowngraded, nullptr);
    m_project = m_reader ? dynamic_cast<KVMSPIMPPProjectReader*>(m_reader->projectReader()) : nullptr;
    if (m_project) {
        m_project->setBaselineNumber(baselineNumber);
    }
}

InspectedPlan::~InspectedPlan() = default;
