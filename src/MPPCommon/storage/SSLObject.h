#pragma once

#include <cstdint>

// Base of the storage objects: every operation stores the library's result code of its last call,
// and callers look at lastError() afterwards instead of catching anything.
class SSLObject {
public:
    int32_t lastError() const { return m_lastError; }

protected:
    SSLObject() = default;
    ~SSLObject() = default;

    int32_t m_lastError = 0;
};
