#pragma once

#include <memory>
#include <optional>
#include <string>
#include <unicode/regex.h>
#include <vector>

// One step of a query path: the element name and the text between its brackets, if it has any.
struct MSPXQComponent {
    std::string name;
    std::optional<std::string> predicate;

    bool operator==(const MSPXQComponent&) const = default;
};

using MSPXQComponents = std::vector<MSPXQComponent>;

// Splits a query path ("Calendars/Calendar[UID=3]") into its components. It is not a path engine: a
// "/" inside brackets splits too, and a piece that doesn't have the shape name[text] or name is
// skipped.
class MSPXQParser {
public:
    // The process's one parser, made on first use and only read afterwards.
    static const MSPXQParser& sharedXQParser();

    ~MSPXQParser();
    MSPXQParser(const MSPXQParser&) = delete;
    MSPXQParser& operator=(const MSPXQParser&) = delete;

    // Appends the components of `xquery` to `components`, in path order.
    void parseXQuery(const std::string& xquery, MSPXQComponents& components) const;

private:
    MSPXQParser();

    std::unique_ptr<icu::RegexPattern> _regex;
};
