#include "tool/inspect/QueryCommand.h"

#include "MPPCommon/support/TVException.h"
#include "MPPCommon/support/TVMSPErrors.h"
#include "MPPCommon/xml/MSPCXMLErrors.h"
#include "tool/inspect/PlanOptions.h"
#include "tool/inspect/QueriedFile.h"

namespace {

// Name of the exception that carries an unanswered query out of answersOf.
constexpr const char* kQueryFailedException = "QueryFailedException";

// Errors that mean the query itself can't be answered, as opposed to an object that has no value
// for it (no match, a reader that can't read the field), which gives an empty field.
bool endsTheQuery(const TVError& error) {
    return (error.domain == kTVMSPGeneralErrorDomain && error.code == kTVMSPNotPortedXQueryError) ||
           error.domain == kMSPCXMLErrorDomain;
}

void checkAnswered(const TVError& error) {
    if (endsTheQuery(error)) {
        throw TVException(kQueryFailedException, error.localizedDescription());
    }
}

std::string stringAnswer(KVMSPIXQuery& object, const std::string& query) {
    TVError error;
    const std::optional<std::string> answer = object.stringValueForXQuery(query, &error);
    checkAnswered(error);
    return answer.value_or(std::string());
}

} // namespace

std::string QueryCommand::argumentsUsage() const {
    return PlanOptions::usage(true) + "FILE QUERY [LEAF ...]";
}

int QueryCommand::run(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err) {
    const auto options = PlanOptions::parse(arguments, true, 2, true);
    if (!options) {
        return kExitUsage;
    }
    const QueriedFile file(options->operands[0], options->acceptDowngraded, options->baselineNumber);
    if (!file.project()) {
        err << file.failure() << "\n";
        return kExitFailure;
    }
    try {
        const std::vector<std::string> leaves(options->operands.begin() + 2, options->operands.end());
        out << answersOf(*file.project(), options->operands[1], leaves);
        return kExitSuccess;
    } catch (const TVException& exception) {
        err << exception.reason() << "\n";
        return kExitFailure;
    }
}

std::string QueryCommand::answersOf(KVMSPIXQuery& project, const std::string& query,
                                    const std::vector<std::string>& leaves) {
    if (leaves.empty()) {
        return stringAnswer(project, query) + "\n";
    }
    TVError error;
    const KVMSPIXQuery::Objects objects = project.objectsForXQuery(query, &error);
    checkAnswered(error);
    std::string lines;
    for (const auto& object : objects) {
        const char* separator = "";
        for (const std::string& leaf : leaves) {
            lines += separator + stringAnswer(*object, leaf);
            separator = "\t";
        }
        lines += "\n";
    }
    return lines;
}
