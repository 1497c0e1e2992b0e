// What all interfaces share: an identifier, the three reference counting operations, and a smart
// pointer.
//
// An interface is an abstract class whose virtual functions stand in table order. Every operation
// is noexcept, returns a Status and gives its results through reference parameters, which are
// cleared on entry. Interfaces have no virtual destructor: the table holds the operations and
// nothing else.
#pragma once

#include "vorel/Status.h"
#include "vorel/Types.h"

#include <array>
#include <utility>

namespace vorel {

// Identifier of an interface or device class, in the usual grouping 8-4-4-4-12 hexadecimal digits.
struct Guid {
    std::uint32_t Data1 = 0;
    std::uint16_t Data2 = 0;
    std::uint16_t Data3 = 0;
    std::array<std::uint8_t, 8> Data4{};

    friend bool operator==(const Guid&, const Guid&) = default;
};

class IInterface {
public:
    // Gives the object's interface with this identifier as a pointer to exactly that interface
    // class, with one reference added; null and StatusNoInterface when the object does not have it.
    virtual Status QueryInterface(const Guid& id, void*& object) noexcept = 0;
    // Both give the number of references left. Objects that are owned rather than counted give 1
    // for ever.
    virtual std::int32_t AddRef() noexcept = 0;
    virtual std::int32_t Release() noexcept = 0;

protected:
    IInterface() = default;
    IInterface(const IInterface&) = default;
    IInterface& operator=(const IInterface&) = default;
    ~IInterface() = default;
};

// Asks `source` (may be null) for the interface T. The caller owns one reference of a result that
// is not null.
template<class T>
T* QueryFor(IInterface* source) noexcept {
    void* object = nullptr;
    if (source == nullptr || Failed(source->QueryInterface(T::Id, object))) {
        return nullptr;
    }
    return static_cast<T*>(object);
}

// Holds one reference of a counted interface. Out parameters are taken with Receive().
template<class T>
class Ref {
public:
    Ref() noexcept = default;
    // Shares: adds a reference of its own.
    explicit Ref(T* object) noexcept : Object(object) {
        if (Object != nullptr) {
            Object->AddRef();
        }
    }
    Ref(const Ref& other) noexcept : Ref(other.Object) {}
    Ref(Ref&& other) noexcept : Object(std::exchange(other.Object, nullptr)) {}
    Ref& operator=(Ref other) noexcept {
        std::swap(Object, other.Object);
        return *this;
    }
    ~Ref() { Reset(); }

    // Takes over a reference that the caller already owns.
    static Ref Adopt(T* object) noexcept {
        Ref result;
        result.Object = object;
        return result;
    }

    T* Get() const noexcept { return Object; }
    T* operator->() const noexcept { return Object; }
    T& operator*() const noexcept { return *Object; }
    explicit operator bool() const noexcept { return Object != nullptr; }

    // Empties the pointer and gives the place where an operation stores the reference that it hands
    // out.
    T*& Receive() noexcept {
        Reset();
        return Object;
    }
    // Gives the reference away: the caller owns it now.
    T* Detach() noexcept { return std::exchange(Object, nullptr); }

    void Reset() noexcept {
        if (T* old = std::exchange(Object, nullptr)) {
            old->Release();
        }
    }

private:
    T* Object = nullptr;
};

} // namespace vorel
