#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace writertest {

// The template that ships with the tool.
std::filesystem::path shippedTemplate();

// What olefile reads of a compound file, one line per entry below the root ("S <TAB> size <TAB> crc
// <TAB> path" or "D <TAB> 0 <TAB> - <TAB> path", sorted by path), or one line "!! <error>".
std::vector<std::string> olefileListing(const std::filesystem::path& file);

} // namespace writertest
