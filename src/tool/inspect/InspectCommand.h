#pragma once

#include <ostream>
#include <string>
#include <vector>

// One subcommand of the inspector.
class InspectCommand {
public:
    static constexpr int kExitSuccess = 0;
    // The file can't be read as asked; what went wrong is on the output or the error stream.
    static constexpr int kExitFailure = 1;
    // The arguments don't fit the command; the tool prints the command's usage line.
    static constexpr int kExitUsage = 2;

    virtual ~InspectCommand() = default;

    virtual std::string name() const = 0;
    // The arguments as the usage line shows them, e.g. "FILE PATH".
    virtual std::string argumentsUsage() const = 0;
    // `arguments` are those after the command's name. Writes the result to `out` and failures to
    // `err`, and gives the exit status.
    virtual int run(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err) = 0;
};
