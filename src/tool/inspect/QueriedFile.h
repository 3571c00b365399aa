#pragma once

#include "MPPCommon/xml/KVMSPCXMLDocument.h"
#include "tool/inspect/InspectedPlan.h"

#include <cstdint>
#include <memory>
#include <string>

class KVMSPIXQuery;

// A file that path queries are asked of, told apart by its content: an interchange XML document,
// answered by the XML layer from its "Project" element with the default namespace taken off as the
// import loads documents, or an MPP file, answered by its project reader through the query adapters.
class QueriedFile {
public:
    // `acceptDowngraded` and `baselineNumber` apply to an MPP file as InspectedPlan takes them.
    QueriedFile(const std::string& path, bool acceptDowngraded, int32_t baselineNumber);
    ~QueriedFile();
    QueriedFile(const QueriedFile&) = delete;
    QueriedFile& operator=(const QueriedFile&) = delete;

    // True for a file whose first character, after a byte order mark and blanks, is "<".
    static bool holdsXml(const std::string& path);

    // What the project queries are asked of; null when the file can't be read, as failure() tells.
    KVMSPIXQuery* project() const { return m_project; }
    const std::string& failure() const { return m_failure; }

private:
    void openXml(const std::string& path);
    void openPlan(const std::string& path, bool acceptDowngraded, int32_t baselineNumber);

    KVMSPCXMLDocument::DocumentPtr m_document;
    KVMSPCXMLElement::ElementPtr m_projectElement;
    std::unique_ptr<InspectedPlan> m_plan;
    KVMSPIXQuery* m_project = nullptr;
    std::string m_failure;
};
