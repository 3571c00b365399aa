#include "MPPImporter/query/frame/KVMSPIXQAdapter.h"
#include "MPPImporter/query/frame/KVMSPIXQResponder.h"
#include "MPPImporter/query/frame/KVMSPIXQValue.h"

#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::HasSubstr;
using testing::MatchesRegex;

namespace {

// A responder whose adapter the test chooses; counts how often it is made.
class TestResponder : public KVMSPIXQResponder {
public:
    using AdapterMaker = std::function<std::unique_ptr<KVMSPIXQAdapter>(TestResponder&)>;

    explicit TestResponder(AdapterMaker maker = {}) : m_maker(std::move(maker)) {}

    int adaptersMade = 0;
    std::vector<std::unique_ptr<TestResponder>> parts;

protected:
    std::unique_ptr<KVMSPIXQAdapter> newXQAdapter() override {
        ++adaptersMade;
        return m_maker ? m_maker(*this) : nullptr;
    }

private:
    AdapterMaker m_maker;
};

class OtherResponder : public KVMSPIXQResponder {};

// An adapter that answers "Items" with two values and exposes the protected helpers.
class TestAdapter : public KVMSPIXQAdapter {
public:
    explicit TestAdapter(KVMSPIXQResponder& reader)
        : KVMSPIXQAdapter(readerOfClass<TestResponder>(reader, "TestAdapter: Incorrect reader %s.")) {}

    using KVMSPIXQAdapter::answerOwnedBy;
    using KVMSPIXQAdapter::answersOwnedBy;
    using KVMSPIXQAdapter::assertNoPredicate;
    using KVMSPIXQAdapter::assertSingleComponent;
    using KVMSPIXQAdapter::filterObjects;
    using KVMSPIXQAdapter::objectsForXQuery;

    Objects objectsForXQuery(const std::string& xquery, TVError* error) override {
        if (xquery == "Items") {
            return {std::make_shared<KVMSPIXQValue>("first"), std::make_shared<KVMSPIXQValue>("second")};
        }
        return KVMSPIXQAdapter::objectsForXQuery(xquery, error);
    }
    std::optional<std::string> stringValueForXQuery(const std::string& xquery, TVError*) override {
        return "answer to " + xquery;
    }
};

std::unique_ptr<KVMSPIXQAdapter> makeTestAdapter(TestResponder& reader) {
    return std::make_unique<TestAdapter>(reader);
}

std::string raisedReason(const std::function<void()>& action) {
    try {
        action();
    } catch (const TVException& exception) {
        EXPECT_EQ(exception.name(), kInternalInconsistencyException);
        return exception.reason();
    }
    return "(nothing raised)";
}

void expectNotPorted(const TVError& error) {
    EXPECT_EQ(error.domain, "TVMSPFilter.GeneralErrorDomain");
    EXPECT_EQ(error.code, 100);
    EXPECT_THAT(
        error.localizedDescription(),
        MatchesRegex(
            R"(NOT PORTED XQUERY \(KVMSPIXQAdapter\.cpp \[[0-9]+\]\): Must implement in subclass\.)"));
}

MSPXQComponents components(std::initializer_list<const char*> names) {
    MSPXQComponents result;
    for (const char* name : names) {
        result.push_back({name, std::nullopt});
    }
    return result;
}

} // namespace

