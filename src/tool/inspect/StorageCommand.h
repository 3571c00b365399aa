#pragma once

#include "tool/inspect/InspectCommand.h"

#include <cstddef>

// A command that works on the compound file's entries with a fixed number of arguments. A failed
// storage operation ends it with the InspectError's line on the error stream.
class StorageCommand : public InspectCommand {
public:
    int run(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err) final;

protected:
    virtual size_t argumentCount() const = 0;
    // Throws InspectError when the file can't be read or written as asked.
    virtual void runOnStorage(const std::vector<std::string>& arguments, std::ostream& out) = 0;
};
