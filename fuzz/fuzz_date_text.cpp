// Feeds arbitrary text, as a bundle or an interchange document may hold it, to the date and duration
// parsers of both directions. Each must end without a crash or a hang. Both parsers check the shape
// of what they found with assertions (a date and a time joined by "T", a single zone at a line end),
// so the internal-inconsistency exception may be raised, and nothing else. Every date given is finite.
#include "MPPCommon/date/KVMSPCDateTimeConverter.h"
#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVException.h"
#include "MPPImporter/Mapper/utilities/KVMSPIUtilities.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <optional>
#include <string>

namespace {

void requireFinite(const std::optional<TVDate>& date) {
    if (date && !std::isfinite(date->seconds)) {
        std::abort();
    }
}

// Runs a conversion that answers unreadable text with the internal-inconsistency exception.
void allowingAssertion(const std::function<void()>& conversion) {
    try {
        conversion();
    } catch (const TVException& exception) {
        if (exception.name() != kInternalInconsistencyException) {
            throw;
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const bool quiet = (tvSetLogSink([](const std::string&) {}), true);
    (void)quiet;
    const std::string text(reinterpret_cast<const char*>(data), size);

    requireFinite(KVMSPCDateTimeConverter::mppFromMspdiDateTime(text));
    allowingAssertion([&text] { requireFinite(KVMSPCDateTimeConverter::mppFromTvnxDateTime(text)); });
    KVMSPCDateTimeConverter::tvnxFromMspdiDateTime(text, true);
    KVMSPIUtilities::mspdiToMppDuration(text);
    allowingAssertion([&text] {
        if (const auto components = KVMSPIUtilities::componentsFromISODateTime(text)) {
            requireFinite(KVMSPIUtilities::dateFromComponents(*components));
        }
    });
    allowingAssertion([&text] {
        if (KVMSPIUtilities::isMspdiDateTime(text)) {
            requireFinite(KVMSPIUtilities::mspdiToMppDateTime(text));
            KVMSPIUtilities::mspdiToTvnxDateTime(text);
        }
    });
    allowingAssertion([&text] {
        if (KVMSPIUtilities::isTvnxDateTime(text)) {
            requireFinite(KVMSPIUtilities::tvnxToMppDateTime(text));
            KVMSPIUtilities::tvnxToMspdiDateOnly(text);
        }
    });
    allowingAssertion([&text] { KVMSPIUtilities::mspdiDurationInSecs(text); });
    return 0;
}
