#pragma once

#include "MPPCommon/support/Log.h"
#include "MPPImporter/query/frame/KVMSPIXQAdapter.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

// Base of the adapters of one object reader (a task, a resource, a link ...), which a mapper asks
// for leaves by bare element name ("Name", "UID", "Start") and for a few collections of one
// component ("PredecessorLink"). A subclass hands over a table from each name to what answers it,
// by kind of answer; this class looks the query up and otherwise leaves it to the base, which
// answers it as not ported.
//
// A leaf whose reader operation fails answers none, 0, 0.0 or false, with the reader's error in the
// out-argument.
template <typename Reader>
class KVMSPIXQLeafAdapter : public KVMSPIXQAdapter {
public:
    template <typename Answer>
    using Leaf = std::function<Answer(const Reader&, TVError*)>;
    template <typename Answer>
    using LeafMap = std::map<std::string, Leaf<Answer>, std::less<>>;

    // What the adapter answers, by name.
    struct Leaves {
        LeafMap<std::optional<std::string>> strings{};
        LeafMap<int64_t> integers{};
        LeafMap<double> doubles{};
        LeafMap<bool> booleans{};
        // Collections asked as a single component without predicate.
        LeafMap<Objects> collections{};
    };

    // A reader operation of the form `bool name(Value& value, TVError* error) const`.
    template <typename Value>
    using Operation = bool (Reader::*)(Value&, TVError*) const;
    // A plain accessor of the reader.
    template <typename Value>
    using Accessor = Value (Reader::*)() const;

    // The text as the reader gives it.
    static Leaf<std::optional<std::string>> stringLeaf(Operation<std::string> operation) {
        return stringLeaf(operation, [](const std::string& text) { return text; });
    }
    // The value rendered by `render` (to a string, or to none).
    template <typename Value, typename Render>
    static Leaf<std::optional<std::string>> stringLeaf(Operation<Value> operation, Render render) {
        return [operation, render](const Reader& reader, TVError* error) -> std::optional<std::string> {
            Value value{};
            if (!(reader.*operation)(value, error)) {
                return std::nullopt;
            }
            return render(value);
        };
    }
    template <typename Value, typename Render>
    static Leaf<std::optional<std::string>> stringLeaf(Accessor<Value> accessor, Render render) {
        return [accessor, render](const Reader& reader, TVError*) -> std::optional<std::string> {
            return render((reader.*accessor)());
        };
    }
    // Integers of any width, sign-extended.
    template <typename Value>
    static Leaf<int64_t> integerLeaf(Operation<Value> operation) {
        return [operation](const Reader& reader, TVError* error) -> int64_t {
            Value value{};
            return (reader.*operation)(value, error) ? static_cast<int64_t>(value) : 0;
        };
    }
    template <typename Value>
    static Leaf<int64_t> integerLeaf(Accessor<Value> accessor) {
        return [accessor](const Reader& reader, TVError*) -> int64_t { return (reader.*accessor)(); };
    }
    // The value over `divisor`, integers converted.
    template <typename Value>
    static Leaf<double> doubleLeaf(Operation<Value> operation, double divisor = 1.0) {
        return [operation, divisor](const Reader& reader, TVError* error) -> double {
            Value value{};
            return (reader.*operation)(value, error) ? static_cast<double>(value) / divisor : 0.0;
        };
    }
    // True for a value other than 0, so that a masked flag byte counts as set.
    template <typename Value>
    static Leaf<bool> booleanLeaf(Operation<Value> operation) {
        return [operation](const Reader& reader, TVError* error) {
            Value value{};
            return (reader.*operation)(value, error) && value != Value{};
        };
    }
    // Objects that the reader shares.
    template <typename Object>
    static Leaf<Objects> collectionLeaf(const std::vector<std::shared_ptr<Object>>& (Reader::*accessor)()
                                            const) {
        return [accessor](const Reader& reader, TVError*) {
            const std::vector<std::shared_ptr<Object>>& objects = (reader.*accessor)();
            return Objects(objects.begin(), objects.end());
        };
    }
    // Objects that the reader makes for the answer, which then owns them.
    template <typename Object>
    static Leaf<Objects> collectionLeaf(Operation<std::vector<std::unique_ptr<Object>>> operation) {
        return [operation](const Reader& reader, TVError* error) {
            std::vector<std::unique_ptr<Object>> made;
            Objects objects;
            if ((reader.*operation)(made, error)) {
                for (std::unique_ptr<Object>& object : made) {
                    objects.push_back(std::move(object));
                }
            }
            return objects;
        };
    }

    // Integers in a string answer.
    static std::string decimalText(int32_t value) { return stringWithFormat("%d", value); }
    // Amounts of money in a string answer.
    static std::string moneyText(double value) { return stringWithFormat("%0.2f", value); }

    using KVMSPIXQAdapter::boolValueForXQuery;
    using KVMSPIXQAdapter::floatValueForXQuery;
    using KVMSPIXQAdapter::intValueForXQuery;
    using KVMSPIXQAdapter::objectsForXQuery;
    using KVMSPIXQAdapter::stringValueForXQuery;

    // A collection of the table; a predicate on it or a further component is an assertion failure.
    Objects objectsForXQuery(const std::string& xquery, TVError* error) override {
        MSPXQComponents components;
        parseXQuery(xquery, components);
        if (components.empty()) {
            return KVMSPIXQAdapter::objectsForXQuery(xquery, error);
        }
        const auto found = m_leaves.collections.find(components.front().name);
        if (found == m_leaves.collections.end()) {
            return KVMSPIXQAdapter::objectsForXQuery(xquery, error);
        }
        assertNoPredicate(components.front());
        assertSingleComponent(components, xquery);
        return found->second(m_typedReader, error);
    }
    std::optional<std::string> stringValueForXQuery(const std::string& xquery, TVError* error) override {
        const auto found = m_leaves.strings.find(xquery);
        return found != m_leaves.strings.end() ? found->second(m_typedReader, error)
                                               : KVMSPIXQAdapter::stringValueForXQuery(xquery, error);
    }
    int64_t intValueForXQuery(const std::string& xquery, TVError* error) override {
        const auto found = m_leaves.integers.find(xquery);
        return found != m_leaves.integers.end() ? found->second(m_typedReader, error)
                                                : KVMSPIXQAdapter::intValueForXQuery(xquery, error);
    }
    double floatValueForXQuery(const std::string& xquery, TVError* error) override {
        const auto found = m_leaves.doubles.find(xquery);
        return found != m_leaves.doubles.end() ? found->second(m_typedReader, error)
                                               : KVMSPIXQAdapter::floatValueForXQuery(xquery, error);
    }
    bool boolValueForXQuery(const std::string& xquery, TVError* error) override {
        const auto found = m_leaves.booleans.find(xquery);
        return found != m_leaves.booleans.end() ? found->second(m_typedReader, error)
                                                : KVMSPIXQAdapter::boolValueForXQuery(xquery, error);
    }

protected:
    // Raises the internal-inconsistency exception with `incorrectReaderFormat` (one "%s" for the class
    // name) when the reader isn't a `Reader`. The table must outlive the adapter.
    KVMSPIXQLeafAdapter(KVMSPIXQResponder& reader, const char* incorrectReaderFormat, const Leaves& leaves)
        : KVMSPIXQAdapter(reader), m_typedReader(readerOfClass<Reader>(reader, incorrectReaderFormat)),
          m_leaves(leaves) {}

private:
    const Reader& m_typedReader;
    const Leaves& m_leaves;
};
