#include "MPPExporter/writers/KVMPP15SummaryInformationWriter.h"

#include "MPPCommon/support/TVException.h"
#include "MPPExporter/MPPObjects/KVMPPProject.h"
#include "MPPExporter/writers/KVMPPSummaryInfoData.h"
#include "MPPImporter/format/MPPValueCodecs.h"

#include <algorithm>

namespace {

// Property types.
constexpr uint32_t kShortType = 2;
constexpr uint32_t kIntegerType = 3;
constexpr uint32_t kTextType = 30;

// Property ids of the summary information set.
constexpr uint32_t kCodePage = 0x01;
constexpr uint32_t kTitle = 0x02;
constexpr uint32_t kAuthor = 0x04;
constexpr uint32_t kKeywords = 0x05;
constexpr uint32_t kComments = 0x06;
constexpr uint32_t kCreator = 0x08;
constexpr uint32_t kRevision = 0x09;
constexpr uint32_t kApplicationName = 0x12;
constexpr uint32_t kSecurity = 0x13;

constexpr uint16_t kCodePageCyrillic = 1251;
constexpr uint16_t kCodePageUTF8 = 65001;
constexpr const char* kApplicationNameText = "Microsoft MPPProject";
// The revision: the text "1" in a 4-byte text value.
constexpr uint32_t kRevisionText = 49;

void append(std::vector<uint8_t>& bytes, uint32_t value) {
    const size_t at = bytes.size();
    bytes.resize(at + 4);
    encodeMPPNumber(value, std::span<uint8_t>(bytes).subspan(at, 4));
}

bool isASCII(const std::string& text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

} // namespace

uint16_t
KVMPP15SummaryInformationWriter::codePageForTexts(const std::vector<std::optional<std::string>>& texts) {
    // The texts of a set share one code page. The plain one takes ASCII only, and the title comes
    // back as the plan's name on import: a text with other characters is written in UTF-8, so that
    // it does not turn into question marks.
    const bool plain = std::all_of(texts.begin(), texts.end(), [](const std::optional<std::string>& text) {
        return !text || isASCII(*text);
    });
    return plain ? kCodePageCyrillic : kCodePageUTF8;
}

KVMPP15SummaryInformationWriter::Property
KVMPP15SummaryInformationWriter::codePageProperty(uint16_t codePage) {
    return integerProperty(kCodePage, kShortType, codePage);
}

KVMPP15SummaryInformationWriter::Property
KVMPP15SummaryInformationWriter::integerProperty(uint32_t id, uint32_t type, uint32_t value) {
    Property property{id, {}};
    append(property.value, type);
    append(property.value, value);
    return property;
}

std::optional<KVMPP15SummaryInformationWriter::Property>
KVMPP15SummaryInformationWriter::textProperty(uint32_t id, const std::optional<std::string>& text) {
    if (!text) {
        return std::nullopt;
    }
    // The code page of the set was chosen for its texts: they are written as they are.
    const std::string& bytes = *text;
    Property property{id, {}};
    append(property.value, kTextType);
    append(property.value, static_cast<uint32_t>(bytes.size() + 2));
    property.value.insert(property.value.end(), bytes.begin(), bytes.end());
    // The terminator, and zeros up to the next 4-byte border where the next value starts.
    property.value.resize(property.value.size() + 2 + (4 - (bytes.size() + 2) % 4) % 4, 0);
    return property;
}

std::vector<KVMPP15SummaryInformationWriter::Property> KVMPP15SummaryInformationWriter::properties() const {
    const KVMPPSummaryInformation& summary = project().summaryInfo;
    const uint16_t codePage = codePageForTexts(
        {summary.title, summary.author, summary.keywords, summary.comments, summary.creator});
    std::vector<Property> result = {codePageProperty(codePage)};
    for (const auto& [id, text] :
         {std::pair{kTitle, &summary.title}, std::pair{kAuthor, &summary.author},
          std::pair{kKeywords, &summary.keywords}, std::pair{kComments, &summary.comments},
          std::pair{kCreator, &summary.creator}}) {
        if (auto property = textProperty(id, *text)) {
            result.push_back(std::move(*property));
        }
    }
    result.push_back(integerProperty(kRevision, kTextType, 4));
    append(result.back().value, kRevisionText);
    result.push_back(*textProperty(kApplicationName, std::string(kApplicationNameText)));
    result.push_back(integerProperty(kSecurity, kIntegerType, 0));
    return result;
}

void KVMPP15SummaryInformationWriter::openSet(KVMPPSummaryInfoData& data) const {
    data.open();
}

bool KVMPP15SummaryInformationWriter::writeDataForProject(const KVMPPProject* project) {
    return regenerate(project, [this] {
        const std::vector<Property> rows = properties();
        KVMPPOffsetMarkedData values;
        for (const Property& property : rows) {
            values.startNewElement();
            values.writeData(property.value.data(), property.value.size());
            values.closeCurrentElement();
        }
        KVMPPSummaryInfoData data;
        openSet(data);
        const auto tableSize = static_cast<uint32_t>(8 * rows.size());
        for (size_t index = 0; index < rows.size(); ++index) {
            data.writeInteger(rows[index].id);
            // Offsets count from the section's start: its size and count words, the table, the value.
            data.writeInteger(tableSize + static_cast<uint32_t>(values.offsetOfElementAtIndex(index)) + 8);
        }
        data.writeData(values.data().data(), values.dataSize());
        data.close(static_cast<uint16_t>(rows.size()));
        if (!flushData(data, outputEntry())) {
            throw TVException(kWriteToStreamException, "Attempt to write the summary information failed");
        }
    });
}
