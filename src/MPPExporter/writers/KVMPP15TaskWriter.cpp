#include "MPPExporter/writers/KVMPP15TaskWriter.h"

#include "MPPCommon/shared/MSPCUnicodeStrings.h"
#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVException.h"
#include "MPPExporter/MPPObjects/KVMPPProject.h"
#include "MPPExporter/writers/KVMPPProps.h"
#include "MPPExporter/writers/MPPFieldAliasProps.h"
#include "MPPExporter/writers/MPPFieldWrites.h"
#include "MPPImporter/format/MPPFormatConstants.h"
#include "MPPImporter/text/UnicodeText.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace {

using enum MPPFieldBlock;

// The task record of the fixed data, as applications 15 and 16 write it. The fields that the readers
// read are placed by the catalogue; these are the words around them that only the writer knows.
constexpr size_t kTaskRecordSize = 202;
constexpr size_t kUIDOffset = 4; // the word that the UID reader takes, behind the ID
constexpr size_t kLevelingDelayOffset = 70;
constexpr size_t kActualDurationOffset = 80;
constexpr size_t kRemainingDurationOffset = 88;
constexpr size_t kCreatedOffset = 128;
constexpr size_t kNullDateOffsets[] = {132, 136, 178, 182};
constexpr size_t kRemainingCostAgainOffset = 154;
constexpr size_t kDurationFormatOffset = 164;
constexpr uint16_t kDurationFormatDays = 7;
constexpr size_t kPreleveledStartOffset = 174;
constexpr size_t kBaselineFixedCostOffset = 194;

// The header elements of the fixed streams and the entry sizes of the meta streams.
constexpr MPPObjectStorageLayout kTaskStorage = {.headerElements = 3,
                                                 .fixed2RecordSize = 64,
                                                 .fixedMetaEntrySize = 47,
                                                 .headerMetaMark = 8,
                                                 .fixed2MetaEntrySize = 93,
                                                 .varMetaEnding = 0x0B40};

// The custom text bitmap of the fixed meta entry.
constexpr size_t kTextBitmapOffset = 28;
constexpr size_t kTextBitmapSize = 16;
// Two more bytes take the marks of fields 17 to 30, which the entry does not hold.
constexpr size_t kTextBitmapWorkSize = 18;

constexpr size_t kFirstBaselineBitmapOffset = 10;
constexpr size_t kBaselineSavedOffset = 77; // also q0 of the second bitmap

// Element types of the variable data that no reader reads, as the application writes them.
constexpr uint32_t kBaselineMarkType = 0xB3;
constexpr uint32_t kZeroElementTypes[] = {0xA4, 0xA5, 0xA8, 0xA9, 0xAA};
constexpr uint32_t kTaskBaselineTailTypes[] = {0x496, 0x497, 0x498, 0x499};
constexpr uint32_t kOutlineMarkType = 0x4E4;
constexpr uint32_t kClosingTypes[] = {0x563, 0x564};
constexpr uint32_t kBaselineGroup2Base = 0x495;
constexpr uint32_t kBaselineGroup2Step = 7;
// A numbered baseline's mark and fixed cost follow its start, whose number the layout gives: the
// files place the baselines 6 to 10 seven numbers further on than the step from 1 to 5 would.
constexpr uint32_t kBaselineMarkAfterStart = 6;
constexpr uint32_t kBaselineFixedCostAfterStart = 7;

constexpr uint32_t kCustomNamesHeaderType = 0x4400000;

