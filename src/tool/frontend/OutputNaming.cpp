#include "tool/frontend/OutputNaming.h"

#include "MPPCommon/support/TVPath.h"

std::string OutputNaming::importTargetPath(const std::string& folder, const std::string& inputPath,
                                           bool includeInputExtension) {
    std::string name = baseName(inputPath);
    if (includeInputExtension) {
        name += "." + lowercasedPathExtension(inputPath);
    }
    return appendingPathComponent(folder, name + ".tvnx");
}

std::string OutputNaming::exportTargetPath(const std::string& folder, const std::string& inputPath,
                                           bool includeInputExtension) {
    std::string name = baseName(inputPath) + (includeInputExtension ? ".tvnx" : "");
    return appendingPathComponent(folder, name + ".mpp");
}

std::string OutputNaming::baseName(const std::string& inputPath) {
    return deletingPathExtension(lastPathComponent(inputPath));
}
