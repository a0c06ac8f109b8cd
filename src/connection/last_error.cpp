#include "connection/last_error.h"

#include "foundation/no_destructor.h"
#include "platform/platform.h"

LastErrorTable& last_error_table()
{
    static NoDestructor<LastErrorTable> table;
    return *table;
}

AString& LastErrorTable::entry()
{
    static thread_local bool known = false;
    AString& text = texts[platform::current_thread_id()];
    if (!known) {
        known = true;
        text = AString();
    }
    return text;
}

void LastErrorTable::set(const AString& text)
{
    const AMutexLock guard(&lock);
    entry() = text;
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
