#include "tool/inspect/ListCommand.h"

#include "MPPCommon/storage/SSLStorage.h"
#include "MPPCommon/storage/SSLTypes.h"
#include "MPPCommon/support/Log.h"
#include "tool/inspect/EntryPath.h"
#include "tool/inspect/InspectedFile.h"

#include <zlib.h>

void ListCommand::runOnStorage(const std::vector<std::string>& arguments, std::ostream& out) {
    InspectedFile file(arguments[0]);
    listStorage(file.rootStorage(), "", out);
}

void ListCommand::listStorage(SSLStorage& storage, const std::string& path, std::ostream& out) {
    const int32_t count = InspectedFile::childCount(storage, path);
    for (int32_t i = 0; i < count; ++i) {
        const std::string name = storage.childNameByIndex(i);
        const std::string childPath = EntryPath::join(path, name);
        if (storage.childTypeByIndex(i) == kSSLInfoTypeStorage) {
            out << "D\t0\t-\t" << childPath << "\n";
            std::unique_ptr<SSLStorage> child = InspectedFile::childStorage(storage, name, childPath);
            listStorage(*child, childPath, out);
            continue;
        }
        std::unique_ptr<SSLStream> stream = InspectedFile::childStream(storage, name, childPath);
        uint64_t size = 0;
        uLong crc = crc32(0, nullptr, 0);
        InspectedFile::readChunks(*stream, childPath, [&](const unsigned char* bytes, size_t n) {
            crc = crc32(crc, bytes, static_cast<uInt>(n));
            size += n;
        });
        out << "S\t" << size << "\t" << stringWithFormat("%08lx", crc) << "\t" << childPath << "\n";
    }
}
