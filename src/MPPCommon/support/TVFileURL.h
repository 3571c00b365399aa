#pragma once

#include <string>

// A file URL: an absolute path and a flag that says whether it names a directory. A relative path
// is resolved against the working directory when the URL is made; dots and links are left as they
// are. A default-constructed URL is "not given".
class TVFileURL {
public:
    TVFileURL() = default;
    TVFileURL(const std::string& path, bool isDirectory);

    bool isEmpty() const { return m_path.empty(); }
    // The absolute path, without a trailing slash except for the root.
    const std::string& path() const { return m_path; }
    bool hasDirectoryPath() const { return m_isDirectory; }

    // "file://" and the percent-encoded path, with a trailing "/" for a directory.
    std::string absoluteString() const;
    std::string lastPathComponent() const;
    std::string pathExtension() const;
    TVFileURL appendingPathComponent(const std::string& component, bool isDirectory) const;

    bool operator==(const TVFileURL&) const = default;

private:
    std::string m_path;
    bool m_isDirectory = false;
};
