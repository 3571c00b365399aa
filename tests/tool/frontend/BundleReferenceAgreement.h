#pragma once

#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <utility>

// Tallies, field by field, how many values of imported bundles agree with an independent reader's
// view of the same plans (the corpus's `ref` folder). The values of a field that a plan is listed to
// do differently, for a reason the list gives, are left out of the tally; a listed difference that no
// value shows is reported as stale.
class BundleReferenceAgreement {
public:
    // (plan file, field) pairs whose values differ for a known reason.
    using Listed = std::set<std::pair<std::string, std::string>>;

    explicit BundleReferenceAgreement(Listed listed);

    // Compares the bundle of one plan with the reference of that plan; nothing when there is none.
    void compare(const std::string& planFile, const std::filesystem::path& bundle);

    // The fields that agree on less than `floor` of their values, with counts and a few examples.
    std::string fieldsBelow(double floor) const;
    // Agreement of every field, one line each.
    std::string summary() const;
    // The listed differences that no compared value showed.
    std::string staleEntries() const;

private:
    // Counts one value of a field: `detail` tells what disagrees.
    void count(const std::string& planFile, const std::string& field, bool agrees, const std::string& detail);

    struct Tally {
        long agreeing = 0;
        long all = 0;
        std::string examples;
    };

    Listed m_listed;
    Listed m_shown;
    std::map<std::string, Tally> m_tallies;
};
