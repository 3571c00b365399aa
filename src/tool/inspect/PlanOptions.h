#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

// The options that the commands on a whole plan share, "[--accept-downgraded] [--baseline N]", ahead
// of the command's operands. The first argument that doesn't begin with "--" ends the options.
struct PlanOptions {
    static constexpr const char* kAcceptDowngradedOption = "--accept-downgraded";
    static constexpr const char* kBaselineOption = "--baseline";
    static constexpr int32_t kActualPlan = -1;
    static constexpr int32_t kLastBaseline = 10;

    bool acceptDowngraded = false;
    // 0 to 10, or kActualPlan.
    int32_t baselineNumber = kActualPlan;
    std::vector<std::string> operands;

    // None for an unknown or repeated option, a baseline number out of range or not allowed, or a
    // count of operands other than `operandCount` (at least that many with `orMore`).
    static std::optional<PlanOptions> parse(const std::vector<std::string>& arguments, bool takesBaseline,
                                            size_t operandCount, bool orMore = false);

    // "[--accept-downgraded] [--baseline N] " as the usage line shows the options.
    static std::string usage(bool takesBaseline);
};
