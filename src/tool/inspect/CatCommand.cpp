#include "tool/inspect/CatCommand.h"

#include "tool/inspect/InspectedFile.h"

void CatCommand::runOnStorage(const std::vector<std::string>& arguments, std::ostream& out) {
    InspectedFile file(arguments[0]);
    std::unique_ptr<SSLStream> stream = file.streamAtPath(arguments[1]);
    InspectedFile::readChunks(*stream, arguments[1], [&](const unsigned char* bytes, size_t count) {
        out.write(reinterpret_cast<const char*>(bytes), static_cast<std::streamsize>(count));
    });
}
