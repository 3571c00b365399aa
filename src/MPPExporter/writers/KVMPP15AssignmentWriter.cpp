#include "MPPExporter/writers/KVMPP15AssignmentWriter.h"

#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVException.h"
#include "MPPExporter/MPPObjects/KVMPPCalendar.h"
#include "MPPExporter/MPPObjects/KVMPPProject.h"
#include "MPPExporter/writers/KVMPP15TaskWriter.h"
#include "MPPExporter/writers/MPPFieldWrites.h"
#include "MPPImporter/format/MPPFormatConstants.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <limits>
#include <map>

namespace {

using enum MPPFieldBlock;

// The assignment record of the fixed data, as applications 15 and 16 write it. The fields that the
// readers read are placed by the catalogue; these are the words around them that only the writer knows.
constexpr size_t kAssignmentRecordSize = 110;
constexpr size_t kWorkAgainOffset = 36;
constexpr size_t kStartAgainOffsets[] = {60, 104};
constexpr size_t kAssignmentActualCostOffset = 76;
constexpr size_t kAssignmentRemainingCostOffset = 84;
constexpr size_t kWorkFormatOffset = 92;
constexpr uint16_t kWorkFormatHours = 7;
// The resource word of an assignment without a resource.
constexpr uint32_t kNoResource = 0xFFFF0001;

// The entry sizes of the meta streams; the fixed streams have no header elements.
constexpr MPPObjectStorageLayout kAssignmentStorage = {
    .fixedMetaEntrySize = 34, .fixed2MetaEntrySize = 53, .varMetaEnding = 0x0F40};
constexpr uint32_t kFreeSlotMark = 2;

constexpr size_t kFixed2BaselineMarkOffset = 35;
constexpr size_t kFixed2BitmapOffset = 36;
constexpr size_t kFixed2BitmapSize = 17;
// The GUID of the unassigned resource.
constexpr MPPGuid kNoResourceGuid = {0x78, 0x8B, 0xCB, 0xA0, 0x8C, 0x2A, 0x6D, 0x43,
                                     0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0xFF};

// Element types of the variable data that no reader reads. The planned work, which holds the
// timephased block, and the baselines are placed by the catalogue and the key tables.
constexpr uint32_t kCompleteWorkType = 0x32;
constexpr uint32_t kNotesType = 0x47;
constexpr uint32_t kBaselineCostAgainType = 0x10B;
constexpr uint32_t kStreamDateType = 0x27A;
constexpr uint32_t kAssignmentBlankType = 0x29B;
constexpr uint32_t kAssignmentBaselineTailTypes[] = {0x2A1, 0x2A2};

// The timephased block: its header words, and the rate word of each stretch.
constexpr uint16_t kBlockHeaderWord = 32;
constexpr uint32_t kBlockHeaderSize = 44;
constexpr double kBlockRate = 160000.0;
constexpr double kCompleteRate = 10000.0;
constexpr uint16_t kFirstStretchMarks[] = {0x2BF0, 0x18};
// Working time in the block is counted in 80ths of a minute.
constexpr int64_t kUnitsPerMinute = 80;

// Work in seconds as thousandths of a minute.
double work(double seconds) {
    return seconds * 100.0 / 6.0;
}

// A count of 80ths of a minute as the block's 32-bit word: negative or NaN counts give 0 and counts
// beyond the word its largest value, so that no conversion is undefined.
uint32_t blockWord(double units) {
    if (!(units > 0)) {
        return 0;
    }
    return units >= static_cast<double>(std::numeric_limits<uint32_t>::max())
               ? std::numeric_limits<uint32_t>::max()
               : static_cast<uint32_t>(units);
}

// Working seconds as the block's word of 80ths of a minute, rounded up: the reader's date of the
// word's 0.75-second steps then lies within the second counted, which its dates keep.
uint32_t blockTime(int64_t seconds) {
    return blockWord(std::ceil(static_cast<double>(seconds) * kUnitsPerMinute / 60.0));
}

// The cumulative work after a stretch of `seconds` of work, in thousandths of a minute. The reader takes
// a stretch's work as the difference of two cumulative figures in seconds; where rounding leaves that
// difference short of the stretch's work, the figure is raised to the next double, so that a stretch of
// whole seconds reads back whole, whatever the figures before it.
double cumulativeWork(double before, double seconds) {
    double after = before + work(seconds);
    while (std::isfinite(after) && (after - before) * 60.0 / 1000.0 < seconds) {
        after = std::nextafter(after, std::numeric_limits<double>::infinity());
    }
    return after;
}

const KVMPPResource* resourceOf(const KVMPPAssignment& assignment) {
    return assignment.resource.object();
}

const KVMPPTask& taskOf(const KVMPPAssignment& assignment) {
    const KVMPPTask* task = assignment.task.object();
    tvAssert(task != nullptr, "An assignment without its task reached the writer.");
    return *task;
}

void appendToBlock(std::vector<uint8_t>& bytes, auto value) {
    const size_t at = bytes.size();
    bytes.resize(at + sizeof(value));
    encodeMPPNumber(value, std::span(bytes).subspan(at));
}

} // namespace

