#pragma once

#include "MPPCommon/support/TVInfoDictionary.h"
#include "MPPCommon/xml/KVMSPCXMLDocument.h"
#include "MPPExporter/MPPObjects/KVMPPConstraint.h"
#include "MPPExporter/MPPObjects/KVMPPProject.h"
#include "MPPExporter/Mappers/KVMSPEBaseline.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

class KVMSPECalendarMapper;
class KVMSPEIdMapper;
class KVMSPEProjectMapper;

// The driver of export mapping. It holds the documents of one bundle and what every object mapper
// shares while `map` runs: the id translation, the calendar mapper and the links gathered by task
// mapping. After `map`, `mppProject` is the complete, post-processed and verified plan, or none when
// the main document is not a scenario.
class KVMSPEMapper {
public:
    using DocumentPtr = KVMSPCXMLDocument::DocumentPtr;

    // The main document (the scenario to export, or none), the table of contents and the other
    // scenarios, which the export treats as baselines in this order. `info` is kept for the
    // mappers.
    KVMSPEMapper(DocumentPtr tvnxXmlDoc, DocumentPtr tvnxTOCXmlDoc,
                 std::vector<DocumentPtr> baselineXMLDocArray, TVInfoDictionary info);
    ~KVMSPEMapper();
    KVMSPEMapper(const KVMSPEMapper&) = delete;
    KVMSPEMapper& operator=(const KVMSPEMapper&) = delete;

    // Restarts the four counters; `map` calls it first, so that every export of a batch numbers its
    // objects from the same values.
    static void initialize();
    // Each answers its current value and then counts on.
    static int64_t nextTaskID();
    static int64_t nextResourceID();
    static int64_t nextAssignmentUID();
    static int64_t nextCalendarUID();

    // Maps the main document into `mppProject`. Internal errors of the document raise the
    // internal-inconsistency exception.
    void map();

    const DocumentPtr& tvnxXmlDoc() const { return _tvnxXmlDoc; }
    const DocumentPtr& tvnxTOCXmlDoc() const { return _tvnxTOCXmlDoc; }
    const std::vector<KVMSPEBaseline>& tvnxBaselines() const { return _tvnxBaselines; }
    const TVInfoDictionary& info() const { return _info; }
    int32_t mppVersion() const { return 4; }
    int32_t fiterType() const { return 0; }

    const std::shared_ptr<KVMPPProject>& mppProject() const { return _mppProject; }
    void setMppProject(std::shared_ptr<KVMPPProject> project) { _mppProject = std::move(project); }
    // None until project mapping has read the top ids.
    const KVMSPEIdMapper* idMapper() const { return _idMapper.get(); }
    void setIdMapper(std::unique_ptr<KVMSPEIdMapper> idMapper);
    // Present only while `map` runs.
    KVMSPEProjectMapper* projectMapper() const { return _projectMapper.get(); }
    KVMSPECalendarMapper* calendarMapper() const { return _calendarMapper.get(); }
    // The task links that task mapping gathers.
    KVMPPProject::List<KVMPPConstraint>& constraints() { return _constraints; }

private:
    DocumentPtr _tvnxXmlDoc;
    DocumentPtr _tvnxTOCXmlDoc;
    std::vector<KVMSPEBaseline> _tvnxBaselines;
    TVInfoDictionary _info;
    std::shared_ptr<KVMPPProject> _mppProject;
    std::unique_ptr<KVMSPEIdMapper> _idMapper;
    std::unique_ptr<KVMSPEProjectMapper> _projectMapper;
    std::unique_ptr<KVMSPECalendarMapper> _calendarMapper;
    KVMPPProject::List<KVMPPConstraint> _constraints;
};
