#include "tool/inspect/PlanOptions.h"

#include <charconv>

namespace {

std::optional<int32_t> baselineNumberOf(const std::string& text) {
    int32_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size() || number < 0 ||
        number > PlanOptions::kLastBaseline) {
        return std::nullopt;
    }
    return number;
}

bool isOption(const std::string& argument) {
    return argument.rfind("--", 0) == 0;
}

} // namespace

std::optional<PlanOptions> PlanOptions::parse(const std::vector<std::string>& arguments, bool takesBaseline,
                                              size_t operandCount, bool orMore) {
    PlanOptions parsed;
    size_t index = 0;
    for (; index < arguments.size() && isOption(arguments[index]); ++index) {
        if (arguments[index] == kAcceptDowngradedOption && !parsed.acceptDowngraded) {
            parsed.acceptDowngraded = true;
        } else if (arguments[index] == kBaselineOption && takesBaseline &&
                   parsed.baselineNumber == kActualPlan && index + 1 < arguments.size()) {
            const auto number = baselineNumberOf(arguments[++index]);
            if (!number) {
                return std::nullopt;
            }
            parsed.baselineNumber = *number;
        } else {
            return std::nullopt;
        }
    }
    parsed.operands.assign(arguments.begin() + static_cast<std::ptrdiff_t>(index), arguments.end());
    const size_t count = parsed.operands.size();
    if (count < operandCount || (count > operandCount && !orMore)) {
        return std::nullopt;
    }
    return parsed;
}

std::string PlanOptions::usage(bool takesBaseline) {
    return std::string("[") + kAcceptDowngradedOption + "] " +
           (takesBaseline ? std::string("[") + kBaselineOption + " N] " : std::string());
}
