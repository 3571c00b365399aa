#pragma once

#include "MPPExporter/writers/KVMPPFormatWriter.h"

#include <memory>
#include <string>

class SSLRoot;

// The output file of an export. The file is complete when the writer is closed or ends.
class KVMPPFileWriter {
public:
    explicit KVMPPFileWriter(std::string mppFilePath);
    ~KVMPPFileWriter();

    // Creates the file; false if it can't be created.
    bool open();
    std::string getName() const;
    // A storage or stream under the root; none when it can't be made.
    std::unique_ptr<KVMPPFormatWriter> createChildWriterWithName(const std::string& name, bool isDirectory);
    // Lays out the directory and tables behind the data and closes the file.
    void close();

private:
    std::string m_mppFilePath;
    std::unique_ptr<SSLRoot> m_root;
    std::unique_ptr<KVMPPFormatWriter> m_rootStorage;
};