// The bits of the baselines 1 to 10 in the Fixed2 meta entry: byte and bit pairs of the first bitmap
// (p0 to p13, from offset 10) and of the second (q1 to q9, from offset 78).
struct BaselineBits {
    std::array<std::pair<uint8_t, uint8_t>, 2> first;
    std::array<std::pair<uint8_t, uint8_t>, 2> second;
};
constexpr BaselineBits kBaselineBits[] = {
    {{{{0, 0xC0}, {1, 0xDF}}}, {{{1, 0x7C}, {1, 0}}}},
    {{{{2, 0x7F}, {3, 0x03}}}, {{{2, 0x3E}, {2, 0}}}},
    {{{{3, 0xFC}, {4, 0x0D}}}, {{{3, 0x1F}, {3, 0}}}},
    {{{{4, 0xF0}, {5, 0x37}}}, {{{3, 0x80}, {4, 0x0F}}}},
    {{{{5, 0xC0}, {6, 0xDF}}}, {{{4, 0xC0}, {5, 0x07}}}},
    {{{{7, 0x7F}, {8, 0x03}}}, {{{5, 0xE0}, {6, 0x03}}}},
    {{{{8, 0xFC}, {9, 0x0D}}}, {{{6, 0xF0}, {7, 0x01}}}},
    {{{{9, 0xF0}, {10, 0x37}}}, {{{7, 0xF8}, {7, 0}}}},
    {{{{10, 0xC0}, {11, 0xDF}}}, {{{8, 0x7C}, {8, 0}}}},
    {{{{12, 0x7F}, {13, 0x03}}}, {{{9, 0x3E}, {9, 0}}}},
};

TVTimeSpan microseconds(double seconds) {
    return truncatedMPPInteger<TVTimeSpan>(seconds * kMicrosecondsPerSecond);
}

// Rounded to the nearest whole percent: a share computed from durations, such as 0.5699, is 57 %.
int64_t percent(double fraction) {
    return truncatedMPPInteger<int64_t>(std::round(fraction * 100.0));
}

bool anyBaseline(const KVMPPTask& task) {
    return !task.baselines.empty() || task.baseline0.has_value();
}

bool notesPresent(const KVMPPTask& task) {
    return task.notes.has_value();
}

int32_t parentConstraintType(const KVMPPTask& task) {
    return task.parent != nullptr ? task.parent->constraintType : -1;
}

// The depth of a task below the project: the reader rebuilds the tree from the levels, so they must
// follow the parents whatever the model's level says.
int64_t depth(const KVMPPTask& task) {
    int64_t level = 0;
    for (const KVMPPTask* parent = task.parent; parent != nullptr; parent = parent->parent) {
        ++level;
    }
    return level;
}

// The root's values that the project summary takes over.
void takeOverRoot(KVMPPProject& project, KVMPPTask& root) {
    project.endDate = root.endDate;
    project.duration = root.duration;
    project.baselineSetted = root.baselineSetted;
    project.work = root.work;
    project.actualWork = root.actualWork;
    project.remainingWork = root.remainingWork;
    project.cost = root.cost;
    project.actualCost = root.actualCost;
    project.remainingCost = root.remainingCost;
    project.fixedCost = root.fixedCost;
    project.actualDuration = root.actualDuration;
    project.remainingDuration = root.remainingDuration;
    project.percentComplete = root.percentComplete;
    project.workPercentComplete = root.workPercentComplete;
    project.baseline0 = root.baseline0;
    project.baselines = root.baselines;
    // The plan's name is the summary task's name; a plan without one keeps the root's title.
    if (!project.title) {
        project.title = root.title;
    }
}

void pointAtProject(MPPDeferred<KVMPPTask>& reference, const KVMPPTask* root,
                    const std::shared_ptr<KVMPPTask>& project) {
    if (root != nullptr && reference.object() == root) {
        reference.setObject(project);
    }
}

} // namespace

