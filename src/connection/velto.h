#pragma once

#include "connection/result.h"
#include "connection/velto_callbacks.h"
#include "protocol/zavl3_client_win32.h"

// One connection to one server, with all that the library knows of that server. It makes blocking
// calls of the asynchronous protocol. It lives inside an ARef, and each member takes a reference
// for as long as it runs.
//
// Thread: members on any; what is called on_ on the worker.
class VeltoConnObject : public ZAVL3::Client
{
public:
    VeltoConnObject() = default;
    ~VeltoConnObject() override;

    void on_connection_up() override;

    // Sends a command that is answered with a plain ok; waits for the reply unless `asynchronous`
    // is set. Each argument fills its field of the command.
    template <typename Command, typename... FieldArguments>
    static VeltoResult plain_command(ARef<VeltoConnObject> connection,
                                     const FieldArguments&... arguments)
    {
        const CBHolder<CBOkObject> callback = make_ok_callback(connection);
        Command command;
        (arguments.fill(command), ...);
        connection->issue(command, {callback.delegate<&CBOkObject::ok_delegate>(),
                                    callback.delegate<&CBOkObject::error_delegate>()});
        return callback.outcome();
    }

    static VeltoResult server_name(ARef<VeltoConnObject> connection, VeltoTextBuffer buffer);
    static VeltoResult video_standard(ARef<VeltoConnObject> connection, std::uint32_t* standard);
    static VeltoResult video_frequency(ARef<VeltoConnObject> connection, std::uint32_t* frequency);
    static VeltoResult video_resolution(ARef<VeltoConnObject> connection,
                                        std::uint32_t* resolution);
    // Waits, looking once a millisecond, until no completion object is alive.
    static void sync(ARef<VeltoConnObject> connection);

    // Non-zero makes a plain command return at once.
    std::atomic<std::uint32_t> asynchronous{0};
    std::atomic<std::uint32_t> outstanding_callbacks{0};
    BSem idle_semaphore{false}; // held for nobody: no operation waits on it

private:
    friend void destroy_last_reference(ARefBlock<VeltoConnObject>* block);

    static CBHolder<CBOkObject> make_ok_callback(const ARef<VeltoConnObject>& connection);
    // Asks for the video standard and hands the reply to `store`.
    template <typename Store>
    static VeltoResult ask_video_standard(const ARef<VeltoConnObject>& connection, Store store);
};

// The last reference can go on the object's own worker, which the destructor cannot wait for: there
// the worker unwinds, ends its loop and destroys the object as its last act.
void destroy_last_reference(ARefBlock<VeltoConnObject>* block);

template <typename Callback>
VeltoResult CBHolder<Callback>::outcome() const
{
    if (callback->done_semaphore == nullptr) {
        return result_ok();
    }
    callback->done_semaphore->wait(platform::infinite);
    return result_with_code(callback->result_code, callback->result_text);
}
