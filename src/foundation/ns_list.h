#pragma once

#include "foundation/aassert.h"
#include "foundation/block_pool.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <utility>

// Whether all of the `uses` of an object are known to the caller. If so, what other owners did with
// it before they let go has happened before, and it can be written.
template <typename T>
bool has_no_other_uses(const std::shared_ptr<T>& reference, long uses)
{
    if (reference.use_count() != uses) {
        return false;
    }
#ifdef VELTO_SANITIZED
    const std::shared_ptr<T> another = reference; // the thread sanitizer does not know fences
#else
    std::atomic_thread_fence(std::memory_order_acquire);
#endif
    return true;
}

// A list value with shared nodes: copies share the body, and a writer unshares it first. A value is
// written by one thread only.
template <typename T>
class nonstd_list
{
public:
    struct EntryStruct {
        EntryStruct() = default;
        explicit EntryStruct(const T& content) : value(content) {}
        explicit EntryStruct(T&& content) : value(std::move(content)) {}

        std::shared_ptr<EntryStruct> next;
        std::shared_ptr<EntryStruct> prev;
        T value{};
    };
    using Entry = std::shared_ptr<EntryStruct>;

    // `next` and `prev` both own, so the links form cycles and are taken apart explicitly.
    struct Body {
        Body() = default;
        Body(const Body& other)
        {
            for (const EntryStruct* entry = other.head.get(); entry != nullptr;
                 entry = entry->next.get()) {
                link(make_pooled<EntryStruct>(entry->value));
            }
        }
        Body& operator=(const Body&) = delete;
        ~Body() { clear(); }

        void link(Entry entry)
        {
            if (!A_CHECK("ns_list", entry != nullptr)) {
                return;
            }
            entry->next.reset();
            entry->prev = std::move(tail);
            (entry->prev ? entry->prev->next : head) = entry;
            tail = std::move(entry);
            ++count;
        }

        Entry unlink_head()
        {
            Entry entry = head;
            if (!entry) {
                return entry;
            }
            head = entry->next;
            (head ? head->prev : tail).reset();
            entry->next.reset();
            entry->prev.reset();
            --count;
            return entry;
        }

        // Whether nobody but this list holds one of its entries: one neighbour, or end, on each
        // side does.
        bool is_sole_holder(const Entry& entry) const { return has_no_other_uses(entry, 2); }

        // Takes the entries of `other` to the end of this list.
        void splice_back(Body& other)
        {
            if (!other.head) {
                return;
            }
            other.head->prev = tail;
            (tail ? tail->next : head) = std::move(other.head);
            tail = std::move(other.tail);
            count += std::exchange(other.count, 0);
        }

        void clear()
        {
            Entry entry = std::move(head);
            tail.reset();
            count = 0;
            while (entry) {
                Entry following = std::move(entry->next);
                entry->prev.reset();
                entry = std::move(following);
            }
        }

        Entry head;
        Entry tail;
        std::uint32_t count = 0;
    };

    class iterator
    {
    public:
        using iterator_category = std::forward_iterator_tag;
        using value_type = T;
        using difference_type = std::ptrdiff_t;
        using pointer = const T*;
        using reference = const T&;

        iterator() = default;
        explicit iterator(Entry position) : entry(std::move(position)) {}
        const T& operator*() const { return entry->value; }
        const T* operator->() const { return &entry->value; }
        iterator& operator++()
        {
            entry = entry->next;
            return *this;
        }
        iterator operator++(int)
        {
            iterator before = *this;
            ++*this;
            return before;
        }
        bool operator==(const iterator& other) const = default;

    private:
        Entry entry; // keeps its entry alive
    };

    nonstd_list() = default;
    explicit nonstd_list(const Body& other) : body(make_pooled<Body>(other)) {}

    // Never unshares; makes the empty body of a list that was never touched.
    const Body& get_readable() const
    {
        if (!body) {
            body = make_pooled<Body>();
        }
        return *body;
    }

    Body& get_writable()
    {
        if (!body) {
            body = make_pooled<Body>();
        } else if (body.use_count() != 1) {
            body = make_pooled<Body>(*body);
        }
        return *body;
    }

    void push_back(T value) { get_writable().link(make_pooled<EntryStruct>(std::move(value))); }

    Entry pop_front() { return get_writable().unlink_head(); }

    void append(const nonstd_list& other)
    {
        const nonstd_list source = other; // also right for a list appended to itself
        for (const T& value : source) {
            push_back(value);
        }
    }

    std::uint32_t length() const { return body ? body->count : 0; }

    // `index` must be below the length.
    const T& at(std::uint32_t index) const { return entry_at(index)->value; }
    T& at(std::uint32_t index)
    {
        get_writable();
        return entry_at(index)->value;
    }

    iterator begin() const { return iterator(body ? body->head : nullptr); }
    iterator end() const { return iterator(); }

    // The body of other owners keeps its entries.
    void clear()
    {
        if (body && is_sole_owner()) {
            body->clear();
        } else {
            body = make_pooled<Body>();
        }
    }

    // For code that takes large structures apart without copying them.
    bool is_sole_owner() const { return has_no_other_uses(body, 1); }
    void release() { body.reset(); }

private:
    EntryStruct* entry_at(std::uint32_t index) const
    {
        EntryStruct* entry = get_readable().head.get();
        for (; index != 0; --index) {
            entry = entry->next.get();
        }
        return entry;
    }

    mutable std::shared_ptr<Body> body;
};
