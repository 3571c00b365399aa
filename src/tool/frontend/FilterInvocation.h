#pragma once

#include <cstddef>
#include <string>
#include <vector>

// What a driver takes from its checked command line.
struct FilterInvocation {
    // The standardised template path.
    std::string templatePath;
    // The inputs in command-line or list order, as they were written.
    std::vector<std::string> inputs;
    // Index of the optional output argument.
    size_t outputSlot = 0;
};
