#include "tool/inspect/InspectTool.h"

#include "tool/inspect/CatCommand.h"
#include "tool/inspect/CopyCommand.h"
#include "tool/inspect/DumpCommand.h"
#include "tool/inspect/InfoCommand.h"
#include "tool/inspect/ListCommand.h"
#include "tool/inspect/ModelCommand.h"
#include "tool/inspect/PropsCommand.h"
#include "tool/inspect/QueryCommand.h"

namespace {

// One line per command: "usage: mppinspect <name> <arguments>", the further ones aligned under it.
void printUsage(const std::vector<const InspectCommand*>& commands, std::ostream& err) {
    const char* lead = "usage: ";
    for (const InspectCommand* command : commands) {
        err << lead << "mppinspect " << command->name() << " " << command->argumentsUsage() << "\n";
        lead = "       ";
    }
}

} // namespace

InspectTool::InspectTool() {
    m_commands.push_back(std::make_unique<InfoCommand>());
    m_commands.push_back(std::make_unique<PropsCommand>());
    m_commands.push_back(std::make_unique<DumpCommand>());
    m_commands.push_back(std::make_unique<QueryCommand>());
    m_commands.push_back(std::make_unique<ListCommand>());
    m_commands.push_back(std::make_unique<CatCommand>());
    m_commands.push_back(std::make_unique<CopyCommand>());
    m_commands.push_back(std::make_unique<ModelCommand>());
}

int InspectTool::run(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err) {
    InspectCommand* command = arguments.empty() ? nullptr : commandNamed(arguments[0]);
    if (!command) {
        std::vector<const InspectCommand*> all;
        for (const auto& each : m_commands) {
            all.push_back(each.get());
        }
        printUsage(all, err);
        return InspectCommand::kExitUsage;
    }
    const int status =
        command->run(std::vector<std::string>(arguments.begin() + 1, arguments.end()), out, err);
    out.flush();
    if (status == InspectCommand::kExitUsage) {
        printUsage({command}, err);
    }
    return status;
}

InspectCommand* InspectTool::commandNamed(const std::string& name) const {
    for (const auto& command : m_commands) {
        if (command->name() == name) {
            return command.get();
        }
    }
    return nullptr;
}
