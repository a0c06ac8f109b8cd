#pragma once

#include "api/connection_registry.h"

// The frame of every call on a connection: resolves the handle, and runs the member with a
// reference of its own, so that the object cannot go while the call is in it.
template <typename Member, typename... Arguments>
VeltoResult dispatch(VeltoHandle handle, Member member, const Arguments&... arguments)
{
    ARef<VeltoConnObject> connection;
    const VeltoResult result = connection_registry().resolve_connection(handle, connection);
    if (result != VELTO_RESULT_OK) {
        return result;
    }
    return member(connection, arguments...);
}

// The same for a command that is answered with a plain ok, and whose fields the arguments fill.
template <typename Command, typename... FieldArguments>
VeltoResult plain_command(VeltoHandle handle, const FieldArguments&... arguments)
{
    const auto member = [&](const ARef<VeltoConnObject>& connection) {
        Command command;
        (arguments.fill(command), ...);
        return VeltoConnObject::plain_command(connection, command);
    };
    return dispatch(handle, member);
}
