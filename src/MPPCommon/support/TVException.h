#pragma once

#include <map>
#include <stdexcept>
#include <string>

// The tool's exception: a name, a reason text and optional user data. Pipelines, the front end and
// the writers raise it; drivers and pipelines catch it at their top.
class TVException : public std::runtime_error {
public:
    using UserInfo = std::map<std::string, std::string>;

    TVException(std::string name, std::string reason, UserInfo userInfo = {})
        : std::runtime_error(reason), m_name(std::move(name)), m_reason(std::move(reason)),
          m_userInfo(std::move(userInfo)) {}

    const std::string& name() const { return m_name; }
    const std::string& reason() const { return m_reason; }
    const UserInfo& userInfo() const { return m_userInfo; }

private:
    std::string m_name;
    std::string m_reason;
    UserInfo m_userInfo;
};

// Name of the exception that a failed internal check raises.
inline constexpr const char* kInternalInconsistencyException = "NSInternalInconsistencyException";

// Raises the internal-inconsistency exception with `text` when `condition` is false.
inline void tvAssert(bool condition, const std::string& text) {
    if (!condition) {
        throw TVException(kInternalInconsistencyException, text);
    }
}
