#include "MPPCommon/shared/MSPCAtomicWrite.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

bool writeAll(int descriptor, const std::vector<unsigned char>& data) {
    size_t written = 0;
    while (written < data.size()) {
        const ssize_t count = write(descriptor, data.data() + written, data.size() - written);
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0) {
            return false;
        }
        written += static_cast<size_t>(count);
    }
    return true;
}

// The permissions a newly created file gets under the process's umask; the temporary file starts
// private.
mode_t createdFileMode() {
    const mode_t mask = umask(0);
    umask(mask);
    return 0666 & ~mask;
}

} // namespace

bool writeDataAtomically(const std::string& path, const std::vector<unsigned char>& data) {
    if (path.empty() || path.find('\0') != std::string::npos) {
        return false;
    }
    std::string temporary = path + ".XXXXXX";
    const int descriptor = mkstemp(temporary.data());
    if (descriptor < 0) {
        return false;
    }
    const bool written = writeAll(descriptor, data) && fchmod(descriptor, createdFileMode()) == 0;
    const bool closed = close(descriptor) == 0;
    if (!written || !closed || rename(temporary.c_str(), path.c_str()) != 0) {
        unlink(temporary.c_str());
        return false;
    }
    return true;
}
