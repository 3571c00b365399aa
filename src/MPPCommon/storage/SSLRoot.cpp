#include "MPPCommon/storage/SSLRoot.h"

#include "MPPCommon/storage/SSLLibrary.h"
#include "MPPCommon/storage/SSLStorage.h"

SSLRoot::SSLRoot(const std::string& filename) {
    m_lastError = rootOpen(filename, kSSLModeRead, &m_pRoot);
}

SSLRoot::SSLRoot(std::unique_ptr<_RootStorage> root, int32_t result) : m_pRoot(std::move(root)) {
    m_lastError = result;
}

std::unique_ptr<SSLRoot> SSLRoot::rootWithFilename(const std::string& filename) {
    return std::make_unique<SSLRoot>(filename);
}

std::unique_ptr<SSLRoot> SSLRoot::rootWithBytes(std::vector<unsigned char> bytes) {
    std::unique_ptr<_RootStorage> root;
    int32_t result = rootOpenBytes(std::move(bytes), kSSLModeRead, &root);
    return std::unique_ptr<SSLRoot>(new SSLRoot(std::move(root), result));
}

SSLRoot::SSLRoot() {
    m_lastError = rootCreate(kSSLModeWrite, &m_pRoot);
}

std::unique_ptr<SSLRoot> SSLRoot::forWritingToFile(const std::string& filename) {
    auto root = std::make_unique<SSLRoot>();
    if (!root->m_pRoot) {
        return nullptr;
    }
    root->startWritingToFile(filename);
    return root;
}

void SSLRoot::startWritingToFile(const std::string& filename) {
    m_lastError = rootAttachFile(filename, kSSLModeWrite, m_pRoot.get());
}

SSLRoot::~SSLRoot() {
    if (m_pRoot) {
        rootClose(&m_pRoot);
    }
}

std::unique_ptr<SSLStorage> SSLRoot::rootStorage() {
    _Storage* storage = nullptr;
    m_lastError = rootGetStorage(m_pRoot.get(), &storage);
    return m_lastError == SSL_OK ? std::make_unique<SSLStorage>(storage) : nullptr;
}

uint32_t SSLRoot::sectorSize() {
    uint32_t size = 0;
    rootGetSectorSize(m_pRoot.get(), &size);
    return size;
}
