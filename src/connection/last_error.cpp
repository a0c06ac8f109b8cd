#include "connection/last_error.h"

#include "foundation/no_destructor.h"
#include "platform/platform.h"

LastErrorTable& last_error_table()
{
    static NoDestructor<LastErrorTable> table;
    return *table;
}

// Which text the entry of a thread holds, and where that is. Plain data, which needs no destructor
// when its thread ends; the entry keeps the storage, so that no other text can come to lie there.
struct LastErrorTable::Recorded {
    AString* entry;
    const AStringStorage* storage;
    std::uint64_t start_offset;
    std::uint64_t len;

    bool is(const AString& text) const
    {
        return entry != nullptr && storage == text.storage.get() &&
               start_offset == text.start_offset && len == text.len;
    }
};

LastErrorTable::Recorded& LastErrorTable::recorded()
{
    static thread_local Recorded of_this_thread{};
    return of_this_thread;
}

AString& LastErrorTable::entry()
{
    Recorded& known = recorded();
    if (known.entry == nullptr) {
        known.entry = &texts[platform::current_thread_id()];
        *known.entry = AString();
    }
    return *known.entry;
}

void LastErrorTable::set(const AString& text)
{
    Recorded& known = recorded();
    if (known.is(text)) {
        return;
    }
    const AMutexLock guard(&lock);
    AString& recorded_text = entry();
    recorded_text = text;
    known.storage = recorded_text.storage.get();
    known.start_offset = recorded_text.start_offset;
    known.len = recorded_text.len;
}

AString LastErrorTable::get()
{
    const AMutexLock guard(&lock);
    return entry();
}

void set_last_error_text(const AString& text)
{
    last_error_table().set(text);
}

AString get_last_error_text()
{
    return last_error_table().get();
}
