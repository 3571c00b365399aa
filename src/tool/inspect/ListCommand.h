#pragma once

#include "tool/inspect/InspectCommand.h"

class SSLStorage;

// `ls FILE`: every entry below the root, depth first in the library's child order, as
// "D|S <TAB> size <TAB> crc32|- <TAB> path".
class ListCommand : public InspectCommand {
public:
    std::string name() const override { return "ls"; }
    std::string argumentsUsage() const override { return "FILE"; }
    size_t argumentCount() const override { return 1; }
    void run(const std::vector<std::string>& arguments, std::ostream& out) override;

private:
    void listStorage(SSLStorage& storage, const std::string& path, std::ostream& out);
};
