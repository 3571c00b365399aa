#pragma once

#include "MPPCommon/support/TVError.h"
#include "MPPCommon/support/TVFileURL.h"
#include "MPPCommon/support/TVInfoDictionary.h"

// Converts one MPP or MPT file into one TVNX bundle. The front end makes one importer per input.
class KVMSPIMPPImporter {
public:
    // Keeps a private copy of `info`; the front end fills kInfoMSPProjectName and kInfoTVNXTemplateUrl.
    explicit KVMSPIMPPImporter(const TVInfoDictionary& info);
    virtual ~KVMSPIMPPImporter();
    KVMSPIMPPImporter(const KVMSPIMPPImporter&) = delete;
    KVMSPIMPPImporter& operator=(const KVMSPIMPPImporter&) = delete;

    // Writes the bundle at `tvnxBundleURL` from the plan file at `mppURL`. Answers true on success;
    // on failure `error` (may be null) receives the reason, or stays untouched when there is none.
    // No exception leaves it.
    virtual bool importFromMppURL(const TVFileURL& mppURL, const TVFileURL& tvnxBundleURL,
                                  bool acceptDowngradedMPP, TVError* error);

private:
    TVInfoDictionary _info;
};
