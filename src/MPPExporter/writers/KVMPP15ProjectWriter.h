#pragma once

#include "MPPExporter/writers/KVMPPWriter.h"

#include <functional>
#include <memory>
#include <string>

class KVMPPFileReader;
class KVMPPFileWriter;
class KVMPPProject;

// The entry of the export's writing: walks the template file's storage tree, creates the same tree
// in the output and lets a writer fill each entry, regenerated from the project or copied.
class KVMPP15ProjectWriter {
public:
    // Makes the writer of one entry; none stops the walk.
    using WriterFactory = std::function<std::unique_ptr<KVMPPWriter>(
        std::unique_ptr<KVMPPFormatReader>, std::unique_ptr<KVMPPFormatWriter>, int32_t layoutVersion)>;

    // Reshapes the project for the writers, then writes it to `mppPath` through the template at
    // `templatePath`. False when the template is not of a layout the writers write, the output can't
    // be created, or an entry fails; a file begun for a walk that fails is removed.
    static bool writeProject(KVMPPProject& project, const std::string& mppPath,
                             const std::string& templatePath);
    // The walk alone, with the writers that `factory` makes.
    static bool walkTemplate(const KVMPPProject& project, const std::string& mppPath,
                             const std::string& templatePath, const WriterFactory& factory);
    // The model steps that the writers need, in the order that they depend on one another.
    static void preprocessProject(KVMPPProject& project);

private:
    // The two levels of the walk below the root; false at the first entry that fails.
    static bool walkEntries(const KVMPPProject& project, KVMPPFileReader& templateFile,
                            KVMPPFileWriter& output, int32_t layoutVersion, const WriterFactory& factory);
};
