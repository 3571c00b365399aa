#include "MPPCommon/support/TVError.h"

TVError TVError::make(std::string domain, int code, const std::string& description) {
    TVError error{std::move(domain), code, {}};
    error.userInfo[kTVErrorLocalizedDescriptionKey] = description;
    return error;
}

std::string TVError::localizedDescription() const {
    auto found = userInfo.find(kTVErrorLocalizedDescriptionKey);
    if (found != userInfo.end()) {
        return found->second;
    }
    return "The operation couldn't be completed. (" + domain + " error " + std::to_string(code) + ".)";
}
