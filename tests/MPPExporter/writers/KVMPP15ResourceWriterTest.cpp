#include "MPPExporter/writers/KVMPP15ResourceWriter.h"

#include "MPPCommon/support/TVException.h"
#include "MPPExporter/MPPObjects/KVMPPProject.h"
#include "MPPExporter/writers/KVMPP15ProjectWriter.h"
#include "MPPImporter/file/KVMSPIPropsReader.h"
#include "MPPImporter/format/MPPValueCodecs.h"
#include "MPPImporter/readers/KVMSPIMPPResourceReader.h"
#include "MPPImporter/readers/KVMSPISingleExtendedAttribute.h"
#include "MPPImporter/readers/KVMSPISingleResourceBaselineReader.h"
#include "WriterTestSupport.h"
#include "support/TestSupport.h"

#include <bit>
#include <cmath>
#include <gtest/gtest.h>

namespace {

namespace fs = std::filesystem;

constexpr TVDate kFrom = TVDate::fromUnixSeconds(1700438400); // 2023-11-20 00:00 UTC
constexpr TVDate kTo = TVDate::fromUnixSeconds(1703059200);   // 2023-12-20 00:00 UTC

std::shared_ptr<KVMPPResource> addResource(KVMPPProject& project, uint64_t id, const std::string& name) {
    auto resource = std::make_shared<KVMPPResource>();
    resource->ID = id;
    resource->name = name;
    project.resources.push_back(resource);
    return resource;
}

// A plan with the mapping's dummy resource, a work resource with every field the writer writes, a
// material without initials and a cost resource whose work is no number.
struct ResourcePlan {
    KVMPPProject project;

