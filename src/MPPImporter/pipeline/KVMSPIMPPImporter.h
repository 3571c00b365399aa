#pragma once

#include "MPPCommon/support/TVError.h"
#include "MPPCommon/support/TVFileURL.h"
#include "MPPCommon/support/TVInfoDictionary.h"
#include "MPPImporter/Mapper/mapping/KVMSPIMapperInterface.h"

// Name of the exception that the import raises for arguments it can't take and a template it can't
// copy.
inline constexpr const char* kTVMPPImporterException = "TVMPPImporterException";

// Converts one MPP or MPT file into one TVNX bundle. The front end makes one importer per input.
class KVMSPIMPPImporter {
public:
    // Keeps a private copy of `info`; the front end fills kInfoMSPProjectName and kInfoTVNXTemplateUrl.
    // `makeMapper` makes the mapper of each scenario; without one no scenario is mapped, and every
    // import stops, unsuccessful, where the mapping would begin.
    explicit KVMSPIMPPImporter(const TVInfoDictionary& info, KVMSPIMapperFactory makeMapper = {});
    virtual ~KVMSPIMPPImporter();
    KVMSPIMPPImporter(const KVMSPIMPPImporter&) = delete;
    KVMSPIMPPImporter& operator=(const KVMSPIMPPImporter&) = delete;

    // Writes the bundle at `tvnxBundleURL` (or at the first free numbered name beside it) from the plan
    // file at `mppURL`: the template bundle is copied there, the actual plan and each baseline that the
    // plan holds are mapped into scenario files, and the table of contents is written last. Answers
    // true on success; on failure `error` (may be null) receives the reason, or stays untouched when
    // there is none. No exception leaves it, and a bundle left half-written is the caller's to remove.
    virtual bool importFromMppURL(const TVFileURL& mppURL, const TVFileURL& tvnxBundleURL,
                                  bool acceptDowngradedMPP, TVError* error);

private:
    // The import proper; raises what its steps raise.
    bool importBundle(const TVFileURL& mppURL, const TVFileURL& tvnxBundleURL, bool acceptDowngradedMPP,
                      TVError* error);
    // A mapper for the scenario that `_info` names; none without a mapper factory.
    std::unique_ptr<KVMSPIMapperInterface> newMapper(KVMSPIMPPReader& reader,
                                                     const KVMSPCXMLDocument::DocumentPtr& templateDoc,
                                                     const KVMSPCXMLDocument::DocumentPtr& tocDoc) const;
    void setScenarioKeys(int baselineNumber);
    void clearScenarioKeys();

    TVInfoDictionary _info;
    KVMSPIMapperFactory _makeMapper;
};
