#include "MPPCommon/storage/SSLStorage.h"

#include "MPPCommon/storage/SSL.h"
#include "MPPCommon/storage/SSLLibrary.h"
#include "MPPCommon/storage/SSLStream.h"

namespace {

bool isIndexIn(int32_t index, const std::vector<_StgInfo>& list) {
    return index >= 0 && static_cast<size_t>(index) < list.size();
}

} // namespace

SSLStorage::SSLStorage(_Storage* storage) : m_pStorage(storage) {}

std::unique_ptr<SSLStorage> SSLStorage::childStorageWithName(const std::string& name) {
    _Storage* child = nullptr;
    m_lastError = storageOpenStorage(m_pStorage, SSL::wstringFromNSString(name), &child);
    return m_lastError == SSL_OK ? std::make_unique<SSLStorage>(child) : nullptr;
}

std::unique_ptr<SSLStream> SSLStorage::childStreamWithName(const std::string& name) {
    _Stream* child = nullptr;
    m_lastError = storageOpenStream(m_pStorage, SSL::wstringFromNSString(name), &child);
    _StgInfo info;
    if (m_lastError != SSL_OK || (m_lastError = streamGetInfo(child, &info)) != SSL_OK) {
        return nullptr;
    }
    return std::make_unique<SSLStream>(child, std::move(info));
}

std::unique_ptr<SSLStorage> SSLStorage::createChildStorageWithName(const std::string& name) {
    _Storage* child = nullptr;
    m_lastError = storageCreateStorage(m_pStorage, SSL::wstringFromNSString(name), &child);
    return m_lastError == SSL_OK ? std::make_unique<SSLStorage>(child) : nullptr;
}

std::unique_ptr<SSLStream> SSLStorage::createChildStreamWithName(const std::string& name) {
    _Stream* child = nullptr;
    m_lastError = storageCreateStream(m_pStorage, SSL::wstringFromNSString(name), &child);
    if (m_lastError != SSL_OK) {
        return nullptr;
    }
    _StgInfo info;
    streamGetInfo(child, &info);
    return std::make_unique<SSLStream>(child, std::move(info));
}

std::optional<std::string> SSLStorage::storageName() {
    if (!m_pInfo) {
        _StgInfo info;
        m_lastError = storageGetInfo(m_pStorage, &info);
        if (m_lastError != SSL_OK) {
            return std::nullopt;
        }
        m_pInfo = std::move(info);
    }
    return SSL::stringWithWCharStr(m_pInfo->name);
}

int32_t SSLStorage::childCount() {
    // An empty list is not kept, so a storage without children is listed again each time.
    if (m_childrenCount <= 0) {
        m_lastError = storageGetChildren(m_pStorage, &m_paChildrenInfo);
        m_childrenCount = m_lastError == SSL_OK ? static_cast<int32_t>(m_paChildrenInfo.size()) : -1;
    }
    return m_childrenCount;
}

std::string SSLStorage::childNameByIndex(int32_t index) {
    if (m_childrenCount < 0) {
        childCount();
    }
    return isIndexIn(index, m_paChildrenInfo) ? SSL::stringWithWCharStr(m_paChildrenInfo[index].name) : "";
}

int32_t SSLStorage::childTypeByIndex(int32_t index) {
    if (m_childrenCount < 0) {
        childCount();
        return -1;
    }
    return isIndexIn(index, m_paChildrenInfo) ? m_paChildrenInfo[index].type : -1;
}
