#include "MPPExporter/writers/KVMPP15ResourceWriter.h"

#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVException.h"
#include "MPPExporter/MPPObjects/KVMPPProject.h"
#include "MPPExporter/writers/KVMPP15TaskWriter.h"
#include "MPPExporter/writers/MPPFieldAliasProps.h"
#include "MPPExporter/writers/MPPFieldWrites.h"
#include "MPPImporter/format/MPPFormatConstants.h"
#include "MPPImporter/text/UnicodeText.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <set>

namespace {

using enum MPPFieldBlock;

// The header elements of the fixed streams and the entry sizes of the meta streams.
constexpr MPPObjectStorageLayout kResourceStorage = {.headerElements = 3,
                                                     .fixed2RecordSize = 40,
                                                     .fixedMetaEntrySize = 37,
                                                     .headerMetaMark = 8,
                                                     .fixed2MetaEntrySize = 50,
                                                     .varMetaEnding = 0x0C40};

// The resource record of the fixed data, as applications 15 and 16 write it. The fields that the
// readers read are placed by the catalogue; these are the words around them that only the writer knows.
constexpr size_t kRecordSize = 172;
constexpr size_t kOvertimeRateOffset = 24;
constexpr size_t kActualCostOffset = 32;
constexpr size_t kActualWorkOffset = 56;
constexpr size_t kAccrueAtOffset = 80;
constexpr size_t kRemainingCostOffset = 82;
constexpr size_t kRemainingWorkOffset = 90;
constexpr size_t kConvertedWorkOffset = 106;
constexpr size_t kRecordMarkOffset = 154;
constexpr uint16_t kResourceRecordMark = 3;
constexpr uint16_t kDefaultRecordMark = 2;
constexpr size_t kRateFormatOffsets[] = {166, 168};

constexpr size_t kCustomBitmapOffset = 16;
constexpr size_t kCustomBitmapSize = 8;
constexpr size_t kMaxCustomTexts = 30;

constexpr size_t kFixed2KindOffset = 8;
constexpr size_t kFixed2MarkOffset = 37;
constexpr size_t kFixed2BaselineBitmapOffset = 38;

// Element types of the variable data that no reader reads, as the application writes them.
constexpr uint32_t kInitialsType = 2;
constexpr uint32_t kGroupType = 3;
constexpr uint32_t kKindType = 0x55;
constexpr uint32_t kStampType = 0x2D6;
constexpr uint32_t kBlankType = 0x2E3;
constexpr uint32_t kBaselineTailTypes[] = {0x2F4, 0x2F5};
constexpr uint8_t kStamp[] = {0x6C, 0x16, 0x85, 0x2B};
constexpr const char* kNoInitials = "s";

// The Baseline's timephased work, which marks that a resource holds a Baseline: a count of records, the
// header's size, the total work in thousandths of a minute and its working time in tenths of a minute,
// then records of the work up to a point, the working time since the last point, a gap mark and the
// point. The bundle keeps no timephased Baseline, so the block holds no stretches: as the default
// resource's block in the application's files, an opening and a closing point at the stamps that end
// its time line, as the files of application 16 hold them.
constexpr uint16_t kCurveHeaderWord = 0x10;
constexpr uint32_t kCurveHeaderSize = 28;
constexpr uint32_t kCurveEndStamps[] = {0x340A75F6, 0x340A75F7};

// Work in seconds as thousandths of a minute; material amounts stand as they are.
double converted(double seconds) {
    return seconds * 60000.0 / 3600.0;
}

// The work figures of a record: a material resource keeps amounts, the others converted work.
double recordWork(const KVMPPResource& resource, double value) {
    return resource.getResourceType() == 1 ? value : converted(value);
}

// The catalogue's work row takes microseconds of the stored figure (thousandths of a minute). A figure
// that is no number writes 0, one beyond the range of microseconds the range's bound, so that no
// conversion is undefined.
int64_t workMicroseconds(double stored) {
    constexpr double kMicrosecondsPerThousandth = 60000.0;
    const double value = stored * kMicrosecondsPerThousandth;
    if (std::isnan(value)) {
        return 0;
    }
    constexpr auto kLimit = static_cast<double>(std::numeric_limits<int64_t>::max());
    return value >= kLimit    ? std::numeric_limits<int64_t>::max()
           : value <= -kLimit ? std::numeric_limits<int64_t>::min()
                              : static_cast<int64_t>(value);
}

// The ranges of the sheet position table: from n, shift and constant.
struct PositionRange {
    uint64_t from;
    uint32_t shift;
    uint32_t constant;
};
constexpr PositionRange kPositionRanges[] = {
    {1, 19, 0x3FF80000},     {4, 18, 0x40040000},    {8, 17, 0x40120000},    {16, 16, 0x40210000},
    {32, 15, 0x40308000},    {64, 14, 0x40404000},   {128, 13, 0x40502000},  {256, 12, 0x40501000},
    {512, 11, 0x40600800},   {1024, 10, 0x40700400}, {2048, 9, 0x40800200},  {4096, 8, 0x40900100},
    {8192, 7, 0x40A00080},   {16384, 6, 0x40B00040}, {32768, 5, 0x40C00020}, {65536, 4, 0x40D00010},
    {131072, 3, 0x40E00008},
};
constexpr uint64_t kLastPosition = 262143;
constexpr uint32_t kUpperHalfOfOne = 0x3FF00000;

} // namespace

