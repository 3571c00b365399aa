#include "MPPExporter/pipeline/KVMSPEMPPExporter.h"

#include "MPPCommon/support/Log.h"

// The export pipeline is not part of this build yet: every export reports failure.

KVMSPEMPPExporter::KVMSPEMPPExporter(const TVInfoDictionary& info) : _info(info) {}

KVMSPEMPPExporter::~KVMSPEMPPExporter() = default;

bool KVMSPEMPPExporter::exportTvnxBundle(const TVFileURL&, const TVFileURL&, const TVFileURL&) {
    tvLog("### Export is not available in this build");
    return false;
}
