#pragma once

#include "MPPExporter/writers/KVMPPWriter.h"

#include <memory>

// Picks the writer of one entry of the template walk by the entry's name and its storage's name.
class KVMPPWriterFactory {
public:
    // A regenerating writer for the storages whose streams the export writes from the model, and the
    // copying writer for every other entry, however unknown, so that the template's content goes
    // into the output whole.
    static std::unique_ptr<KVMPPWriter> createMPPExporterWithReader(std::unique_ptr<KVMPPFormatReader> reader,
                                                                    std::unique_ptr<KVMPPFormatWriter> writer,
                                                                    int32_t layoutVersion);
};