void KVMPP15ResourceWriter::preprocessProject(KVMPPProject& project) {
    const auto dummy = std::find_if(project.resources.begin(), project.resources.end(),
                                    [](const auto& resource) { return resource->ID == 0; });
    if (dummy != project.resources.end()) {
        project.resources.erase(dummy);
    }
    // Only the baseline of number 0 becomes the Baseline, as for tasks.
    for (const auto& resource : project.resources) {
        if (!resource->baselines.empty() && resource->baselines.front().number == 0) {
            resource->baseline0 = resource->baselines.front();
            resource->baselines.erase(resource->baselines.begin());
        }
    }
}

uint32_t KVMPP15ResourceWriter::calculateResourcePositionInResourceSheet(uint64_t n) {
    if (n == 0) {
        return kUpperHalfOfOne;
    }
    if (n > kLastPosition) {
        return 0;
    }
    const PositionRange* range = std::begin(kPositionRanges);
    for (const PositionRange& candidate : kPositionRanges) {
        if (n >= candidate.from) {
            range = &candidate;
        }
    }
    return static_cast<uint32_t>(n << range->shift) + range->constant;
}

uint32_t KVMPP15ResourceWriter::getTextFieldTypeForIndex(int64_t position) {
    return textFieldPropertyNumber(kMSPDIVersion_2010, MPPField::resourceCustomText, position);
}

const MPPObjectStorageLayout& KVMPP15ResourceWriter::storageLayout() const {
    return kResourceStorage;
}

bool KVMPP15ResourceWriter::firstTaskHasBaselineList() const {
    return !project().tasks.empty() && !project().tasks.front()->baselines.empty();
}

bool KVMPP15ResourceWriter::firstTaskHasBaseline0() const {
    return !project().tasks.empty() && project().tasks.front()->baseline0.has_value();
}

// Variable data.

void KVMPP15ResourceWriter::writeVar2DataElements() {
    writeCommonElements(0, std::nullopt);
    writeDefaultResourceBaselines();
    for (const auto& resource : project().resources) {
        writeCommonElements(static_cast<uint32_t>(resource->ID), resource->baseline0);
        writeResourceElements(*resource);
    }
}

// Where a baseline is saved, every resource holds its Baseline's work and cost, at zero where it has
// none, as the default resource does.
void KVMPP15ResourceWriter::writeCommonElements(uint32_t id,
                                                const std::optional<KVMPPResourceBaseline>& baseline) {
    const bool saved = project().baselineSetted || baseline.has_value();
    if (saved) {
        const KVMPPResourceBaseline values = baseline.value_or(KVMPPResourceBaseline{});
        m_elements->addField(id, MPPField::resourceBaselineWork, converted(values.work));
        m_elements->addField(id, MPPField::resourceBaselineCost, values.cost * 100.0);
    }
    if (baseline) {
        writeBaselineMark(id, converted(baseline->work));
    }
    m_elements->add(id, kStampType, [](KVMPPVar2Data& data) { data.writeData(kStamp, sizeof(kStamp)); });
    m_elements->addZeroes(id, kBlankType, 16);
    if (saved) {
        for (uint32_t type : kBaselineTailTypes) {
            m_elements->addZeroes(id, type, 8);
        }
    }
}

