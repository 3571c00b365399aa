#pragma once

#include <string>

// Names of conversion targets, formed from the input's base name (its last component without
// extension).
class OutputNaming {
public:
    // folder/<base>.tvnx, or folder/<base>.<input extension, lower-cased>.tvnx when the input's
    // extension is kept.
    static std::string importTargetPath(const std::string& folder, const std::string& inputPath,
                                        bool includeInputExtension);

    // folder/<base>.mpp, or folder/<base>.tvnx.mpp when the input's extension is kept.
    static std::string exportTargetPath(const std::string& folder, const std::string& inputPath,
                                        bool includeInputExtension);

    static std::string baseName(const std::string& inputPath);
};
