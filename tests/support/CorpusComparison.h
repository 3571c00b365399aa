#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace testsupport {

// The runner of every corpus comparison: it counts the values compared per field, tells the
// differences from the expected ones that a manifest lists, and says what fails.
//
// Manifest lines (tab-separated; "#" starts a comment):
//     <file>  <field>  <object or *>  <reason>
// The file is a corpus file's exact name or a pattern ("*", "?") that matches copies of one plan only
// (the same name but for the saving application and format); an entry without a file, without a
// reason, or with a pattern that spans plans is rejected. An entry that lists no difference fails, so
// the manifest shrinks as the readers improve (not in a run that reads a sample of the corpus, where
// an entry's files may be left out).
//
// A field is held to one of two bars: every difference not listed fails (the default), or, through
// requireShare, the field agrees on at least a share of its values and its differences are printed.
// A comparison that compares fewer values than its minimum fails too.
class CorpusComparison {
public:
    // The corpus as the comparison sees it: every file name, and whether a sample of them is read.
    struct Corpus {
        std::vector<std::string> files;
        bool sampled = false;
        static Corpus current();
    };

    // `manifest` is a path below the tests folder of the sources, empty for none. `minimumValues` is
    // the count over the whole corpus; the sampled share of it is required.
    CorpusComparison(const std::string& manifest, long minimumValues, Corpus corpus = Corpus::current());

    // A value of `field` of an object of `file`: a difference unless ours equals theirs.
    void compare(const std::string& file, const std::string& field, const std::string& object,
                 const std::string& ours, const std::string& theirs);
    // A value that the caller compared itself; `text` tells the difference.
    void check(const std::string& file, const std::string& field, const std::string& object, bool agrees,
               const std::string& text);
    // A difference without a value pair (a file that doesn't open, an object on one side only).
    void differ(const std::string& file, const std::string& field, const std::string& object,
                const std::string& text);
    // Holds `field` to agreeing on at least `share` of its values instead of failing on each difference.
    void requireShare(const std::string& field, double share);

    // Values compared, agreeing, and differing as the manifest lists, over the fields whose names
    // begin with a prefix.
    struct Counts {
        long compared = 0;
        long agreed = 0;
        long listed = 0;
    };
    Counts counts(const std::string& fieldPrefix) const;
    // The share of agreeing values over those fields, in words, with the listed differences apart.
    std::string shareOf(const std::string& fieldPrefix) const;

    // What fails, in words; empty when the comparison passes.
    std::string failures() const;
    // Per field: agreed, compared, and the share, with the differences of the fields held to a share.
    // Listed differences are counted apart and never as agreeing values.
    std::string summary() const;

private:
    struct Entry {
        int line = 0;
        std::string files;
        std::string field;
        std::string object;
        std::string reason;
        bool used = false;
    };
    struct Field {
        long compared = 0;
        long agreed = 0;
        long listed = 0;
        std::vector<std::string> differences;
    };

    void readManifest(const std::filesystem::path& path);
    std::string ruleBroken(const Entry& entry) const;
    bool listed(const std::string& file, const std::string& field, const std::string& object);
    static std::string examples(const Field& field);
    std::string fieldFailure(const std::string& name, const Field& field) const;

    Corpus m_corpus;
    long m_minimumValues;
    std::vector<Entry> m_entries;
    std::vector<std::string> m_manifestErrors;
    std::map<std::string, Field> m_fields;
    std::map<std::string, double> m_shares;
};

} // namespace testsupport
