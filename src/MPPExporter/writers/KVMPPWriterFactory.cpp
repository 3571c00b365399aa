#include "MPPExporter/writers/KVMPPWriterFactory.h"

#include "MPPExporter/writers/KVMPP15ConsstraintWriter.h"
#include "MPPExporter/writers/KVMPP15TaskWriter.h"
#include "MPPImporter/format/MPPFormatConstants.h"

std::unique_ptr<KVMPPWriter>
KVMPPWriterFactory::createMPPExporterWithReader(std::unique_ptr<KVMPPFormatReader> reader,
                                                std::unique_ptr<KVMPPFormatWriter> writer,
                                                int32_t layoutVersion) {
    if (writer->getParentName() == k114DirectoryName && writer->isDirectory()) {
        if (writer->getName() == kTaskStorageName) {
            return std::make_unique<KVMPP15TaskWriter>(std::move(writer), std::move(reader), layoutVersion);
        }
        if (writer->getName() == kConstraintStorageName) {
            return std::make_unique<KVMPP15ConsstraintWriter>(std::move(writer), std::move(reader),
                                                              layoutVersion);
        }
    }
    return std::make_unique<KVMPPWriter>(std::move(writer), std::move(reader), layoutVersion);
}
