#include "tool/inspect/DumpCommand.h"
#include "tool/inspect/InfoCommand.h"
#include "tool/inspect/InspectTool.h"
#include "tool/inspect/PropsCommand.h"

#include <iostream>

int main(int argc, char** argv) {
    std::ios::sync_with_stdio(false);
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    if (InfoCommand::handles(arguments)) {
        return InfoCommand::run(arguments, std::cout, std::cerr);
    }
    if (DumpCommand::handles(arguments)) {
        return DumpCommand::run(arguments, std::cout, std::cerr);
    }
    if (PropsCommand::handles(arguments)) {
        return PropsCommand::run(arguments, std::cout, std::cerr);
    }
    InspectTool tool;
    return tool.run(arguments, std::cout, std::cerr);
}