void KVMPP15TaskWriter::preprocessProject(KVMPPProject& project) {
    std::shared_ptr<KVMPPTask> root;
    size_t topTasks = 0;
    for (const auto& task : project.tasks) {
        if (task->parent == nullptr) {
            ++topTasks;
            root = task;
        }
    }
    if (topTasks != 1) {
        root.reset();
    }
    // Only the baseline of number 0 becomes the Baseline: where the first baseline document doesn't
    // hold a task, the task's first entry is a numbered baseline, whose values would otherwise show
    // as another baseline's.
    for (const auto& task : project.tasks) {
        if (!task->baselines.empty() && task->baselines.front().number == 0) {
            task->baseline0 = task->baselines.front();
            task->baselines.erase(task->baselines.begin());
        }
    }
    if (root) {
        std::erase(project.tasks, root);
        takeOverRoot(project, *root);
    }
    std::stable_sort(project.tasks.begin(), project.tasks.end(),
                     [](const auto& a, const auto& b) { return a->ID < b->ID; });
    project.ID = 0;
    uint64_t id = 0;
    for (const auto& task : project.tasks) {
        task->ID = ++id;
        if (task->parent == nullptr || task->parent == root.get()) {
            task->parent = &project;
        }
    }
    // A view of the project that owns nothing: the pipeline owns the project.
    const std::shared_ptr<KVMPPTask> projectView(std::shared_ptr<void>{}, &project);
    for (const auto& assignment : project.assignments) {
        pointAtProject(assignment->task, root.get(), projectView);
    }
    for (const auto& link : project.constraints) {
        pointAtProject(link->task1, root.get(), projectView);
        pointAtProject(link->task2, root.get(), projectView);
    }
}

uint32_t KVMPP15TaskWriter::getTextFieldTypeForIndex(int64_t position) {
    return textFieldPropertyNumber(kMSPDIVersion_2010, MPPField::taskCustomText, position);
}

const MPPObjectStorageLayout& KVMPP15TaskWriter::storageLayout() const {
    return kTaskStorage;
}

// Catalogue places.

void KVMPP15TaskWriter::putField(std::span<uint8_t> record, MPPFieldBlock block, MPPField field,
                                 const MPPFieldValue& value) const {
    putMPPField(layoutVersion(), record, block, field, value);
}

uint32_t KVMPP15TaskWriter::propertyNumber(MPPField field) const {
    return mppFieldPropertyNumber(layoutVersion(), field);
}

// Variable data.

void KVMPP15TaskWriter::writeVar2DataElements() {
    writeProjectHeaderElementsToVar2Data();
    uint32_t id = 0;
    for (const auto& task : project().tasks) {
        doWriteTaskVar2Data(++id, *task);
    }
}

void KVMPP15TaskWriter::writeBaselineGroup1(uint32_t id, const KVMPPTask& task, bool isProject) {
    for (const KVMPPTaskBaseline& baseline : task.baselines) {
        const int64_t n = baseline.number;
        if (n < 1 || n > kMaxBaselineNumber) {
            throw TVException(kTooManyBaselinesException, "Limit for 10 baselines exceeded");
        }
        m_elements->addField(id, MPPField::taskBaselineStart, KVMPPData::wallClock(baseline.start), n);
        m_elements->addField(id, MPPField::taskBaselineFinish, KVMPPData::wallClock(baseline.finish), n);
        m_elements->addField(id, MPPField::taskBaselineCost, baseline.cost * 100.0, n);
        // The project keeps its baseline work in other units than its tasks.
        const double work = isProject ? baseline.work / 60.0 * 1000.0 : baseline.work * 100.0 / 6.0;
        m_elements->addField(id, MPPField::taskBaselineWork, work, n);
        m_elements->addField(id, MPPField::taskBaselineDuration,
                             int64_t{truncatedMPPInteger<int32_t>(baseline.duration / 6.0)}, n);
        // The mark and the fixed cost of a baseline follow its start.
        const uint32_t start = mppFieldPropertyNumber(layoutVersion(), MPPField::taskBaselineStart, n);
        m_elements->addShort(id, start + kBaselineMarkAfterStart, isProject ? 0x15 : 7);
        m_elements->addDouble(id, start + kBaselineFixedCostAfterStart,
                              isProject ? 0.0 : baseline.fixedCost * 100.0);
    }
}

