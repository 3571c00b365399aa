#include "tool/inspect/QueriedFile.h"

#include "MPPCommon/shared/MSPCXMLLoading.h"
#include "MPPCommon/support/TVException.h"
#include "MPPImporter/query/adapters/KVMSPIXQAdapters.h"
#include "MPPImporter/readers/KVMSPIMPPProjectReader.h"
#include "tool/inspect/InfoCommand.h"

#include <fstream>

namespace {

// The root element of an interchange document.
constexpr const char* kProjectElementName = "Project";

// Told when a file that the import accepts still gives no project reader.
constexpr const char* kNoProjectText = "The file holds no project data.";

// Enough of a file's start to find its first character past a byte order mark and blanks.
constexpr size_t kSniffLength = 256;

} // namespace

QueriedFile::QueriedFile(const std::string& path, bool acceptDowngraded, int32_t baselineNumber) {
    try {
        if (holdsXml(path)) {
            openXml(path);
        } else {
            openPlan(path, acceptDowngraded, baselineNumber);
        }
    } catch (const TVException& exception) {
        m_project = nullptr;
        m_failure = exception.reason();
    }
}

QueriedFile::~QueriedFile() = default;

bool QueriedFile::holdsXml(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::string start(kSniffLength, '\0');
    file.read(start.data(), static_cast<std::streamsize>(start.size()));
    start.resize(static_cast<size_t>(file.gcount()));
    size_t index = start.rfind("\xEF\xBB\xBF", 0) == 0 ? 3 : 0;
    index = start.find_first_not_of(" \t\r\n", index);
    return index != std::string::npos && start[index] == '<';
}

void QueriedFile::openXml(const std::string& path) {
    std::string defaultNamespace;
    m_document = newXmlDocFromUrlStripNamespace(TVFileURL(path, false), defaultNamespace);
    m_projectElement = m_document->rootElement();
    if (!m_projectElement || m_projectElement->name() != kProjectElementName) {
        m_failure = "The root element of " + path + " is not \"" + kProjectElementName + "\".";
        return;
    }
    m_project = m_projectElement.get();
}

void QueriedFile::openPlan(const std::string& path, bool acceptDowngraded, int32_t baselineNumber) {
    KVMSPIXQAdapters::install();
    m_plan = std::make_unique<InspectedPlan>(path, acceptDowngraded, baselineNumber);
    m_project = m_plan->project();
    if (!m_project) {
        const nlohmann::ordered_json info = InfoCommand::infoOfFile(path, acceptDowngraded);
        m_failure = info.contains("error") ? info.at("error").at("text").get<std::string>() : kNoProjectText;
    }
}
