#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

// Small compound files with storages for tests, written through the storage library's write side.
// Streams are named by their path of storages ("   114/TBkndCal/FixedData").
class MPPFixtureFile {
public:
    using Bytes = std::vector<uint8_t>;

    MPPFixtureFile& addStream(const std::string& path, Bytes bytes);
    MPPFixtureFile& addStorage(const std::string& path);
    // Writes the file as `name` in `directory` and gives its path.
    std::filesystem::path write(const std::filesystem::path& directory, const std::string& name) const;

    // A CompObj stream: 28 bytes of header, then each string present behind its length, the terminator
    // counted. An absent string is written as length 0.
    static Bytes compObj(const std::optional<std::string>& applicationName,
                         const std::optional<std::string>& fileFormat,
                         const std::optional<std::string>& applicationID);
    // A summary information property set whose one section holds the code page, or no property.
    static Bytes summaryInformation(std::optional<int16_t> codepage);

private:
    std::map<std::string, Bytes> m_streams;
    std::vector<std::string> m_storages;
};
