#include "stress/actions.h"

#include <set>

namespace stress
{

namespace
{

using OpenList = VeltoResult (*)(VeltoHandle, VeltoListHandle*);
using TakeName = VeltoResult (*)(VeltoListHandle, VeltoTextBuffer);
using CloseList = void (*)(VeltoListHandle);
using Track = VeltoResult (*)(VeltoHandle);

constexpr OpenList openers[] = {velto_open_clip_list, velto_open_directory_list,
                                velto_open_playlist_list};
// One function each, under several names.
constexpr TakeName takers[] = {velto_get_clip_name, velto_get_directory_name,
                               velto_get_playlist_name, velto_get_metakey};
constexpr CloseList closers[] = {velto_close_clip_list, velto_close_directory_list,
                                 velto_close_playlist_list};

constexpr Track trackers[] = {velto_track_clip_changes, velto_track_directory_changes};

struct Changes {
    VeltoResult (*take)(VeltoHandle, VeltoTextBuffer);
    bool are_of_clips;
};

constexpr Changes changes[] = {
    {velto_track_change_added_clip, true},         {velto_track_change_changed_clip, true},
    {velto_track_change_deleted_clip, true},       {velto_track_change_added_directory, false},
    {velto_track_change_deleted_directory, false},
};

std::optional<VeltoListHandle> open(Actor& actor, OpenList opener, const Connection& connection)
{
    Out<VeltoListHandle> list;
    const VeltoResult result =
        actor.call("velto_open_..._list", opener, command, connection, &list.value);
    if (result != VELTO_RESULT_OK) {
        actor.check(list.is_untouched(), "a list is written on failure");
        return std::nullopt;
    }
    return list.value;
}

} // namespace

void open_list(Actor& actor)
{
    const auto connection = actor.a_connection();
    if (!connection || actor.world.lists.size() >= actor.world.limits.lists) {
        return;
    }
    if (const auto list = open(actor, actor.chance.of(openers), *connection)) {
        actor.world.lists.add(std::make_shared<Part>(*list, nullptr));
    }
}

void take_names(Actor& actor)
{
    const auto list = actor.a_list();
    for (int i = 0; list && i < 10; ++i) {
        TextOut name;
        const VeltoResult result = actor.call("velto_get_..._name", actor.chance.of(takers),
                                              never_fails, *list, name.buffer());
        if (result != VELTO_RESULT_OK) {
            actor.check(name.text().empty(), "a name comes from a list that is closed");
        }
        if (name.text().empty()) {
            return;
        }
    }
}

void close_list(Actor& actor)
{
    const auto list = actor.world.lists.take(actor.chance);
    if (!list) {
        return;
    }
    list->closing = true;
    actor.run("velto_close_..._list", actor.chance.of(closers), list->handle);
    list->closed = true;
    actor.world.lists.remember(list);
}

// Whole, each once, and with all that are there for good.
void list_clips(Actor& actor)
{
    const auto connection = actor.a_connection();
    const auto handle = connection ? open(actor, velto_open_clip_list, *connection) : std::nullopt;
    if (!handle) {
        return;
    }
    const Part list(*handle, nullptr);
    std::set<std::string> names;
    for (;;) {
        TextOut out;
        actor.call(NAMED(velto_get_clip_name), never_fails, list, out.buffer());
        const std::string name = out.text();
        if (name.empty()) {
            break;
        }
        actor.check(actor.is_clip_name(name), "there is no clip '" + name + "'");
        actor.check(names.insert(name).second, "the clip '" + name + "' is listed twice");
    }
    for (const std::string& name : actor.world.first_clips) {
        actor.check(names.contains(name), "the clip '" + name + "' is not listed");
    }
    actor.run(NAMED(velto_close_clip_list), *handle);
}

void track_changes(Actor& actor)
{
    const auto connection = actor.a_connection();
    if (!connection) {
        return;
    }
    if (actor.chance.one_in(4)) {
        actor.call("velto_track_..._changes", actor.chance.of(trackers), question, *connection);
        return;
    }
    const Changes& kind = actor.chance.of(changes);
    for (int i = 0; i < 20; ++i) {
        TextOut name;
        const VeltoResult result =
            actor.call("velto_track_change_...", kind.take, question, *connection, name.buffer());
        if (result != VELTO_RESULT_OK) {
            return actor.check(name.is_untouched(), "a change is written on failure");
        }
        if (name.text().empty()) {
            return;
        }
        ++actor.world.changes;
        actor.check(!kind.are_of_clips || actor.is_clip_name(name.text()),
                    "there was no clip '" + name.text() + "' to change");
    }
}

} // namespace stress
