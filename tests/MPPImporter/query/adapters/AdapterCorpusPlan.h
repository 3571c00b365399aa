#pragma once

#include "MPPCommon/storage/SSLRoot.h"
#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVException.h"
#include "MPPImporter/file/KVMSPIMPPReader.h"
#include "MPPImporter/file/KVMSPIMPPVersionReader.h"
#include "MPPImporter/query/adapters/KVMSPIXQAdapters.h"
#include "MPPImporter/readers/KVMSPIMPPProjectReader.h"
#include "support/TestSupport.h"

#include <filesystem>
#include <memory>

// One corpus plan opened with the whole reader tree and the query adapters installed; no project
// reader when the readers refuse the file, as the import pipeline would.
class AdapterCorpusPlan {
public:
    explicit AdapterCorpusPlan(const std::filesystem::path& path) : m_root(path.string()) {
        KVMSPIXQAdapters::install();
        if (m_root.lastError() != 0) {
            return;
        }
        // The readers log their progress; these tests don't look at it.
        tvSetLogSink([](const std::string&) {});
        try {
            KVMSPIMPPVersionReader versionReader(path.string(),
                                                 KVMSPIMPPProjectReader::projectReaderFactory());
            m_reader = versionReader.getMppReader(m_root, true, nullptr);
        } catch (const TVException&) {
            m_reader.reset();
        }
        tvSetLogSink({});
    }
    // A file of the corpus by name.
    static AdapterCorpusPlan named(const std::string& name) {
        return AdapterCorpusPlan(testsupport::corpusDir() / "mpp" / name);
    }

    KVMSPIMPPProjectReader* project() const {
        return m_reader ? dynamic_cast<KVMSPIMPPProjectReader*>(m_reader->projectReader()) : nullptr;
    }

private:
    SSLRoot m_root;
    std::unique_ptr<KVMSPIMPPReader> m_reader;
};
