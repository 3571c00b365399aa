#pragma once

#include "tool/inspect/InspectCommand.h"

#include <nlohmann/json.hpp>
#include <optional>

// A command that prints its answer as one JSON object. An object with an "error" key, the error with
// which the import would end, ends the command with kExitFailure.
class ReportCommand : public InspectCommand {
public:
    int run(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err) final;

protected:
    // None when the arguments don't fit the command.
    virtual std::optional<nlohmann::ordered_json> reportFor(const std::vector<std::string>& arguments) = 0;
};
