#include "MPPExporter/writers/KVMPPWriterFactory.h"

#include "MPPExporter/writers/KVMPP15AssignmentWriter.h"
#include "MPPExporter/writers/KVMPP15CalendarWriter.h"
#include "MPPExporter/writers/KVMPP15ConsstraintWriter.h"
#include "MPPExporter/writers/KVMPP15DocumentSummaryInformationWriter.h"
#include "MPPExporter/writers/KVMPP15ProjectPropsWriter.h"
#include "MPPExporter/writers/KVMPP15ResourceWriter.h"
#include "MPPExporter/writers/KVMPP15SummaryInformationWriter.h"
#include "MPPExporter/writers/KVMPP15TaskWriter.h"
#include "MPPImporter/format/MPPFormatConstants.h"

std::unique_ptr<KVMPPWriter>
KVMPPWriterFactory::createMPPExporterWithReader(std::unique_ptr<KVMPPFormatReader> reader,
                                                std::unique_ptr<KVMPPFormatWriter> writer,
                                                int32_t layoutVersion) {
    // The project's settings: "Props14" at the root and "Props" in the data directory.
    if (!writer->isDirectory() &&
        (writer->getName() == kProjectPropsFileName ||
         (writer->getParentName() == k114DirectoryName && writer->getName() == kDataPropsStreamName))) {
        return std::make_unique<KVMPP15ProjectPropsWriter>(std::move(writer), std::move(reader),
                                                           layoutVersion);
    }
    if (!writer->isDirectory() && writer->getName() == kSummaryInfoFileName) {
        return std::make_unique<KVMPP15SummaryInformationWriter>(std::move(writer), std::move(reader),
                                                                 layoutVersion);
    }
    if (!writer->isDirectory() && writer->getName() == kDocSummaryInfoFileName) {
        return std::make_unique<KVMPP15DocumentSummaryInformationWriter>(std::move(writer), std::move(reader),
                                                                         layoutVersion);
    }
    if (writer->getParentName() == k114DirectoryName && writer->isDirectory()) {
        if (writer->getName() == kTaskStorageName) {
            return std::make_unique<KVMPP15TaskWriter>(std::move(writer), std::move(reader), layoutVersion);
        }
        if (writer->getName() == kCalendarStorageName) {
            return std::make_unique<KVMPP15CalendarWriter>(std::move(writer), std::move(reader),
                                                           layoutVersion);
        }
        if (writer->getName() == kConstraintStorageName) {
            return std::make_unique<KVMPP15ConsstraintWriter>(std::move(writer), std::move(reader),
                                                              layoutVersion);
        }
        if (writer->getName() == kResourceStorageName) {
            return std::make_unique<KVMPP15ResourceWriter>(std::move(writer), std::move(reader),
                                                           layoutVersion);
        }
        if (writer->getName() == kAssignmentStorageName) {
            return std::make_unique<KVMPP15AssignmentWriter>(std::move(writer), std::move(reader),
                                                             layoutVersion);
        }
    }
    return std::make_unique<KVMPPWriter>(std::move(writer), std::move(reader), layoutVersion);
}
