#pragma once

#include "MPPCommon/support/TVFileURL.h"
#include "MPPCommon/support/TVInfoDictionary.h"

// Converts one TVNX bundle into one MPP file, using an MPP file as template. The front end makes one
// exporter per input.
class KVMSPEMPPExporter {
public:
    // Keeps a private copy of `info`; the front end fills kInfoMSPProjectName and kInfoTVNXTemplateUrl.
    explicit KVMSPEMPPExporter(const TVInfoDictionary& info);
    virtual ~KVMSPEMPPExporter();
    KVMSPEMPPExporter(const KVMSPEMPPExporter&) = delete;
    KVMSPEMPPExporter& operator=(const KVMSPEMPPExporter&) = delete;

    // Writes the MPP file at `mppURL` (or a numbered name beside it when that exists) from the bundle
    // at `bundleURL`. Answers true on success; no exception leaves it.
    virtual bool exportTvnxBundle(const TVFileURL& bundleURL, const TVFileURL& mppURL,
                                  const TVFileURL& templateURL);

private:
    TVInfoDictionary _info;
};
