#include "WriterTestSupport.h"

#include "MPPCommon/storage/SSLStorage.h"
#include "MPPCommon/storage/SSLStream.h"
#include "MPPImporter/file/KVMSPIMPPVersionReader.h"
#include "MPPImporter/readers/KVMSPIMPPAssignmentReader.h"
#include "MPPImporter/readers/KVMSPIMPPConstraintReader.h"
#include "MPPImporter/readers/KVMSPIMPPProjectReader.h"
#include "MPPImporter/readers/KVMSPIMPPResourceReader.h"
#include "MPPImporter/readers/KVMSPIMPPTaskReader.h"
#include "support/TestSupport.h"

#include <sstream>

namespace writertest {

std::filesystem::path shippedTemplate() {
    return std::filesystem::path(TVMSP_SOURCE_DIR) / "templates" / "Template.mpp";
}

std::vector<std::string> olefileListing(const std::filesystem::path& file) {
    const std::string text = testsupport::commandOutput(
        "/usr/bin/python3 " +
        testsupport::shellQuoted(TVMSP_SOURCE_DIR "/tests/tool/inspect/olefile_listing.py") + " " +
        testsupport::shellQuoted(file.string()) + " 2>&1");
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) {
        if (line.rfind("== ", 0) != 0) {
            lines.push_back(line);
        }
    }
    return lines;
}

WrittenPlan::WrittenPlan(const std::filesystem::path& file) : m_root(file.string()) {
    KVMSPIMPPVersionReader versionReader(file.string(), KVMSPIMPPProjectReader::projectReaderFactory());
    m_reader = versionReader.getMppReader(m_root, false, nullptr);
    m_project = m_reader ? dynamic_cast<KVMSPIMPPProjectReader*>(m_reader->projectReader()) : nullptr;
}

WrittenPlan::~WrittenPlan() = default;

KVMSPIMPPTaskReader* WrittenPlan::tasks() const {
    return m_project ? dynamic_cast<KVMSPIMPPTaskReader*>(m_project->taskReader()) : nullptr;
}

KVMSPIMPPConstraintReader* WrittenPlan::links() const {
    return m_project ? dynamic_cast<KVMSPIMPPConstraintReader*>(m_project->constraintReader()) : nullptr;
}

KVMSPIMPPResourceReader* WrittenPlan::resources() const {
    return m_project ? dynamic_cast<KVMSPIMPPResourceReader*>(m_project->resourceReader()) : nullptr;
}

KVMSPIMPPAssignmentReader* WrittenPlan::assignments() const {
    return m_project ? dynamic_cast<KVMSPIMPPAssignmentReader*>(m_project->assignmentReader()) : nullptr;
}

std::unique_ptr<SSLStream> WrittenPlan::openStream(const std::string& storage, const std::string& name) {
    std::unique_ptr<SSLStorage> directory = m_root.rootStorage()->childStorageWithName("   114");
    std::unique_ptr<SSLStorage> store = directory ? directory->childStorageWithName(storage) : nullptr;
    return store ? store->childStreamWithName(name) : nullptr;
}

std::vector<uint8_t> WrittenPlan::stream(const std::string& storage, const std::string& name) {
    std::unique_ptr<SSLStream> stream = openStream(storage, name);
    std::vector<uint8_t> bytes(stream ? stream->bytesAvailable() : 0);
    if (!bytes.empty()) {
        stream->readBytes(static_cast<uint32_t>(bytes.size()), bytes.data());
    }
    return bytes;
}

} // namespace writertest