// The default resource holds the work and cost of every numbered baseline that a resource holds, at
// zero, and the mark of the Baseline where a resource holds one, as the application's files do: readers
// take them for the plan's marks of the baselines saved.
void KVMPP15ResourceWriter::writeDefaultResourceBaselines() {
    std::set<int64_t> numbers;
    bool baseline0 = false;
    for (const auto& resource : project().resources) {
        for (const KVMPPResourceBaseline& baseline : resource->baselines) {
            numbers.insert(baseline.number);
        }
        baseline0 = baseline0 || resource->baseline0.has_value();
    }
    if (baseline0) {
        writeBaselineMark(0, std::nullopt);
    }
    for (const int64_t number : numbers) {
        writeNumberedBaseline(0, KVMPPResourceBaseline{.work = 0, .cost = 0, .number = number});
    }
}

// One numbered baseline under the properties of its number.
void KVMPP15ResourceWriter::writeNumberedBaseline(uint32_t id, const KVMPPResourceBaseline& baseline) {
    const int64_t n = baseline.number;
    if (n < 1 || n > kMaxBaselineNumber) {
        throw TVException(
            kUnknownBaselineWorkException,
            stringWithFormat("Baseline work type is unknown for index %d", static_cast<int>(n)));
    }
    if (!findMPPFieldPropertyNumber(layoutVersion(), MPPField::resourceBaselineCost, n)) {
        throw TVException(
            kUnknownBaselineCostException,
            stringWithFormat("Baseline cost type is unknown for index %d", static_cast<int>(n)));
    }
    m_elements->addField(id, MPPField::resourceBaselineWork, baseline.work * 1000.0 / 60.0, n);
    m_elements->addField(id, MPPField::resourceBaselineCost, baseline.cost * 100.0, n);
}

// The Baseline's timephased work without stretches; its total is unset for the default resource.
void KVMPP15ResourceWriter::writeBaselineMark(uint32_t id, std::optional<double> work) {
    m_elements->add(id, mppFieldPropertyNumber(layoutVersion(), MPPField::resourceBaselineMark),
                    [work](KVMPPVar2Data& data) {
                        data.write2ByteInteger(static_cast<uint16_t>(std::size(kCurveEndStamps)));
                        data.write2ByteInteger(kCurveHeaderWord);
                        data.writeInteger(kCurveHeaderSize);
                        data.writeDouble(work.value_or(kUnsetFigure));
                        data.writeZeroesBlockOfSize(12);
                        // The opening point holds no work yet, the closing one the total.
                        data.writeDouble(kUnsetFigure);
                        data.writeInteger(0);
                        data.writeInteger(1);
                        data.writeInteger(kCurveEndStamps[0]);
                        data.writeDouble(work.value_or(kUnsetFigure));
                        data.writeInteger(0);
                        data.writeInteger(1);
                        data.writeInteger(kCurveEndStamps[1]);
                    });
}

void KVMPP15ResourceWriter::writeResourceElements(const KVMPPResource& resource) {
    const auto id = static_cast<uint32_t>(resource.ID);
    const auto text = [&](uint32_t type, const std::string& value) {
        m_elements->add(id, type,
                        [&value](KVMPPVar2Data& data) { data.writeString(value, kMPPDataEncodingUTF16LE); });
    };
    const auto field = [&](MPPField catalogued, const std::string& value) {
        m_elements->addField(id, catalogued, utf16FromUTF8(value));
    };
    field(MPPField::resourceName, resource.name.value_or(""));
    text(kInitialsType, resource.initials.value_or(kNoInitials));
    if (resource.hasGroup()) {
        text(kGroupType, *resource.group);
    }
    writeCustomTexts(id, MPPField::resourceCustomText, resource.customFieldsText, true);
    if (resource.hasNotes()) {
        m_elements->add(id, mppFieldPropertyNumber(layoutVersion(), MPPField::resourceNotes),
                        [&resource](KVMPPVar2Data& data) {
                            data.writeRtfString(*resource.notes, kMPPDataEncodingASCII);
                        });
    }
    if (resource.hasEmailAddress()) {
        field(MPPField::resourceEmailAddress, *resource.emailAddress);
    }
    m_elements->addInteger(id, kKindType, 2);
    for (const KVMPPResourceBaseline& baseline : resource.baselines) {
        writeNumberedBaseline(id, baseline);
    }
}

