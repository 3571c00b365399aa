#include "MPPCommon/bundle/KVTVNXNames.h"

#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVException.h"

namespace tvnx {

std::string scenarioNameForBaseline(int baselineNumber) {
    tvAssert(baselineNumber >= kActualBaselineNumber && baselineNumber < kBaselineCount,
             stringWithFormat("Unexpected baseline number: %d", baselineNumber));
    if (baselineNumber == kActualBaselineNumber) {
        return kActualScenarioName;
    }
    if (baselineNumber == 0) {
        return kBaselineScenarioName;
    }
    return stringWithFormat("%s%d", kBaselineScenarioName, baselineNumber);
}

std::string scenarioFileName(const std::string& scenarioName) {
    return scenarioName + "." + kScenarioFileExtension;
}

} // namespace tvnx
