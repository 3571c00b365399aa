#pragma once

#include <nlohmann/json.hpp>
#include <ostream>
#include <string>
#include <vector>

// "mppinspect props FILE": the summary information, the document summary information and the Props
// streams of a file as one JSON object, property number to value, decoded as the import's typed
// reads decode them, with narrow strings in the file's code page. A file that the import refuses
// gives the error it would end with, as `info` prints it.
class PropsCommand {
public:
    static constexpr const char* kName = "props";

    // {"codepage", "summaryInformation", "documentSummaryInformation", "userDefinedNames", "docProps",
    // "projectProps"}, each stream's key present only if the file holds it; or {"error": {...}}.
    static nlohmann::ordered_json propertiesOfFile(const std::string& path);

    // True if `arguments` (without the program name) ask for this command.
    static bool handles(const std::vector<std::string>& arguments);
    // Prints the object of the file named in `arguments`; 0, 1 when the file is refused, 2 with a
    // usage line on `err` for other arguments.
    static int run(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err);
};
