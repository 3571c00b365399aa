#include "tool/inspect/InspectTool.h"

#include "tool/inspect/CatCommand.h"
#include "tool/inspect/CopyCommand.h"
#include "tool/inspect/InspectError.h"
#include "tool/inspect/ListCommand.h"

InspectTool::InspectTool() {
    m_commands.push_back(std::make_unique<ListCommand>());
    m_commands.push_back(std::make_unique<CatCommand>());
    m_commands.push_back(std::make_unique<CopyCommand>());
}

int InspectTool::run(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err) {
    for (const auto& command : m_commands) {
        if (arguments.empty() || arguments[0] != command->name()) {
            continue;
        }
        if (arguments.size() - 1 != command->argumentCount()) {
            break;
        }
        try {
            command->run(std::vector<std::string>(arguments.begin() + 1, arguments.end()), out);
            out.flush();
            return 0;
        } catch (const InspectError& error) {
            err << error.line() << "\n";
            return kExitFailure;
        }
    }
    printUsage(err);
    return kExitUsage;
}

void InspectTool::printUsage(std::ostream& err) const {
    err << "usage:";
    const char* separator = " ";
    for (const auto& command : m_commands) {
        err << separator << "mppinspect " << command->name() << " " << command->argumentsUsage();
        separator = " | ";
    }
    err << "\n";
}
