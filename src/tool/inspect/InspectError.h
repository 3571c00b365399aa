#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

// A failed storage operation in an inspector command: the library's result code and what was being
// done. Reported as one line that names the code.
class InspectError : public std::runtime_error {
public:
    InspectError(int32_t code, const std::string& context);

    int32_t code() const { return m_code; }
    // "error 3 SSL_ERROR_NOT_COMPOUND_FILE: <context>"
    std::string line() const;

private:
    int32_t m_code;
};
