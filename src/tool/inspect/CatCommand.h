#pragma once

#include "tool/inspect/InspectCommand.h"

// `cat FILE PATH`: the bytes of one stream, PATH as `ls` prints it.
class CatCommand : public InspectCommand {
public:
    std::string name() const override { return "cat"; }
    std::string argumentsUsage() const override { return "FILE PATH"; }
    size_t argumentCount() const override { return 2; }
    void run(const std::vector<std::string>& arguments, std::ostream& out) override;
};
