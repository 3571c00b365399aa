#include "tool/inspect/InspectTool.h"

#include <iostream>

int main(int argc, char** argv) {
    std::ios::sync_with_stdio(false);
    InspectTool tool;
    return tool.run(std::vector<std::string>(argv + 1, argv + argc), std::cout, std::cerr);
}
