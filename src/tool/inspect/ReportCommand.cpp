#include "tool/inspect/ReportCommand.h"

int ReportCommand::run(const std::vector<std::string>& arguments, std::ostream& out, std::ostream&) {
    const std::optional<nlohmann::ordered_json> report = reportFor(arguments);
    if (!report) {
        return kExitUsage;
    }
    // Texts of a file that aren't valid UTF-8 are printed with replacement characters.
    out << report->dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) << "\n";
    return report->contains("error") ? kExitFailure : kExitSuccess;
}
