#include "tool/frontend/PreferencesStore.h"

#include "MPPCommon/support/TVPath.h"
#include "tool/frontend/PathStandardizer.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <fstream>
#include <sstream>

namespace {

// A preferences file holds a handful of short lines; text beyond this size is not read.
constexpr size_t kMaximumFileSize = 64 * 1024;

std::string trimmed(const std::string& text) {
    size_t first = text.find_first_not_of(" \t\r");
    if (first == std::string::npos) {
        return std::string();
    }
    return text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

} // namespace

std::string PreferencesStore::defaultConfigRoot() {
    const char* configHome = std::getenv("XDG_CONFIG_HOME");
    if (configHome != nullptr && configHome[0] == '/') {
        return configHome;
    }
    return PathStandardizer::standardize("~/.config");
}

std::string PreferencesStore::domainFilePath(const std::string& domain) const {
    return appendingPathComponent(appendingPathComponent(m_configRoot, "Tarvane2"), domain + ".conf");
}

bool PreferencesStore::boolForKey(const std::string& domain, const std::string& key) const {
    std::ifstream file(domainFilePath(domain), std::ios::binary);
    std::string contents(kMaximumFileSize, '\0');
    file.read(contents.data(), static_cast<std::streamsize>(contents.size()));
    contents.resize(static_cast<size_t>(file.gcount()));
    std::istringstream lines(contents);
    bool value = false;
    std::string line;
    while (std::getline(lines, line)) {
        size_t equals = line.find('=');
        if (equals == std::string::npos || trimmed(line.substr(0, equals)) != key) {
            continue;
        }
        std::string text = trimmed(line.substr(equals + 1));
        std::transform(text.begin(), text.end(), text.begin(),
                       [](unsigned char c) { return std::tolower(c); });
        value = text == "true" || text == "yes" || text == "1";
    }
    return value;
}

FilterSettings PreferencesStore::settingsForDomain(const std::string& domain) const {
    return FilterSettings{boolForKey(domain, kIncludeInputExtensionKey),
                          boolForKey(domain, kOverwriteFilterTargetKey)};
}
