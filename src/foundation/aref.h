#pragma once

#include "foundation/aassert.h"
#include "foundation/atomic_win32_impl.h"
#include "foundation/block_pool.h"

#include <cstddef>
#include <new>
#include <type_traits>
#include <utility>

// A class with a type `IsPooled` has its blocks from the pool.
template <typename T>
concept Pooled = requires
{
    typename T::IsPooled;
};

struct HeapMemory {
};

// The heap block behind an ARef: the count stands in front of the object, which needs no base
// class.
template <typename T>
class ARefBlock : public std::conditional_t<Pooled<T>, PooledMemory<ARefBlock<T>>, HeapMemory>
{
public:
    template <typename... Arguments>
    explicit ARefBlock(Arguments&&... arguments) : object(std::forward<Arguments>(arguments)...)
    {
    }

    static ARefBlock* of(T* object_address)
    {
        return reinterpret_cast<ARefBlock*>(reinterpret_cast<std::byte*>(object_address) -
                                            offsetof_object());
    }

    // Refused for a count of 0: the object is dying, and only `create` raises a count from there.
    bool increase_reference()
    {
        std::uint32_t seen = reference_count.load(std::memory_order_relaxed);
        while (seen != 0) {
            if (seen >= permanent || reference_count.compare_exchange_weak(seen, seen + 1)) {
                return true;
            }
        }
        return false;
    }

    std::uint32_t decrease_reference(std::uint32_t references = 1)
    {
        const std::uint32_t seen = reference_count.load(std::memory_order_acquire);
        if (seen == references) { // nobody else has one, so nobody else changes it
            reference_count.store(0, std::memory_order_relaxed);
            return 0;
        }
        return seen >= permanent ? seen : atomic_subtract(reference_count, references);
    }

    // Whether the caller has all references there are. If so, what others did before they let go of
    // theirs has happened before.
    bool has_no_others(std::uint32_t references) const
    {
        return reference_count.load(std::memory_order_acquire) == references;
    }

    // For constants, which all threads use at once: the count changes no more, and the object stays
    // for good.
    void make_permanent() { reference_count.store(permanent); }

    static constexpr std::uint32_t permanent = 0x80000000u;

    std::atomic<std::uint32_t> reference_count{0};
    T object;

private:
    static constexpr std::size_t offsetof_object()
    {
        constexpr std::size_t behind_count = sizeof(std::atomic<std::uint32_t>);
        return (behind_count + alignof(T) - 1) / alignof(T) * alignof(T);
    }
};

// What happens when the last reference goes. A class that cannot simply be deleted there gives its
// own `destroy_last_reference (ARefBlock<T>*)`, found by its argument.
template <typename T>
void destroy_last_reference(ARefBlock<T>* block)
{
    delete block;
}

// A counted reference.
template <typename T>
class ARef
{
public:
    ARef() = default;
    ARef(std::nullptr_t) {}
    ARef(const ARef& other) { assign(other.pointer); }
    ARef(ARef&& other) noexcept : pointer(std::exchange(other.pointer, nullptr)) {}
    ~ARef() { clear(); }

    ARef& operator=(const ARef& other)
    {
        assign(other.pointer);
        return *this;
    }

    ARef& operator=(ARef&& other) noexcept
    {
        if (this != &other) {
            T* old = std::exchange(pointer, std::exchange(other.pointer, nullptr));
            release(old);
        }
        return *this;
    }

    template <typename... Arguments>
    static ARef create(Arguments&&... arguments)
    {
        ARef reference;
        auto* block = new (std::nothrow) ARefBlock<T>(std::forward<Arguments>(arguments)...);
        if (A_CHECK("aref", block != nullptr)) {
            block->reference_count.store(1);
            reference.pointer = &block->object;
        }
        return reference;
    }

    // For what cannot go on without its object: exhausted memory is the exception that it is
    // elsewhere.
    template <typename... Arguments>
    static ARef create_or_throw(Arguments&&... arguments)
    {
        ARef reference = create(std::forward<Arguments>(arguments)...);
        if (!reference) {
            throw std::bad_alloc();
        }
        return reference;
    }

    // The new object is held before the old one is let go, so assigning an object to itself keeps
    // it.
    void assign(T* object)
    {
        if (object != nullptr && !ARefBlock<T>::of(object)->increase_reference()) {
            assert_failed("aref", 165, "increase_reference ()");
            object = nullptr;
        }
        release(std::exchange(pointer, object));
    }

    // A copy for a thread that alone can reach this reference: it needs no atomic step where there
    // is no other.
    ARef copy_unshared() const
    {
        if (!has_no_others(1)) {
            return *this;
        }
        ARef copy;
        ARefBlock<T>::of(pointer)->reference_count.store(2, std::memory_order_relaxed);
        copy.pointer = pointer;
        return copy;
    }

    T* get_new_reference() const
    {
        ARef another(*this);
        return std::exchange(another.pointer, nullptr);
    }

    void clear() { release(std::exchange(pointer, nullptr)); }

    // For structures that account for several references of an object at once: gives the pointer up
    // with its reference, and takes any number of them back.
    T* detach() { return std::exchange(pointer, nullptr); }
    static void release(T* object, std::uint32_t references = 1)
    {
        if (object == nullptr) {
            return;
        }
        ARefBlock<T>* block = ARefBlock<T>::of(object);
        if (block->decrease_reference(references) == 0) {
            destroy_last_reference(block);
        }
    }
    // Whether the caller has all references to the object.
    bool has_no_others(std::uint32_t references) const
    {
        return pointer != nullptr && ARefBlock<T>::of(pointer)->has_no_others(references);
    }
    std::uint32_t use_count() const
    {
        return pointer != nullptr ? ARefBlock<T>::of(pointer)->reference_count.load() : 0;
    }

    T* get() const { return pointer; }
    T* operator->() const { return pointer; }
    T& operator*() const { return *pointer; }
    explicit operator bool() const { return pointer != nullptr; }
    bool operator==(const ARef& other) const { return pointer == other.pointer; }

private:
    T* pointer = nullptr;
};
