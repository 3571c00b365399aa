#include "MPPExporter/writers/MPPFieldWrites.h"

#include "MPPCommon/support/TVException.h"

namespace {

MPPFieldPlace placeIn(int32_t layoutVersion, MPPField field, MPPFieldBlock block) {
    const auto place = mppFieldPlace(field, layoutVersion, layoutVersion);
    tvAssert(place && place->row->block == block, "The layout keeps no such field in this block.");
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

uint32_t mppFieldPropertyNumber(int32_t layoutVersion, MPPField field) {
    return placeIn(layoutVersion, field, MPPFieldBlock::var).position;
}

std::vector<uint8_t> encodeMPPFieldPayload(int32_t layoutVersion, MPPField field,
                                           const MPPFieldValue& value) {
    const MPPFieldPlace place = placeIn(layoutVersion, field, MPPFieldBlock::var);
    std::vector<uint8_t> bytes(mppFieldSize(*place.row));
    if (const auto* text = std::get_if<std::u16string>(&value)) {
        bytes.resize(2 * (text->size() + 1));
    }
    encodeMPPField(*place.row, value, bytes);
    return bytes;
}
