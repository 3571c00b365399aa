#include "tool/inspect/ModelCommand.h"

#include "MPPCommon/support/TVException.h"
#include "MPPExporter/MPPObjects/KVMPPProject.h"
#include "MPPExporter/MPPObjects/MPPProjectJSON.h"
#include "MPPExporter/pipeline/KVMSPEMPPExporter.h"

namespace {

nlohmann::ordered_json errorObject(const std::string& name, const std::string& text) {
    return {{"error", {{"name", name}, {"text", text}}}};
}

} // namespace

nlohmann::ordered_json ModelCommand::modelOfBundle(const std::string& path) {
    try {
        const auto project =
            KVMSPEMPPExporter::newProjectFromBundle(TVFileURL(path, true), TVInfoDictionary());
        if (!project) {
            return errorObject(kMSPEMPPExporterException,
                               "The editing scenario's document is not a scenario.");
        }
        return MPPProjectJSON::projectToJSON(*project);
    } catch (const TVException& exception) {
        return errorObject(exception.name(), exception.reason());
    }
}

std::optional<nlohmann::ordered_json> ModelCommand::reportFor(const std::vector<std::string>& arguments) {
    if (arguments.size() != 1) {
        return std::nullopt;
    }
    return modelOfBundle(arguments[0]);
}
