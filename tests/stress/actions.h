#pragma once

#include "stress/actor.h"

#include <string_view>
#include <vector>

namespace stress
{

// What a thread may do next, and how often. A new family is a function here and an entry in the
// table.
struct Action {
    const char* name;
    std::uint32_t weight;
    void (*act)(Actor& actor);
};

// Those whose names contain the text.
std::vector<Action> actions_with(std::string_view text);

void open_connection(Actor& actor);
void close_connection(Actor& actor);
void look_at_connection(Actor& actor);
void choose_waiting(Actor& actor);
void live_briefly(Actor& actor);
void read_last_error(Actor& actor);
void ask_server(Actor& actor);

void drive_channel(Actor& actor);
void drive_channels_together(Actor& actor);
void drive_in_a_burst(Actor& actor);
void read_channel(Actor& actor);
void read_channel_list(Actor& actor);
void take_notices(Actor& actor);

void open_list(Actor& actor);
void take_names(Actor& actor);
void close_list(Actor& actor);
void list_clips(Actor& actor);
void track_changes(Actor& actor);

void open_record(Actor& actor);
void close_record(Actor& actor);
void read_record(Actor& actor);
void write_record(Actor& actor);
void use_metadata(Actor& actor);
void change_clip(Actor& actor);
void look_for_clip(Actor& actor);
void edit_virtual_clip(Actor& actor);

void open_store(Actor& actor);
void close_store(Actor& actor);
void use_store(Actor& actor);
void write_own_keys(Actor& actor);
void close_own_store(Actor& actor);
void follow_own_keys(Actor& actor);

// Where all threads write.
constexpr const char* shared_folder = "stress";
constexpr const char* shared_prefix = "s/";

// The folder of the keys that have one writer, and a key's name in it.
constexpr const char* own_folder = "own";
std::string own_key(std::uint32_t thread, std::uint32_t index);
constexpr std::uint32_t own_key_count = 6;

// Opens a store that no other thread sees; null when it cannot be.
std::shared_ptr<Store> open_private_store(Actor& actor,
                                          const std::shared_ptr<Connection>& connection,
                                          const std::string& folder, const std::string& prefix,
                                          std::uint32_t mode);
void close_private_store(Actor& actor, const std::shared_ptr<Store>& store);
std::shared_ptr<Connection> open_through_new_door(Actor& actor, bool may_not_wait);
void close_and_forget(Actor& actor, const std::shared_ptr<Connection>& connection);

} // namespace stress