void KVMPP15TaskWriter::writeBaselineGroup2(uint32_t id, const KVMPPTask& task) {
    for (const KVMPPTaskBaseline& baseline : task.baselines) {
        tvLog(stringWithFormat("baseline %d", static_cast<int>(baseline.number)));
        const auto base = kBaselineGroup2Base + kBaselineGroup2Step * static_cast<uint32_t>(baseline.number);
        m_elements->addShort(id, base, 3);
        m_elements->addDate(id, base + 1, std::nullopt);
        m_elements->addDate(id, base + 2, std::nullopt);
        m_elements->addDouble(id, base + 3, kUnsetFigure);
        m_elements->addDouble(id, base + 4, kUnsetFigure);
    }
}

void KVMPP15TaskWriter::writeProjectHeaderElementsToVar2Data() {
    doWriteVarElements(0, project(), true);
}

void KVMPP15TaskWriter::doWriteTaskVar2Data(uint32_t id, const KVMPPTask& task) {
    doWriteVarElements(id, task, false);
}

void KVMPP15TaskWriter::doWriteVarElements(uint32_t id, const KVMPPTask& task, bool isProject) {
    const std::optional<KVMPPTaskBaseline>& baseline = task.baseline0;
    if (baseline) {
        m_elements->addField(id, MPPField::taskBaselineWork, baseline->work * 100.0 / 6.0);
        m_elements->addField(id, MPPField::taskBaselineCost, baseline->cost * 100.0);
    }
    // The project's name is the plan's: the application shows it as the summary task's name.
    const std::string title = task.title.value_or("");
    m_elements->addField(id, MPPField::taskName,
                         utf16FromUTF8(isProject ? title : truncateUnicodeString(title, 0, 255)));
    if (!isProject) {
        writeNotesAndCustomTexts(id, task);
    }
    if (baseline) {
        // The project's baseline holds its own duration and dates, not the saved ones.
        KVMPPTaskBaseline saved = *baseline;
        if (isProject) {
            saved.duration = task.duration;
            saved.start = task.startDate;
            saved.finish = task.endDate;
        }
        m_elements->addField(id, MPPField::taskBaselineDuration,
                             truncatedMPPInteger<int64_t>(saved.duration / 6.0));
        m_elements->addField(id, MPPField::taskBaselineStart, KVMPPData::wallClock(saved.start));
        m_elements->addField(id, MPPField::taskBaselineFinish, KVMPPData::wallClock(saved.finish));
    }
    for (uint32_t type : kZeroElementTypes) {
        m_elements->addZeroes(id, type, 8);
    }
    if (baseline) {
        m_elements->addShort(id, kBaselineMarkType, isProject ? 0x15 : 7);
    }
    writeBaselineGroup1(id, task, isProject);
    if (baseline) {
        m_elements->addInteger(id, kTaskBaselineTailTypes[0], 0xFFFFFFFF);
        m_elements->addInteger(id, kTaskBaselineTailTypes[1], 0xFFFFFFFF);
        m_elements->addDouble(id, kTaskBaselineTailTypes[2], kUnsetFigure);
        m_elements->addDouble(id, kTaskBaselineTailTypes[3], kUnsetFigure);
    }
    writeBaselineGroup2(id, task);
    if (isProject && !project().tasks.empty()) {
        m_elements->add(id, kOutlineMarkType, [](KVMPPVar2Data& data) {
            data.writeInteger(1);
            data.writeInteger(1);
        });
    }
    if (!isProject && task.preleveledStart && task.preleveledFinish) {
        m_elements->addField(id, MPPField::taskPreLeveledStart, KVMPPData::wallClock(task.preleveledStart));
        m_elements->addField(id, MPPField::taskPreLeveledFinish, KVMPPData::wallClock(task.preleveledFinish));
    }
    for (uint32_t type : kClosingTypes) {
        m_elements->addInteger(id, type, 0xFFFFFFFF);
    }
}

