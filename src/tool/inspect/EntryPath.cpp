#include "tool/inspect/EntryPath.h"

#include "MPPCommon/support/Log.h"

namespace {

int hexValue(char c) {
    if (c >= '0' && c <= '9') {
        return c - '0';
    }
    if (c >= 'A' && c <= 'F') {
        return c - 'A' + 10;
    }
    if (c >= 'a' && c <= 'f') {
        return c - 'a' + 10;
    }
    return -1;
}

} // namespace

std::string EntryPath::escapeName(const std::string& name) {
    std::string escaped;
    for (char c : name) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x20 || c == '/' || c == '\\') {
            escaped += stringWithFormat("\\x%02X", byte);
        } else {
            escaped += c;
        }
    }
    return escaped;
}

std::string EntryPath::join(const std::string& parent, const std::string& name) {
    return parent.empty() ? escapeName(name) : parent + "/" + escapeName(name);
}

std::vector<std::string> EntryPath::split(const std::string& path) {
    std::vector<std::string> names(1);
    for (size_t i = 0; i < path.size(); ++i) {
        if (path[i] == '/') {
            names.emplace_back();
        } else if (path[i] == '\\' && i + 3 < path.size() && path[i + 1] == 'x' &&
                   hexValue(path[i + 2]) >= 0 && hexValue(path[i + 3]) >= 0) {
            names.back() += static_cast<char>(hexValue(path[i + 2]) * 16 + hexValue(path[i + 3]));
            i += 3;
        } else {
            names.back() += path[i];
        }
    }
    return names;
}
