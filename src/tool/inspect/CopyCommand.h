#pragma once

#include "tool/inspect/StorageCommand.h"

class SSLStorage;

// `copy IN OUT`: writes OUT through the library's write side with IN's tree and stream bytes.
class CopyCommand : public StorageCommand {
public:
    std::string name() const override { return "copy"; }
    std::string argumentsUsage() const override { return "IN OUT"; }

protected:
    size_t argumentCount() const override { return 2; }
    void runOnStorage(const std::vector<std::string>& arguments, std::ostream& out) override;

private:
    void copyStorage(SSLStorage& from, SSLStorage& to, const std::string& path);
};
