#pragma once

#include "protocol/zavl3_api_command.h"
#include "protocol/zavl3_api_outstanding.h"

#include <memory>

namespace ZAVL3
{

template <typename Reply>
struct ReplyDelegate {
    typename Reply::Delegate delegate;
};

// The delegates of one command: for its replies, the final one first, and for its failure.
template <typename Replies>
struct ReplyDelegates;

template <typename... Replies>
struct ReplyDelegates<Answers<Replies...>> : ReplyDelegate<Replies>... {
    ReplyDelegates() = default; // nobody wants the outcome
    ReplyDelegates(const typename Replies::Delegate&... on_replies,
                   const reply::error::Delegate& on_failure)
        : ReplyDelegate<Replies>{on_replies}..., on_error(on_failure)
    {
    }

    void copy_to(CommandRecord& record) const
    {
        ((delegate_for<Replies>(record) = ReplyDelegate<Replies>::delegate), ...);
        record.on_error = on_error;
    }

    reply::error::Delegate on_error;
};

// Turns the catalogue of commands into requests with a completion: each reply reaches the delegate
// of its kind of the command that it answers. Nothing here waits.
//
// Thread: any issues; replies are dispatched on the worker, and delegates run there, except that a
// command issued with the link down fails on the issuing thread before `issue` returns.
class API : public APICommand
{
public:
    API();
    ~API() override;

#define ZAVL3_COMPLETE_REPLY(name, ...)                                                            \
    void on_reply_##name(const AString& xid, const reply::name& message) override                  \
    {                                                                                              \
        complete(xid, message);                                                                    \
    }
    ZAVL3_REPLIES(ZAVL3_COMPLETE_REPLY)
#undef ZAVL3_COMPLETE_REPLY

    // Sends the command and gives its xid. The record is in the map before the first byte leaves,
    // so a reply cannot overtake it. Exactly one of the final delegates and on_error is called,
    // once; where memory is exhausted on the way out, on_error is, as by a loss of the link.
    template <typename Command>
    AString issue(const Command& fields,
                  const ReplyDelegates<typename Command::Replies>& delegates = {})
    {
        AString xid;
        try {
            xid = enter(delegates);
            send(xid, fields);
        } catch (const std::bad_alloc&) {
            if (delegates.on_error.is_empty()) {
                throw; // nobody else would know
            }
            outstanding->fail_unsent(xid, delegates.on_error);
        }
        return xid;
    }

    std::uint64_t outstanding_count()
    {
        return outstanding->outstanding_count();
    }
    void fail_all_outstanding()
    {
        outstanding->fail_all_outstanding();
    }

private:
    template <typename Delegates>
    AString enter(const Delegates& delegates)
    {
        const AMutexLock guard = outstanding->hold();
        CommandRecord* record = outstanding->new_command();
        delegates.copy_to(*record);
        return outstanding->finish_command(record);
    }

    // A reply to no command known is dropped: that is the normal end of a command that nobody waits
    // for, and of a late reply after a loss of the link.
    template <typename Reply>
    void complete(const AString& xid, const Reply& message)
    {
        if constexpr (Reply::ending == Ending::final) {
            typename Reply::Delegate delegate;
            reply::error::Delegate on_error;
            if (outstanding->take_delegates<Reply>(xid, delegate, on_error)) {
                try {
                    message.apply(delegate);
                } catch (const std::bad_alloc&) { // in the copies that the delegate is given
                    tell_loss(on_error);
                    throw;
                }
            }
        } else if (CommandRecord* record = outstanding->enter_delegate(xid)) {
            const InDelegate in_delegate{*outstanding, record};
            message.apply(delegate_for<Reply>(*record));
        }
    }

    struct InDelegate {
        ~InDelegate() { outstanding.leave_delegate(record); }

        OutstandingCommands& outstanding;
        CommandRecord* record;
    };

    std::unique_ptr<OutstandingCommands> outstanding;
};

} // namespace ZAVL3
