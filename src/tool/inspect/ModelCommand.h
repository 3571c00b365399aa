#pragma once

#include "tool/inspect/ReportCommand.h"

#include <nlohmann/json.hpp>
#include <string>

// "mppinspect model BUNDLE": the plan that the export makes of a bundle, after post-processing and
// verification, as the writers would get it; or {"error": {"name", "text"}}, the exception with which
// the export would end.
class ModelCommand : public ReportCommand {
public:
    static nlohmann::ordered_json modelOfBundle(const std::string& path);

    std::string name() const override { return "model"; }
    std::string argumentsUsage() const override { return "BUNDLE"; }

protected:
    std::optional<nlohmann::ordered_json> reportFor(const std::vector<std::string>& arguments) override;
};
