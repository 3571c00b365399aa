#include "MPPCommon/support/TVMSPErrors.h"
#include "MPPImporter/query/adapters/KVMSPIXQAssignmentAdapter.h"
#include "MPPImporter/query/adapters/KVMSPIXQLeafAdapter.h"
#include "MPPImporter/query/adapters/KVMSPIXQPredecessorLinkAdapter.h"
#include "MPPImporter/query/adapters/KVMSPIXQResourceAdapter.h"
#include "MPPImporter/query/adapters/KVMSPIXQTaskAdapter.h"
#include "MPPImporter/query/adapters/KVMSPIXQTimephasedDataAdapter.h"

#include <gtest/gtest.h>

namespace {

// A reader of no family.
class Stranger : public KVMSPIXQResponder {};

// A reader with one operation of each shape, which fails on demand with its own error.
class FakeReader : public KVMSPIXQResponder {
public:
    bool failing = false;
    std::vector<std::shared_ptr<Stranger>> children{std::make_shared<Stranger>()};

    bool level(int16_t& value, TVError* error) const { return answer(value, int16_t{-3}, error); }
    // A flag byte as the file masks it: the bit's value, not 1.
    bool flag(uint8_t& value, TVError* error) const { return answer(value, uint8_t{16}, error); }
    bool units(double& value, TVError* error) const { return answer(value, 250.0, error); }
    const std::vector<std::shared_ptr<Stranger>>& childReaders() const { return children; }

private:
    template <typename Value>
    bool answer(Value& value, Value stored, TVError* error) const {
        if (failing) {
            setError(error, TVError::make("fakeRead", 7, "no value"));
            return false;
        }
        value = stored;
        return true;
    }
};

class FakeAdapter : public KVMSPIXQLeafAdapter<FakeReader> {
public:
    explicit FakeAdapter(KVMSPIXQResponder& reader)
        : KVMSPIXQLeafAdapter(reader, "Fake: %s.", fakeLeaves()) {}

private:
    static const Leaves& fakeLeaves() {
        static const Leaves leaves{
            .strings = {{"Level", stringLeaf(&FakeReader::level, decimalText)},
                        {"Rate", stringLeaf(&FakeReader::units, moneyText)}},
            .integers = {{"Level", integerLeaf(&FakeReader::level)}},
            .doubles = {{"Units", doubleLeaf(&FakeReader::units, 100.0)}},
            .booleans = {{"Flag", booleanLeaf(&FakeReader::flag)}},
            .collections = {{"Child", collectionLeaf(&FakeReader::childReaders)}},
        };
        return leaves;
    }
};

std::string raisedReason(const std::function<void()>& action) {
    try {
        action();
    } catch (const TVException& exception) {
        return exception.reason();
    }
    return "(nothing raised)";
}

TEST(TaskAdapterTest, LeavesAnswerByKindAndFailWithTheReadersError) {
    FakeReader reader;
    FakeAdapter adapter(reader);
    TVError error;
    EXPECT_EQ(adapter.stringValueForXQuery("Level", &error), "-3");
    EXPECT_EQ(adapter.intValueForXQuery("Level", &error), -3);
    EXPECT_EQ(adapter.stringValueForXQuery("Rate", &error), "250.00");
    EXPECT_DOUBLE_EQ(adapter.floatValueForXQuery("Units", &error), 2.5);
    EXPECT_TRUE(adapter.boolValueForXQuery("Flag", &error));
    EXPECT_EQ(adapter.singleObjectForXQuery("Child", &error), reader.children.front());
    EXPECT_TRUE(error.domain.empty());

    reader.failing = true;
    EXPECT_EQ(adapter.stringValueForXQuery("Level", &error), std::nullopt);
    EXPECT_EQ(adapter.intValueForXQuery("Level", &error), 0);
    EXPECT_EQ(adapter.floatValueForXQuery("Units", &error), 0.0);
    EXPECT_FALSE(adapter.boolValueForXQuery("Flag", &error));
    EXPECT_EQ(error.domain, "fakeRead");
}

TEST(TaskAdapterTest, QueriesOutsideTheTablesAreNotPortedOrRaise) {
    FakeReader reader;
    FakeAdapter adapter(reader);
    for (const auto& [what, ask] : std::vector<std::pair<std::string, std::function<void(TVError*)>>>{
             {"string Units",
              [&](TVError* error) { EXPECT_FALSE(adapter.stringValueForXQuery("Units", error)); }},
             {"integer Rate",
              [&](TVError* error) { EXPECT_EQ(adapter.intValueForXQuery("Rate", error), 0); }},
             {"boolean Level",
              [&](TVError* error) { EXPECT_FALSE(adapter.boolValueForXQuery("Level", error)); }},
             {"objects Level",
              [&](TVError* error) { EXPECT_TRUE(adapter.objectsForXQuery("Level", error).empty()); }},
             {"empty query",
              [&](TVError* error) { EXPECT_TRUE(adapter.objectsForXQuery("", error).empty()); }}}) {
        TVError error;
        ask(&error);
        EXPECT_EQ(error.domain, kTVMSPGeneralErrorDomain) << what;
        EXPECT_EQ(error.code, kTVMSPNotPortedXQueryError) << what;
        EXPECT_NE(error.localizedDescription().find("Must implement in subclass."), std::string::npos)
            << what;
    }
    EXPECT_EQ(raisedReason([&] { adapter.objectsForXQuery("Child[UID=1]", nullptr); }),
              "Unexpected predicate in component \"Child\": \"UID=1\".");
    EXPECT_EQ(raisedReason([&] { adapter.objectsForXQuery("Child/Name", nullptr); }),
              "Do not expect more then 1 component in xquery \"Child/Name\".");
}

TEST(TaskAdapterTest, EveryAdapterRefusesAReaderOfAnotherClass) {
    Stranger stranger;
    const std::string className = KVMSPIXQAdapter::className(stranger);
    for (const auto& [name, make] : std::vector<std::pair<std::string, std::function<void()>>>{
             {"MSPIXQTaskAdapter", [&] { KVMSPIXQTaskAdapter adapter(stranger); }},
             {"MSPIXQResourceAdapter", [&] { KVMSPIXQResourceAdapter adapter(stranger); }},
             {"MSPIXQAssignmentAdapter", [&] { KVMSPIXQAssignmentAdapter adapter(stranger); }},
             {"MSPIXQPredecessorLinkAdapter", [&] { KVMSPIXQPredecessorLinkAdapter adapter(stranger); }},
             {"MSPIXQTimephasedDataAdapter", [&] { KVMSPIXQTimephasedDataAdapter adapter(stranger); }}}) {
        EXPECT_EQ(raisedReason(make), name + ": Incorrect reader " + className + ".");
    }
}

TEST(TaskAdapterTest, AssignmentPredicatesNeedTheirNameAtTheStartAndAValue) {
    for (const char* text : {"ResourceUID=7", "TaskUID=12", "UID=3"}) {
        EXPECT_TRUE(KVMSPISingleAssignmentReader::predicateWithString(std::string(text))) << text;
    }
    for (const char* text : {"ResourceUID=", "TaskUID=", " TaskUID=3", "XTaskUID=3", "Name=\"A\""}) {
        EXPECT_FALSE(KVMSPISingleAssignmentReader::predicateWithString(std::string(text))) << text;
    }
    Stranger stranger;
    const KVMSPIXQPredicate test =
        KVMSPISingleAssignmentReader::predicateWithString(std::string("TaskUID=1"));
    EXPECT_EQ(raisedReason([&] { test(stranger); }), "Unexpected object in predicate block.");
}

} // namespace