void KVMPP15AssignmentWriter::preprocessProject(KVMPPProject& project) {
    std::erase_if(project.assignments,
                  [](const auto& assignment) { return assignment->task.object() == nullptr; });
    std::stable_sort(project.assignments.begin(), project.assignments.end(),
                     [](const auto& a, const auto& b) { return a->ID < b->ID; });
    uint64_t id = 0;
    for (const auto& assignment : project.assignments) {
        assignment->ID = ++id;
        const KVMPPTask& task = taskOf(*assignment);
        // The work and cost figures stay those the mapping gave the assignment: taking its resource's
        // totals would give each assignment of a resource the work of all of them, and taking the task's
        // work as remaining work would undo the progress. An assignment without a resource has no cost of
        // its own and takes its task's.
        if (resourceOf(*assignment) == nullptr) {
            assignment->cost = task.cost;
            assignment->actualCost = task.actualCost;
            assignment->remainingCost = task.remainingCost;
        }
        // An assignment without dates of its own spans its task: the timephased block counts its
        // stretches from the assignment's start, which the reader needs to place them.
        if (!assignment->startDate) {
            assignment->startDate = task.startDate;
        }
        if (!assignment->finishDate) {
            assignment->finishDate = task.endDate;
        }
        assignment->levelingDelay = task.levelingDelay;
        assignment->leveledStart = task.leveledStart;
        // Only the baseline of number 0 becomes the Baseline, as for tasks.
        if (!assignment->baselines.empty() && assignment->baselines.front().number == 0) {
            assignment->baseline0 = assignment->baselines.front();
            assignment->baselines.erase(assignment->baselines.begin());
        }
    }
}

const MPPObjectStorageLayout& KVMPP15AssignmentWriter::storageLayout() const {
    return kAssignmentStorage;
}

void KVMPP15AssignmentWriter::writeProps() {
    cloneChildStreamFromTemplate(kObjectPropsStreamName);
}

std::array<double, 5> KVMPP15AssignmentWriter::workFigures(const KVMPPAssignment& assignment) {
    const KVMPPResource* resource = resourceOf(assignment);
    if (resource == nullptr || resource->getResourceType() != 1) {
        return {assignment.assignmentUnits, work(assignment.work), work(assignment.actualWork),
                work(assignment.work), work(assignment.remainingWork)};
    }
    // The reader takes a material's amount in the same hundredths of a percent as the units of work,
    // so the units stand as they are; the work figures count the amount.
    const double amount = assignment.assignmentUnits / 10000.0 * 60.0 * 1000.0;
    // The share done; an assignment without work has done none of it, where the division would give
    // NaN or an infinity.
    const double done =
        assignment.work != 0 ? (assignment.work - assignment.remainingWork) / assignment.work : 0.0;
    return {assignment.assignmentUnits, amount, done * amount, amount, amount * (1.0 - done)};
}

