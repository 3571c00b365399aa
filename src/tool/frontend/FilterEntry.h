#pragma once

#include "tool/frontend/ExportDriver.h"
#include "tool/frontend/ImportDriver.h"

#include <string>
#include <vector>

// The program's entry: logs the command line and hands it to the import or the export driver.
class FilterEntry {
public:
    FilterEntry(ImportDriver importDriver, ExportDriver exportDriver);

    // `arguments` holds the program path first; `processName` names the program in usage texts.
    // Answers the exit status: -1 for too few arguments or a failed export, 0 for a good export,
    // the import driver's status for an import.
    int run(const std::vector<std::string>& arguments, const std::string& processName) const;

    // The arguments as one line: ("first", "second", ...), with quotes and backslashes escaped.
    static std::string describeArguments(const std::vector<std::string>& arguments);

private:
    ImportDriver m_importDriver;
    ExportDriver m_exportDriver;
};
