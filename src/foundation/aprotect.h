#pragma once

#include "foundation/amutex.h"

#include <memory>

// A value with a mutex of its own, reached only through an AProtectAccess. Copies are the same
// value.
template <typename T>
class AProtect
{
public:
    struct ItemObject {
        AMutex mutex;
        T value{};
    };

    AProtect() : item(std::make_shared<ItemObject>()) {}

private:
    template <typename>
    friend class AProtectAccess;
    std::shared_ptr<ItemObject> item;
};

// Holds the lock for as long as it lives. The guard goes before the item, so the item outlives the
// lock even when the last AProtect has gone meanwhile.
template <typename T>
class AProtectAccess
{
public:
    explicit AProtectAccess(const AProtect<T>& value) : item(value.item), guard(&item->mutex) {}

    AProtectAccess(const AProtectAccess&) = default;
    AProtectAccess& operator=(const AProtectAccess&) = delete; // would let the item go first

    T& operator*() const { return item->value; }
    T* operator->() const { return &item->value; }

private:
    std::shared_ptr<typename AProtect<T>::ItemObject> item;
    AMutexLock guard;
};
