#include "MPPExporter/writers/MPPFieldWrites.h"

#include "MPPCommon/support/TVException.h"

#include <limits>

namespace {

// Whether a row's field lies under a property number: in the variable data or the project's Props.
bool underPropertyNumber(const MPPFieldRow& row) {
    return row.block == MPPFieldBlock::var || row.block == MPPFieldBlock::custom ||
           row.block == MPPFieldBlock::props;
}

std::optional<MPPFieldPlace> findPlace(int32_t layoutVersion, MPPField field, int64_t number) {
    if (number < 0 || number > std::numeric_limits<int32_t>::max()) {
        return std::nullopt;
    }
    return mppFieldPlace(field, layoutVersion, layoutVersion, static_cast<int32_t>(number));
}

MPPFieldPlace placeIn(int32_t layoutVersion, MPPField field, MPPFieldBlock block) {
    const auto place = findPlace(layoutVersion, field, 0);
    tvAssert(place && place->row->block == block, "The layout keeps no such field in this block.");
    return *place;
}

MPPFieldPlace numberedPlace(int32_t layoutVersion, MPPField field, int64_t number) {
    const auto place = findPlace(layoutVersion, field, number);
    tvAssert(place && underPropertyNumber(*place->row), "The layout keeps no such field under a property.");
    return *place;
}

} // namespace

void putMPPField(int32_t layoutVersion, std::span<uint8_t> record, MPPFieldBlock block, MPPField field,
                 const MPPFieldValue& value) {
    const MPPFieldPlace place = placeIn(layoutVersion, field, block);
    const size_t size = mppFieldSize(*place.row);
    tvAssert(place.position + size <= record.size(), "A field lies beyond its record.");
    encodeMPPField(*place.row, value, record.subspan(place.position, size));
}

std::optional<uint32_t> findMPPFieldPropertyNumber(int32_t layoutVersion, MPPField field, int64_t number) {
    const auto place = findPlace(layoutVersion, field, number);
    if (!place || !underPropertyNumber(*place->row)) {
        return std::nullopt;
    }
    return place->position;
}

uint32_t mppFieldPropertyNumber(int32_t layoutVersion, MPPField field, int64_t number) {
    return numberedPlace(layoutVersion, field, number).position;
}

std::vector<uint8_t> encodeMPPFieldPayload(int32_t layoutVersion, MPPField field, const MPPFieldValue& value,
                                           int64_t number) {
    const MPPFieldPlace place = numberedPlace(layoutVersion, field, number);
    std::vector<uint8_t> bytes(mppEncodedSize(*place.row, value));
    encodeMPPField(*place.row, value, bytes);
    return bytes;
}
