#include "MPPImporter/query/frame/MSPXQParser.h"

#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVException.h"

#include <unicode/regex.h>
#include <unicode/unistr.h>

namespace {

// A name of letters and digits closed by one of the six characters [ ] ( . * ), or else the whole
// piece. A piece name[text] finds three matches: "name[", "text]" and the empty match at its end.
constexpr const char* kComponentExpression = R"(([a-zA-Z0-9]+)[\[\](.*)]|(.*))";

// Any longer name of the standard calendar, or one cut by a "/" inside it, stands for that calendar.
constexpr std::string_view kStandardCalendarPrefix = R"(Calendar[Name="Standard)";
constexpr const char* kStandardCalendarPiece = R"(Calendar[Name="Standard"])";

// The pieces between "/" separators: repeated separators collapse, a leading one is a piece of its
// own, a trailing one is dropped.
std::vector<std::string> pathPieces(const std::string& xquery) {
    std::vector<std::string> pieces;
    if (!xquery.empty() && xquery.front() == '/') {
        pieces.emplace_back("/");
    }
    size_t start = 0;
    while (start < xquery.size()) {
        size_t end = xquery.find('/', start);
        if (end == std::string::npos) {
            end = xquery.size();
        }
        if (end > start) {
            pieces.push_back(xquery.substr(start, end - start));
        }
        start = end + 1;
    }
    return pieces;
}

std::string utf8(const icu::UnicodeString& text) {
    std::string result;
    text.toUTF8String(result);
    return result;
}

} // namespace

MSPXQParser::MSPXQParser() {
    UParseError parseError{};
    UErrorCode status = U_ZERO_ERROR;
    _regex.reset(icu::RegexPattern::compile(icu::UnicodeString::fromUTF8(kComponentExpression),
                                            UREGEX_CASE_INSENSITIVE, parseError, status));
    if (U_FAILURE(status)) {
        throw TVException(kInternalInconsistencyException,
                          stringWithFormat("Failed to compile reqular expression '%s': %s",
                                           kComponentExpression, u_errorName(status)));
    }
}

MSPXQParser::~MSPXQParser() = default;

const MSPXQParser& MSPXQParser::sharedXQParser() {
    static const MSPXQParser parser;
    return parser;
}

void MSPXQParser::parseXQuery(const std::string& xquery, MSPXQComponents& components) const {
    for (std::string piece : pathPieces(xquery)) {
        if (piece.starts_with(kStandardCalendarPrefix)) {
            piece = kStandardCalendarPiece;
        }
        const icu::UnicodeString text = icu::UnicodeString::fromUTF8(piece);
        UErrorCode status = U_ZERO_ERROR;
        std::unique_ptr<icu::RegexMatcher> matcher(_regex->matcher(text, status));
        if (U_FAILURE(status)) {
            continue;
        }
        std::vector<icu::UnicodeString> matches;
        // A piece with more matches than a bracketed name gives is skipped, so stop looking there.
        while (matches.size() <= 3 && matcher->find(status) && U_SUCCESS(status)) {
            matches.push_back(matcher->group(status));
        }
        if (U_FAILURE(status)) {
            continue;
        }
        if (matches.size() == 3) {
            components.push_back({utf8(matches[0].tempSubString(0, matches[0].length() - 1)),
                                  utf8(matches[1].tempSubString(0, matches[1].length() - 1))});
        } else if (matches.size() == 2) {
            components.push_back({utf8(matches[0]), std::nullopt});
        }
    }
}