std::vector<uint8_t> KVMPP15AssignmentWriter::plannedWork(const KVMPPAssignment& assignment) {
    const std::vector<KVMPPAssignmentPhase>& phases = assignment.assignmentPhases;
    const double remaining = work(assignment.remainingWork);
    const uint32_t span =
        assignment.startDate && assignment.finishDate
            ? blockTime(KVMPPCalendar::workingTimeFromDate(*assignment.startDate, *assignment.finishDate))
            : 0;
    std::vector<uint8_t> bytes;
    appendToBlock(bytes, static_cast<uint16_t>(phases.empty() ? 0 : 2 * phases.size() - 1));
    appendToBlock(bytes, kBlockHeaderWord);
    appendToBlock(bytes, kBlockHeaderSize);
    appendToBlock(bytes, kBlockRate);
    appendToBlock(bytes, remaining);
    appendToBlock(bytes, span);
    appendToBlock(bytes, uint32_t{0});
    if (phases.empty()) {
        for (uint32_t word : {1u, 0u, 0u}) {
            appendToBlock(bytes, word);
        }
        if (assignment.actualWork > 0) {
            for (int i = 0; i < 2; ++i) {
                appendToBlock(bytes, remaining);
                appendToBlock(bytes, kBlockRate);
                appendToBlock(bytes, uint64_t{0});
                appendToBlock(bytes, span);
            }
        } else {
            bytes.resize(bytes.size() + 28, 0);
        }
        return bytes;
    }
    // A record per stretch start and per stretch end but the last: the working time from the start
    // and the work done up to the end of the stretch.
    appendToBlock(bytes, uint64_t{0});
    double done = 0;
    for (size_t i = 0; i < phases.size(); ++i) {
        const KVMPPAssignmentPhase& phase = phases[i];
        done = cumulativeWork(done, phase.work);
        appendToBlock(bytes, blockTime(phase.startShift));
        appendToBlock(bytes, done);
        appendToBlock(bytes, phase.workPerDay);
        if (i == 0) {
            appendToBlock(bytes, kFirstStretchMarks[0]);
            appendToBlock(bytes, kFirstStretchMarks[1]);
        } else {
            appendToBlock(bytes, uint32_t{0});
        }
        appendToBlock(bytes, uint32_t{0});
        if (i + 1 < phases.size()) {
            appendToBlock(bytes, blockTime(phase.finishShift));
            appendToBlock(bytes, done);
            appendToBlock(bytes, 0.0);
            appendToBlock(bytes, uint64_t{0});
        }
    }
    appendToBlock(bytes, span);
    return bytes;
}

// Variable data.

void KVMPP15AssignmentWriter::writeVar2DataElements() {
    const auto now = std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch());
    m_streamDate = TVDate::fromUnixSeconds(now.count());
    if (project().assignments.empty()) {
        writeHeaderElements();
    }
    for (const auto& assignment : project().assignments) {
        writeAssignmentElements(*assignment);
    }
}

void KVMPP15AssignmentWriter::writeHeaderElements() {
    const uint32_t planned = mppFieldPropertyNumber(layoutVersion(), MPPField::assignmentTimephasedWork);
    m_elements->add(0, planned, [](KVMPPVar2Data& data) {
        for (uint16_t word :
             {0, 0x20, 0x2C, 0x72, 0, 0, 0x8800, 0x4103, 0, 0, 0x4C00, 0x411D, 0x9600, 0, 0, 0}) {
            data.write2ByteInteger(word);
        }
        data.writeInteger(1);
        data.write2ByteInteger(2);
        data.writeZeroesBlockOfSize(12);
        data.write2ByteInteger(0x20);
        data.writeInteger(0);
        data.writeInteger(0xFFFFFFFF);
        data.writeInteger(0x3F);
        data.writeZeroesBlockOfSize(8);
    });
    m_elements->add(0, kStreamDateType, [this](KVMPPVar2Data& data) { data.writeDate(m_streamDate); });
}

void KVMPP15AssignmentWriter::writeAssignmentElements(const KVMPPAssignment& assignment) {
    const auto id = static_cast<uint32_t>(assignment.ID);
    const auto field = [&](MPPField catalogued, const MPPFieldValue& value) {
        m_elements->addField(id, catalogued, value);
    };
    const std::optional<KVMPPAssignmentBaseline>& baseline = assignment.baseline0;
    if (baseline) {
        field(MPPField::assignmentBaselineWork, work(baseline->work));
        field(MPPField::assignmentBaselineCost, baseline->cost * 100.0);
    }
    const std::vector<uint8_t> planned = plannedWork(assignment);
    m_elements->add(id, mppFieldPropertyNumber(layoutVersion(), MPPField::assignmentTimephasedWork),
                    [&planned](KVMPPVar2Data& data) { data.writeData(planned.data(), planned.size()); });
    if (assignment.actualWork > 0) {
        // The work done, as the application's files hold it: in thousandths of a minute, and its
        // working time in 80ths of a minute.
        const double done = work(assignment.actualWork);
        const uint32_t time = blockWord(assignment.actualWork / 60.0 * kUnitsPerMinute);
        m_elements->add(id, kCompleteWorkType, [done, time](KVMPPVar2Data& data) {
            data.write2ByteInteger(1);
            data.writeInteger(0x240018);
            data.write2ByteInteger(0);
            data.writeDouble(kCompleteRate);
            data.writeDouble(done);
            data.writeInteger(time);
            data.writeInteger(0);
            for (int i = 0; i < 2; ++i) {
                data.writeDouble(done);
                data.writeDouble(kCompleteRate);
                data.writeInteger(time);
            }
        });
    }
    if (assignment.notes && !assignment.notes->empty()) {
        m_elements->add(id, kNotesType, [&assignment](KVMPPVar2Data& data) {
            data.writeRtfString(*assignment.notes, kMPPDataEncodingASCII);
        });
    }
    if (baseline) {
        field(MPPField::assignmentBaselineStart, KVMPPData::wallClock(baseline->start));
        field(MPPField::assignmentBaselineFinish, KVMPPData::wallClock(baseline->finish));
        m_elements->addDouble(id, kBaselineCostAgainType, baseline->cost * 100.0);
    }
    writeNumberedBaselines(assignment);
    m_elements->addDate(id, kStreamDateType, m_streamDate);
    m_elements->addZeroes(id, kAssignmentBlankType, 16);
    if (baseline) {
        for (uint32_t type : kAssignmentBaselineTailTypes) {
            m_elements->addDouble(id, type, kUnsetFigure);
        }
    }
}

