#pragma once

#include "MPPCommon/date/DateTestSupport.h"
#include "MPPCommon/xml/KVMSPCXMLDocument.h"
#include "MPPImporter/Mapper/utilities/KVMSPIUtilities.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

// Texts of small hand-written bundles for the export's tests: a table of contents and a scenario
// whose top resource and top task hold what a test gives.
namespace exportbundle {

inline const std::string kScenarioEntry = R"(<scenario id="s1" name="Actual" filename="Actual.xml"/>)";
inline const std::string kWindow = "<window><editing-scenario>s1</editing-scenario></window>";

// A table of contents: a project titled "Plan" holding `projectContent` (scenario entries and the
// like), then `windows`.
inline std::string tableOfContents(const std::string& projectContent = kScenarioEntry,
                                   const std::string& windows = kWindow) {
    return R"(<document xmlns="http://schemas.tarvane.example/2"><project><title>Plan</title>)" +
           projectContent + "</project>" + windows + "</document>";
}

// A scenario starting 2026-02-02 08:00 UTC. The top resource "r-1" is a group of the resources
// `topResources` names; the top task "t-1" a group of the tasks `topTasks` names. `elements` are the
// scenario's further resources and tasks, `rootAttributes` go on the root.
inline std::string scenario(const std::vector<std::string>& topTasks, const std::string& elements,
                            const std::string& rootAttributes = "",
                            const std::vector<std::string>& topResources = {}) {
    std::string text = R"(<scenario xmlns="http://schemas.tarvane.example/2" id="s1" )" + rootAttributes +
                       R"(><start-date>2026-02-02T08:00:00Z</start-date><top-resource idref="r-1"/>)"
                       R"(<resource id="r-1"><type>Group</type>)";
    for (const std::string& id : topResources) {
        text += R"(<child-resource idref=")" + id + R"("/>)";
    }
    text += R"(</resource><top-task idref="t-1"/><task id="t-1"><type>group</type>)";
    for (const std::string& id : topTasks) {
        text += R"(<child-task idref=")" + id + R"("/>)";
    }
    return text + "</task>" + elements + "</scenario>";
}

// The text with the default namespace declaration taken off, as the bundle loader does on reading.
inline std::string withoutNamespace(std::string text) {
    const std::string declaration = R"( xmlns="http://schemas.tarvane.example/2")";
    for (size_t at = text.find(declaration); at != std::string::npos; at = text.find(declaration)) {
        text.erase(at, declaration.size());
    }
    return text;
}

// The document of a bundle text; a text that doesn't parse fails the test.
inline KVMSPCXMLDocument::DocumentPtr parsedDocument(const std::string& text) {
    TVError error;
    auto document = KVMSPCXMLDocument::initWithXMLString(text, 0, &error);
    EXPECT_TRUE(document) << text;
    return document;
}

// A wall clock of February 2026 in the system zone as the bundle states it: Monday the 2nd to Sunday
// the 8th, clear of daylight-saving changes.
inline std::string februaryText(int day, int hour = 0) {
    return *KVMSPIUtilities::mppToTvnxDateTime(localInstant(2026, 2, day, hour));
}

} // namespace exportbundle
