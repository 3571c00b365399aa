#include "tool/inspect/QueryCommand.h"

#include "MPPCommon/support/TVException.h"
#include "tool/inspect/PlanOptions.h"
#include "tool/inspect/QueriedFile.h"

std::string QueryCommand::argumentsUsage() const {
    return PlanOptions::usage(true) + "FILE QUERY[:TYPE] [LEAF[:TYPE] ...] (TYPE: " + QueryLeaf::typeNames() +
           ")";
}

int QueryCommand::run(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err) {
    const auto options = PlanOptions::parse(arguments, true, 2, true);
    if (!options) {
        return kExitUsage;
    }
    // The leaves are LEAF ..., or QUERY itself when there are none; their types are checked first.
    const std::vector<std::string>& operands = options->operands;
    const bool asksObjects = operands.size() > 2;
    std::vector<QueryLeaf> leaves;
    try {
        for (auto leaf = operands.begin() + (asksObjects ? 2 : 1); leaf != operands.end(); ++leaf) {
            leaves.push_back(QueryLeaf::parse(*leaf));
        }
    } catch (const TVException& exception) {
        err << exception.reason() << "\n";
        return kExitUsage;
    }
    const QueriedFile file(operands[0], options->acceptDowngraded, options->baselineNumber);
    if (!file.project()) {
        err << file.failure() << "\n";
        return kExitFailure;
    }
    try {
        out << (asksObjects ? answersOf(*file.project(), operands[1], leaves)
                            : leaves.front().answerOf(*file.project()) + "\n");
        return kExitSuccess;
    } catch (const TVException& exception) {
        err << exception.reason() << "\n";
        return kExitFailure;
    }
}

std::string QueryCommand::answersOf(KVMSPIXQuery& project, const std::string& query,
                                    const std::vector<QueryLeaf>& leaves) {
    TVError error;
    const KVMSPIXQuery::Objects objects = project.objectsForXQuery(query, &error);
    QueryLeaf::checkAnswered(error);
    std::string lines;
    for (const auto& object : objects) {
        const char* separator = "";
        for (const QueryLeaf& leaf : leaves) {
            lines += separator + leaf.answerOf(*object);
            separator = "\t";
        }
        lines += "\n";
    }
    return lines;
}