// Baselines 1 to 10, each under the properties of its number.
void KVMPP15AssignmentWriter::writeNumberedBaselines(const KVMPPAssignment& assignment) {
    const auto id = static_cast<uint32_t>(assignment.ID);
    for (const KVMPPAssignmentBaseline& saved : assignment.baselines) {
        const int64_t n = saved.number;
        if (n < 1 || n > kMaxBaselineNumber) {
            throw TVException(kTooManyBaselinesException,
                              "It is not permitted to write more than 10 baselines");
        }
        m_elements->addField(id, MPPField::assignmentBaselineWork, work(saved.work), n);
        m_elements->addField(id, MPPField::assignmentBaselineCost, saved.cost * 100.0, n);
        m_elements->addField(id, MPPField::assignmentBaselineStart, KVMPPData::wallClock(saved.start), n);
        m_elements->addField(id, MPPField::assignmentBaselineFinish, KVMPPData::wallClock(saved.finish), n);
    }
}

// Fixed data.

void KVMPP15AssignmentWriter::writeNumberedSlots(const std::function<void(const KVMPPAssignment&)>& assigned,
                                                 const std::function<void(uint64_t)>& unassigned) const {
    std::map<uint64_t, const KVMPPAssignment*> byID;
    for (const auto& assignment : project().assignments) {
        byID.emplace(assignment->ID, assignment.get());
    }
    const uint64_t last = byID.empty() ? 0 : byID.rbegin()->first;
    for (uint64_t number = 1; number <= last; ++number) {
        const auto found = byID.find(number);
        if (found != byID.end()) {
            assigned(*found->second);
        } else {
            unassigned(number);
        }
    }
}

void KVMPP15AssignmentWriter::writeFixedDataRecords() {
    writeNumberedSlots([this](const KVMPPAssignment& assignment) { writeAssignmentFixedData(assignment); },
                       [this](uint64_t number) {
                           m_fixedData->startNewElement();
                           m_fixedData->writeInteger(static_cast<uint32_t>(number));
                           m_fixedData->writeZeroesBlockOfSize(kAssignmentRecordSize - 4);
                           m_fixedData->closeCurrentElement();
                       });
}

