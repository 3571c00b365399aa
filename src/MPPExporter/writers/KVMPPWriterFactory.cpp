#include "MPPExporter/writers/KVMPPWriterFactory.h"

#include "MPPExporter/writers/KVMPP15TaskWriter.h"
#include "MPPImporter/format/MPPFormatConstants.h"

std::unique_ptr<KVMPPWriter>
KVMPPWriterFactory::createMPPExporterWithReader(std::unique_ptr<KVMPPFormatReader> reader,
                                                std::unique_ptr<KVMPPFormatWriter> writer,
                                                int32_t layoutVersion) {
    const bool inDataStorage = writer->getParentName() == k114DirectoryName;
    if (inDataStorage && writer->isDirectory() && writer->getName() == kTaskStorageName) {
        return std::make_unique<KVMPP15TaskWriter>(std::move(writer), std::move(reader), layoutVersion);
    }
    return std::make_unique<KVMPPWriter>(std::move(writer), std::move(reader), layoutVersion);
}
