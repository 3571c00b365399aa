#include "tool/inspect/InspectError.h"

#include "MPPCommon/storage/SSLTypes.h"
#include "MPPCommon/support/Log.h"

InspectError::InspectError(int32_t code, const std::string& context)
    : std::runtime_error(context), m_code(code) {}

std::string InspectError::line() const {
    return stringWithFormat("error %d %s: %s", m_code, sslResultName(m_code), what());
}
