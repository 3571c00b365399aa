#include "MPPImporter/readers/KVMSPISimpleObjectReaderBase.h"

#include "MPPCommon/support/PosixRegex.h"

#include <cstdlib>
#include <limits>

KVMSPIXQPredicate KVMSPISimpleObjectReaderBase::predicateWithString(const std::optional<std::string>&) {
    return {};
}

KVMSPIXQPredicate KVMSPISimpleObjectReaderBase::uidPredicateWithString(const std::optional<std::string>&,
                                                                       int32_t*) {
    return {};
}

std::optional<std::vector<std::string>>
KVMSPISimpleObjectReaderBase::predicateGroups(const PosixRegex& expression, size_t groups,
                                              const std::string& text) {
    const std::optional<PosixMatch> match = expression.search(text);
    if (!match || match->start(0) != 0 || match->end(0) <= 0) {
        return std::nullopt;
    }
    std::vector<std::string> values;
    for (size_t group = 1; group <= groups; ++group) {
        if (match->group(group).empty()) {
            return std::nullopt;
        }
        values.emplace_back(match->group(group));
    }
    return values;
}

int32_t KVMSPISimpleObjectReaderBase::predicateIntValue(const std::string& digits) {
    const long long value = std::strtoll(digits.c_str(), nullptr, 10);
    if (value > std::numeric_limits<int32_t>::max()) {
        return std::numeric_limits<int32_t>::max();
    }
    if (value < std::numeric_limits<int32_t>::min()) {
        return std::numeric_limits<int32_t>::min();
    }
    return static_cast<int32_t>(value);
}
