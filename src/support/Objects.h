// Base classes for objects that cross a boundary.
#pragma once

#include "vorel/Interface.h"

#include <atomic>

namespace vorel {

// Gives `self` as the first of the listed interfaces that has this identifier.
template<class... Interfaces, class Object>
Status QueryOneOf(Object* self, const Guid& id, void*& object) noexcept {
    object = nullptr;
    ((object == nullptr && id == Interfaces::Id
          ? static_cast<void>(object = static_cast<Interfaces*>(self))
          : static_cast<void>(0)),
     ...);
    if (object == nullptr) {
        return StatusNoInterface;
    }
    self->AddRef();
    return StatusOk;
}

// An object whose interfaces are counted by nobody: its owner frees it (a std::unique_ptr),
// interfaces to it are plain pointers. The class lists all interfaces it has.
template<class... Interfaces>
class TNonRefCountedInterfacedObject : public Interfaces... {
public:
    TNonRefCountedInterfacedObject() = default;
    TNonRefCountedInterfacedObject(const TNonRefCountedInterfacedObject&) = delete;
    TNonRefCountedInterfacedObject& operator=(const TNonRefCountedInterfacedObject&) = delete;
    virtual ~TNonRefCountedInterfacedObject() = default;

    Status QueryInterface(const Guid& id, void*& object) noexcept override {
        return QueryOneOf<Interfaces...>(this, id, object);
    }
    std::int32_t AddRef() noexcept override { return 1; }
    std::int32_t Release() noexcept override { return 1; }
};

// An object that is handed over for good: it starts with no reference and goes with its last one.
template<class... Interfaces>
class TInterfacedObject : public Interfaces... {
public:
    TInterfacedObject() = default;
    TInterfacedObject(const TInterfacedObject&) = delete;
    TInterfacedObject& operator=(const TInterfacedObject&) = delete;
    virtual ~TInterfacedObject() = default;

    Status QueryInterface(const Guid& id, void*& object) noexcept override {
        return QueryOneOf<Interfaces...>(this, id, object);
    }
    std::int32_t AddRef() noexcept final { return ++References; }
    std::int32_t Release() noexcept final {
        const std::int32_t left = --References;
        if (left == 0) {
            delete this;
        }
        return left;
    }

private:
    std::atomic<std::int32_t> References{0};
};

} // namespace vorel
