#include "MPPCommon/storage/SSLLayout.h"
#include "MPPCommon/storage/SSLLibrary.h"

#include <algorithm>

using namespace ssllayout;

void headerDecode(const unsigned char* bytes, _Header* header) {
    std::copy(bytes + kHeaderSignature, bytes + kHeaderSignature + 8, header->signature);
    std::copy(bytes + kHeaderClassId, bytes + kHeaderClassId + 16, header->classId);
    header->minorVersion = loadLE16(bytes + kHeaderMinorVersion);
    header->majorVersion = loadLE16(bytes + kHeaderMajorVersion);
    header->byteOrder = loadLE16(bytes + kHeaderByteOrder);
    header->sectorShift = loadLE16(bytes + kHeaderSectorShift);
    header->miniSectorShift = loadLE16(bytes + kHeaderMiniSectorShift);
    header->reserved1 = loadLE32(bytes + kHeaderReserved1);
    header->reserved2 = loadLE16(bytes + kHeaderReserved2);
    header->directorySectorCount = loadLE32(bytes + kHeaderDirectorySectorCount);
    header->fatSectorCount = loadLE32(bytes + kHeaderFatSectorCount);
    header->firstDirectorySector = loadLE32(bytes + kHeaderFirstDirectorySector);
    header->transactionSignature = loadLE32(bytes + kHeaderTransactionSignature);
    header->miniStreamCutoff = loadLE32(bytes + kHeaderMiniStreamCutoff);
    header->firstMiniFatSector = loadLE32(bytes + kHeaderFirstMiniFatSector);
    header->miniFatSectorCount = loadLE32(bytes + kHeaderMiniFatSectorCount);
    header->firstDifatSector = loadLE32(bytes + kHeaderFirstDifatSector);
    header->difatSectorCount = loadLE32(bytes + kHeaderDifatSectorCount);
}

void headerEncode(const _Header& header, unsigned char* bytes) {
    std::copy(header.signature, header.signature + 8, bytes + kHeaderSignature);
    std::copy(header.classId, header.classId + 16, bytes + kHeaderClassId);
    storeLE16(bytes + kHeaderMinorVersion, header.minorVersion);
    storeLE16(bytes + kHeaderMajorVersion, header.majorVersion);
    storeLE16(bytes + kHeaderByteOrder, header.byteOrder);
    storeLE16(bytes + kHeaderSectorShift, header.sectorShift);
    storeLE16(bytes + kHeaderMiniSectorShift, header.miniSectorShift);
    storeLE32(bytes + kHeaderReserved1, header.reserved1);
    storeLE16(bytes + kHeaderReserved2, header.reserved2);
    storeLE32(bytes + kHeaderDirectorySectorCount, header.directorySectorCount);
    storeLE32(bytes + kHeaderFatSectorCount, header.fatSectorCount);
    storeLE32(bytes + kHeaderFirstDirectorySector, header.firstDirectorySector);
    storeLE32(bytes + kHeaderTransactionSignature, header.transactionSignature);
    storeLE32(bytes + kHeaderMiniStreamCutoff, header.miniStreamCutoff);
    storeLE32(bytes + kHeaderFirstMiniFatSector, header.firstMiniFatSector);
    storeLE32(bytes + kHeaderMiniFatSectorCount, header.miniFatSectorCount);
    storeLE32(bytes + kHeaderFirstDifatSector, header.firstDifatSector);
    storeLE32(bytes + kHeaderDifatSectorCount, header.difatSectorCount);
}

_Header defaultHeader() {
    _Header header;
    std::copy(kSignature, kSignature + 8, header.signature);
    header.minorVersion = kDefaultMinorVersion;
    header.majorVersion = kDefaultMajorVersion;
    header.byteOrder = kByteOrderMark;
    header.sectorShift = kDefaultSectorShift;
    header.miniSectorShift = kDefaultMiniSectorShift;
    header.firstDirectorySector = kFreeSector;
    header.transactionSignature = 1;
    header.miniStreamCutoff = kDefaultMiniStreamCutoff;
    header.firstMiniFatSector = kFreeSector;
    header.firstDifatSector = kFreeSector;
    return header;
}
