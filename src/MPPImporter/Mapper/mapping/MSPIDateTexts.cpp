#include "MPPImporter/Mapper/mapping/MSPIDateTexts.h"

#include "MPPImporter/Mapper/utilities/KVMSPIUtilities.h"

namespace {

bool isDateText(const std::optional<std::string>& text) {
    return text && KVMSPIUtilities::isMspdiDateTime(*text);
}

} // namespace

std::optional<std::string> tvnxDateTimeOfMspdi(const std::optional<std::string>& text) {
    return isDateText(text) ? KVMSPIUtilities::mspdiToTvnxDateTime(*text) : std::nullopt;
}

std::optional<TVDate> mppDateTimeOfMspdi(const std::optional<std::string>& text) {
    return isDateText(text) ? KVMSPIUtilities::mspdiToMppDateTime(*text) : std::nullopt;
}
