#pragma once

#include "MPPCommon/support/TVFileURL.h"
#include "MPPCommon/support/TVInfoDictionary.h"

#include <memory>

class KVMPPProject;

// Name of the exception that a bundle the export can't read raises.
inline constexpr const char* kMSPEMPPExporterException = "MSPEMPPExporterException";

// Converts one TVNX bundle into one MPP file, using an MPP file as template. The front end makes one
// exporter per input. The bundle's table of contents names the scenario that the user was editing,
// which is exported as the plan; all other scenarios are its baselines.
class KVMSPEMPPExporter {
public:
    // Keeps a private copy of `info`; the front end fills kInfoMSPProjectName and kInfoTVNXTemplateUrl.
    explicit KVMSPEMPPExporter(const TVInfoDictionary& info);
    virtual ~KVMSPEMPPExporter();
    KVMSPEMPPExporter(const KVMSPEMPPExporter&) = delete;
    KVMSPEMPPExporter& operator=(const KVMSPEMPPExporter&) = delete;

    // Writes the MPP file at `mppURL`, or at the first free numbered name beside it ("a-1.mpp") when
    // something is there, from the bundle at `bundleURL`. Answers true on success; a failure is
    // logged, and no exception of the tool leaves it.
    virtual bool exportTvnxBundle(const TVFileURL& bundleURL, const TVFileURL& mppURL,
                                  const TVFileURL& templateURL);
    // True when the three URLs are given and have the extensions "tvnx", "mpp" and "mpp" in any case;
    // otherwise the first failed test is logged.
    static bool verifyInputUrl(const TVFileURL& bundleURL, const TVFileURL& mppURL,
                               const TVFileURL& templateURL);

    // The plan that the bundle maps to, post-processed and verified, as the writers get it; null when
    // the editing scenario's document is not a scenario. A bundle that can't be read raises
    // kMSPEMPPExporterException or the XML loader's exception, and a mapping check that fails the
    // internal-inconsistency exception.
    static std::shared_ptr<KVMPPProject> newProjectFromBundle(const TVFileURL& bundleURL,
                                                              const TVInfoDictionary& info);

private:
    // Hands the finished plan to the writer stage, which reshapes it for the writers and lays it out
    // in the streams of the template. True only for a file written.
    static bool writeProject(KVMPPProject& project, const TVFileURL& mppURL, const TVFileURL& templateURL);

    TVInfoDictionary _info;
};
