#include "MPPCommon/support/TVPath.h"

#include "MPPCommon/support/Log.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <sys/stat.h>

namespace {

std::string withoutTrailingSlashes(const std::string& path) {
    size_t end = path.find_last_not_of('/');
    if (end == std::string::npos) {
        return path.empty() ? path : "/";
    }
    return path.substr(0, end + 1);
}

// Position of the extension's dot inside `path` (already without trailing slashes), or npos.
size_t extensionDot(const std::string& path) {
    size_t componentStart = path.rfind('/');
    componentStart = componentStart == std::string::npos ? 0 : componentStart + 1;
    size_t dot = path.rfind('.');
    if (dot == std::string::npos || dot <= componentStart) {
        return std::string::npos;
    }
    return dot;
}

} // namespace

std::string lastPathComponent(const std::string& path) {
    std::string trimmed = withoutTrailingSlashes(path);
    if (trimmed == "/") {
        return trimmed;
    }
    size_t slash = trimmed.rfind('/');
    return slash == std::string::npos ? trimmed : trimmed.substr(slash + 1);
}

std::string pathExtension(const std::string& path) {
    std::string trimmed = withoutTrailingSlashes(path);
    size_t dot = extensionDot(trimmed);
    return dot == std::string::npos ? std::string() : trimmed.substr(dot + 1);
}

std::string lowercasedPathExtension(const std::string& path) {
    std::string extension = pathExtension(path);
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](unsigned char c) { return std::tolower(c); });
    return extension;
}

std::string deletingPathExtension(const std::string& path) {
    std::string trimmed = withoutTrailingSlashes(path);
    size_t dot = extensionDot(trimmed);
    return dot == std::string::npos ? trimmed : trimmed.substr(0, dot);
}

std::string deletingLastPathComponent(const std::string& path) {
    std::string trimmed = withoutTrailingSlashes(path);
    size_t slash = trimmed.rfind('/');
    if (slash == std::string::npos) {
        return std::string();
    }
    return slash == 0 ? std::string("/") : trimmed.substr(0, slash);
}

std::string appendingPathComponent(const std::string& path, const std::string& component) {
    if (path.empty()) {
        return component;
    }
    return path.back() == '/' ? path + component : path + "/" + component;
}

FileKind fileKindAtPath(const std::string& path) {
    struct stat info {};
    // No file name holds a NUL; stat would see only the part before it.
    if (path.empty() || path.find('\0') != std::string::npos || stat(path.c_str(), &info) != 0) {
        return FileKind::Missing;
    }
    return S_ISDIR(info.st_mode) ? FileKind::Directory : FileKind::File;
}

bool pathExists(const std::string& path) {
    return fileKindAtPath(path) != FileKind::Missing;
}

void removeItemIgnoringErrors(const std::string& path) {
    std::error_code ignored;
    std::filesystem::remove_all(path, ignored);
}

std::string firstFreeNumberedPath(const std::string& path) {
    std::string extension = pathExtension(path);
    std::string stem = deletingPathExtension(path);
    std::string candidate = path;
    for (long counter = 1; pathExists(candidate); ++counter) {
        candidate = stringWithFormat("%s-%ld", stem.c_str(), counter);
        if (!extension.empty()) {
            candidate += "." + extension;
        }
    }
    return candidate;
}