TEST(FrameAdapterTest, BaseAnswersNothingAndReportsNotPorted) {
    TestResponder responder;
    KVMSPIXQAdapter adapter(responder);
    const KVMSPIXQueryConstants constants{{"uid", "1"}};
    std::vector<std::function<bool(TVError*)>> operations = {
        [&](TVError* e) { return adapter.objectsForXQuery("Tasks/Task", e).empty(); },
        [&](TVError* e) { return adapter.objectsForXQuery("Tasks/Task", constants, e).empty(); },
        [&](TVError* e) { return adapter.singleObjectForXQuery("Tasks/Task", e) == nullptr; },
        [&](TVError* e) { return adapter.singleObjectForXQuery("Tasks/Task", constants, e) == nullptr; },
        [&](TVError* e) { return !adapter.stringValueForXQuery("Name", e).has_value(); },
        [&](TVError* e) { return !adapter.stringValueForXQuery("Name", constants, e).has_value(); },
        [&](TVError* e) { return adapter.intValueForXQuery("UID", e) == 0; },
        [&](TVError* e) { return adapter.intValueForXQuery("UID", constants, e) == 0; },
        [&](TVError* e) { return adapter.floatValueForXQuery("Cost", e) == 0.0; },
        [&](TVError* e) { return adapter.floatValueForXQuery("Cost", constants, e) == 0.0; },
        [&](TVError* e) { return !adapter.boolValueForXQuery("Summary", e); },
        [&](TVError* e) { return !adapter.boolValueForXQuery("Summary", constants, e); },
    };
    for (size_t index = 0; index < operations.size(); ++index) {
        SCOPED_TRACE(index);
        TVError error;
        EXPECT_TRUE(operations[index](&error));
        expectNotPorted(error);
        EXPECT_TRUE(operations[index](nullptr));
    }
}

TEST(FrameAdapterTest, SingleObjectIsTheFirstOfTheObjects) {
    TestResponder responder;
    TestAdapter adapter(responder);
    TVError error;
    std::shared_ptr<KVMSPIXQuery> first = adapter.singleObjectForXQuery("Items", &error);
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(first->stringValueForXQuery(".", nullptr), "first");
    EXPECT_EQ(error.code, 0);

    EXPECT_EQ(adapter.singleObjectForXQuery("Other", &error), nullptr);
    expectNotPorted(error);
}

TEST(FrameAdapterTest, StringFromComponentsJoinsNamesOfTheRange) {
    MSPXQComponents path = components({"WeekDays", "WeekDay", "TimePeriod", "FromDate"});
    path[1].predicate = "DayType=1";
    EXPECT_EQ(KVMSPIXQAdapter::stringFromXQComponents(path, {0, 0}), "WeekDays/WeekDay/TimePeriod/FromDate");
    EXPECT_EQ(KVMSPIXQAdapter::stringFromXQComponents(path, {2, 0}), "TimePeriod/FromDate");
    EXPECT_EQ(KVMSPIXQAdapter::stringFromXQComponents(path, {1, 2}), "WeekDay/TimePeriod");
    EXPECT_EQ(KVMSPIXQAdapter::stringFromXQComponents(path, {3, 10}), "FromDate");
    EXPECT_EQ(KVMSPIXQAdapter::stringFromXQComponents(path, {4, 0}), "");
    EXPECT_EQ(KVMSPIXQAdapter::stringFromXQComponents(path, {9, 2}), "");
    EXPECT_EQ(KVMSPIXQAdapter::stringFromXQComponents({}, {0, 0}), "");
}

TEST(FrameAdapterTest, AssertionsRaiseWithTheirTexts) {
    EXPECT_EQ(raisedReason([] {
                  TestAdapter::assertNoPredicate({"Tasks", "UID=1"});
              }),
              R"(Unexpected predicate in component "Tasks": "UID=1".)");
    EXPECT_NO_THROW(TestAdapter::assertNoPredicate({"Tasks", std::nullopt}));
    EXPECT_EQ(raisedReason([] {
                  TestAdapter::assertSingleComponent(components({"A", "B"}), "A/B");
              }),
              R"(Do not expect more then 1 component in xquery "A/B".)");
    EXPECT_NO_THROW(TestAdapter::assertSingleComponent(components({"A"}), "A"));

    OtherResponder other;
    EXPECT_THAT(raisedReason([&] { TestAdapter adapter(other); }),
                MatchesRegex(R"(TestAdapter: Incorrect reader .*OtherResponder\.)"));
}

