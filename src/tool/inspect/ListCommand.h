#pragma once

#include "tool/inspect/StorageCommand.h"

class SSLStorage;

// `ls FILE`: every entry below the root, depth first in the library's child order, as
// "D|S <TAB> size <TAB> crc32|- <TAB> path".
class ListCommand : public StorageCommand {
public:
    std::string name() const override { return "ls"; }
    std::string argumentsUsage() const override { return "FILE"; }

protected:
    size_t argumentCount() const override { return 1; }
    void runOnStorage(const std::vector<std::string>& arguments, std::ostream& out) override;

private:
    void listStorage(SSLStorage& storage, const std::string& path, std::ostream& out);
};
