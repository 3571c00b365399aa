#pragma once

#include "tool/inspect/InspectCommand.h"

#include <memory>
#include <ostream>
#include <string>
#include <vector>

// The inspector's entry: picks the command named by the first argument and runs it.
class InspectTool {
public:
    InspectTool();

    // `arguments` excludes the program name. Gives the exit status of InspectCommand; with arguments
    // that fit no command, the usage of the command named, or of all commands, goes to `err`.
    int run(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err);

private:
    InspectCommand* commandNamed(const std::string& name) const;

    std::vector<std::unique_ptr<InspectCommand>> m_commands;
};