void KVMPP15AssignmentWriter::writeAssignmentFixedData(const KVMPPAssignment& assignment) {
    std::array<uint8_t, kAssignmentRecordSize> record{};
    const std::span<uint8_t> bytes(record);
    const auto put = [&](MPPField field, const MPPFieldValue& value) {
        putMPPField(layoutVersion(), bytes, fixed, field, value);
    };
    const KVMPPResource* resource = resourceOf(assignment);
    encodeMPPNumber(static_cast<uint32_t>(assignment.ID), bytes);
    put(MPPField::assignmentTaskUID, static_cast<int64_t>(taskOf(assignment).ID));
    put(MPPField::assignmentResourceUID, resource != nullptr ? static_cast<int64_t>(resource->ID)
                                                             : int64_t{static_cast<int32_t>(kNoResource)});
    const std::array<double, 5> figures = workFigures(assignment);
    // The catalogue reads units in hundredths.
    put(MPPField::assignmentUnits, figures[0] / 100.0);
    put(MPPField::assignmentWork, figures[1]);
    put(MPPField::assignmentActualWork, figures[2]);
    encodeMPPNumber(figures[3], bytes.subspan(kWorkAgainOffset));
    put(MPPField::assignmentRemainingWork, figures[4]);
    const std::optional<TVDate> start = KVMPPData::wallClock(assignment.startDate);
    put(MPPField::assignmentStart, start);
    put(MPPField::assignmentFinish, KVMPPData::wallClock(assignment.finishDate));
    for (size_t offset : kStartAgainOffsets) {
        encodeMPPTimestamp(start, bytes.subspan(offset));
    }
    put(MPPField::assignmentCost, assignment.cost);
    encodeMPPHundredths(assignment.actualCost, bytes.subspan(kAssignmentActualCostOffset));
    encodeMPPHundredths(assignment.remainingCost, bytes.subspan(kAssignmentRemainingCostOffset));
    // The files of applications 15 and 16 hold the work format here and zeros behind it.
    encodeMPPNumber(kWorkFormatHours, bytes.subspan(kWorkFormatOffset));
    tvLog(stringWithFormat("+++ curAssignment: %llu, work: %f resource: %llu",
                           static_cast<unsigned long long>(assignment.ID), assignment.work,
                           static_cast<unsigned long long>(resource != nullptr ? resource->ID : 0)));
    m_fixedData->writeRecord(record);
}

void KVMPP15AssignmentWriter::writeFixedMetaEntries() {
    writeNumberedSlots([this](const KVMPPAssignment& assignment) { writeAssignmentFixedMeta(assignment); },
                       [this](uint64_t) {
                           m_fixedMeta->writeNextElementStartWithInt(kFreeSlotMark);
                           m_fixedMeta->writeInteger(1);
                           m_fixedMeta->writeZeroesBlockOfSize(kAssignmentStorage.fixedMetaEntrySize - 12);
                       });
}

void KVMPP15AssignmentWriter::writeAssignmentFixedMeta(const KVMPPAssignment& assignment) {
    const bool saved = assignment.baseline0.has_value();
    std::array<uint8_t, kAssignmentStorage.fixedMetaEntrySize> entry{};
    entry[8] = 0xF1;
    entry[9] = 0xFF;
    entry[10] = assignment.assignmentPhases.empty() ? 0x23 : 0x27;
    entry[11] = 0xF0;
    entry[12] = 0x69;
    entry[13] = saved ? 0x80 : 0;
    entry[14] = saved ? 0xC3 : 0x02;
    entry[15] = saved ? 0x03 : 0;
    entry[32] = saved ? 0x40 : 0;
    m_fixedMeta->writeEntry(saved ? 0xC0000 : 0x40000, entry);
}

// Second fixed data.

void KVMPP15AssignmentWriter::writeFixed2DataRecords() {
    for (const auto& assignment : project().assignments) {
        const KVMPPResource* resource = resourceOf(*assignment);
        m_fixed2Data->startNewElement();
        m_fixed2Data->writeGUID(assignment->getGUID());
        m_fixed2Data->writeGUID(taskOf(*assignment).getGUID());
        m_fixed2Data->writeGUID(resource != nullptr ? resource->getGUID() : kNoResourceGuid);
        m_fixed2Data->closeCurrentElement();
    }
}

void KVMPP15AssignmentWriter::writeFixed2MetaEntries() {
    for (const auto& assignment : project().assignments) {
        writeAssignmentFixed2Meta(*assignment);
    }
}

void KVMPP15AssignmentWriter::writeAssignmentFixed2Meta(const KVMPPAssignment& assignment) {
    std::array<uint8_t, kAssignmentStorage.fixed2MetaEntrySize> entry{};
    entry[8] = 0xCF;
    entry[kFixed2BaselineMarkOffset] = assignment.baseline0 ? 0xC2 : 0x02;
    uint8_t* bitmap = entry.data() + kFixed2BitmapOffset;
    if (!assignment.baselines.empty()) {
        bitmap[15] = 0x80;
        bitmap[16] = 2;
    }
    if (assignment.baseline0) {
        bitmap[16] = 4;
    }
    for (size_t k = 0; k < assignment.baselines.size() && 6 + k < kFixed2BitmapSize; ++k) {
        bitmap[k / 2] |= k % 2 == 1 ? 0xC0 : 0x0C;
        bitmap[5 + k] |= 0x78;
        bitmap[6 + k] |= 0x03;
    }
    m_fixed2Meta->writeEntry(0, entry);
}