void KVMPP15TaskWriter::writeNotesAndCustomTexts(uint32_t id, const KVMPPTask& task) {
    if (task.notes && !task.notes->empty()) {
        m_elements->addUnfiled(id, propertyNumber(MPPField::taskNotes), [&task](KVMPPVar2Data& data) {
            data.writeRtfString(*task.notes, kMPPDataEncodingASCII);
        });
    }
    writeCustomTexts(id, MPPField::taskCustomText, task.customFieldValues, false);
}

// Fixed data.

void KVMPP15TaskWriter::writeFixedDataRecords() {
    writeTaskFixedData(project(), true);
    for (const auto& task : project().tasks) {
        writeTaskFixedData(*task, false);
    }
}

void KVMPP15TaskWriter::writeTaskFixedData(const KVMPPTask& task, bool isProject) {
    std::vector<uint8_t> record(kTaskRecordSize, 0);
    const std::span<uint8_t> bytes(record);
    const auto uid = static_cast<uint32_t>(task.ID);
    putField(bytes, fixed, MPPField::taskID, static_cast<int64_t>(task.ID));
    encodeMPPNumber(uid, bytes.subspan(kUIDOffset));
    putField(bytes, fixed, MPPField::taskWork, microseconds(task.work));
    putField(bytes, fixed, MPPField::taskActualWork, microseconds(task.actualWork));
    putField(bytes, fixed, MPPField::taskRemainingWork, microseconds(task.remainingWork));
    putField(bytes, fixed, MPPField::taskTotalCost, task.cost);
    putField(bytes, fixed, MPPField::taskActualCost, task.actualCost);
    putField(bytes, fixed, MPPField::taskFixedCost, task.fixedCost);
    putField(bytes, fixed, MPPField::taskRemainingCost, task.remainingCost);
    putField(bytes, fixed, MPPField::taskConstraintType, int64_t{task.constraintType});
    putField(bytes, fixed, MPPField::taskConstraintDate, KVMPPData::wallClock(task.constraintDate));
    encodeMPPDuration(microseconds(task.levelingDelay), bytes.subspan(kLevelingDelayOffset));
    putField(bytes, fixed, MPPField::taskPriority, static_cast<int64_t>(task.priority));
    encodeMPPDuration(microseconds(task.actualDuration), bytes.subspan(kActualDurationOffset));
    putField(bytes, fixed, MPPField::taskDuration, microseconds(task.duration));
    encodeMPPDuration(microseconds(task.remainingDuration), bytes.subspan(kRemainingDurationOffset));
    putField(bytes, fixed, MPPField::taskPercentComplete, percent(task.percentComplete));
    putField(bytes, fixed, MPPField::taskPercentWorkComplete, percent(task.workPercentComplete));
    const std::optional<TVDate> start = KVMPPData::wallClock(task.startDate);
    const std::optional<TVDate> finish = KVMPPData::wallClock(task.endDate);
    for (MPPField field : {MPPField::taskScheduledStart, MPPField::taskStart, MPPField::taskEarlyStart,
                           MPPField::taskLateStart}) {
        putField(bytes, fixed, field, start);
    }
    for (MPPField field : {MPPField::taskScheduledFinish, MPPField::taskFinish, MPPField::taskEarlyFinish,
                           MPPField::taskLateFinish}) {
        putField(bytes, fixed, field, finish);
    }
    putField(bytes, fixed, MPPField::taskActualStart, task.actualDuration > 0 ? start : std::nullopt);
    putField(bytes, fixed, MPPField::taskActualFinish, std::optional<TVDate>());
    encodeMPPTimestamp(KVMPPData::wallClock(task.createDate), bytes.subspan(kCreatedOffset));
    for (size_t offset : kNullDateOffsets) {
        encodeMPPTimestamp(std::nullopt, bytes.subspan(offset));
    }
    putField(bytes, fixed, MPPField::taskType, int64_t{task.taskType});
    putField(bytes, fixed, MPPField::taskParentUID,
             isProject ? int64_t{-1} : static_cast<int64_t>(static_cast<int32_t>(task.getParentTaskID())));
    encodeMPPHundredths(task.remainingCost, bytes.subspan(kRemainingCostAgainOffset));
    encodeMPPNumber(kDurationFormatDays, bytes.subspan(kDurationFormatOffset));
    putField(bytes, fixed, MPPField::taskEstimated, task.estimated);
    putField(bytes, fixed, MPPField::taskFixedCostAccrual, int64_t{task.getFixedCostAccrual()});
    putField(bytes, fixed, MPPField::taskOutlineLevel, isProject ? int64_t{0} : depth(task));
    encodeMPPTimestamp(KVMPPData::wallClock(task.preleveledStart), bytes.subspan(kPreleveledStartOffset));
    encodeMPPHundredths(task.baseline0 ? task.baseline0->fixedCost : 0.0,
                        bytes.subspan(kBaselineFixedCostOffset));
    m_fixedData->writeRecord(record);
}

