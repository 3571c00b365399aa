#pragma once

#include <memory>
#include <string>
#include <variant>

// A reference to a model object that a mapper may only name while mapping: it holds nothing, the
// string key of the object (a UID) or, once post-processing has resolved the key, the object.
template <class T>
class MPPDeferred {
public:
    MPPDeferred() = default;

    bool isSet() const { return !std::holds_alternative<std::monostate>(_state); }
    bool isKey() const { return std::holds_alternative<std::string>(_state); }
    // The key, or null when the field holds no key.
    const std::string* key() const { return std::get_if<std::string>(&_state); }
    // The object, or null while the field is empty or holds a key.
    T* object() const {
        const auto* object = std::get_if<std::shared_ptr<T>>(&_state);
        return object ? object->get() : nullptr;
    }
    std::shared_ptr<T> sharedObject() const {
        const auto* object = std::get_if<std::shared_ptr<T>>(&_state);
        return object ? *object : nullptr;
    }

    void setKey(std::string key) { _state = std::move(key); }
    // A null object empties the field.
    void setObject(std::shared_ptr<T> object) {
        if (object) {
            _state = std::move(object);
        } else {
            clear();
        }
    }
    void clear() { _state = std::monostate{}; }

private:
    std::variant<std::monostate, std::string, std::shared_ptr<T>> _state;
};
