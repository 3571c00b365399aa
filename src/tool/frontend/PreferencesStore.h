#pragma once

#include <string>

// The two preference domains and their boolean keys.
inline constexpr const char* kMPPImportPreferencesName = "Tarvane2.MSPImportMPP";
inline constexpr const char* kMPPExportPreferencesName = "Tarvane2.MSPExportMPP";
inline constexpr const char* kIncludeInputExtensionKey = "IncludeInputExtension";
inline constexpr const char* kOverwriteFilterTargetKey = "OverwriteFilterTarget";

// The settings a driver reads once when it starts.
struct FilterSettings {
    bool includeInputExtension = false;
    bool overwriteFilterTarget = false;
};

// Boolean preferences, one small file per domain: <root>/Tarvane2/<domain>.conf with lines
// "Key=true" or "Key=false". A missing file, a missing key or any other value reads as false.
class PreferencesStore {
public:
    explicit PreferencesStore(std::string configRoot) : m_configRoot(std::move(configRoot)) {}

    // $XDG_CONFIG_HOME when it is an absolute path, else ~/.config.
    static std::string defaultConfigRoot();

    std::string domainFilePath(const std::string& domain) const;
    bool boolForKey(const std::string& domain, const std::string& key) const;
    FilterSettings settingsForDomain(const std::string& domain) const;

private:
    std::string m_configRoot;
};
