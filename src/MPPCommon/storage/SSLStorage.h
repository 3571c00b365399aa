#pragma once

#include "MPPCommon/storage/SSLObject.h"
#include "MPPCommon/storage/SSLTypes.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

struct _Storage;
class SSLStream;

// A view on one storage (directory) of a compound file. The record under it belongs to the root,
// which must outlive the view. Names are UTF-8.
class SSLStorage : public SSLObject {
public:
    explicit SSLStorage(_Storage* storage);

    // Child views, or none with the reason in lastError().
    std::unique_ptr<SSLStorage> childStorageWithName(const std::string& name);
    std::unique_ptr<SSLStream> childStreamWithName(const std::string& name);
    std::unique_ptr<SSLStorage> createChildStorageWithName(const std::string& name);
    std::unique_ptr<SSLStream> createChildStreamWithName(const std::string& name);

    // The storage's own name, or none on error.
    std::optional<std::string> storageName();

    // Children in the library's order (pre-order of the sibling tree). childCount() lists them on
    // first use and gives -1 on error; the index operations expect it to have been called first:
    // childTypeByIndex() before that gives -1 once. Out-of-range indexes give "" and -1.
    int32_t childCount();
    std::string childNameByIndex(int32_t index);
    int32_t childTypeByIndex(int32_t index);

private:
    _Storage* m_pStorage;
    std::optional<_StgInfo> m_pInfo;
    std::vector<_StgInfo> m_paChildrenInfo;
    int32_t m_childrenCount = -1;
};
