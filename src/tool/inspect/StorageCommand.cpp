#include "tool/inspect/StorageCommand.h"

#include "tool/inspect/InspectError.h"

int StorageCommand::run(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err) {
    if (arguments.size() != argumentCount()) {
        return kExitUsage;
    }
    try {
        runOnStorage(arguments, out);
        return kExitSuccess;
    } catch (const InspectError& error) {
        err << error.line() << "\n";
        return kExitFailure;
    }
}
