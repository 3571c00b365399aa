#pragma once

#include "MPPCommon/support/Log.h"
#include "support/TestSupport.h"
#include "tool/frontend/ExportDriver.h"
#include "tool/frontend/ImportDriver.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <optional>

namespace frontendtest {

struct ImportCall {
    TVFileURL mppURL, bundleURL;
    bool acceptDowngraded;
    TVInfoDictionary info;
};
struct ImportOutcome {
    bool succeeded = true;
    std::optional<TVError> error;
};

// Stands in for the import pipeline: records each call and answers the scripted outcome of its turn
// (success once the script ends). Like the real pipeline it leaves a bundle folder behind.
struct ImportRecorder {
    std::vector<ImportCall> calls;
    std::vector<ImportOutcome> outcomes;

    ImporterFactory factory() {
        struct Double : KVMSPIMPPImporter {
            Double(const TVInfoDictionary& info, ImportRecorder& r)
                : KVMSPIMPPImporter(info), info(info), r(r) {}
            bool importFromMppURL(const TVFileURL& mpp, const TVFileURL& bundle, bool flag,
                                  TVError* error) override {
                ImportOutcome outcome =
                    r.calls.size() < r.outcomes.size() ? r.outcomes[r.calls.size()] : ImportOutcome{};
                r.calls.push_back({mpp, bundle, flag, info});
                std::filesystem::create_directories(bundle.path());
                if (outcome.error) {
                    setError(error, *outcome.error);
                }
                return outcome.succeeded;
            }
            TVInfoDictionary info;
            ImportRecorder& r;
        };
        return [this](const TVInfoDictionary& info) { return std::make_unique<Double>(info, *this); };
    }
};

struct ExportCall {
    TVFileURL bundleURL, mppURL, templateURL;
    TVInfoDictionary info;
};

// Stands in for the export pipeline: records each call and answers the scripted result of its turn.
struct ExportRecorder {
    std::vector<ExportCall> calls;
    std::vector<bool> results;

    ExporterFactory factory() {
        struct Double : KVMSPEMPPExporter {
            Double(const TVInfoDictionary& info, ExportRecorder& r)
                : KVMSPEMPPExporter(info), info(info), r(r) {}
            bool exportTvnxBundle(const TVFileURL& bundle, const TVFileURL& mpp,
                                  const TVFileURL& templ) override {
                bool result = r.calls.size() < r.results.size() ? r.results[r.calls.size()] : true;
                r.calls.push_back({bundle, mpp, templ, info});
                return result;
            }
            TVInfoDictionary info;
            ExportRecorder& r;
        };
        return [this](const TVInfoDictionary& info) { return std::make_unique<Double>(info, *this); };
    }
};

// A temporary folder to lay out inputs in, its own preferences root, and the captured log.
class FrontendTest : public ::testing::Test {
protected:
    void SetUp() override {
        tvSetLogSink([this](const std::string& line) { logLines.push_back(line); });
    }
    void TearDown() override { tvSetLogSink({}); }

    std::string path(const std::string& relative) const { return (temp.path() / relative).string(); }
    std::string makeFolder(const std::string& relative) const {
        std::filesystem::create_directories(path(relative));
        return path(relative);
    }
    std::string makeFile(const std::string& relative, const std::string& contents = "x") const {
        std::filesystem::create_directories(std::filesystem::path(path(relative)).parent_path());
        std::ofstream(path(relative), std::ios::binary) << contents;
        return path(relative);
    }
    bool exists(const std::string& relative) const { return std::filesystem::exists(path(relative)); }
    bool logged(const std::string& line) const {
        return std::find(logLines.begin(), logLines.end(), line) != logLines.end();
    }
    PreferencesStore preferences() const { return PreferencesStore(path("config")); }
    void setPreferences(const std::string& domain, const std::string& lines) const {
        makeFile("config/Tarvane2/" + domain + ".conf", lines);
    }

    testsupport::TempDir temp;
    std::vector<std::string> logLines;
};

} // namespace frontendtest
