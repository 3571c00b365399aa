#include "tool/frontend/PathStandardizer.h"

#include <cstdlib>
#include <pwd.h>
#include <unistd.h>
#include <vector>

namespace {

// Home folder of the current user ("" name) or of the named user; empty when unknown.
std::string homeFolder(const std::string& user) {
    if (user.empty()) {
        const char* home = std::getenv("HOME");
        if (home != nullptr && *home != '\0') {
            return home;
        }
    }
    struct passwd* entry = user.empty() ? getpwuid(getuid()) : getpwnam(user.c_str());
    return entry != nullptr && entry->pw_dir != nullptr ? entry->pw_dir : "";
}

} // namespace

std::string PathStandardizer::expandTilde(const std::string& path) {
    if (path.empty() || path.front() != '~') {
        return path;
    }
    size_t slash = path.find('/');
    std::string user = path.substr(1, slash == std::string::npos ? std::string::npos : slash - 1);
    std::string home = homeFolder(user);
    if (home.empty()) {
        return path;
    }
    return slash == std::string::npos ? home : home + path.substr(slash);
}

std::string PathStandardizer::standardize(const std::string& path) {
    std::string expanded = expandTilde(path);
    bool isAbsolute = !expanded.empty() && expanded.front() == '/';
    std::vector<std::string> components;
    size_t start = 0;
    while (start <= expanded.size()) {
        size_t slash = expanded.find('/', start);
        size_t end = slash == std::string::npos ? expanded.size() : slash;
        std::string component = expanded.substr(start, end - start);
        if (component == ".." && isAbsolute) {
            if (!components.empty()) {
                components.pop_back();
            }
        } else if (!component.empty() && component != ".") {
            components.push_back(component);
        }
        start = end + 1;
    }
    // A relative path of dots alone ("." or "./") names the current folder; an empty path would name
    // nothing, and an output folder given as "." would be refused.
    if (!isAbsolute && components.empty() && !expanded.empty()) {
        return ".";
    }
    std::string result = isAbsolute ? "/" : "";
    for (size_t i = 0; i < components.size(); ++i) {
        result += (i == 0 ? "" : "/") + components[i];
    }
    return result;
}
