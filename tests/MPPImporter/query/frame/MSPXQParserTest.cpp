#include "MPPImporter/query/frame/MSPXQParser.h"

#include <gtest/gtest.h>

namespace {

MSPXQComponents parse(const std::string& xquery) {
    MSPXQComponents components;
    MSPXQParser::sharedXQParser().parseXQuery(xquery, components);
    return components;
}

MSPXQComponent plain(const std::string& name) {
    return {name, std::nullopt};
}

MSPXQComponent filtered(const std::string& name, const std::string& predicate) {
    return {name, predicate};
}

} // namespace

TEST(MSPXQParserTest, SplitsPlainPathsAndPredicates) {
    EXPECT_EQ(parse("Tasks/Task"), (MSPXQComponents{plain("Tasks"), plain("Task")}));
    EXPECT_EQ(parse("Calendars/Calendar[UID=3]"),
              (MSPXQComponents{plain("Calendars"), filtered("Calendar", "UID=3")}));
    EXPECT_EQ(
        parse("Assignments/Assignment[ResourceUID=2]/Units"),
        (MSPXQComponents{plain("Assignments"), filtered("Assignment", "ResourceUID=2"), plain("Units")}));
    EXPECT_EQ(parse("WeekDays/WeekDay[DayType>=1 and DayType<=7]"),
              (MSPXQComponents{plain("WeekDays"), filtered("WeekDay", "DayType>=1 and DayType<=7")}));
    EXPECT_EQ(parse(R"(Calendars/Calendar[Name="Night Shift"])"),
              (MSPXQComponents{plain("Calendars"), filtered("Calendar", R"(Name="Night Shift")")}));
}

TEST(MSPXQParserTest, SeparatorsCollapseALeadingOneStandsAloneATrailingOneIsDropped) {
    EXPECT_EQ(parse("//FromDate"), (MSPXQComponents{plain("/"), plain("FromDate")}));
    EXPECT_EQ(parse("/Tasks/Task"), (MSPXQComponents{plain("/"), plain("Tasks"), plain("Task")}));
    EXPECT_EQ(parse("Tasks///Task/"), (MSPXQComponents{plain("Tasks"), plain("Task")}));
    EXPECT_EQ(parse("/"), (MSPXQComponents{plain("/")}));
    EXPECT_TRUE(parse("").empty());
}

TEST(MSPXQParserTest, SeparatorInsidePredicateSplitsIt) {
    // No quoting: the first piece keeps a cut predicate, the rest becomes a name of its own.
    EXPECT_EQ(
        parse(R"(Calendars/Calendar[Name="Day/Night"])"),
        (MSPXQComponents{plain("Calendars"), filtered("Calendar", R"(Name="Da)"), plain(R"(Night"])")}));
}

TEST(MSPXQParserTest, LongerStandardCalendarNamesCountAsStandard) {
    EXPECT_EQ(parse(R"(Calendars/Calendar[Name="Standard 24 Hours"])"),
              (MSPXQComponents{plain("Calendars"), filtered("Calendar", R"(Name="Standard")")}));
    EXPECT_EQ(parse(R"(Calendar[Name="Standard"])"),
              (MSPXQComponents{filtered("Calendar", R"(Name="Standard")")}));
    // A name cut by a separator is mended; what follows the separator is a further piece.
    EXPECT_EQ(parse(R"(Calendars/Calendar[Name="Standard/Night"])"),
              (MSPXQComponents{plain("Calendars"), filtered("Calendar", R"(Name="Standard")"),
                               plain(R"(Night"])")}));
    // Only the exact prefix counts.
    EXPECT_EQ(parse(R"(Calendar[Name="standard 2"])"),
              (MSPXQComponents{filtered("Calendar", R"(Name="standard 2")")}));
}

TEST(MSPXQParserTest, NameWithOtherCharactersIsTakenWholeWithItsBrackets) {
    EXPECT_EQ(parse("My Task[UID=1]"), (MSPXQComponents{plain("My Task[UID=1]")}));
    EXPECT_EQ(parse("Tasks/Task-List"), (MSPXQComponents{plain("Tasks"), plain("Task-List")}));
    EXPECT_EQ(parse("Tâche[UID=1]"), (MSPXQComponents{plain("Tâche[UID=1]")}));
}

TEST(MSPXQParserTest, PieceWithOtherMatchCountIsSkipped) {
    // A line end stops ".", so the piece gives more than three matches.
    EXPECT_EQ(parse("Tasks/Ta\nsk/Task"), (MSPXQComponents{plain("Tasks"), plain("Task")}));
}

TEST(MSPXQParserTest, AppendsToComponentsAlreadyThere) {
    MSPXQComponents components{plain("Before")};
    MSPXQParser::sharedXQParser().parseXQuery("Tasks/Task", components);
    EXPECT_EQ(components, (MSPXQComponents{plain("Before"), plain("Tasks"), plain("Task")}));
    EXPECT_EQ(&MSPXQParser::sharedXQParser(), &MSPXQParser::sharedXQParser());
}
