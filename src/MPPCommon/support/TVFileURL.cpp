#include "MPPCommon/support/TVFileURL.h"

#include "MPPCommon/support/TVPath.h"

#include <cerrno>
#include <cstring>
#include <unistd.h>

namespace {

std::string currentDirectory() {
    std::string buffer(256, '\0');
    while (getcwd(buffer.data(), buffer.size()) == nullptr) {
        if (errno != ERANGE || buffer.size() > (1u << 20)) {
            return "/";
        }
        buffer.resize(buffer.size() * 2);
    }
    buffer.resize(std::strlen(buffer.c_str()));
    return buffer;
}

std::string absolutePath(const std::string& path) {
    if (path.empty()) {
        return path;
    }
    std::string absolute = path.front() == '/' ? path : appendingPathComponent(currentDirectory(), path);
    size_t end = absolute.find_last_not_of('/');
    return end == std::string::npos ? "/" : absolute.substr(0, end + 1);
}

// Characters that stand unencoded in the path of a URL.
bool isPathCharacter(unsigned char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
           std::strchr("-._~!$&'()*+,;=:@/", c) != nullptr;
}

} // namespace

TVFileURL::TVFileURL(const std::string& path, bool isDirectory)
    : m_path(absolutePath(path)), m_isDirectory(isDirectory) {}

std::string TVFileURL::absoluteString() const {
    static const char hexDigits[] = "0123456789ABCDEF";
    std::string text = "file://";
    for (unsigned char c : m_path) {
        if (c != '\0' && isPathCharacter(c)) {
            text += static_cast<char>(c);
        } else {
            text += '%';
            text += hexDigits[c >> 4];
            text += hexDigits[c & 0xF];
        }
    }
    if (m_isDirectory && text.back() != '/') {
        text += '/';
    }
    return text;
}

std::string TVFileURL::lastPathComponent() const {
    return ::lastPathComponent(m_path);
}

std::string TVFileURL::pathExtension() const {
    return ::pathExtension(m_path);
}

TVFileURL TVFileURL::appendingPathComponent(const std::string& component, bool isDirectory) const {
    return TVFileURL(::appendingPathComponent(m_path, component), isDirectory);
}
