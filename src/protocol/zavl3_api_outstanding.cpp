#include "protocol/zavl3_api_outstanding.h"

#include "foundation/anumber.h"

namespace ZAVL3
{

std::atomic<std::uint32_t> last_xid_number{0};

namespace
{

// Frees the record of a command that the loss of its link ends, then tells its issuer.
void fail_command(CommandRecord* record)
{
    const reply::error::Delegate on_error = record->on_error;
    delete record;
    tell_loss(on_error);
}

} // namespace

void tell_loss(const reply::error::Delegate& on_error)
{
    static const NoDestructor<AString> text("Failing all outstanding commands");
    on_error(*text, word<ErrorCode>("general"));
}

bool CommandRecord::has_delegate() const
{
#define ZAVL3_IS_SET(name, ...) || !on_##name.is_empty()
    return false ZAVL3_REPLIES(ZAVL3_IS_SET);
#undef ZAVL3_IS_SET
}

OutstandingCommands::~OutstandingCommands()
{
    const AMutexLock guard = hold();
    for (const auto& [xid, record] : commands) {
        delete record;
    }
}

CommandRecord* OutstandingCommands::new_command()
{
    const AMutexLock guard = hold();
    AString xid;
    do { // after a wrap of the counter, a number still outstanding is skipped
        xid = from_u32(atomic_increment(last_xid_number));
        if (xid.is_empty()) { // memory is exhausted, of which strings do not tell
            throw std::bad_alloc();
        }
    } while (look_up(xid) != nullptr);
    auto record = std::make_unique<CommandRecord>();
    record->parent = this;
    record->xid = xid;
    commands.emplace(xid, record.get());
    return record.release();
}

AString OutstandingCommands::finish_command(CommandRecord* record)
{
    if (record->has_delegate()) {
        return record->xid;
    }
    static const NoDestructor<AString> none("none");
    const AString xid = *none + record->xid;
    release_command(record);
    return xid;
}

CommandRecord* OutstandingCommands::find_command(const AString& xid)
{
    const AMutexLock guard = hold();
    return look_up(xid);
}

CommandRecord* OutstandingCommands::look_up(const AString& xid) const
{
    const auto found = commands.find(xid);
    return found == commands.end() ? nullptr : found->second;
}

void OutstandingCommands::release_command(CommandRecord* record)
{
    if (record->parent == nullptr) {
        assert_failed("zavl3_api", 5313, "parent != 0");
        return;
    }
    const AMutexLock guard = hold();
    commands.erase(record->xid);
    delete record;
}

void OutstandingCommands::fail_unsent(const AString& xid, const reply::error::Delegate& on_error)
{
    const AMutexLock guard = hold();
    if (xid.is_empty()) {
        return tell_loss(on_error);
    }
    if (CommandRecord* record = find_command(xid)) {
        commands.erase(xid);
        fail_command(record);
    }
}

std::uint64_t OutstandingCommands::outstanding_count()
{
    const AMutexLock guard = hold();
    return commands.size();
}

void OutstandingCommands::fail_all_outstanding()
{
    if (failing.exchange(true)) {
        return;
    }
    const AMutexLock guard = hold();
    while (!commands.empty()) {
        CommandRecord* record = commands.begin()->second;
        commands.erase(commands.begin());
        record->parent = nullptr;
        if (record->in_delegate) {
            record->failed_in_delegate = true;
        } else {
            fail_command(record);
        }
    }
    // Under the lock: a command entered later finds it clear and fails by itself.
    failing = false;
}

CommandRecord* OutstandingCommands::enter_delegate(const AString& xid)
{
    const AMutexLock guard = hold();
    CommandRecord* record = look_up(xid);
    if (record != nullptr) {
        record->in_delegate = true;
    }
    return record;
}

void OutstandingCommands::leave_delegate(CommandRecord* record)
{
    {
        const AMutexLock guard = hold();
        record->in_delegate = false;
        if (!record->failed_in_delegate) {
            return;
        }
    }
    fail_command(record);
}

} // namespace ZAVL3
