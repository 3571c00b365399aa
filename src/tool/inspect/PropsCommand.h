#pragma once

#include "tool/inspect/ReportCommand.h"

#include <nlohmann/json.hpp>
#include <string>

// "mppinspect props FILE": the summary information, the document summary information and the Props
// streams of a file as one JSON object, property number to value, decoded as the import's typed
// reads decode them, with narrow strings in the file's code page. A file that the import refuses
// gives the error it would end with, as `info` prints it.
class PropsCommand : public ReportCommand {
public:
    // {"codepage", "summaryInformation", "documentSummaryInformation", "userDefinedNames", "docProps",
    // "projectProps"}, each stream's key present only if the file holds it; or {"error": {...}}.
    static nlohmann::ordered_json propertiesOfFile(const std::string& path);

    std::string name() const override { return "props"; }
    std::string argumentsUsage() const override { return "FILE"; }

protected:
    std::optional<nlohmann::ordered_json> reportFor(const std::vector<std::string>& arguments) override;
};
