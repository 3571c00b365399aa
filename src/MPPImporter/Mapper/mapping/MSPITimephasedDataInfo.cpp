#include "MPPImporter/Mapper/mapping/MSPITimephasedDataInfo.h"

#include "MPPImporter/Mapper/mapping/MSPIDateTexts.h"
#include "MPPImporter/Mapper/utilities/KVMSPIUtilities.h"

MSPITimephasedDataInfo::MSPITimephasedDataInfo(std::string taskName, int64_t type,
                                               const std::optional<std::string>& startDate,
                                               const std::optional<std::string>& endDate,
                                               const std::optional<std::string>& duration)
    : _taskName(std::move(taskName)), _type(type), _startDate(mppDateTimeOfMspdi(startDate)),
      _endDate(mppDateTimeOfMspdi(endDate)),
      _duration(duration ? KVMSPIUtilities::mspdiToMppDuration(*duration) : 0.0) {}
