#include "tool/frontend/ImportDriver.h"

#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVException.h"
#include "MPPCommon/support/TVPath.h"
#include "tool/frontend/BatchListReader.h"
#include "tool/frontend/FrontendExceptions.h"
#include "tool/frontend/OutputNaming.h"
#include "tool/frontend/PathStandardizer.h"
#include "tool/frontend/UsageTexts.h"

namespace {

constexpr const char* kAcceptDowngradedFlag = "-accept-downgraded";
constexpr size_t kImportSingleInputOutputSlot = 4;
constexpr size_t kImportInputListOutputSlot = 5;

} // namespace

ImportDriver::ImportDriver(ImporterFactory makeImporter, PreferencesStore preferences)
    : m_makeImporter(std::move(makeImporter)), m_preferences(std::move(preferences)) {}

int ImportDriver::run(const std::vector<std::string>& arguments, const std::string& processName) const {
    FilterSettings settings = m_preferences.settingsForDomain(kMPPImportPreferencesName);
    int status = -1;
    try {
        FilterInvocation invocation = checkArguments(arguments, processName);
        for (const std::string& input : invocation.inputs) {
            if (!BatchListReader::isSkippedEntry(input)) {
                status = importInput(input, invocation, arguments, settings);
            }
        }
    } catch (const TVException& exception) {
        tvLog(stringWithFormat("EXCEPTION: %s\n%s", exception.name().c_str(), exception.reason().c_str()));
    }
    tvLog("Final clean up.");
    return status;
}

FilterInvocation ImportDriver::checkArguments(const std::vector<std::string>& arguments,
                                              const std::string& processName) const {
    if (arguments.size() < 4 || arguments[1] != "--template-path") {
        throw TVException(kCommandLineArgumentException,
                          stringWithFormat("Too few arguments. %s", importerUsageA(processName).c_str()));
    }
    tvLog("Start importing...");
    FilterInvocation invocation;
    if (lowercasedPathExtension(arguments[2]) != "tvnx") {
        throw TVException(
            kCommandLineArgumentException,
            stringWithFormat("Template is not a valid TVNX doc folder: '%s'", arguments[2].c_str()));
    }
    invocation.templatePath = PathStandardizer::standardize(arguments[2]);
    if (fileKindAtPath(invocation.templatePath) != FileKind::Directory) {
        throw TVException(kFileNotFoundException, stringWithFormat("TVNX template doc folder not found: %s",
                                                                   invocation.templatePath.c_str()));
    }
    tvLog(stringWithFormat("TVNX Template URL: '%s'",
                           TVFileURL(invocation.templatePath, true).absoluteString().c_str()));
    if (arguments[3] == "--input-list") {
        if (arguments.size() <= 4) {
            throw TVException(kCommandLineArgumentException,
                              stringWithFormat("Wrong arguments. %s", importerUsageB(processName).c_str()));
        }
        invocation.inputs = BatchListReader::readInputList(arguments[4]);
        invocation.outputSlot = kImportInputListOutputSlot;
    } else {
        tvLog(stringWithFormat("### Import single file: \"%s\"", arguments[3].c_str()));
        invocation.inputs.push_back(arguments[3]);
        invocation.outputSlot = kImportSingleInputOutputSlot;
    }
    return invocation;
}

int ImportDriver::importInput(const std::string& input, const FilterInvocation& invocation,
                              const std::vector<std::string>& arguments,
                              const FilterSettings& settings) const {
    TVFileURL inputURL(checkedInputPath(input), false);
    tvLog(stringWithFormat("### Import from URL: '%s'", inputURL.absoluteString().c_str()));
    TVFileURL bundleURL(bundlePath(inputURL.path(), invocation, arguments, settings), true);
    TVFileURL templateURL(invocation.templatePath, true);
    tvLog(stringWithFormat("### Write to URL (bundle): '%s'", bundleURL.absoluteString().c_str()));

    TVInfoDictionary info;
    info.setString(kInfoMSPProjectName, OutputNaming::baseName(inputURL.path()));
    info.setURL(kInfoTVNXTemplateUrl, templateURL);
    bool acceptDowngraded = arguments.back() == kAcceptDowngradedFlag;
    TVError error;
    bool succeeded = m_makeImporter(info)->importFromMppURL(inputURL, bundleURL, acceptDowngraded, &error);

    // An error object that came back sets the status; a failure without one leaves code 0.
    if (succeeded) {
        tvLog("### Importer SUCCEEDED");
    } else {
        std::string description = error.domain.empty() ? "(null)" : error.localizedDescription();
        tvLog(stringWithFormat("### Importer FAILED: error code(%d): %s", error.code, description.c_str()));
        removeItemIgnoringErrors(bundleURL.path());
    }
    return error.code;
}

std::string ImportDriver::checkedInputPath(const std::string& input) const {
    std::string extension = lowercasedPathExtension(input);
    if (extension != "mpp" && extension != "mpt") {
        throw TVException(kCommandLineArgumentException,
                          stringWithFormat("Input file is not MPP: '%s'", input.c_str()));
    }
    std::string inputPath = PathStandardizer::standardize(input);
    FileKind inputKind = fileKindAtPath(inputPath);
    if (inputKind == FileKind::Missing) {
        throw TVException(kFileNotFoundException,
                          stringWithFormat("Input file not found: %s", inputPath.c_str()));
    }
    if (inputKind == FileKind::Directory) {
        throw TVException(kFileNotFoundException,
                          stringWithFormat("Input file is a directory: %s", inputPath.c_str()));
    }
    return inputPath;
}

std::string ImportDriver::bundlePath(const std::string& inputPath, const FilterInvocation& invocation,
                                     const std::vector<std::string>& arguments,
                                     const FilterSettings& settings) const {
    std::string folder = outputFolder(inputPath, invocation, arguments);
    std::string path = OutputNaming::importTargetPath(folder, inputPath, settings.includeInputExtension);
    tvLog(stringWithFormat("tvnxBundlePath='%s'", path.c_str()));
    if (!settings.overwriteFilterTarget) {
        return firstFreeNumberedPath(path);
    }
    removeItemIgnoringErrors(path);
    return path;
}

std::string ImportDriver::outputFolder(const std::string& inputPath, const FilterInvocation& invocation,
                                       const std::vector<std::string>& arguments) const {
    std::string folder = deletingLastPathComponent(inputPath);
    if (invocation.outputSlot < arguments.size()) {
        std::string slot = PathStandardizer::standardize(arguments[invocation.outputSlot]);
        if (slot != kAcceptDowngradedFlag) {
            folder = slot;
        }
    }
    if (fileKindAtPath(folder) != FileKind::Directory) {
        throw TVException(kFileNotFoundException,
                          stringWithFormat("Output directoty not found: %s", folder.c_str()));
    }
    return folder;
}