void KVMPP15TaskWriter::writeFixedMetaEntries() {
    writeTaskFixedMeta(project(), true);
    for (const auto& task : project().tasks) {
        writeTaskFixedMeta(*task, false);
    }
}

std::vector<uint8_t> KVMPP15TaskWriter::fillCustomTextFields(const KVMPPTask& task) {
    std::vector<uint8_t> bitmap(kTextBitmapWorkSize, 0);
    if (!task.customFieldValues.isResolved()) {
        return bitmap;
    }
    const size_t count = task.customFieldValues.values().size();
    for (size_t p = 1; p <= count; ++p) {
        if (!task.customFieldValues.hasText(p)) {
            continue;
        }
        if (p == 1) {
            bitmap[0] |= 0x20;
        } else if (p <= 4) {
            bitmap[1] |= static_cast<uint8_t>(1 << (3 * (p - 2)));
        } else if (p == 5) {
            bitmap[2] |= 0x02;
        } else if (p <= 9) {
            bitmap[2] |= static_cast<uint8_t>(0x10 << (p - 6));
        } else if (p == 10) {
            bitmap[3] |= 0x01;
        } else if (p <= 16) {
            bitmap[15] |= static_cast<uint8_t>(0x04 << (p - 11));
        } else if (p <= 24) {
            bitmap[16] |= static_cast<uint8_t>(1 << (p - 17));
        } else if (p <= 30) {
            bitmap[17] |= static_cast<uint8_t>(1 << (p - 25));
        }
    }
    return bitmap;
}

void KVMPP15TaskWriter::writeTaskFixedMeta(const KVMPPTask& task, bool isProject) {
    const bool baselines = !task.baselines.empty();
    const bool notes = notesPresent(task);
    const bool delayed = task.levelingDelay != 0;
    const bool startNoEarlier = task.constraintType == 4 && !task.baseline0;
    const bool parentStartNoEarlier = parentConstraintType(task) == 4;

    uint32_t first = isProject ? 0x90000 : 0x80000;
    if (baselines) {
        first = isProject ? 0x230000 : 0x220000;
    } else if (task.baseline0) {
        first = isProject ? 0x150000 : 0x140000;
    }
    first |= (notes ? 0x40000u : 0u) | (delayed ? 0x200000u : 0u);

    std::array<uint8_t, kTaskStorage.fixedMetaEntrySize> entry{};
    entry[8] = 0xE3;
    entry[9] = 0xFF;
    entry[10] = 0xFD;
    entry[11] = 0xFE;
    entry[12] = isProject || startNoEarlier ? 0x79 : 0x71;
    entry[13] = isProject ? 0xD1 : 0xC1;
    entry[14] = notes ? 0x77 : 0x67;
    entry[15] = 0x01;
    // The files of applications 15 and 16 hold 0x07 here for the project and for tasks.
    entry[16] = static_cast<uint8_t>(0x07 | (delayed ? 0x20 : 0));
    entry[17] = parentStartNoEarlier || baselines ? 0x4C : 0x48;
    const uint8_t base = task.getSplits() || isProject || startNoEarlier ? 0xEF : 0xCF;
    entry[18] = parentStartNoEarlier ? 0xEF : base;
    entry[19] = 0x1F;
    entry[20] = anyBaseline(task) ? 0x16 : 0x10;
    entry[21] = anyBaseline(task) ? 0x1F : 0;
    entry[27] = anyBaseline(task) ? 0x10 : 0;
    if (!isProject) {
        const std::vector<uint8_t> bitmap = fillCustomTextFields(task);
        std::copy_n(bitmap.begin(), kTextBitmapSize, entry.begin() + kTextBitmapOffset);
    }
    entry[44] = notes ? 0x10 : 0;
    putField(entry, fixedMeta, MPPField::taskMilestone, task.milestone);
    putField(entry, fixedMeta, MPPField::taskEffortDriven, task.getEffortDriven());

    m_fixedMeta->writeEntry(first, entry);
}

