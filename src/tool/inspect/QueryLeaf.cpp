#include "tool/inspect/QueryLeaf.h"

#include "MPPCommon/support/TVException.h"
#include "MPPCommon/support/TVMSPErrors.h"
#include "MPPCommon/xml/KVMSPIXQuery.h"
#include "MPPCommon/xml/MSPCXMLErrors.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <utility>

namespace {

constexpr std::array<std::pair<const char*, QueryLeaf::Kind>, 4> kTypes{{{"text", QueryLeaf::Kind::Text},
                                                                         {"int", QueryLeaf::Kind::Integer},
                                                                         {"num", QueryLeaf::Kind::Number},
                                                                         {"bool", QueryLeaf::Kind::Flag}}};

// Errors that mean the query itself can't be answered, as opposed to an object that has no value
// for it (no match, a reader that can't read the field), which gives an empty field.
bool endsTheQuery(const TVError& error) {
    return (error.domain == kTVMSPGeneralErrorDomain && error.code == kTVMSPNotPortedXQueryError) ||
           error.domain == kMSPCXMLErrorDomain;
}

bool hasError(const TVError& error) {
    return !error.domain.empty();
}

std::string numberText(double value) {
    std::array<char, 32> text{};
    const auto result = std::to_chars(text.data(), text.data() + text.size(), value);
    return std::string(text.data(), result.ptr);
}

} // namespace

QueryLeaf QueryLeaf::parse(const std::string& argument) {
    const size_t colon = argument.rfind(':');
    if (colon == std::string::npos || colon == 0 || colon + 1 == argument.size() ||
        !std::all_of(argument.begin() + static_cast<std::ptrdiff_t>(colon) + 1, argument.end(),
                     [](unsigned char c) { return std::isalpha(c) != 0; })) {
        return QueryLeaf(argument, Kind::Text);
    }
    const std::string type = argument.substr(colon + 1);
    for (const auto& [name, kind] : kTypes) {
        if (type == name) {
            return QueryLeaf(argument.substr(0, colon), kind);
        }
    }
    throw TVException(kQueryFailedException, "Unknown type \"" + type + "\" of leaf \"" + argument +
                                                 "\"; a leaf is asked as " + typeNames() + ".");
}

const char* QueryLeaf::typeNames() {
    return "text, int, num or bool";
}

void QueryLeaf::checkAnswered(const TVError& error) {
    if (endsTheQuery(error)) {
        throw TVException(kQueryFailedException, error.localizedDescription());
    }
}

std::string QueryLeaf::answerOf(KVMSPIXQuery& object) const {
    TVError error;
    std::string field;
    switch (m_kind) {
    case Kind::Text:
        field = object.stringValueForXQuery(m_query, &error).value_or(std::string());
        break;
    case Kind::Integer:
        field = std::to_string(object.intValueForXQuery(m_query, &error));
        break;
    case Kind::Number:
        field = numberText(object.floatValueForXQuery(m_query, &error));
        break;
    case Kind::Flag:
        field = object.boolValueForXQuery(m_query, &error) ? "1" : "0";
        break;
    }
    checkAnswered(error);
    // A typed read gives 0 where there is no value; the error tells it apart from a true 0.
    return m_kind != Kind::Text && hasError(error) ? std::string() : field;
}
