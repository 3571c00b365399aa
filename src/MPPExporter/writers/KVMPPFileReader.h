#pragma once

#include "MPPExporter/writers/KVMPPFormatReader.h"

#include <memory>
#include <string>

class SSLRoot;

// The template file of an export, open for reading for the whole walk.
class KVMPPFileReader {
public:
    // The layouts that the writers write: format 14 as applications 15 and 16 save it.
    static constexpr int32_t kWritableFormatVersion = 4;

    explicit KVMPPFileReader(std::string mppFilePath);
    ~KVMPPFileReader();

    // Opens the file and reads its CompObj stream; false if it is no compound file.
    bool open();
    std::string getName();
    int32_t numberOfChildren();
    // kWritableFormatVersion for a template of format 14 saved by application 15 or 16, 0 for any
    // other: the writers lay their records out for those applications, and a file of another
    // layout would not open in the application.
    int32_t getFormatVersion() const;
    // 15 or 16 for a writable template: the key column by which the writers place their fields.
    int32_t applicationVersion() const { return m_applicationVersion; }

    std::unique_ptr<KVMPPFormatReader> createChildReaderUnderRootAtIndex(int32_t index);
    std::unique_ptr<KVMPPFormatReader> childDirectoryReaderWithName(const std::string& name);
    std::unique_ptr<KVMPPFormatReader> childStreamReaderWithName(const std::string& name);
    void close();

private:
    std::string m_mppFilePath;
    std::unique_ptr<SSLRoot> m_root;
    std::unique_ptr<KVMPPFormatReader> m_rootStorage;
    int32_t m_applicationVersion = 0;
    bool m_formatFourteen = false;
};
