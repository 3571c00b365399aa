#pragma once

#include "tool/inspect/InspectCommand.h"

#include <memory>
#include <ostream>
#include <string>
#include <vector>

// The inspector's entry: picks the command named by the first argument and runs it.
class InspectTool {
public:
    static constexpr int kExitFailure = 1;
    static constexpr int kExitUsage = 2;

    InspectTool();

    // `arguments` excludes the program name. Gives the exit status.
    int run(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err);

private:
    void printUsage(std::ostream& err) const;

    std::vector<std::unique_ptr<InspectCommand>> m_commands;
};
