#include "WriterTestSupport.h"

#include "support/TestSupport.h"

#include <sstream>

namespace writertest {

std::filesystem::path shippedTemplate() {
    return std::filesystem::path(TVMSP_SOURCE_DIR) / "templates" / "Template.mpp";
}

std::vector<std::string> olefileListing(const std::filesystem::path& file) {
    const std::string text = testsupport::commandOutput(
        "/usr/bin/python3 " +
        testsupport::shellQuoted(TVMSP_SOURCE_DIR "/tests/tool/inspect/olefile_listing.py") + " " +
        testsupport::shellQuoted(file.string()) + " 2>&1");
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) {
        if (line.rfind("== ", 0) != 0) {
            lines.push_back(line);
        }
    }
    return lines;
}

} // namespace writertest