// Fixed data.

void KVMPP15ResourceWriter::writeFixedDataRecords() {
    writeResourceFixedData(project().defaultResource(), true);
    for (const auto& resource : project().resources) {
        writeResourceFixedData(*resource, false);
    }
}

void KVMPP15ResourceWriter::writeResourceFixedData(const KVMPPResource& resource, bool isDefault) {
    std::array<uint8_t, kRecordSize> record{};
    const std::span<uint8_t> bytes(record);
    const auto put = [&](MPPField field, const MPPFieldValue& value) {
        putMPPField(layoutVersion(), bytes, fixed, field, value);
    };
    const auto id = isDefault ? int64_t{0} : static_cast<int64_t>(resource.ID);
    put(MPPField::resourceID, id);
    put(MPPField::resourceUID, id);
    put(MPPField::resourceMaxUnits, resource.getMaxUnits() / 100.0);
    put(MPPField::resourceStandardRate, resource.getStandartRate());
    encodeMPPNumber(resource.getOverTimeRate(), bytes.subspan(kOvertimeRateOffset));
    encodeMPPNumber(resource.actualCost * 100.0, bytes.subspan(kActualCostOffset));
    put(MPPField::resourceCost, resource.cost * 100.0);
    // The default resource keeps converted work wherever a resource may keep amounts.
    const auto work = [&](double value) {
        return isDefault ? converted(value) : recordWork(resource, value);
    };
    put(MPPField::resourceWork, workMicroseconds(work(resource.work)));
    encodeMPPNumber(work(resource.actualWork), bytes.subspan(kActualWorkOffset));
    put(MPPField::resourceCostPerUse, isDefault ? resource.costPerUse : resource.costPerUse * 100.0);
    encodeMPPNumber(static_cast<uint16_t>(resource.getAccrueAtType()), bytes.subspan(kAccrueAtOffset));
    encodeMPPNumber(resource.remainingCost * 100.0, bytes.subspan(kRemainingCostOffset));
    encodeMPPNumber(isDefault ? resource.remainingWork : recordWork(resource, resource.remainingWork),
                    bytes.subspan(kRemainingWorkOffset));
    encodeMPPNumber(converted(resource.work), bytes.subspan(kConvertedWorkOffset));
    encodeMPPNumber(isDefault ? kDefaultRecordMark : kResourceRecordMark, bytes.subspan(kRecordMarkOffset));
    put(MPPField::resourceAvailableFrom,
        isDefault ? std::nullopt : KVMPPData::wallClock(resource.getAvailableFrom()));
    put(MPPField::resourceAvailableTo,
        isDefault ? std::nullopt : KVMPPData::wallClock(resource.getAvailableTo()));
    for (size_t offset : kRateFormatOffsets) {
        encodeMPPNumber(uint16_t{2}, bytes.subspan(offset));
    }
    put(MPPField::resourceType, static_cast<int64_t>(resource.getResourceType()));
    tvLog(stringWithFormat("Actual cost: %lf", resource.actualCost));
    tvLog(stringWithFormat("Cost: %lf", resource.cost));
    tvLog(stringWithFormat("Work: %lf", resource.work));
    tvLog(stringWithFormat("Actual Work: %lf", resource.actualWork));
    tvLog(stringWithFormat("Remaining Cost: %lf", resource.remainingCost));
    tvLog(stringWithFormat("Remaining Work: %lf", resource.remainingWork));
    m_fixedData->writeRecord(record);
}

void KVMPP15ResourceWriter::writeFixedMetaEntries() {
    writeResourceFixedMeta(project().defaultResource(), true);
    for (const auto& resource : project().resources) {
        writeResourceFixedMeta(*resource, false);
    }
}

