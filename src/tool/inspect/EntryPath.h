#pragma once

#include <string>
#include <vector>

// Paths of entries in a compound file as the inspector prints them: names joined by "/", with
// characters below U+0020 and any "/" or "\" inside a name written as \xNN.
class EntryPath {
public:
    static std::string escapeName(const std::string& name);
    static std::string join(const std::string& parent, const std::string& name);
    // The names of a printed path; malformed escapes stay as they are.
    static std::vector<std::string> split(const std::string& path);
};
