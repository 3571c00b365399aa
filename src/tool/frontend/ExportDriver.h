#pragma once

#include "MPPExporter/pipeline/KVMSPEMPPExporter.h"
#include "tool/frontend/FilterInvocation.h"
#include "tool/frontend/PreferencesStore.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

// Makes the export pipeline for one input from its info dictionary.
using ExporterFactory = std::function<std::unique_ptr<KVMSPEMPPExporter>(const TVInfoDictionary& info)>;

// Runs the export form of the command line: checks the arguments, then exports each bundle into an
// MPP file beside it, into an output folder, or to the output file named on the command line.
class ExportDriver {
public:
    ExportDriver(ExporterFactory makeExporter, PreferencesStore preferences);

    // True when the last input was exported or there was none; false after an exception.
    bool run(const std::vector<std::string>& arguments, const std::string& processName) const;

private:
    FilterInvocation checkArguments(const std::vector<std::string>& arguments,
                                    const std::string& processName) const;
    bool exportInput(const std::string& input, const FilterInvocation& invocation,
                     const std::vector<std::string>& arguments, const FilterSettings& settings) const;
    // The standardised path of an input that is an existing folder; blank and comment lines are
    // exempt from the extension test only.
    std::string checkedBundlePath(const std::string& input) const;
    std::string outputFilePath(const std::string& inputPath, const FilterInvocation& invocation,
                               const std::vector<std::string>& arguments,
                               const FilterSettings& settings) const;

    ExporterFactory m_makeExporter;
    PreferencesStore m_preferences;
};