void KVMPP15ResourceWriter::writeResourceFixedMeta(const KVMPPResource& resource, bool isDefault) {
    const bool list = firstTaskHasBaselineList();
    const bool saved = firstTaskHasBaseline0();
    const bool notes = !isDefault && resource.hasNotes();
    const bool email = !isDefault && resource.hasEmailAddress();
    const bool group = !isDefault && resource.hasGroup();
    uint32_t first = list ? 0x110000 : saved ? 0xB0000 : 0x50000;
    if (isDefault) {
        first = list ? 0xE0000 : saved ? 0x80000 : 0x20000;
    } else if (email || notes || group) {
        first = 0x60000;
    }
    std::array<uint8_t, kResourceStorage.fixedMetaEntrySize> entry{};
    entry[8] = 0xE3;
    entry[9] = 0xFF;
    entry[10] = 0xFD;
    entry[11] = notes ? 0xBF : 0x3F;
    entry[12] = !isDefault && resource.getResourceType() == 1 ? 0x48 : 0x5C;
    if (isDefault) {
        entry[13] = list || saved ? 0 : 1;
    } else {
        entry[13] =
            static_cast<uint8_t>((list || saved ? 0x46 : 0x47) | (email ? 0x20 : 0) | (group ? 0x08 : 0));
    }
    entry[14] = list || saved ? 0x30 : 0;
    entry[15] = list || saved ? 0xC0 : 0;
    if (!isDefault && resource.customFieldsText.isResolved()) {
        // One bit per custom text, empty or not.
        constexpr uint8_t kBits[] = {0x04, 0x08, 0x40, 0x80};
        const size_t count = std::min(resource.customFieldsText.values().size(), kMaxCustomTexts);
        for (size_t p = 0; p < count && p / 4 < kCustomBitmapSize; ++p) {
            entry[kCustomBitmapOffset + p / 4] |= kBits[p % 4];
        }
    }
    entry.back() = notes ? 1 : 0;
    m_fixedMeta->writeEntry(first, entry);
}

// Second fixed data.

void KVMPP15ResourceWriter::writeFixed2DataRecords() {
    const auto record = [this](const KVMPPResource& resource, uint64_t position) {
        m_fixed2Data->startNewElement();
        m_fixed2Data->writeGUID(resource.getGUID());
        m_fixed2Data->writeInteger(0);
        m_fixed2Data->writeInteger(calculateResourcePositionInResourceSheet(position));
        m_fixed2Data->writeGUID(resource.getGUID());
        m_fixed2Data->closeCurrentElement();
    };
    record(project().defaultResource(), 0);
    uint64_t position = 0;
    for (const auto& resource : project().resources) {
        record(*resource, ++position);
    }
}

void KVMPP15ResourceWriter::writeFixed2MetaEntries() {
    writeResourceFixed2Meta(project().defaultResource(), true);
    for (const auto& resource : project().resources) {
        writeResourceFixed2Meta(*resource, false);
    }
}

void KVMPP15ResourceWriter::writeResourceFixed2Meta(const KVMPPResource& resource, bool isDefault) {
    const bool saved = project().baselineSetted;
    std::array<uint8_t, kResourceStorage.fixed2MetaEntrySize> entry{};
    uint8_t kind = 0x0B;
    if (!isDefault) {
        kind = resource.getResourceType() == 0 ? 0x0B : 0x03;
        if (resource.getBudget()) {
            kind |= 0x20;
        }
    }
    entry[kFixed2KindOffset] = static_cast<uint8_t>(kind | (saved ? 0x20 : 0));
    // The files of applications 15 and 16 hold 0x18 here where no baseline is saved.
    entry[kFixed2MarkOffset] = saved ? 0x66 : 0x18;
    if (!isDefault) {
        putMPPField(layoutVersion(), entry, fixed2Meta, MPPField::resourceCostResource,
                    resource.isCostResource());
        for (size_t p = 0;
             p < resource.baselines.size() && p / 2 + 6 < entry.size() - kFixed2BaselineBitmapOffset; ++p) {
            const size_t h = p / 2;
            const bool odd = p % 2 == 1;
            uint8_t* bitmap = entry.data() + kFixed2BaselineBitmapOffset;
            bitmap[h] |= odd ? 0x60 : 0x06;
            bitmap[h + 5] |= static_cast<uint8_t>(0x78 + (odd ? 8 : 0));
            bitmap[h + 6] |= odd ? 0x07 : 0;
        }
    }
    m_fixed2Meta->writeEntry(0, entry);
}

// Property stream.

void KVMPP15ResourceWriter::writeProps() {
    writeFieldNamesProps(project().customResourceFieldNames, getTextFieldTypeForIndex);
}
