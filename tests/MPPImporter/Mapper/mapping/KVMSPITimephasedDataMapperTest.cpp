#include "MPPImporter/Mapper/mapping/KVMSPITimephasedDataMapper.h"

#include "MPPExporter/MPPObjects/KVMSPEScheduleCalendar.h"
#include "MPPImporter/Mapper/utilities/KVMSPIUtilities.h"

#include <gtest/gtest.h>

namespace {

using TimephasedMapper = KVMSPITimephasedDataMapper;

// A span of the week of 2024-01-08 (a Monday): from day and hour to day and hour, with hours of work.
MSPITimephasedDataInfo span(const std::string& from, const std::string& to, int hours) {
    return MSPITimephasedDataInfo("T", 1, "2024-01-" + from + ":00:00", "2024-01-" + to + ":00:00",
                                  KVMSPIUtilities::mppToMspdiDuration(hours * 3600.0));
}

// "start-end:hours" of each piece, the dates as MSPDI text.
std::string piecesText(TimephasedMapper::Spans spans) {
    std::string text;
    for (const auto& piece :
         TimephasedMapper::mergedSpans(std::move(spans), KVMSPEScheduleCalendar::standardCalendar())) {
        text += KVMSPIUtilities::mppToMspdiDateTime(*piece.startDate())->substr(8, 5) + "-" +
                KVMSPIUtilities::mppToMspdiDateTime(*piece.endDate())->substr(8, 5) + ":" +
                std::to_string(static_cast<int>(piece.duration() / 3600)) + " ";
    }
    return text;
}

TEST(KVMSPITimephasedDataMapperTest, GapsInTheTimephasedWorkPartTheTask) {
    EXPECT_EQ(piecesText({span("08T08", "08T17", 8)}), "");
    // Back to back: one piece, no split.
    EXPECT_EQ(piecesText({span("08T08", "08T17", 8), span("08T17", "09T17", 8)}), "08T08-09T17:16 ");
    EXPECT_EQ(piecesText({span("09T08", "09T17", 8), span("08T08", "09T08", 8)}), "08T08-09T17:16 ");
    // A span without work leaves a gap where it stands.
    EXPECT_EQ(piecesText({span("08T08", "08T17", 8), span("08T17", "09T17", 0), span("09T17", "10T17", 8)}),
              "08T08-08T17:8 09T17-10T17:8 ");
    EXPECT_EQ(piecesText({span("08T08", "08T17", 8), span("10T08", "10T17", 8), span("12T08", "12T17", 8)}),
              "08T08-08T17:8 10T08-10T17:8 12T08-12T17:8 ");
    // Overlapping spans of two assignments: the piece's work is the working time it covers.
    EXPECT_EQ(piecesText({span("08T08", "09T17", 16), span("09T08", "10T17", 16), span("12T08", "12T17", 8)}),
              "08T08-10T17:24 12T08-12T17:8 ");
    // With equal starts the longer span comes first, and the shorter one then ends the piece.
    EXPECT_EQ(piecesText({span("08T08", "08T12", 4), span("08T08", "09T17", 16), span("11T08", "11T17", 8)}),
              "08T08-08T12:4 11T08-11T17:8 ");
}

TEST(KVMSPITimephasedDataMapperTest, EachScenarioTakesItsOwnTimephasedTypes) {
    std::string accepted;
    for (const int32_t baseline : {-1, 0, 1, 10}) {
        for (int64_t type = 0; type <= 80; ++type) {
            if (TimephasedMapper::isAcceptedType(type, baseline)) {
                accepted += std::to_string(type) + " ";
            }
        }
        accepted += "| ";
    }
    EXPECT_EQ(accepted, "1 2 3 | 4 | 16 | 70 | ");
}

} // namespace
