#pragma once

#include "tool/inspect/InspectCommand.h"
#include "tool/inspect/QueryLeaf.h"

class KVMSPIXQuery;

// "mppinspect query [--accept-downgraded] [--baseline N] FILE QUERY[:TYPE] [LEAF[:TYPE] ...]": asks a
// plan the path queries of the import, of an MPP file through its readers or of an interchange XML
// file through the XML layer. With LEAF names, QUERY selects objects and each gives one line of the
// answers of the leaves, TAB-separated, an empty field for none ("." is the text of a value answer).
// Without, QUERY is asked of the project as a leaf. A leaf is asked as text unless its TYPE says
// otherwise (QueryLeaf); an unknown TYPE is refused with the usage. A query that the vocabulary
// doesn't hold, that the XML layer rejects, or whose answer doesn't read as its type prints the
// error's text on the error stream and ends with kExitFailure.
class QueryCommand : public InspectCommand {
public:
    std::string name() const override { return "query"; }
    std::string argumentsUsage() const override;
    int run(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err) override;

    // The lines that `run` prints for the objects that `query` selects of `project`, one field per
    // leaf. Raises TVException with the error's text for a query that is not answered, and passes on
    // the assertions of the adapters.
    static std::string answersOf(KVMSPIXQuery& project, const std::string& query,
                                 const std::vector<QueryLeaf>& leaves);
};
