#include "tool/inspect/DumpCommand.h"

#include "InspectToolRun.h"
#include "support/TestSupport.h"
#include "tool/inspect/DumpValue.h"
#include "tool/inspect/ReaderFieldDump.h"

#include <gtest/gtest.h>

namespace {

// A reader whose operations answer a fixed value for UID 1 and false for every other UID.
class FakeReader {
public:
    bool name(int32_t uid, std::string& value, TVError*) {
        value += "Design";
        return uid == 1;
    }
    bool start(int32_t uid, TVDate& value, TVError*) {
        value = getMPPEpoch();
        return uid == 1;
    }
    bool work(int32_t uid, double& value, TVError*) {
        value = 1.5;
        return uid == 1;
    }
    bool broken(int32_t, bool&, TVError*) {
        throw TVException("NSInternalInconsistencyException", "bad item");
    }
};

nlohmann::ordered_json fieldsOf(int32_t uid) {
    FakeReader reader;
    return dumpObject(uid, [&](nlohmann::ordered_json& object) {
        ReaderFieldDump<FakeReader, int32_t>(reader, object, uid)
            .field("name", &FakeReader::name)
            .field("start", &FakeReader::start)
            .secondsField("work", &FakeReader::work);
    });
}

} // namespace

TEST(DumpValue, RendersInstantsInUtcWholeSeconds) {
    EXPECT_EQ(DumpValue::of(TVDate{0}), "1970-01-01T00:00:00");
    EXPECT_EQ(DumpValue::of(getMPPEpoch().addingSeconds(8 * 3600 + 59.9)), "1983-12-31T08:00:59");
    EXPECT_EQ(DumpValue::of(TVDate{-1}), "1969-12-31T23:59:59");
    EXPECT_EQ(DumpValue::of(TVDate{951782400}), "2000-02-29T00:00:00");
    EXPECT_TRUE(DumpValue::of(TVDate{1e300}).is_null());
    EXPECT_TRUE(DumpValue::of(TVDate{-1e13}).is_null());
}

TEST(DumpValue, RendersSecondsAsWholeMicroseconds) {
    EXPECT_EQ(DumpValue::ofSeconds(28800), 28800000000LL);
    EXPECT_EQ(DumpValue::ofSeconds(-0.0000015), -2);
    EXPECT_TRUE(DumpValue::ofSeconds(1e300).is_null());
}

TEST(ReaderFieldDump, KeepsAnsweredFieldsAndLeavesOutTheOthers) {
    EXPECT_EQ(fieldsOf(1).dump(),
              R"({"uid":1,"name":"Design","start":"1983-12-31T00:00:00","work":1500000})");
    EXPECT_EQ(fieldsOf(2).dump(), R"({"uid":2})");
}

TEST(ReaderFieldDump, KeepsAFailedInternalCheckOnItsObject) {
    FakeReader reader;
    const auto object = dumpObject(7, [&](nlohmann::ordered_json& fields) {
        ReaderFieldDump<FakeReader, int32_t>(reader, fields, 7).field("broken", &FakeReader::broken);
    });
    EXPECT_EQ(object.dump(),
              R"({"uid":7,"error":{"name":"NSInternalInconsistencyException","text":"bad item"}})");
}

TEST(DumpCommand, RefusesMalformedArguments) {
    for (const std::vector<std::string>& arguments : std::vector<std::vector<std::string>>{
             {"dump"},
             {"dump", "--accept-downgraded"},
             {"dump", "--baseline", "plan.mpp"},
             {"dump", "--baseline", "11", "plan.mpp"},
             {"dump", "--baseline", "2x", "plan.mpp"},
             {"dump", "--baseline", "1", "--baseline", "2", "plan.mpp"},
             {"dump", "--accept-downgraded", "--accept-downgraded", "plan.mpp"},
             {"dump", "--verbose", "plan.mpp"},
             {"dump", "plan.mpp", "other.mpp"}}) {
        const auto run = InspectToolRun::of(arguments);
        EXPECT_EQ(run.status, 2) << arguments.size();
        EXPECT_EQ(run.out, "");
        EXPECT_EQ(run.err, "usage: mppinspect dump [--accept-downgraded] [--baseline N] FILE\n");
    }
}

TEST(DumpCommand, GivesTheImportErrorForAFileThatIsNoPlan) {
    testsupport::TempDir dir;
    const auto path = dir.path() / "plan.mpp";
    testsupport::writeFileBytes(path, std::vector<unsigned char>(600, 'x'));
    const auto run = InspectToolRun::of({"dump", "--accept-downgraded", "--baseline", "0", path.string()});
    EXPECT_EQ(run.status, 1);
    const auto dump = nlohmann::json::parse(run.out);
    EXPECT_EQ(dump["error"]["code"], 4);
    EXPECT_FALSE(dump.contains("tasks"));
}
