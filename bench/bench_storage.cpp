// Opening a compound file and reading every stream, on the largest files of the corpus.
#include "BenchCorpus.h"
#include "MPPCommon/storage/SSLRoot.h"
#include "MPPCommon/storage/SSLStorage.h"
#include "MPPCommon/storage/SSLStream.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <filesystem>
#include <vector>

namespace {

namespace fs = std::filesystem;

constexpr size_t kFilesMeasured = 3;

// The largest MPP and MPT files of the corpus, largest first; empty when the corpus is absent.
const std::vector<fs::path>& measuredFiles() {
    static const std::vector<fs::path> files =
        largestCorpusFiles(kFilesMeasured, BenchFileKinds::plansAndTemplates);
    return files;
}

uint64_t readTree(SSLStorage& storage, std::vector<unsigned char>& buffer) {
    uint64_t total = 0;
    const int32_t count = storage.childCount();
    for (int32_t i = 0; i < count; ++i) {
        const std::string name = storage.childNameByIndex(i);
        if (storage.childTypeByIndex(i) == 0) {
            if (auto child = storage.childStorageWithName(name)) {
                total += readTree(*child, buffer);
            }
        } else if (auto stream = storage.childStreamWithName(name)) {
            while (stream->bytesAvailable() > 0) {
                int32_t read = stream->readBytes(static_cast<uint32_t>(buffer.size()), buffer.data());
                if (read <= 0) {
                    break;
                }
                total += static_cast<uint64_t>(read);
            }
        }
    }
    return total;
}

void BM_OpenAndReadAllStreams(benchmark::State& state) {
    const auto& files = measuredFiles();
    const auto index = static_cast<size_t>(state.range(0));
    if (index >= files.size()) {
        state.SkipWithError("corpus folder " TVMSP_CORPUS_DIR "/mpp is absent or holds too few files");
        return;
    }
    state.SetLabel(files[index].filename().string());
    std::vector<unsigned char> buffer(64 * 1024);
    uint64_t bytes = 0;
    for (auto _ : state) {
        SSLRoot root(files[index].string());
        std::unique_ptr<SSLStorage> storage = root.rootStorage();
        if (!storage) {
            state.SkipWithError("file does not open");
            return;
        }
        bytes += readTree(*storage, buffer);
    }
    state.SetBytesProcessed(static_cast<int64_t>(bytes));
}

BENCHMARK(BM_OpenAndReadAllStreams)->DenseRange(0, static_cast<int>(kFilesMeasured) - 1);

} // namespace

BENCHMARK_MAIN();
