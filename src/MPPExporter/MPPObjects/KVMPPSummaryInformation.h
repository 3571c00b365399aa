#pragma once

#include <optional>
#include <string>

// The document properties of the plan file.
class KVMPPSummaryInformation {
public:
    std::optional<std::string> title;
    std::optional<std::string> author;
    std::optional<std::string> keywords;
    std::optional<std::string> comments;
    std::optional<std::string> creator;
    std::optional<std::string> category;
    std::optional<std::string> manager;
    std::optional<std::string> company;
};
