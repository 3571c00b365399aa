#include "MPPCommon/support/PosixRegex.h"

#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVException.h"

std::string_view PosixMatch::group(size_t group) const {
    if (!isSet(group)) {
        return {};
    }
    return m_text.substr(static_cast<size_t>(m_slots[group].rm_so),
                         static_cast<size_t>(m_slots[group].rm_eo - m_slots[group].rm_so));
}

PosixRegex::PosixRegex(const char* expression, size_t slots) : m_slots(slots) {
    const int result = regcomp(&m_regex, expression, REG_EXTENDED);
    if (result != 0) {
        char message[256];
        regerror(result, &m_regex, message, sizeof message);
        throw TVException(
            kInternalInconsistencyException,
            stringWithFormat("Failed to compile reqular expression '%s': %s", expression, message));
    }
    if (m_regex.re_nsub >= slots) {
        regfree(&m_regex);
        throw TVException(
            kInternalInconsistencyException,
            stringWithFormat("Expression '%s' has more groups than %zu slots", expression, slots));
    }
}

PosixRegex::~PosixRegex() {
    regfree(&m_regex);
}

std::optional<PosixMatch> PosixRegex::search(const std::string& text) const {
    std::vector<regmatch_t> slots(m_slots);
    if (regexec(&m_regex, text.c_str(), slots.size(), slots.data(), 0) != 0) {
        return std::nullopt;
    }
    return PosixMatch(text, std::move(slots));
}
