#pragma once

#include "MPPImporter/file/KVMSPIMPPReader.h"

#include <memory>
#include <string>

class SSLRoot;
struct TVError;

// Tells which format and application wrote an opened MPP file and creates its reader.
class KVMSPIMPPVersionReader {
public:
    explicit KVMSPIMPPVersionReader(std::string mppUrl,
                                    KVMSPIMPPReader::ProjectReaderFactory projectReaderFactory = {});

    const std::string& mppUrl() const { return m_mppUrl; }

    // The reader of the file under `root`, which must outlive it. A file that is refused gives none
    // and its error (see KVMSPIClassFactory); a CompObj stream without a format string gives none and
    // an empty error. A root that isn't a readable directory, or a file without a CompObj stream, is an
    // assertion failure.
    std::unique_ptr<KVMSPIMPPReader> getMppReader(SSLRoot& root, bool acceptDowngradedMPP,
                                                  TVError* error) const;

private:
    std::string m_mppUrl;
    KVMSPIMPPReader::ProjectReaderFactory m_projectReaderFactory;
};
