#pragma once

#include "MPPCommon/support/TVDate.h"

#include <optional>
#include <string>

// Date answers of the plan on their way into the bundle. A text that isn't an MSPDI date-time (a
// free-text field of a manually scheduled task, "NA") gives none instead of stopping the import: it
// holds no date to carry over.
std::optional<std::string> tvnxDateTimeOfMspdi(const std::optional<std::string>& text);
std::optional<TVDate> mppDateTimeOfMspdi(const std::optional<std::string>& text);
