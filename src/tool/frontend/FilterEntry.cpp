#include "tool/frontend/FilterEntry.h"

#include "MPPCommon/support/Log.h"
#include "tool/frontend/UsageTexts.h"

FilterEntry::FilterEntry(ImportDriver importDriver, ExportDriver exportDriver)
    : m_importDriver(std::move(importDriver)), m_exportDriver(std::move(exportDriver)) {}

int FilterEntry::run(const std::vector<std::string>& arguments, const std::string& processName) const {
    tvLog(stringWithFormat("Command line arguments: %s", describeArguments(arguments).c_str()));
    if (arguments.size() <= 3) {
        tvLog(stringWithFormat("Too few arguments.%s", generalUsage(processName).c_str()));
        return -1;
    }
    if (arguments[1] == "-export") {
        return m_exportDriver.run(arguments, processName) ? 0 : -1;
    }
    return m_importDriver.run(arguments, processName);
}

std::string FilterEntry::describeArguments(const std::vector<std::string>& arguments) {
    std::string text = "(";
    for (size_t i = 0; i < arguments.size(); ++i) {
        text += i == 0 ? "\"" : ", \"";
        for (char c : arguments[i]) {
            if (c == '"' || c == '\\') {
                text += '\\';
            }
            text += c;
        }
        text += '"';
    }
    return text + ")";
}
