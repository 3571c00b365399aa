#pragma once

#include "tool/inspect/StorageCommand.h"

// `cat FILE PATH`: the bytes of one stream, PATH as `ls` prints it.
class CatCommand : public StorageCommand {
public:
    std::string name() const override { return "cat"; }
    std::string argumentsUsage() const override { return "FILE PATH"; }

protected:
    size_t argumentCount() const override { return 2; }
    void runOnStorage(const std::vector<std::string>& arguments, std::ostream& out) override;
};
