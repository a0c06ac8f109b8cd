#pragma once

#include "foundation/amutex.h"
#include "protocol/zavl3_api_parser2.h"
#include "protocol/zavl3_commands.h"

namespace ZAVL3
{

// Knows how every command looks on the wire, and nothing of what becomes of it.
//
// Thread: any. Locks: takes send_lock while one command is serialised and written, so that two
// never interleave. It nests outside the lock of OutstandingCommands, which a failed write takes.
class APICommand : public APIParser2
{
public:
    // Runs under send_lock, on the thread that sends.
    virtual void write_bytes(const unsigned char* bytes, std::uint64_t count) = 0;

    // Builds the command from its fields and sends it.
    template <typename Command>
    void send(const AString& xid, const Command& fields)
    {
        send_command(command_tree(xid, Command::name(), fields.write()));
    }

    void send_command(const XMLTree& tree);

    AFunction<XMLTree> command_tap;

protected:
    AMutex send_lock;

private:
    static XMLTree command_tree(const AString& xid, const AString& name, const XMLTreeList& fields);
};

} // namespace ZAVL3
