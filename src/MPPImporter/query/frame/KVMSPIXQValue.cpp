#include "MPPImporter/query/frame/KVMSPIXQValue.h"

#include "MPPCommon/support/Log.h"

#include <cmath>
#include <cstdlib>
#include <limits>

namespace {

// The whole text as a double, or none when it isn't a number from start to end.
std::optional<double> wholeNumber(const std::string& text) {
    if (text.empty()) {
        return std::nullopt;
    }
    char* end = nullptr;
    const double value = std::strtod(text.c_str(), &end);
    return *end == '\0' && std::isfinite(value) ? std::optional<double>(value) : std::nullopt;
}

// The shortest of "%.15g" to "%.17g" that reads back to the same double.
std::string roundTripText(double number) {
    for (int digits = 15; digits < 17; ++digits) {
        std::string text = stringWithFormat("%.*g", digits, number);
        if (std::strtod(text.c_str(), nullptr) == number) {
            return text;
        }
    }
    return stringWithFormat("%.17g", number);
}

int64_t truncatedToInt64(double value) {
    constexpr double limit = 9223372036854775807.0;
    if (value >= limit) {
        return std::numeric_limits<int64_t>::max();
    }
    if (value <= -limit) {
        return std::numeric_limits<int64_t>::min();
    }
    return static_cast<int64_t>(value);
}

} // namespace

KVMSPIXQValue::KVMSPIXQValue(std::string text) : m_text(std::move(text)) {}

KVMSPIXQValue::KVMSPIXQValue(double number) : m_text(roundTripText(number)) {}

bool KVMSPIXQValue::asksSelf(const std::string& xquery, TVError* error) const {
    if (xquery == ".") {
        return true;
    }
    setError(error, notPortedXQueryError(__FILE__, __LINE__, xquery));
    return false;
}

KVMSPIXQuery::Objects KVMSPIXQValue::objectsForXQuery(const std::string& xquery, TVError* error) {
    setError(error, notPortedXQueryError(__FILE__, __LINE__, xquery));
    return {};
}

KVMSPIXQuery::Objects KVMSPIXQValue::objectsForXQuery(const std::string& xquery, const KVMSPIXQueryConstants&,
                                                      TVError* error) {
    return objectsForXQuery(xquery, error);
}

std::shared_ptr<KVMSPIXQuery> KVMSPIXQValue::singleObjectForXQuery(const std::string& xquery,
                                                                   TVError* error) {
    setError(error, notPortedXQueryError(__FILE__, __LINE__, xquery));
    return nullptr;
}

std::shared_ptr<KVMSPIXQuery> KVMSPIXQValue::singleObjectForXQuery(const std::string& xquery,
                                                                   const KVMSPIXQueryConstants&,
                                                                   TVError* error) {
    return singleObjectForXQuery(xquery, error);
}

std::optional<std::string> KVMSPIXQValue::stringValueForXQuery(const std::string& xquery, TVError* error) {
    return asksSelf(xquery, error) ? std::optional<std::string>(m_text) : std::nullopt;
}

std::optional<std::string> KVMSPIXQValue::stringValueForXQuery(const std::string& xquery,
                                                               const KVMSPIXQueryConstants&, TVError* error) {
    return stringValueForXQuery(xquery, error);
}

int64_t KVMSPIXQValue::intValueForXQuery(const std::string& xquery, TVError* error) {
    if (!asksSelf(xquery, error)) {
        return 0;
    }
    // A number in any notation is truncated; other texts give their leading integer, as "2024-01-05".
    if (const std::optional<double> number = wholeNumber(m_text)) {
        return truncatedToInt64(*number);
    }
    return std::strtoll(m_text.c_str(), nullptr, 10);
}

int64_t KVMSPIXQValue::intValueForXQuery(const std::string& xquery, const KVMSPIXQueryConstants&,
                                         TVError* error) {
    return intValueForXQuery(xquery, error);
}

double KVMSPIXQValue::floatValueForXQuery(const std::string& xquery, TVError* error) {
    return asksSelf(xquery, error) ? wholeNumber(m_text).value_or(0.0) : 0.0;
}

double KVMSPIXQValue::floatValueForXQuery(const std::string& xquery, const KVMSPIXQueryConstants&,
                                          TVError* error) {
    return floatValueForXQuery(xquery, error);
}

bool KVMSPIXQValue::boolValueForXQuery(const std::string& xquery, TVError* error) {
    if (!asksSelf(xquery, error)) {
        return false;
    }
    if (m_text == "true") {
        return true;
    }
    return wholeNumber(m_text).value_or(0.0) != 0.0;
}

bool KVMSPIXQValue::boolValueForXQuery(const std::string& xquery, const KVMSPIXQueryConstants&,
                                       TVError* error) {
    return boolValueForXQuery(xquery, error);
}
