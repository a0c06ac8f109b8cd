#pragma once

#include "foundation/amutex.h"
#include "protocol/zavl3_commands.h"

#include <map>

namespace ZAVL3
{

class OutstandingCommands;

// What a command is between its sending and its final reply: a transaction identifier and a
// delegate for each kind of reply.
class CommandRecord
{
public:
    bool has_delegate() const;

    OutstandingCommands* parent = nullptr; // null once the record is released
    AString xid;

#define ZAVL3_REPLY_DELEGATE(name, ...) reply::name::Delegate on_##name;
    ZAVL3_REPLIES(ZAVL3_REPLY_DELEGATE)
#undef ZAVL3_REPLY_DELEGATE

    // A streaming reply is in its delegate. Who fails all commands meanwhile leaves this record to
    // the worker, which then calls on_error.
    bool in_delegate = false;
    bool failed_in_delegate = false;
};

// The delegate that a record keeps for a kind of reply.
#define ZAVL3_DELEGATE_OF(name, ...)                                                               \
    inline reply::name::Delegate& delegate_for(CommandRecord& record, const reply::name*)          \
    {                                                                                              \
        return record.on_##name;                                                                   \
    }
ZAVL3_REPLIES(ZAVL3_DELEGATE_OF)
#undef ZAVL3_DELEGATE_OF

template <typename Reply>
typename Reply::Delegate& delegate_for(CommandRecord& record)
{
    return delegate_for(record, static_cast<const Reply*>(nullptr));
}

// Calls the delegate of a command that the loss of its link ends.
void tell_loss(const reply::error::Delegate& on_error);

// The commands of one connection that wait for their final reply. It owns their records.
//
// Thread: any. Locks: `lock` guards the map; it is recursive, and nests inside send_lock.
class OutstandingCommands
{
public:
    OutstandingCommands() = default;
    OutstandingCommands(const OutstandingCommands&) = delete;
    OutstandingCommands& operator=(const OutstandingCommands&) = delete;
    // Frees the records without calling a delegate.
    ~OutstandingCommands();

    // A record with a fresh xid and no delegates, already in the map.
    CommandRecord* new_command();
    // The xid to write into the command. A record without delegates is released: nobody wants the
    // outcome.
    AString finish_command(CommandRecord* record);
    CommandRecord* find_command(const AString& xid);
    void release_command(CommandRecord* record);
    // Ends a command that has not gone out as the loss of its link would, unless that has been
    // quicker. One without an xid has not been entered.
    void fail_unsent(const AString& xid, const reply::error::Delegate& on_error);
    std::uint64_t outstanding_count();
    // Every command gets its on_error, in string order of the xids. Entered from one of its own
    // delegates it does nothing.
    void fail_all_outstanding();

    // Holds `lock`, so that a record can be made and filled before anybody else sees it.
    AMutexLock hold() { return AMutexLock(&lock); }

    // Takes the record of a final reply out and frees it, and gives the delegate for the reply and
    // that for a failure: what can be dropped is dropped before the caller is woken. False when
    // there is no such command.
    template <typename Reply>
    bool take_delegates(const AString& xid, typename Reply::Delegate& delegate,
                        reply::error::Delegate& on_error)
    {
        const AMutexLock guard = hold();
        CommandRecord* record = look_up(xid);
        if (record == nullptr) {
            return false;
        }
        delegate = delegate_for<Reply>(*record);
        on_error = record->on_error;
        release_command(record);
        return true;
    }

    // The record of a streaming reply, or null. It stays alive until leave_delegate.
    CommandRecord* enter_delegate(const AString& xid);
    void leave_delegate(CommandRecord* record);

private:
    // Under the lock.
    CommandRecord* look_up(const AString& xid) const;

    std::map<AString, CommandRecord*> commands;
    AMutex lock;
    std::atomic<bool> failing{false};
};

// Stepped by every command of the process; its decimal text is the xid.
extern std::atomic<std::uint32_t> last_xid_number;

} // namespace ZAVL3
