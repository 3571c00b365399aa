// Feeds arbitrary bytes to the batch list reader as the contents of a list file: it must end in a
// list or in FileNotFoundException, never a crash, and every entry it keeps must be a non-empty,
// non-comment piece of the input without a line end.
#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVException.h"
#include "tool/frontend/BatchListReader.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <unistd.h>

namespace {

// A temporary file for the list, made once and removed at exit. The name lives in a plain array so
// that it outlasts every destructor that runs at exit.
const char* listPath() {
    static char path[] = "/tmp/fuzz_batchlist-XXXXXX";
    static const bool made = [] {
        int fd = mkstemp(path);
        if (fd < 0) {
            std::abort();
        }
        close(fd);
        std::atexit([] { std::remove(path); });
        tvSetLogSink([](const std::string&) {});
        return true;
    }();
    (void)made;
    return path;
}

bool holdsLineEnd(const std::string& entry) {
    for (const char* lineEnd : {"\n", "\r", "\v", "\f", "\xC2\x85", "\xE2\x80\xA8", "\xE2\x80\xA9"}) {
        if (entry.find(lineEnd) != std::string::npos) {
            return true;
        }
    }
    return false;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    FILE* file = std::fopen(listPath(), "wb");
    if (file == nullptr || std::fwrite(data, 1, size, file) != size || std::fclose(file) != 0) {
        std::abort();
    }
    try {
        size_t total = 0;
        for (const std::string& entry : BatchListReader::readInputList(listPath())) {
            if (BatchListReader::isSkippedEntry(entry) || holdsLineEnd(entry)) {
                std::abort();
            }
            total += entry.size();
        }
        if (total > size) {
            std::abort();
        }
    } catch (const TVException&) {
    }
    return 0;
}
