#include "MPPImporter/Mapper/mapping/KVMSPIMapper.h"
#include "tool/frontend/FilterEntry.h"

#include <cerrno>

int main(int argc, char** argv) {
    PreferencesStore preferences(PreferencesStore::defaultConfigRoot());
    ImporterFactory makeImporter = [mapperFactory = KVMSPIMapper::factory()](const TVInfoDictionary& info) {
        return std::make_unique<KVMSPIMPPImporter>(info, mapperFactory);
    };
    ExporterFactory makeExporter = [](const TVInfoDictionary& info) {
        return std::make_unique<KVMSPEMPPExporter>(info);
    };
    FilterEntry entry(ImportDriver(makeImporter, preferences), ExportDriver(makeExporter, preferences));
    return entry.run(std::vector<std::string>(argv, argv + argc), program_invocation_short_name);
}
