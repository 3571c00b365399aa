// Feeds arbitrary bytes as one property stream to the property reader and reads every indexed entry
// with every typed read. Malformed property sets may raise the internal-inconsistency exception;
// nothing else may happen.
#include "MPPCommon/storage/SSLRoot.h"
#include "MPPCommon/storage/SSLStorage.h"
#include "MPPCommon/storage/SSLStream.h"
#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVException.h"
#include "MPPImporter/file/KVMSPIPropsReader.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <unistd.h>

namespace {

// The compound file that carries each input; it is unlinked as soon as it is open again.
const std::string& scratchPath() {
    static const std::string path =
        (std::filesystem::temp_directory_path() / ("fuzz_props-" + std::to_string(getpid()) + ".cfb"))
            .string();
    return path;
}

void readEverything(KVMSPIPropsReader& reader, bool customProp) {
    for (int32_t number : reader.propertyNumbers(customProp)) {
        int8_t byte;
        uint8_t ubyte;
        int16_t shortValue;
        uint16_t ushortValue;
        int32_t intValue;
        uint32_t uintValue;
        float floatValue;
        double doubleValue;
        uint8_t block[64];
        std::optional<TVDate> date;
        std::string text;
        reader.readPropertyByte(byte, number, customProp);
        reader.readPropertyUByte(ubyte, number, customProp);
        reader.readPropertyShort(shortValue, number, customProp);
        reader.readPropertyUShort(ushortValue, number, customProp);
        reader.readPropertyInt(intValue, number, customProp);
        reader.readPropertyUInt(uintValue, number, customProp);
        reader.readPropertyFloat(floatValue, number, customProp);
        reader.readPropertyDouble(doubleValue, number, customProp);
        reader.readPropertyByteArray(block, sizeof block, number, customProp);
        reader.readPropertyTimestamp(date, number, customProp);
        reader.readPropertyUTF8(text, number, customProp);
        reader.readPropertyUnicode(text, number, customProp);
        reader.readPropertyLPWSTR(text, number, customProp);
        reader.readPropertyLPSTR(text, number, customProp, 1252);
        reader.readPropertyLPSTR(text, number, customProp, static_cast<int16_t>(65001));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const bool quiet = (tvSetLogSink([](const std::string&) {}), true);
    (void)quiet;
    {
        auto writer = SSLRoot::forWritingToFile(scratchPath());
        auto storage = writer ? writer->rootStorage() : nullptr;
        auto stream = storage ? storage->createChildStreamWithName("Props14") : nullptr;
        if (!stream) {
            return 0;
        }
        stream->writeBuffer(data, static_cast<int32_t>(size));
    }
    SSLRoot root(scratchPath());
    std::error_code ignored;
    std::filesystem::remove(scratchPath(), ignored);
    auto storage = root.rootStorage();
    auto stream = storage ? storage->childStreamWithName("Props14") : nullptr;
    if (!stream) {
        return 0;
    }
    try {
        KVMSPIPropsReader reader(std::move(stream));
        readEverything(reader, false);
        readEverything(reader, true);
    } catch (const TVException& e) {
        if (e.name() != kInternalInconsistencyException) {
            throw;
        }
    }
    return 0;
}
