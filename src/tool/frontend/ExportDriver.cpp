#include "tool/frontend/ExportDriver.h"

#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVException.h"
#include "MPPCommon/support/TVPath.h"
#include "tool/frontend/BatchListReader.h"
#include "tool/frontend/FrontendExceptions.h"
#include "tool/frontend/OutputNaming.h"
#include "tool/frontend/PathStandardizer.h"
#include "tool/frontend/UsageTexts.h"

namespace {

constexpr size_t kExportSingleInputOutputSlot = 5;
constexpr size_t kExportInputListOutputSlot = 6;

} // namespace

ExportDriver::ExportDriver(ExporterFactory makeExporter, PreferencesStore preferences)
    : m_makeExporter(std::move(makeExporter)), m_preferences(std::move(preferences)) {}

bool ExportDriver::run(const std::vector<std::string>& arguments, const std::string& processName) const {
    FilterSettings settings = m_preferences.settingsForDomain(kMPPExportPreferencesName);
    bool succeeded = true;
    try {
        FilterInvocation invocation = checkArguments(arguments, processName);
        for (const std::string& input : invocation.inputs) {
            succeeded = exportInput(input, invocation, arguments, settings);
        }
    } catch (const TVException& exception) {
        tvLog(stringWithFormat("EXCEPTION: %s\n%s", exception.name().c_str(), exception.reason().c_str()));
        succeeded = false;
    }
    return succeeded;
}

FilterInvocation ExportDriver::checkArguments(const std::vector<std::string>& arguments,
                                              const std::string& processName) const {
    // Six elements make the output of a single-file export mandatory, though the usage shows it as
    // optional; only the list form may leave it out.
    if (arguments.size() < 6 || arguments[1] != "-export" || arguments[2] != "--template-path") {
        throw TVException(kCommandLineArgumentException,
                          stringWithFormat("Too few arguments. %s", exporterUsage(processName).c_str()));
    }
    tvLog("Start exporting...");
    FilterInvocation invocation;
    if (lowercasedPathExtension(arguments[3]) != "mpp") {
        throw TVException(kCommandLineArgumentException,
                          stringWithFormat("Template is not a valid MPP file: '%s'", arguments[3].c_str()));
    }
    invocation.templatePath = PathStandardizer::standardize(arguments[3]);
    if (fileKindAtPath(invocation.templatePath) != FileKind::File) {
        throw TVException(kFileNotFoundException, stringWithFormat("MPP template file not found: %s",
                                                                   invocation.templatePath.c_str()));
    }
    tvLog(stringWithFormat("MPP Template URL: '%s'",
                           TVFileURL(invocation.templatePath, true).absoluteString().c_str()));
    if (arguments[4] == "--input-list") {
        invocation.inputs = BatchListReader::readInputList(arguments[5]);
        invocation.outputSlot = kExportInputListOutputSlot;
    } else {
        tvLog(stringWithFormat("### Export single file: \"%s\"", arguments[4].c_str()));
        invocation.inputs.push_back(arguments[4]);
        invocation.outputSlot = kExportSingleInputOutputSlot;
    }
    return invocation;
}

bool ExportDriver::exportInput(const std::string& input, const FilterInvocation& invocation,
                               const std::vector<std::string>& arguments,
                               const FilterSettings& settings) const {
    std::string inputPath = checkedBundlePath(input);
    TVFileURL bundleURL(inputPath, true);
    tvLog(stringWithFormat("### Export from URL: '%s'", bundleURL.absoluteString().c_str()));

    std::string outputPath = outputFilePath(bundleURL.path(), invocation, arguments, settings);
    tvLog(stringWithFormat("outputFilePath='%s'", outputPath.c_str()));
    // Without the overwrite setting an existing file stays; the exporter writes beside it.
    if (settings.overwriteFilterTarget) {
        removeItemIgnoringErrors(outputPath);
    }
    TVFileURL outputURL(outputPath, false);
    tvLog(stringWithFormat("### Write to URL: '%s'", outputURL.absoluteString().c_str()));

    TVInfoDictionary info;
    info.setString(kInfoMSPProjectName, OutputNaming::baseName(inputPath));
    TVFileURL templateURL(invocation.templatePath, true);
    info.setURL(kInfoTVNXTemplateUrl, templateURL);
    bool succeeded = m_makeExporter(info)->exportTvnxBundle(bundleURL, outputURL, templateURL);
    tvLog(
        stringWithFormat("### Exporting of %s: %s.", inputPath.c_str(), succeeded ? "SUCCEEDED" : "FAILED"));
    return succeeded;
}

std::string ExportDriver::checkedBundlePath(const std::string& input) const {
    if (!BatchListReader::isSkippedEntry(input) && lowercasedPathExtension(input) != "tvnx") {
        throw TVException(kCommandLineArgumentException,
                          stringWithFormat("Input file is not a valid TVNX doc folder: '%s'", input.c_str()));
    }
    std::string inputPath = PathStandardizer::standardize(input);
    FileKind inputKind = fileKindAtPath(inputPath);
    if (inputKind == FileKind::Missing) {
        throw TVException(kFileNotFoundException,
                          stringWithFormat("Input file not found: %s", inputPath.c_str()));
    }
    if (inputKind != FileKind::Directory) {
        throw TVException(kFileNotFoundException,
                          stringWithFormat("Input file is not a bundle (folder): %s", inputPath.c_str()));
    }
    return inputPath;
}

std::string ExportDriver::outputFilePath(const std::string& inputPath, const FilterInvocation& invocation,
                                         const std::vector<std::string>& arguments,
                                         const FilterSettings& settings) const {
    if (invocation.outputSlot >= arguments.size()) {
        return OutputNaming::exportTargetPath(deletingLastPathComponent(inputPath), inputPath,
                                              settings.includeInputExtension);
    }
    std::string output = PathStandardizer::standardize(arguments[invocation.outputSlot]);
    if (fileKindAtPath(output) == FileKind::Directory) {
        return OutputNaming::exportTargetPath(output, inputPath, settings.includeInputExtension);
    }
    if (pathExtension(output) != "mpp") {
        throw TVException(kCommandLineArgumentException,
                          stringWithFormat("Output file extension is not 'mpp': %s.", output.c_str()));
    }
    return output;
}
