#include "WriterTestSupport.h"

#include <cstdio>
#include <sstream>

namespace writertest {

std::filesystem::path shippedTemplate() {
    return std::filesystem::path(TVMSP_SOURCE_DIR) / "templates" / "Template.mpp";
}

std::vector<std::string> olefileListing(const std::filesystem::path& file) {
    const std::string command = "/usr/bin/python3 '" TVMSP_SOURCE_DIR
                                "/tests/tool/inspect/olefile_listing.py' '" +
                                file.string() + "' 2>&1";
    std::vector<std::string> lines;
    FILE* pipe = popen(command.c_str(), "r");
    if (pipe == nullptr) {
        return {"!! cannot run olefile"};
    }
    std::string text;
    char buffer[4096];
    for (size_t count = 0; (count = fread(buffer, 1, sizeof buffer, pipe)) > 0;) {
        text.append(buffer, count);
    }
    pclose(pipe);
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) {
        if (line.rfind("== ", 0) != 0) {
            lines.push_back(line);
        }
    }
    return lines;
}

} // namespace writertest
