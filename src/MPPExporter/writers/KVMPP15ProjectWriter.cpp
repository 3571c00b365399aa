#include "MPPExporter/writers/KVMPP15ProjectWriter.h"

#include "MPPExporter/writers/KVMPP15AssignmentWriter.h"
#include "MPPExporter/writers/KVMPP15CalendarWriter.h"
#include "MPPExporter/writers/KVMPP15ResourceWriter.h"
#include "MPPExporter/writers/KVMPP15TaskWriter.h"
#include "MPPExporter/writers/KVMPPFileReader.h"
#include "MPPExporter/writers/KVMPPFileWriter.h"
#include "MPPExporter/writers/KVMPPWriterFactory.h"

#include <filesystem>

namespace {

// One entry: its output twin and its writer, which answers for all below it.
bool writeEntry(const KVMPPProject& project, std::unique_ptr<KVMPPFormatReader> reader,
                std::unique_ptr<KVMPPFormatWriter> writer, int32_t layoutVersion,
                const KVMPP15ProjectWriter::WriterFactory& factory) {
    if (!reader || !writer) {
        return false;
    }
    std::unique_ptr<KVMPPWriter> entryWriter = factory(std::move(reader), std::move(writer), layoutVersion);
    return entryWriter && entryWriter->writeDataForProject(&project);
}

} // namespace

bool KVMPP15ProjectWriter::writeProject(KVMPPProject& project, const std::string& mppPath,
                                        const std::string& templatePath) {
    preprocessProject(project);
    return walkTemplate(project, mppPath, templatePath, KVMPPWriterFactory::createMPPExporterWithReader);
}

void KVMPP15ProjectWriter::preprocessProject(KVMPPProject& project) {
    KVMPP15TaskWriter::preprocessProject(project);
    // The resources first: the calendar writer numbers a calendar for each resource that stays.
    KVMPP15ResourceWriter::preprocessProject(project);
    KVMPP15CalendarWriter::preprocessProject(project);
    KVMPP15AssignmentWriter::preprocessProject(project);
}

bool KVMPP15ProjectWriter::walkTemplate(const KVMPPProject& project, const std::string& mppPath,
                                        const std::string& templatePath, const WriterFactory& factory) {
    KVMPPFileReader templateFile(templatePath);
    if (!templateFile.open() || templateFile.getFormatVersion() != KVMPPFileReader::kWritableFormatVersion) {
        return false;
    }
    const int32_t layoutVersion = templateFile.applicationVersion();
    KVMPPFileWriter output(mppPath);
    if (!output.open()) {
        return false;
    }
    const bool result = walkEntries(project, templateFile, output, layoutVersion, factory);
    output.close();
    if (!result) {
        // A file cut short at a failed entry would not open in the application: it goes.
        std::error_code ignored;
        std::filesystem::remove(mppPath, ignored);
    }
    return result;
}

bool KVMPP15ProjectWriter::walkEntries(const KVMPPProject& project, KVMPPFileReader& templateFile,
                                       KVMPPFileWriter& output, int32_t layoutVersion,
                                       const WriterFactory& factory) {
    bool result = true;
    const int32_t count = templateFile.numberOfChildren();
    for (int32_t index = 0; index < count && result; ++index) {
        std::unique_ptr<KVMPPFormatReader> child = templateFile.createChildReaderUnderRootAtIndex(index);
        std::unique_ptr<KVMPPFormatWriter> twin =
            child ? output.createChildWriterWithName(child->getName(), child->isDirectory()) : nullptr;
        if (!child || !twin) {
            result = false;
        } else if (!child->isDirectory()) {
            result = writeEntry(project, std::move(child), std::move(twin), layoutVersion, factory);
        } else {
            // The walk goes two levels deep: the writer of an entry in a top-level storage looks after
            // all below it.
            const int32_t grandchildren = child->numberOfChildren();
            for (int32_t inner = 0; inner < grandchildren && result; ++inner) {
                std::unique_ptr<KVMPPFormatReader> entry = child->createChildReaderAtIndex(inner);
                std::unique_ptr<KVMPPFormatWriter> entryTwin =
                    entry ? twin->newChildWriterWithName(entry->getName(), entry->isDirectory()) : nullptr;
                result = writeEntry(project, std::move(entry), std::move(entryTwin), layoutVersion, factory);
            }
            result = result && grandchildren >= 0;
        }
    }
    return result;
}