    ResourcePlan() {
        auto task = std::make_shared<KVMPPTask>();
        task->ID = 1;
        task->title = "Work";
        project.tasks.push_back(task);
        addResource(project, 0, "dummy");
        auto ann = addResource(project, 1, "Ann");
        ann->emailAddress = "ann@example.com";
        ann->notes = "Leads the crew";
        ann->group = "Crew";
        ann->costPerUse = 12.5;
        ann->maxUnits = 0.5;
        ann->standartRate = 40;
        ann->availableFromDate = kFrom;
        ann->availableToDate = kTo;
        ann->work = 28800;
        ann->cost = 100;
        KVMPPExtendedAttribute desk;
        desk.alias = "Desk";
        desk.value = "B12";
        ann->customFieldsText.addAttribute(desk);
        ann->customFieldsText.resolve({"Skill", "Desk"});
        ann->baselines = {{3600, 10, 0}, {7200, 20, 2}};
        auto concrete = addResource(project, 2, "Concrete");
        concrete->setResourceTypeMaterial();
        concrete->work = 12;
        concrete->actualWork = 5;
        auto travel = addResource(project, 3, "Travel");
        travel->setResourceTypeCost();
        travel->work = std::nan("");
        project.customResourceFieldNames = std::vector<std::string>{"Skill", "Desk"};
    }
};

double doubleAt(const std::vector<uint8_t>& bytes, size_t offset) {
    return decodeMPPNumber<double>(std::span(bytes).subspan(offset, 8));
}

uint32_t wordAt(const std::vector<uint8_t>& bytes, size_t offset) {
    return decodeMPPNumber<uint32_t>(std::span(bytes).subspan(offset, 4));
}

// Every resource reads back with the fields the import takes from it; the dummy resource is gone and
// the default resource leads with ID 0.
TEST(KVMPP15ResourceWriter, TheReaderReadsBackEveryResource) {
    testsupport::TempDir dir;
    ResourcePlan plan;
    const fs::path output = dir.path() / "plan.mpp";
    ASSERT_TRUE(KVMPP15ProjectWriter::writeProject(plan.project, output.string(),
                                                   writertest::shippedTemplate().string()));
    writertest::WrittenPlan written(output);
    ASSERT_NE(written.resources(), nullptr);
    KVMSPIMPPResourceReader& reader = *written.resources();
    ASSERT_EQ(reader.uniqueIDs(), (std::vector<int32_t>{0, 1, 2, 3}));

    const auto readText = [&reader](auto operation, int32_t uid) {
        std::string text;
        return (reader.*operation)(uid, text, nullptr) ? std::optional(text) : std::nullopt;
    };
    EXPECT_EQ(readText(&KVMSPIMPPResourceReader::resourceName, 0), std::nullopt) << "the default resource";
    const std::vector<std::string> names = {"Ann", "Concrete", "Travel"};
    const std::vector<int16_t> types = {0, 1, 1};
    const std::vector<uint8_t> costMarks = {0, 0, 16};
    for (int32_t uid = 1; uid <= 3; ++uid) {
        const auto at = static_cast<size_t>(uid - 1);
        int32_t id = 0;
        int16_t type = -1;
        uint8_t costMark = 1;
        EXPECT_TRUE(reader.resourceID(uid, id) && reader.resourceType(uid, type) &&
                    reader.resourceIsCostResource(uid, costMark));
        EXPECT_EQ(readText(&KVMSPIMPPResourceReader::resourceName, uid), names[at]);
        EXPECT_EQ(id, uid);
        EXPECT_EQ(type, types[at]) << uid;
        EXPECT_EQ(costMark, costMarks[at]) << uid;
    }
    EXPECT_EQ(readText(&KVMSPIMPPResourceReader::resourceEmailAddress, 1), "ann@example.com");
    EXPECT_EQ(readText(&KVMSPIMPPResourceReader::resourceEmailAddress, 2), std::nullopt);
    EXPECT_EQ(readText(&KVMSPIMPPResourceReader::resourceNotes, 1).value_or("").substr(0, 14),
              "Leads the crew");
    double value = 0;
    EXPECT_TRUE(reader.resourceCostPerUse(1, value));
    EXPECT_EQ(value, 1250.0) << "the reader takes hundredths as stored";
    EXPECT_TRUE(reader.resourceMaxUnits(1, value));
    EXPECT_EQ(value, 50.0);
    EXPECT_TRUE(reader.resourceStandardRate(1, value));
    EXPECT_EQ(value, 40.0);
    EXPECT_TRUE(reader.resourceCost(1, value));
    EXPECT_EQ(value, 10000.0);
    TVTimeSpan work = 0;
    EXPECT_TRUE(reader.resourceWork(1, work));
    EXPECT_EQ(work, 28800 * kMicrosecondsPerSecond);
    EXPECT_TRUE(reader.resourceWork(3, work));
    EXPECT_EQ(work, 0) << "work that is no number writes none";
    TVDate date;
    EXPECT_TRUE(reader.resourceAvailableFrom(1, date));
    EXPECT_EQ(date, KVMPPData::wallClock(kFrom));
    EXPECT_TRUE(reader.resourceAvailableTo(1, date));
    EXPECT_EQ(date, KVMPPData::wallClock(kTo));
    std::vector<std::unique_ptr<KVMSPISingleExtendedAttribute>> fields;
    EXPECT_TRUE(reader.resourceCustomFields(1, fields));
    ASSERT_EQ(fields.size(), 1u) << "an empty custom text writes no element";
    EXPECT_EQ(fields[0]->name(), "Desk") << "the field goes by the name written for it";
    EXPECT_EQ(fields[0]->string(), "B12");
    // The first baseline became the Baseline, the second keeps its number, and reads back: the default
    // resource marks it for the plan.
    bool saved = false;
    EXPECT_TRUE(reader.hasBaseline(1, 2, saved) && saved);
    EXPECT_TRUE(reader.hasBaseline(1, 1, saved) && !saved);
    const KVMSPISingleResourceBaselineReader* second = reader.resourceBaseline(1, 2);
    ASSERT_NE(second, nullptr);
    EXPECT_TRUE(second->hasWork() && second->hasCost());
    EXPECT_DOUBLE_EQ(second->resourceWork() * 0.06, 7200.0);
    EXPECT_DOUBLE_EQ(second->resourceCost(), 2000.0);
    EXPECT_EQ(reader.resourceBaseline(2, 2), nullptr) << "a resource without the baseline holds none";
    // The Baseline reads back with its values, where applications 15 and 16 keep them.
    EXPECT_TRUE(reader.hasBaseline(0, 0, saved) && saved) << "the plan's mark of the Baseline";
    const KVMSPISingleResourceBaselineReader* first = reader.resourceBaseline(1, 0);
    ASSERT_NE(first, nullptr);
    EXPECT_TRUE(first->hasWork() && first->hasCost());
    EXPECT_DOUBLE_EQ(first->resourceWork() * 0.06, 3600.0);
    EXPECT_DOUBLE_EQ(first->resourceCost(), 1000.0);
    EXPECT_EQ(reader.resourceBaseline(2, 0), nullptr);

    // Three header elements, then records of 172 bytes: the default resource's, then the resources'.
    const std::vector<uint8_t> fixed = written.stream("TBkndRsc", "FixedData");
    ASSERT_EQ(fixed.size(), 3 * 16 + 4 * 172u);
    const size_t concrete = 48 + 2 * 172;
    EXPECT_EQ(doubleAt(fixed, concrete + 48), 12.0) << "a material keeps its amount";
    EXPECT_EQ(doubleAt(fixed, concrete + 56), 5.0);
    EXPECT_EQ(doubleAt(fixed, concrete + 106), 200.0) << "and its amount as minutes of work";
    // The sheet positions, upper halves of the doubles 1 to 4, between each record's two GUIDs.
    const std::vector<uint8_t> fixed2 = written.stream("TBkndRsc", "Fixed2Data");
    ASSERT_EQ(fixed2.size(), 3 * 40 + 4 * 40u);
    for (uint32_t n = 0; n < 4; ++n) {
        EXPECT_EQ(wordAt(fixed2, 120 + 40 * n + 20),
                  static_cast<uint32_t>(std::bit_cast<uint64_t>(n + 1.0) >> 32));
    }
    // Ann's meta entry: her e-mail, notes and group mark its first word; both custom texts, set or
    // not, have their bits.
    const std::vector<uint8_t> meta = written.stream("TBkndRsc", "FixedMeta");
    const size_t ann = 16 + 4 * 37;
    EXPECT_EQ(wordAt(meta, ann), 0x60000u);
    EXPECT_EQ(meta[ann + 16], 0x04 | 0x08);

    // The custom field names: count, per field its type, the meta ending and the name's offset, the
    // names, and the resource store's trailing words.
    KVMSPIPropsReader props(written.openStream("TBkndRsc", "Props"));
    int32_t size = 0;
    ASSERT_TRUE(props.getPropertySize(&size, 0x4400001));
    std::vector<uint8_t> aliases(static_cast<size_t>(size));
    ASSERT_TRUE(props.readPropertyByteArray(aliases.data(), aliases.size(), 0x4400001, false));
    EXPECT_EQ(wordAt(aliases, 8), 2u);
    EXPECT_EQ(wordAt(aliases, 20), KVMPP15ResourceWriter::getTextFieldTypeForIndex(2) | 0x0C400000u);
    const size_t desk = 4 + wordAt(aliases, 24); // offsets count from the second size word
    EXPECT_EQ(decodeMPPText(std::span(aliases).subspan(desk)), u"Desk");
    // As in the planning application's files, the names stand packed, "Desk" right behind "Skill" and
    // its terminator, and the sizes span them from the second size on.
    EXPECT_EQ(wordAt(aliases, 24) - wordAt(aliases, 16), 12u);
    EXPECT_EQ(wordAt(aliases, 0), desk + 10 - 4);
    const std::vector<uint8_t> trailer(aliases.end() - 32, aliases.end());
    const std::vector<uint8_t> words = {8, 0, 0, 0, 8, 0, 0, 0, 0, 0, 0, 0, 8, 0, 0, 0,
                                        8, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0};
    EXPECT_EQ(trailer, words);
}

// Positions up to 255 are the upper halves of n + 1; the table's words follow beyond, and there are
// none above its last range.
TEST(KVMPP15ResourceWriter, SheetPositionsAndRefusals) {
    for (uint64_t n = 0; n <= 255; ++n) {
        EXPECT_EQ(KVMPP15ResourceWriter::calculateResourcePositionInResourceSheet(n),
                  static_cast<uint32_t>(std::bit_cast<uint64_t>(n + 1.0) >> 32))
            << n;
    }
    EXPECT_EQ(KVMPP15ResourceWriter::calculateResourcePositionInResourceSheet(256), 0x40601000u);
    EXPECT_EQ(KVMPP15ResourceWriter::calculateResourcePositionInResourceSheet(262143), 0x41000000u);
    EXPECT_EQ(KVMPP15ResourceWriter::calculateResourcePositionInResourceSheet(262144), 0u);

    try {
        KVMPP15ResourceWriter::getTextFieldTypeForIndex(0);
        ADD_FAILURE() << "position 0 has a type";
    } catch (const TVException& exception) {
        EXPECT_EQ(exception.name() + ": " + exception.reason(),
                  "UnknownTextFieldException: Text field type is unknown for index 0");
    }

    // A baseline numbered beyond 10 fails the export, and the file begun is removed.
    testsupport::TempDir dir;
    ResourcePlan plan;
    plan.project.resources[1]->baselines.push_back({0, 0, 11});
    const fs::path output = dir.path() / "plan.mpp";
    EXPECT_FALSE(KVMPP15ProjectWriter::writeProject(plan.project, output.string(),
                                                    writertest::shippedTemplate().string()));
    EXPECT_FALSE(fs::exists(output));
}

} // namespace
