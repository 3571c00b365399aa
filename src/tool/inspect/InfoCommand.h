#pragma once

#include <nlohmann/json.hpp>
#include <ostream>
#include <string>
#include <vector>

// "mppinspect info [--accept-downgraded] FILE": which format and application wrote the file, as the
// import identifies it, and the code page of its narrow strings; or, for a file that the import
// refuses, the error it would end with.
class InfoCommand {
public:
    static constexpr const char* kName = "info";
    static constexpr const char* kAcceptDowngradedOption = "--accept-downgraded";

    // {"formatVersion", "appVersion", "formatString", "applicationName", "applicationID", "codepage"},
    // or {"error": {"domain", "code", "text"}} when the file is refused.
    static nlohmann::ordered_json infoOfFile(const std::string& path, bool acceptDowngraded);

    // True if `arguments` (without the program name) ask for this command.
    static bool handles(const std::vector<std::string>& arguments);
    // Prints the object of the file named in `arguments`; 0, 1 when the file is refused, 2 with a
    // usage line on `err` for other arguments.
    static int run(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err);
};
