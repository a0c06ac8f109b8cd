#pragma once

#include "foundation/aassert.h"
#include "foundation/aref.h"

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <utility>

// A list value with shared nodes: copies share the body, and a writer unshares it first. A value is
// written by one thread only.
template <typename T>
class nonstd_list
{
public:
    struct EntryStruct {
        using IsPooled = void;

        EntryStruct() = default;
        explicit EntryStruct(const T& content) : value(content) {}
        explicit EntryStruct(T&& content) : value(std::move(content)) {}

        ARef<EntryStruct> next;
        ARef<EntryStruct> prev;
        T value{};
    };
    using Entry = ARef<EntryStruct>;

    // `next` and `prev` both own, so the links form cycles and are taken apart explicitly.
    struct Body {
        using IsPooled = void;

        Body() = default;
        Body(const Body& other)
        {
            for (const EntryStruct* entry = other.head.get(); entry != nullptr;
                 entry = entry->next.get()) {
                link(Entry::create_or_throw(entry->value));
            }
        }
        Body& operator=(const Body&) = delete;
        ~Body() { clear(); }

        void link(Entry entry)
        {
            if (!A_CHECK("ns_list", static_cast<bool>(entry))) {
                return;
            }
            entry->next.clear();
            entry->prev = std::move(tail);
            tail = entry.copy_unshared();
            (entry->prev ? entry->prev->next : head) = std::move(entry);
            ++count;
        }

        Entry unlink_head()
        {
            Entry entry = head;
            if (!entry) {
                return entry;
            }
            head = entry->next;
            (head ? head->prev : tail).clear();
            entry->next.clear();
            entry->prev.clear();
            --count;
            return entry;
        }

        // Whether nobody but this list holds one of its entries.
        static bool is_sole_holder(const Entry& entry) { return entry.has_no_others(2); }

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

        // The list has two references to each entry, which go at once.
        void clear()
        {
            EntryStruct* entry = head.detach();
            tail.detach();
            count = 0;
            while (entry != nullptr) {
                EntryStruct* following = entry->next.detach();
                entry->prev.detach();
                Entry::release(entry, 2);
                entry = following;
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
    explicit nonstd_list(const Body& other) : body(ARef<Body>::create_or_throw(other)) {}

    // Never unshares; makes the empty body of a list that was never touched.
    const Body& get_readable() const
    {
        if (!body) {
            body = ARef<Body>::create_or_throw();
        }
        return *body;
    }

    Body& get_writable()
    {
        if (!body) {
            body = ARef<Body>::create_or_throw();
        } else if (body.use_count() != 1) {
            body = ARef<Body>::create_or_throw(*body);
        }
        return *body;
    }

    void push_back(T value) { get_writable().link(Entry::create_or_throw(std::move(value))); }

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
            body = ARef<Body>::create_or_throw();
        }
    }

    // For code that takes large structures apart without copying them.
    bool is_sole_owner() const { return body.has_no_others(1); }
    void release() { body.clear(); }

private:
    EntryStruct* entry_at(std::uint32_t index) const
    {
        EntryStruct* entry = get_readable().head.get();
        for (; index != 0; --index) {
            entry = entry->next.get();
        }
        return entry;
    }

    mutable ARef<Body> body;
};