TEST(FrameAdapterTest, FilterKeepsPassingObjectsInOrderAndNoPredicateKeepsAll) {
    KVMSPIXQuery::Objects objects;
    for (const char* text : {"1", "2", "3", "4"}) {
        objects.push_back(std::make_shared<KVMSPIXQValue>(text));
    }
    TestAdapter::filterObjects(objects, {});
    EXPECT_EQ(objects.size(), 4u);
    TestAdapter::filterObjects(
        objects, [](KVMSPIXQuery& object) { return object.intValueForXQuery(".", nullptr) % 2 == 0; });
    ASSERT_EQ(objects.size(), 2u);
    EXPECT_EQ(objects[0]->stringValueForXQuery(".", nullptr), "2");
    EXPECT_EQ(objects[1]->stringValueForXQuery(".", nullptr), "4");
}

TEST(FrameAdapterTest, ResponderMakesItsAdapterOnceAndForwards) {
    TestResponder responder(makeTestAdapter);
    EXPECT_EQ(responder.adaptersMade, 0);
    EXPECT_EQ(responder.stringValueForXQuery("Name", nullptr), "answer to Name");
    EXPECT_EQ(responder.objectsForXQuery("Items", nullptr).size(), 2u);
    EXPECT_EQ(responder.adaptersMade, 1);
    EXPECT_NE(dynamic_cast<TestAdapter*>(responder.xqAdapter()), nullptr);

    TVError error;
    EXPECT_EQ(responder.intValueForXQuery("UID", &error), 0);
    expectNotPorted(error);
}

TEST(FrameAdapterTest, ResponderWithoutAdapterAnswersNothingAndLeavesTheError) {
    TestResponder responder;
    TVError error = TVError::make("untouched", 7, "before");
    EXPECT_TRUE(responder.objectsForXQuery("Tasks/Task", &error).empty());
    EXPECT_EQ(responder.singleObjectForXQuery("Tasks/Task", &error), nullptr);
    EXPECT_FALSE(responder.stringValueForXQuery("Name", &error).has_value());
    EXPECT_EQ(responder.intValueForXQuery("UID", &error), 0);
    EXPECT_EQ(responder.floatValueForXQuery("Cost", &error), 0.0);
    EXPECT_FALSE(responder.boolValueForXQuery("Summary", &error));
    EXPECT_EQ(error.domain, "untouched");
    EXPECT_EQ(responder.xqAdapter(), nullptr);
    EXPECT_EQ(responder.adaptersMade, 1);
}

TEST(FrameAdapterTest, AnswersKeepTheSharedOwnerAliveDownTheTree) {
    auto root = std::make_shared<TestResponder>();
    root->parts.push_back(std::make_unique<TestResponder>());
    root->parts.front()->parts.push_back(std::make_unique<TestResponder>());
    root->parts.front()->parts.push_back(std::make_unique<TestResponder>());

    KVMSPIXQuery::Objects children = TestAdapter::answersOwnedBy(*root, root->parts);
    ASSERT_EQ(children.size(), 1u);
    auto& child = dynamic_cast<TestResponder&>(*children.front());
    KVMSPIXQuery::Objects grandchildren = TestAdapter::answersOwnedBy(child, child.parts);
    ASSERT_EQ(grandchildren.size(), 2u);
    EXPECT_EQ(grandchildren[1].get(), child.parts[1].get());

    std::weak_ptr<TestResponder> watch = root;
    root.reset();
    children.clear();
    EXPECT_FALSE(watch.expired());
    grandchildren.clear();
    EXPECT_TRUE(watch.expired());
}

TEST(FrameAdapterTest, AnswerOfAParentNobodySharesOwnsNothing) {
    TestResponder parent;
    TestResponder part;
    std::shared_ptr<KVMSPIXQuery> answer = TestAdapter::answerOwnedBy(parent, part);
    EXPECT_EQ(answer.get(), &part);
    EXPECT_EQ(answer.use_count(), 0);
}
