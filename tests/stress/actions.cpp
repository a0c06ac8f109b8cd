#include "stress/actions.h"

#include <algorithm>
#include <iterator>

namespace stress
{

namespace
{

constexpr Action table[] = {
    {"open a connection", 3, open_connection},
    {"close a connection", 2, close_connection},
    {"look at a connection", 10, look_at_connection},
    {"choose whether commands wait", 6, choose_waiting},
    {"a connection's short life", 1, live_briefly},
    {"read the last error", 8, read_last_error},
    {"ask the server", 16, ask_server},

    {"drive a channel", 60, drive_channel},
    {"drive channels together", 16, drive_channels_together},
    {"a burst of commands", 6, drive_in_a_burst},
    {"read a channel", 60, read_channel},
    {"read a channel's list", 1, read_channel_list},
    {"take notices", 30, take_notices},

    {"open a list", 10, open_list},
    {"take names", 30, take_names},
    {"close a list", 10, close_list},
    {"list all clips", 6, list_clips},
    {"track changes", 20, track_changes},

    {"open a record", 12, open_record},
    {"close a record", 12, close_record},
    {"read a record", 40, read_record},
    {"write a record", 20, write_record},
    {"use metadata", 20, use_metadata},
    {"change a clip", 16, change_clip},
    {"look for a clip", 12, look_for_clip},
    {"edit a virtual clip", 10, edit_virtual_clip},

    {"open a store", 6, open_store},
    {"close a store", 5, close_store},
    {"use a store", 60, use_store},
    {"write own keys", 20, write_own_keys},
    {"close the own store", 1, close_own_store},
    {"follow own keys", 4, follow_own_keys},
};

} // namespace

std::vector<Action> actions_with(std::string_view text)
{
    std::vector<Action> found;
    std::copy_if(std::begin(table), std::end(table), std::back_inserter(found),
                 [text](const Action& action) {
                     return std::string_view(action.name).find(text) != text.npos;
                 });
    return found;
}

} // namespace stress
