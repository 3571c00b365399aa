#pragma once

#include "MPPCommon/storage/SSLRoot.h"
#include "MPPCommon/storage/SSLStorage.h"
#include "MPPCommon/storage/SSLStream.h"
#include "MPPImporter/Mapper/mapping/KVMSPIMapperInterface.h"
#include "support/TestSupport.h"

#include <fstream>
#include <set>
#include <sstream>

namespace pipelinetest {

inline void writeText(const std::filesystem::path& path, const std::string& text) {
    testsupport::writeFileBytes(path, std::vector<unsigned char>(text.begin(), text.end()));
}

// The text of a regular file, or none.
inline std::optional<std::string> fileText(const std::filesystem::path& path) {
    if (!std::filesystem::is_regular_file(path)) {
        return std::nullopt;
    }
    std::stringstream text;
    text << std::ifstream(path).rdbuf();
    return text.str();
}

// A compound file that holds only a CompObj stream: 28 header bytes, then the strings, each behind its
// length with the terminator.
inline void writeCompObjOnlyFile(const std::filesystem::path& path, const std::string& applicationName,
                                 const std::string& fileFormat) {
    std::vector<unsigned char> compObj(28, 0);
    for (const std::string& text : {applicationName, fileFormat, std::string("MSProject.Project.9")}) {
        const uint32_t length = static_cast<uint32_t>(text.size() + 1);
        compObj.insert(compObj.end(), {static_cast<unsigned char>(length), 0, 0, 0});
        compObj.insert(compObj.end(), text.c_str(), text.c_str() + length);
    }
    std::unique_ptr<SSLRoot> root = SSLRoot::forWritingToFile(path.string());
    root->rootStorage()
        ->createChildStreamWithName("\001CompObj")
        ->writeBuffer(compObj.data(), static_cast<int32_t>(compObj.size()));
}

inline constexpr const char* kTemplateTOC =
    "<document xmlns=\"http://schemas.tarvane.example/2\"><project><title>T</title></project></document>";

// A template bundle: "Actual.xml" and "__TOC.xml" (unless none) in a new folder.
inline void writeTemplateBundle(const std::filesystem::path& path, const std::optional<std::string>& tocXml) {
    std::filesystem::create_directories(path);
    writeText(path / "Actual.xml", "<scenario xmlns=\"http://schemas.tarvane.example/2\" id=\"tmpl\"/>");
    if (tocXml) {
        writeText(path / "__TOC.xml", *tocXml);
    }
}

// What a mapper saw in the info dictionary: the baseline number (-1 for none) and the scenario name.
using MapperRun = std::pair<int64_t, std::string>;

// Mappers that yield "<scenario id=NAME/>" for the baselines in `scenarios` (-1: the actual plan)
// and nothing for others. Each run is recorded and leaves "<mapped>NAME</mapped>" in the table of
// contents.
class ScenarioMappers {
public:
    explicit ScenarioMappers(std::set<int64_t> scenarios) : m_scenarios(std::move(scenarios)) {}

    KVMSPIMapperFactory factory() {
        return [this](KVMSPIMPPReader&, auto&, const KVMSPCXMLDocument::DocumentPtr& toc, auto& info) {
            return std::make_unique<Mapper>(*this, toc, info);
        };
    }
    std::vector<MapperRun> runs;

private:
    struct Mapper : KVMSPIMapperInterface {
        Mapper(ScenarioMappers& owner, KVMSPCXMLDocument::DocumentPtr toc, const TVInfoDictionary& info)
            : owner(owner), toc(std::move(toc)), info(info) {}
        void map() override {
            const int64_t* number = info.numberForKey(kInfoMSPBaselineNumber);
            const std::string name = *info.stringForKey(kInfoTVNXScenarioName);
            owner.runs.emplace_back(number ? *number : -1, name);
            toc->rootElement()->addChildElementWithName("mapped", name);
            if (owner.m_scenarios.count(owner.runs.back().first) != 0) {
                document =
                    KVMSPCXMLDocument::initWithXMLString("<scenario id=\"" + name + "\"/>", 0, nullptr);
            }
        }
        KVMSPCXMLDocument::DocumentPtr tvnxXmlDoc() const override { return document; }

        ScenarioMappers& owner;
        KVMSPCXMLDocument::DocumentPtr toc;
        const TVInfoDictionary& info;
        KVMSPCXMLDocument::DocumentPtr document;
    };
    std::set<int64_t> m_scenarios;
};

} // namespace pipelinetest
