#include "tool/inspect/PropsCommand.h"

#include "MPPCommon/storage/SSLRoot.h"
#include "MPPCommon/storage/SSLStorage.h"
#include "MPPCommon/storage/SSLStream.h"
#include "MPPCommon/support/TVException.h"
#include "MPPImporter/file/KVMSPIMPPPropertyList.h"
#include "MPPImporter/file/KVMSPIMPPReader.h"
#include "MPPImporter/file/KVMSPIMPPVersionReader.h"
#include "MPPImporter/file/KVMSPIPropsReader.h"
#include "tool/inspect/InfoCommand.h"
#include "tool/inspect/PropertyStreamDump.h"

#include <memory>

namespace {

// The project's own Props stream, inside the data directory.
constexpr const char* kProjectPropsStreamName = "Props";

std::unique_ptr<KVMSPIMPPReader> mppReader(SSLRoot& root, const std::string& path) {
    if (root.lastError() != 0) {
        return nullptr;
    }
    try {
        return KVMSPIMPPVersionReader(path).getMppReader(root, true, nullptr);
    } catch (const TVException&) {
        return nullptr;
    }
}

nlohmann::ordered_json propsStreamObject(KVMSPIPropsReader& reader, const std::string& streamPath,
                                         int16_t codepage) {
    return {{"stream", streamPath}, {"properties", PropertyStreamDump(reader, codepage).propsEntries()}};
}

} // namespace

nlohmann::ordered_json PropsCommand::propertiesOfFile(const std::string& path) {
    SSLRoot root(path);
    auto reader = mppReader(root, path);
    if (!reader) {
        return InfoCommand::infoOfFile(path, true);
    }
    const int16_t codepage = reader->codepage();
    const KVMSPIMPPPropertyList& list = reader->MPPPropertyList();
    // Stored in 16 bits; 65001 and other code pages above 32767 are meant unsigned.
    nlohmann::ordered_json result = {{"codepage", static_cast<uint16_t>(codepage)}};
    if (KVMSPIPropsReader* summary = reader->summaryInfoReader()) {
        result["summaryInformation"] = PropertyStreamDump(*summary, codepage).propertySetEntries(false);
    }
    if (KVMSPIPropsReader* docSummary = reader->docSummaryInfoReader()) {
        result["documentSummaryInformation"] =
            PropertyStreamDump(*docSummary, codepage).propertySetEntries(true);
        result["userDefinedNames"] = docSummary->customPropertyNames();
    }
    if (KVMSPIPropsReader* docProps = reader->docPropsReader()) {
        result["docProps"] = propsStreamObject(*docProps, list.ole2PropsName(), codepage);
    }
    auto dataDirectory = reader->rootStorage().childStorageWithName(list.ole2DataDirectoryName());
    if (auto stream = dataDirectory ? dataDirectory->childStreamWithName(kProjectPropsStreamName) : nullptr) {
        KVMSPIPropsReader projectProps(std::move(stream));
        result["projectProps"] = propsStreamObject(
            projectProps, list.ole2DataDirectoryName() + "/" + kProjectPropsStreamName, codepage);
    }
    return result;
}

std::optional<nlohmann::ordered_json> PropsCommand::reportFor(const std::vector<std::string>& arguments) {
    if (arguments.size() != 1) {
        return std::nullopt;
    }
    try {
        return propertiesOfFile(arguments[0]);
    } catch (const TVException& exception) {
        // A Props stream whose property set is malformed fails an internal check.
        return nlohmann::ordered_json{{"error", {{"name", exception.name()}, {"text", exception.reason()}}}};
    }
}
