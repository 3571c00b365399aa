#include "tool/inspect/InfoCommand.h"

#include "MPPCommon/storage/SSLRoot.h"
#include "MPPCommon/storage/SSLStorage.h"
#include "MPPCommon/storage/SSLStream.h"
#include "MPPCommon/support/TVError.h"
#include "MPPCommon/support/TVException.h"
#include "MPPImporter/file/KVMPPCompObjReader.h"
#include "MPPImporter/file/KVMSPIClassFactory.h"
#include "MPPImporter/file/KVMSPIMPPPropertyList.h"
#include "MPPImporter/file/KVMSPIMPPVersionReader.h"
#include "MPPImporter/format/MPPFormatConstants.h"
#include "tool/inspect/PlanOptions.h"

#include <optional>

namespace {

// Codes with which the import ends when the file can't be opened, and when an internal check fails.
constexpr int kInvalidFileError = 4;
constexpr int kAssertionError = 5;

nlohmann::ordered_json errorObject(const std::string& domain, int code, const std::string& text) {
    return {{"error", {{"domain", domain}, {"code", code}, {"text", text}}}};
}

nlohmann::ordered_json optionalText(const std::optional<std::string>& text) {
    return text ? nlohmann::ordered_json(*text) : nlohmann::ordered_json();
}

} // namespace

nlohmann::ordered_json InfoCommand::infoOfFile(const std::string& path, bool acceptDowngraded) {
    SSLRoot root(path);
    if (root.lastError() != 0) {
        return errorObject(kTVMSPGeneralErrorDomain, kInvalidFileError,
                           "MSPIMPPImporter: Couldn't open an invalid MPP file.");
    }
    try {
        TVError error;
        auto reader = KVMSPIMPPVersionReader(path).getMppReader(root, acceptDowngraded, &error);
        if (!reader) {
            // A CompObj stream without a format string is refused without an error of its own.
            return error.domain.empty()
                       ? errorObject(kTVMSPGeneralErrorDomain, 0, "The CompObj stream names no format.")
                       : errorObject(error.domain, error.code, error.localizedDescription());
        }
        const KVMPPCompObjReader compObj(reader->rootStorage().childStreamWithName(kCompObjFileName));
        return {
            {"formatVersion", KVMSPIClassFactory::propertyListForFormat(*compObj.fileFormat())->mppVersion()},
            {"appVersion", reader->appVersion()},
            {"formatString", *compObj.fileFormat()},
            {"applicationName", optionalText(compObj.applicationName())},
            {"applicationID", optionalText(compObj.applicationID())},
            // Stored in 16 bits; 65001 and other code pages above 32767 are meant unsigned.
            {"codepage", static_cast<uint16_t>(reader->codepage())},
        };
    } catch (const TVException& exception) {
        return errorObject(kTVMSPGeneralErrorDomain, kAssertionError, exception.reason());
    }
}

std::string InfoCommand::argumentsUsage() const {
    return PlanOptions::usage(false) + "FILE";
}

std::optional<nlohmann::ordered_json> InfoCommand::reportFor(const std::vector<std::string>& arguments) {
    const auto options = PlanOptions::parse(arguments, false, 1);
    if (!options) {
        return std::nullopt;
    }
    return infoOfFile(options->operands[0], options->acceptDowngraded);
}