// Second fixed data.

void KVMPP15TaskWriter::writeFixed2DataRecords() {
    writeTaskFixed2Data(project(), true);
    for (const auto& task : project().tasks) {
        writeTaskFixed2Data(*task, false);
    }
}

void KVMPP15TaskWriter::writeTaskFixed2Data(const KVMPPTask& task, bool isProject) {
    KVMPPFixedData& data = *m_fixed2Data;
    data.startNewElement();
    data.writeGUID(task.getGUID());
    data.writeZeroesBlockOfSize(6);
    data.write2ByteInteger(isProject ? 0x3FF0 : 0x4000);
    data.writeGUID(task.parent != nullptr ? std::span<const uint8_t>(task.parent->getGUID())
                                          : std::span<const uint8_t>());
    data.writeInteger(0x40003);
    data.write2ByteInteger(0);
    if (isProject) {
        data.writeInteger(0xFFFFFFFF);
        data.writeInteger(0xFFFFFFFF);
        data.writeInteger(0xFFFFFFFF);
        data.writeInteger(task.baselineSetted ? 0 : 0xFFFFFFFF);
    } else {
        data.writeDate(task.leveledStart);
        data.writeDate(task.startDate);
        data.writeDate(task.endDate);
        if (task.baseline0) {
            data.writeInteger(0);
        } else {
            data.writeDuration(task.duration, 0);
        }
    }
    data.write2ByteInteger(0x15);
    data.closeCurrentElement();
}

void KVMPP15TaskWriter::writeFixed2MetaEntries() {
    writeTaskFixed2Meta(project(), true);
    for (const auto& task : project().tasks) {
        writeTaskFixed2Meta(*task, false);
    }
}

void KVMPP15TaskWriter::writeTaskFixed2Meta(const KVMPPTask& task, bool isProject) {
    std::array<uint8_t, kTaskStorage.fixed2MetaEntrySize> entry{};
    entry[8] = 0x7F;
    entry[9] = 0xCF;
    for (const KVMPPTaskBaseline& baseline : task.baselines) {
        if (baseline.number < 1 || baseline.number > kMaxBaselineNumber) {
            continue;
        }
        const BaselineBits& bits = kBaselineBits[baseline.number - 1];
        for (const auto& [index, mask] : bits.first) {
            entry[kFirstBaselineBitmapOffset + index] |= mask;
        }
        for (const auto& [index, mask] : bits.second) {
            entry[kBaselineSavedOffset + index] |= mask;
        }
    }
    if (task.baseline0) {
        entry[kBaselineSavedOffset] |= 0xF0;
    }
    entry.back() = isProject ? 8 : 0;
    putField(entry, fixed2Meta, MPPField::taskManual, task.manual);
    m_fixed2Meta->writeEntry(0, entry);
}

// Property stream.

void KVMPP15TaskWriter::writeProps() {
    writeFieldNamesProps(project().customTaskFieldNames, getTextFieldTypeForIndex, [](KVMPPProps& props) {
        props.startNewElementForType(kCustomNamesHeaderType, 2);
        props.write2ByteInteger(0);
        props.closeCurrentElement();
    });
}
