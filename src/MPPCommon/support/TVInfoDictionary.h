#pragma once

#include "MPPCommon/support/TVFileURL.h"

#include <cstdint>
#include <map>
#include <string>
#include <variant>

// Keys of the dictionary that the front end hands to a pipeline and the pipeline to its mappers.
inline constexpr const char* kInfoMSPProjectName = "InfoMSPDIProjectName";
inline constexpr const char* kInfoTVNXTemplateUrl = "InfoTVNXTemplateUrll";
inline constexpr const char* kInfoMSPBaselineNumber = "InfoMSPDIBaselineNumber";
inline constexpr const char* kInfoTVNXScenarioName = "InfoTVNXScenarioName";
inline constexpr const char* kInfoMPPTemplateUrl = "InfoMPPTemplateUrl";

// A string-keyed dictionary whose values are texts, integers or file URLs. A getter answers null
// when the key is absent or holds a value of another kind.
class TVInfoDictionary {
public:
    using Value = std::variant<std::string, int64_t, TVFileURL>;

    void setString(const std::string& key, std::string value) { m_values[key] = std::move(value); }
    void setNumber(const std::string& key, int64_t value) { m_values[key] = value; }
    void setURL(const std::string& key, TVFileURL value) { m_values[key] = std::move(value); }
    void removeValue(const std::string& key) { m_values.erase(key); }

    bool contains(const std::string& key) const { return m_values.count(key) != 0; }
    const std::string* stringForKey(const std::string& key) const { return valueForKey<std::string>(key); }
    const int64_t* numberForKey(const std::string& key) const { return valueForKey<int64_t>(key); }
    const TVFileURL* urlForKey(const std::string& key) const { return valueForKey<TVFileURL>(key); }

    bool operator==(const TVInfoDictionary&) const = default;

private:
    template <typename T>
    const T* valueForKey(const std::string& key) const {
        auto found = m_values.find(key);
        return found == m_values.end() ? nullptr : std::get_if<T>(&found->second);
    }

    std::map<std::string, Value> m_values;
};
