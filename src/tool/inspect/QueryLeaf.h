#pragma once

#include <string>

class KVMSPIXQuery;
struct TVError;

// A leaf of "mppinspect query" with the kind of answer asked of it: "LEAF" or "LEAF:text" asks the
// string answer, "LEAF:int" the integer, "LEAF:num" the double and "LEAF:bool" the flag, through the
// same typed reads that the mappers make.
class QueryLeaf {
public:
    enum class Kind { Text, Integer, Number, Flag };

    // Name of the exception that carries an unknown type or an unanswered query.
    static constexpr const char* kQueryFailedException = "QueryFailedException";

    // Takes a type from a last ":" followed by letters only, so that colons inside a predicate's
    // value ("[Start=2024-03-04T08:00:00]") stay part of the query. Raises TVException with the
    // reason for a type that isn't one of the four.
    static QueryLeaf parse(const std::string& argument);

    // "text, int, num or bool", as the usage and the unknown type's reason name the types.
    static const char* typeNames();

    // Raises TVException with the error's text when `error` says that the query can't be answered of
    // any object: a query that the vocabulary doesn't hold, or that the XML layer rejects.
    static void checkAnswered(const TVError& error);

    const std::string& query() const { return m_query; }
    Kind kind() const { return m_kind; }

    // The answer of `object` as one field: the text, a decimal integer, the shortest decimal that reads
    // back to the same double, or "1"/"0" as the interchange files write flags; empty when the object
    // has no value (no match, or a field that the reader can't read). Raises as checkAnswered does,
    // and passes on the assertions of the adapters and of the XML layer, as for a leaf whose text
    // doesn't read as the type.
    std::string answerOf(KVMSPIXQuery& object) const;

private:
    QueryLeaf(std::string query, Kind kind) : m_query(std::move(query)), m_kind(kind) {}

    std::string m_query;
    Kind m_kind;
};
