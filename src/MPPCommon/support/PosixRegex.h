#pragma once

#include <cstddef>
#include <optional>
#include <regex.h>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

// The groups of one match of a PosixRegex: slot 0 is the whole match. A group that took no part in
// the match is unset.
class PosixMatch {
public:
    PosixMatch(std::string_view text, std::vector<regmatch_t> slots)
        : m_text(text), m_slots(std::move(slots)) {}

    bool isSet(size_t group) const { return group < m_slots.size() && m_slots[group].rm_so >= 0; }
    // The group's text; empty when unset.
    std::string_view group(size_t group) const;
    // Offsets of the group's start and end in the text; -1 when unset.
    regoff_t start(size_t group) const { return isSet(group) ? m_slots[group].rm_so : -1; }
    regoff_t end(size_t group) const { return isSet(group) ? m_slots[group].rm_eo : -1; }

private:
    std::string_view m_text;
    std::vector<regmatch_t> m_slots;
};

// A POSIX extended regular expression, searched (not anchored) in a text.
class PosixRegex {
public:
    // Raises the internal-inconsistency exception when the expression doesn't compile or has more
    // groups than `slots` can report.
    PosixRegex(const char* expression, size_t slots);
    ~PosixRegex();
    PosixRegex(const PosixRegex&) = delete;
    PosixRegex& operator=(const PosixRegex&) = delete;

    // The first match in `text`, or none. The text must outlive the match.
    std::optional<PosixMatch> search(const std::string& text) const;

private:
    regex_t m_regex;
    size_t m_slots;
};
