#include "MPPImporter/query/adapters/KVMSPIXQCollectionWalk.h"

#include "MPPImporter/readers/KVMSPISingleObjectReaderBase.h"

KVMSPIXQCollectionWalk::Result
KVMSPIXQCollectionWalk::objectsOfFamily(const Family& family,
                                        const std::optional<std::string>& predicateText) {
    if (predicateText) {
        int32_t uid = -1;
        if (family.uidPredicateWithString(predicateText, &uid)) {
            if (!family.isValidUID(uid)) {
                return {{}, true};
            }
            return {{family.newFullReader(uid)}, false};
        }
    }
    if (const std::vector<int32_t>* uids = family.indexedUIDs ? family.indexedUIDs(predicateText) : nullptr) {
        Objects objects;
        for (const int32_t uid : *uids) {
            objects.push_back(family.newFullReader(uid));
        }
        return {std::move(objects), false};
    }
    const KVMSPIXQPredicate predicate = family.predicateWithString(predicateText);
    if (predicate) {
        return {filteredObjects(family, predicate), false};
    }
    Objects objects;
    for (const int32_t uid : family.uniqueIDs()) {
        if (family.isValidUID(uid)) {
            objects.push_back(family.newFullReader(uid));
        }
    }
    return {std::move(objects), false};
}

KVMSPIXQCollectionWalk::Objects KVMSPIXQCollectionWalk::filteredObjects(const Family& family,
                                                                        const KVMSPIXQPredicate& predicate) {
    Objects candidates;
    for (const int32_t uid : family.uniqueIDs()) {
        if (family.isValidUID(uid)) {
            std::shared_ptr<KVMSPIXQuery> candidate = family.newFilterReader(uid);
            if (predicate(*candidate)) {
                candidates.push_back(std::move(candidate));
            }
        }
    }
    // Filter readers may have skipped what a full reader reads, so the survivors are read again.
    Objects objects;
    objects.reserve(candidates.size());
    for (const std::shared_ptr<KVMSPIXQuery>& candidate : candidates) {
        objects.push_back(
            family.newFullReader(dynamic_cast<KVMSPISingleObjectReaderBase&>(*candidate).uid()));
    }
    return objects;
}
