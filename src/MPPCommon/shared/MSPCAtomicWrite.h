#pragma once

#include <string>
#include <vector>

// Writes `data` to a new file beside `path` and renames it over `path`, so that readers see either
// the old file or the whole new one. On any failure the new file is removed, whatever stood at
// `path` stays as it was, and the answer is false.
bool writeDataAtomically(const std::string& path, const std::vector<unsigned char>& data);
