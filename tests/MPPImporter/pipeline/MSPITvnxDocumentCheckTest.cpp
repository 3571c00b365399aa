#include "MPPImporter/pipeline/MSPITvnxDocumentCheck.h"

#include "MPPImporter/pipeline/MSPIImportNames.h"

#include <gtest/gtest.h>

TEST(MSPITvnxDocumentCheckTest, EachBrokenPartOfTheFrameFailsTheCheck) {
    const std::string wellFormed =
        "<scenario xmlns=\"http://schemas.tarvane.example/2\" id=\"s1\">"
        "<top-resource idref=\"r-1\"/><resource id=\"r-1\"><type>Group</type></resource>"
        "<resource id=\"r1\"><type>Staff</type></resource><top-task idref=\"t-1\"/>"
        "<task id=\"t-1\"><type>group</type></task></scenario>";
    const auto check = [&](const std::string& from, const std::string& to) {
        std::string xml = wellFormed;
        for (size_t at = xml.find(from); !from.empty() && at != std::string::npos;
             at = xml.find(from, at + to.size())) {
            xml.replace(at, from.size(), to);
        }
        return isWellFormedTvnxDoc(*KVMSPCXMLDocument::initWithXMLString(xml, 0, nullptr));
    };
    EXPECT_TRUE(check("", ""));
    const std::pair<const char*, const char*> breaks[] = {
        {"scenario", "plan"},
        {" xmlns=\"http://schemas.tarvane.example/2\"", ""},
        {" xmlns=", " xmlns:x=\"urn:x\" xmlns="},
        {"id=\"s1\"", "id=\"\""},
        {"idref=\"r-1\"", "idref=\"r1\""},
        {"Group", "group"},
        {"<resource id=\"r-1\">", "<resource id=\"r0\">"},
        {"<top-task idref=\"t-1\"/>", ""},
        {"<type>group", "<type>Group"},
        {"<task id=\"t-1\"><type>group</type></task>", ""},
    };
    for (const auto& [from, to] : breaks) {
        EXPECT_FALSE(check(from, to)) << from << " -> " << to;
    }
}

TEST(MSPITvnxDocumentCheckTest, DirectoryOfAFilePathIsRelativeWithoutTheFile) {
    EXPECT_EQ(directoryFromFilePath(TVFileURL("/a/b/c.mpp", false)), "a/b");
    EXPECT_EQ(directoryFromFilePath(TVFileURL("/c.mpp", false)), "");
}
