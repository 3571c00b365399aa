#include "tool/frontend/FilterEntry.h"

#include <cerrno>

int main(int argc, char** argv) {
    PreferencesStore preferences(PreferencesStore::defaultConfigRoot());
    ImporterFactory makeImporter = [](const TVInfoDictionary& info) {
        return std::make_unique<KVMSPIMPPImporter>(info);
    };
    ExporterFactory makeExporter = [](const TVInfoDictionary& info) {
        return std::make_unique<KVMSPEMPPExporter>(info);
    };
    FilterEntry entry(ImportDriver(makeImporter, preferences), ExportDriver(makeExporter, preferences));
    return entry.run(std::vector<std::string>(argv, argv + argc), program_invocation_short_name);
}
