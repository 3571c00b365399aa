#pragma once

#include <map>
#include <optional>
#include <string>

// An error object: a domain, a code and user data. The localised description is kept under
// kTVErrorLocalizedDescriptionKey when the creator supplied one.
struct TVError {
    std::string domain;
    int code = 0;
    std::map<std::string, std::string> userInfo;

    static TVError make(std::string domain, int code, const std::string& description);

    // The description under kTVErrorLocalizedDescriptionKey, or a generic text naming domain and code.
    std::string localizedDescription() const;
};

inline constexpr const char* kTVErrorLocalizedDescriptionKey = "NSLocalizedDescription";

// Optional error out-parameter: operations that can fail take a TVError* that may be null.
inline void setError(TVError* out, TVError error) {
    if (out != nullptr) {
        *out = std::move(error);
    }
}
