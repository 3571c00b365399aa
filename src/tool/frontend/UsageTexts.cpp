#include "tool/frontend/UsageTexts.h"

#include "MPPCommon/support/Log.h"

std::string generalUsage(const std::string& programName) {
    const char* name = programName.c_str();
    return stringWithFormat("\nImporter Usage:\n"
                            "  %s --template-path <TVNX_template_path> <input_MPP_path> "
                            "<[output_folder_path]> [-accept-downgraded]\n"
                            "  %s --template-path <TVNX_template_path> --input-list <input_list_file_path> "
                            "<[output_folder_path]> "
                            "[-accept-downgraded]\n",
                            name, name) +
           exporterUsage(programName);
}

std::string importerUsageA(const std::string& programName) {
    const char* name = programName.c_str();
    return stringWithFormat("Importer Usage:\n"
                            "  %s --template-path <TVNX_template_path> <input_MPP_path> "
                            "<[output_folder_path]> [-accept-downgraded]\n"
                            "  %s --template-path <TVNX_template_path> --input-list <input_list_file_path> "
                            "<[output_folder_path]>  "
                            "[-accept-downgraded]",
                            name, name);
}

std::string importerUsageB(const std::string& programName) {
    const char* name = programName.c_str();
    return stringWithFormat(
        "Importer Usage:\n"
        "  %s --template-path <TVNX_template_path> <input_MPP_path> <output_folder_path> "
        "[-accept-downgraded]\n"
        "  %s --template-path <TVNX_template_path> --input-list <input_list_file_path> <output_folder_path>  "
        "[-accept-downgraded]",
        name, name);
}

std::string exporterUsage(const std::string& programName) {
    const char* name = programName.c_str();
    return stringWithFormat(
        "Exporter Usage:\n"
        "  %s -export --template-path <MPP_template_path> <input_TVNX_path> [<output_folder_path>]\n"
        "  %s -export --template-path <MPP_template_path> <input_TVNX_path> [<output_MPP_path>]\n"
        "  %s -export --template-path <MPP_template_path> --input-list <input_list_file_path> "
        "[<output_folder_path>]",
        name, name, name);
}
