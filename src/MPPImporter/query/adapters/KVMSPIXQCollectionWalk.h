#pragma once

#include "MPPImporter/query/frame/KVMSPIXQPredicate.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

// The objects of one collection of the project (tasks, resources, assignments or calendars) that a
// query's component selects. A "UID=n" predicate takes the fast path to one reader; any other
// predicate is tested on light filter readers of every valid UID, and the survivors are read again
// in full; without a predicate every valid UID gets a full reader.
class KVMSPIXQCollectionWalk {
public:
    using Objects = KVMSPIXQuery::Objects;

    // What the walk needs of a family: its collection reader's UIDs, its reader constructors and
    // the predicates of its single reader class.
    struct Family {
        std::function<const std::vector<int32_t>&()> uniqueIDs;
        std::function<bool(int32_t)> isValidUID;
        std::function<std::shared_ptr<KVMSPIXQuery>(int32_t)> newFullReader;
        std::function<std::shared_ptr<KVMSPIXQuery>(int32_t)> newFilterReader;
        std::function<KVMSPIXQPredicate(const std::optional<std::string>&, int32_t*)> uidPredicateWithString;
        std::function<KVMSPIXQPredicate(const std::optional<std::string>&)> predicateWithString;
        // The UIDs that a predicate selects, from an index of the collection: none where no index
        // answers the predicate, which is then tested on every UID.
        std::function<const std::vector<int32_t>*(const std::optional<std::string>&)> indexedUIDs{};
    };

    struct Result {
        Objects objects;
        // A "UID=n" predicate named a UID that the collection doesn't hold.
        bool invalidUID = false;
    };

    // The family of `Single` readers over `collection`, made with `Single(uid, collection)` in full
    // and with `newFilterReader` for filters.
    template <typename Single, typename Collection>
    static Family familyOf(Collection& collection,
                           std::unique_ptr<Single> (*newFilterReader)(int32_t, Collection&)) {
        return Family{
            [&collection]() -> const std::vector<int32_t>& { return collection.uniqueIDs(); },
            [&collection](int32_t uid) { return collection.isValidUID(uid); },
            [&collection](int32_t uid) { return std::make_shared<Single>(uid, collection); },
            [&collection, newFilterReader](int32_t uid) {
                return std::shared_ptr<KVMSPIXQuery>(newFilterReader(uid, collection));
            },
            [](const std::optional<std::string>& text, int32_t* uid) {
                return Single::uidPredicateWithString(text, uid);
            },
            [](const std::optional<std::string>& text) { return Single::predicateWithString(text); },
        };
    }

    static Result objectsOfFamily(const Family& family, const std::optional<std::string>& predicateText);

private:
    static Objects filteredObjects(const Family& family, const KVMSPIXQPredicate& predicate);
};
