#pragma once

#include "tool/inspect/ReportCommand.h"

#include <nlohmann/json.hpp>
#include <string>

// "mppinspect info [--accept-downgraded] FILE": which format and application wrote the file, as the
// import identifies it, and the code page of its narrow strings; or, for a file that the import
// refuses, the error it would end with.
class InfoCommand : public ReportCommand {
public:
    // {"formatVersion", "appVersion", "formatString", "applicationName", "applicationID", "codepage"},
    // or {"error": {"domain", "code", "text"}} when the file is refused.
    static nlohmann::ordered_json infoOfFile(const std::string& path, bool acceptDowngraded);

    std::string name() const override { return "info"; }
    std::string argumentsUsage() const override;

protected:
    std::optional<nlohmann::ordered_json> reportFor(const std::vector<std::string>& arguments) override;
};
