#pragma once

#include <cstddef>
#include <ostream>
#include <string>
#include <vector>

// One subcommand of the inspector. run() writes its result to `out` and throws InspectError when
// the file can't be read as asked.
class InspectCommand {
public:
    virtual ~InspectCommand() = default;

    virtual std::string name() const = 0;
    // The arguments as the usage line shows them, e.g. "FILE PATH".
    virtual std::string argumentsUsage() const = 0;
    virtual size_t argumentCount() const = 0;
    virtual void run(const std::vector<std::string>& arguments, std::ostream& out) = 0;
};
