// Opens the object storages of the largest corpus files and reads every fixed item (meta and data)
// and every variable block through the data readers.

#include "BenchCorpus.h"
#include "MPPCommon/storage/SSLRoot.h"
#include "MPPCommon/storage/SSLStorage.h"
#include "MPPCommon/support/Log.h"
#include "MPPImporter/file/KVMPPFixedDataReader.h"
#include "MPPImporter/file/KVMPPVarDataReader.h"
#include "MPPImporter/file/KVMSPIMPPDataDirectoryReader.h"
#include "MPPImporter/file/KVMSPIMPPPropertyList.h"
#include "MPPImporter/file/KVMSPIMPPVersionReader.h"
#include "MPPImporter/format/MPPFormatConstants.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <filesystem>
#include <vector>

namespace {

constexpr size_t kLargestFiles = 3;
// Variable blocks are looked up under every property number that the version tables use.
constexpr int32_t kFirstProperty = -128;
constexpr int32_t kLastProperty = 1024;

// The largest MPP files of the corpus that identify as a readable format.
std::vector<std::filesystem::path> largestReadableFiles() {
    return largestCorpusFiles(kLargestFiles, BenchFileKinds::plans, [](const std::filesystem::path& file) {
        auto root = SSLRoot::rootWithFilename(file.string());
        TVError error;
        return root->lastError() == 0 &&
               KVMSPIMPPVersionReader(file.string()).getMppReader(*root, true, &error) != nullptr;
    });
}

int64_t readFixedItems(KVMPPFixedDataReader& reader) {
    int64_t bytes = 0;
    std::vector<uint8_t> buffer(static_cast<size_t>(reader.metaStreamItemSize()));
    for (int32_t uid : reader.uniqueIDs()) {
        MPPDataItemInfo info;
        reader.dataItemInfo(&info, uid);
        reader.readMetaByteArray(buffer.data(), info.metaSize - 1, uid, 0);
        buffer.resize(std::max<size_t>(buffer.size(), static_cast<size_t>(std::max(info.dataSize, 0))));
        reader.readDataByteArray(buffer.data(), info.dataSize, uid, 0);
        bytes += info.metaSize + info.dataSize;
    }
    return bytes;
}

int64_t readVarBlocks(KVMPPVarDataReader& reader) {
    int64_t bytes = 0;
    std::vector<uint8_t> buffer;
    for (int32_t uid : reader.uidArray()) {
        for (int32_t property = kFirstProperty; property < kLastProperty; ++property) {
            int32_t size = 0;
            if (reader.getDataSize(size, uid, property)) {
                buffer.resize(std::max(buffer.size(), static_cast<size_t>(size)));
                reader.readDataByteArray(buffer.data(), size, uid, property, 0);
                bytes += size;
            }
        }
    }
    return bytes;
}

void BM_ReadAllFixedAndVarItems(benchmark::State& state, const std::filesystem::path& file) {
    tvSetLogSink([](const std::string&) {});
    int64_t bytes = 0;
    for (auto _ : state) {
        auto root = SSLRoot::rootWithFilename(file.string());
        TVError error;
        auto fileReader = KVMSPIMPPVersionReader(file.string()).getMppReader(*root, true, &error);
        auto dataDirectory = fileReader->rootStorage().childStorageWithName(
            fileReader->MPPPropertyList().ole2DataDirectoryName());
        for (const char* kind : {kTaskStorageName, kResourceStorageName, kAssignmentStorageName,
                                 kCalendarStorageName, kConstraintStorageName, kOutlCodeStorageName}) {
            auto storage = dataDirectory ? dataDirectory->childStorageWithName(kind) : nullptr;
            if (!storage) {
                continue;
            }
            KVMSPIMPPDataDirectoryReader reader(std::move(storage), kind, fileReader.get());
            if (auto* fixed = reader.fixedDataReader()) {
                bytes += readFixedItems(*fixed);
            }
            if (auto* var = reader.varDataReader()) {
                bytes += readVarBlocks(*var);
            }
        }
    }
    state.SetBytesProcessed(bytes);
    tvSetLogSink({});
}

const bool registered = [] {
    for (const auto& file : largestReadableFiles()) {
        benchmark::RegisterBenchmark(("ReadAllFixedAndVarItems/" + file.filename().string()).c_str(),
                                     BM_ReadAllFixedAndVarItems, file);
    }
    return true;
}();

} // namespace

BENCHMARK_MAIN();
