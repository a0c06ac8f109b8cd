#include "stress/actions.h"

namespace stress
{

std::shared_ptr<Connection> open_through_new_door(Actor& actor, bool may_not_wait)
{
    auto door = actor.world.doors.open();
    const VeltoHandle handle = actor.run(NAMED(velto_connect), door->address());
    actor.check(handle != 0, "velto_connect gives 0");
    ++actor.world.opened;
    return std::make_shared<Connection>(handle, std::move(door), may_not_wait);
}

// A link that is down leaves no descriptor open.
void close_and_forget(Actor& actor, const std::shared_ptr<Connection>& connection)
{
    const bool is_hot = actor.world.may_close_hot(actor.chance);
    if (!is_hot) {
        connection->door->shut();
    }
    if (connection->may_not_wait && actor.chance.one_in(2)) {
        actor.run(NAMED(velto_sync), connection->handle);
    }
    connection->closing = true;
    actor.run(NAMED(velto_close), connection->handle);
    connection->closed = true;
    if (!is_hot) {
        connection->door->open(); // stores may keep the connection
    }
    actor.check(actor.run(NAMED(velto_connected), connection->handle) == VELTO_LINK_DOWN,
                "a closed connection is up");
    actor.call(NAMED(velto_cmd_stop1), command, *connection, 0u);
    actor.world.connections.retire(connection->handle, nullptr, false);
}

void open_connection(Actor& actor)
{
    if (actor.world.connections.size() < actor.world.limits.connections) {
        actor.world.connections.add(open_through_new_door(actor, actor.chance.one_in(4)));
    }
}

void close_connection(Actor& actor)
{
    if (const auto connection =
            actor.world.connections.take(actor.chance, actor.world.limits.fewest_connections)) {
        close_and_forget(actor, connection);
    }
}

void look_at_connection(Actor& actor)
{
    const auto connection = actor.a_connection();
    if (!connection) {
        return;
    }
    const bool was_closed = connection->closed;
    const std::uint32_t link = actor.run(NAMED(velto_connected), connection->handle);
    actor.check(link == VELTO_LINK_DOWN || (link == VELTO_LINK_UP && !was_closed),
                "velto_connected gives what cannot be");
}

void choose_waiting(Actor& actor)
{
    const auto connection = actor.a_connection();
    if (connection && (connection->may_not_wait || connection->closed)) {
        actor.run(NAMED(velto_synchronous), connection->handle,
                  actor.chance.one_in(3) ? VELTO_COMMANDS_WAIT : VELTO_COMMANDS_DO_NOT_WAIT);
    }
    if (connection && actor.chance.one_in(2)) {
        actor.run(NAMED(velto_sync), connection->handle);
    }
}

// Opened, perhaps used, and closed in any state of its link.
void live_briefly(Actor& actor)
{
    const auto connection = open_through_new_door(actor, actor.chance.one_in(2));
    if (actor.chance.one_in(2)) {
        actor.check(actor.run(NAMED(velto_wait_until_connected), connection->handle) ==
                        VELTO_LINK_UP,
                    "velto_wait_until_connected gives something else");
    }
    if (connection->may_not_wait) {
        actor.run(NAMED(velto_synchronous), connection->handle, VELTO_COMMANDS_DO_NOT_WAIT);
    }
    for (std::uint32_t commands = actor.chance.below(4); commands != 0; --commands) {
        actor.call(NAMED(velto_cmd_stop1), command, *connection, actor.channel());
    }
    close_and_forget(actor, connection);
}

void read_last_error(Actor& actor)
{
    std::array<VeltoChar, 8> room;
    room.fill('!');
    const std::uint32_t size = actor.chance.below(8);
    actor.run(NAMED(velto_get_last_error), VeltoTextBuffer{room.data(), size});
    actor.check(room[7] == '!' && (size != 0 || room[0] == '!'),
                "velto_get_last_error writes beyond its room");
}

namespace
{

template <typename Number>
void ask_number(Actor& actor, const char* name, VeltoResult (*function)(VeltoHandle, Number*),
                const Connection& connection, Number most)
{
    Out<Number> out;
    const VeltoResult result = actor.call(name, function, question, connection, &out.value);
    actor.check(result == VELTO_RESULT_OK ? out.value <= most : out.is_untouched(),
                "an answer is not as it should be");
}

void ask_name(Actor& actor, const Connection& connection)
{
    TextOut name;
    const VeltoResult result =
        actor.call(NAMED(velto_server_name), question, connection, name.buffer());
    actor.check(result == VELTO_RESULT_OK ? name.text() == "veltosim" : name.is_untouched(),
                "the server's name is not its own");
}

void ask_disk(Actor& actor, const Connection& connection)
{
    Out<std::uint64_t> total, available;
    Out<std::uint32_t> size;
    const VeltoResult result = actor.call(NAMED(velto_disk_usage1), question, connection,
                                          &total.value, &available.value, &size.value);
    if (result == VELTO_RESULT_OK) {
        actor.check(available.value <= total.value && size.value != 0, "disk space cannot be so");
    } else {
        actor.check(total.is_untouched() && available.is_untouched() && size.is_untouched(),
                    "disk space is written on failure");
    }
}

} // namespace

void ask_server(Actor& actor)
{
    const auto connection = actor.a_connection();
    if (!connection) {
        return;
    }
    switch (actor.chance.below(5)) {
    case 0:
        return ask_name(actor, *connection);
    case 1:
        return ask_disk(actor, *connection);
    case 2:
        return ask_number<std::uint32_t>(actor, NAMED(velto_video_standard), *connection, 9);
    case 3:
        return ask_number<std::uint32_t>(actor, NAMED(velto_video_frequency), *connection, 4);
    default:
        return ask_number<std::uint32_t>(actor, NAMED(velto_video_resolution), *connection, 3);
    }
}

} // namespace stress
