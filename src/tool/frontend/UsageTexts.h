#pragma once

#include <string>

// Usage texts with the program name filled in.

// Both directions; it starts with a newline so that it begins on a line of its own.
std::string generalUsage(const std::string& programName);
// Raised with "Too few arguments. %s".
std::string importerUsageA(const std::string& programName);
// Raised with "Wrong arguments. %s".
std::string importerUsageB(const std::string& programName);
std::string exporterUsage(const std::string& programName);
