#pragma once

#include <string>

// Brings a path into its standard form: a leading "~" or "~user" expanded to the home folder,
// empty and "." components dropped, ".." folded into its parent on absolute paths, no trailing
// slash. Relative paths stay relative, and one of dots alone is ".".
class PathStandardizer {
public:
    static std::string standardize(const std::string& path);

private:
    static std::string expandTilde(const std::string& path);
};
