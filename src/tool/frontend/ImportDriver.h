#pragma once

#include "MPPImporter/pipeline/KVMSPIMPPImporter.h"
#include "tool/frontend/FilterInvocation.h"
#include "tool/frontend/PreferencesStore.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

// Makes the import pipeline for one input from its info dictionary.
using ImporterFactory = std::function<std::unique_ptr<KVMSPIMPPImporter>(const TVInfoDictionary& info)>;

// Runs the import form of the command line: checks the arguments, then imports each input into a
// bundle of its own, numbered around existing ones unless the preferences say to overwrite.
class ImportDriver {
public:
    ImportDriver(ImporterFactory makeImporter, PreferencesStore preferences);

    // The exit status: -1 when no input reached its import, else the status of the last import
    // (0 or the code of the error it reported).
    int run(const std::vector<std::string>& arguments, const std::string& processName) const;

private:
    FilterInvocation checkArguments(const std::vector<std::string>& arguments,
                                    const std::string& processName) const;
    int importInput(const std::string& input, const FilterInvocation& invocation,
                    const std::vector<std::string>& arguments, const FilterSettings& settings) const;
    // The standardised path of an input that exists and is no folder.
    std::string checkedInputPath(const std::string& input) const;
    // The bundle to write: named after the input, in the output folder, free or freed.
    std::string bundlePath(const std::string& inputPath, const FilterInvocation& invocation,
                           const std::vector<std::string>& arguments, const FilterSettings& settings) const;
    std::string outputFolder(const std::string& inputPath, const FilterInvocation& invocation,
                             const std::vector<std::string>& arguments) const;

    ImporterFactory m_makeImporter;
    PreferencesStore m_preferences;
};
