#pragma once

#include "MPPExporter/writers/KVMPPOffsetMarkedData.h"

// A fixed data stream ("FixedData", "Fixed2Data"): records end to end, one element each.
class KVMPPFixedData : public KVMPPOffsetMarkedData {};
