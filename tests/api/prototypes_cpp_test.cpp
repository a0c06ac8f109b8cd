// Generated from interface/ by tools/interface/generate.py; change the description instead.

// Each prototype of the header is pinned here in plain types, and the functions that were linked
// are compared with the description's list.
#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "api/prototypes.h"
#include "velto/velto.h"

static_assert(std::is_same_v<VeltoHandle, std::uint32_t>);
static_assert(std::is_same_v<VeltoResult, std::int32_t>);
static_assert(sizeof(VeltoChar) == 2);

// clang-format off
// Structures
static_assert(std::is_standard_layout_v<VeltoTextBuffer>);
static_assert(std::is_same_v<decltype(VeltoTextBuffer::text), VeltoChar*>);
static_assert(std::is_same_v<decltype(VeltoTextBuffer::size), std::uint32_t>);
// Connection
static_assert(std::is_same_v<decltype(velto_connect), std::uint32_t(std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_wait_until_connected), std::uint32_t(std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_connected), std::uint32_t(std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_synchronous), void(std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_sync), void(std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_get_last_error), void(VeltoTextBuffer)>);
static_assert(std::is_same_v<decltype(velto_close), void(std::uint32_t)>);
// Server
static_assert(std::is_same_v<decltype(velto_server_name),
    std::int32_t(std::uint32_t, VeltoTextBuffer)>);
static_assert(std::is_same_v<decltype(velto_video_standard),
    std::int32_t(std::uint32_t, std::uint32_t*)>);
static_assert(std::is_same_v<decltype(velto_video_frequency),
    std::int32_t(std::uint32_t, std::uint32_t*)>);
static_assert(std::is_same_v<decltype(velto_video_resolution),
    std::int32_t(std::uint32_t, std::uint32_t*)>);
// Channel state
static_assert(std::is_same_v<decltype(velto_channel_status),
    std::int32_t(std::uint32_t, std::uint32_t, std::uint32_t*)>);
static_assert(std::is_same_v<decltype(velto_channel_clip),
    std::int32_t(std::uint32_t, std::uint32_t, VeltoTextBuffer)>);
static_assert(std::is_same_v<decltype(velto_channel_clip_length),
    std::int32_t(std::uint32_t, std::uint32_t, std::uint32_t*)>);
static_assert(std::is_same_v<decltype(velto_channel_position),
    std::int32_t(std::uint32_t, std::uint32_t, std::uint32_t*)>);
static_assert(std::is_same_v<decltype(velto_channel_speed),
    std::int32_t(std::uint32_t, std::uint32_t, double*)>);
static_assert(std::is_same_v<decltype(velto_channel_repeat),
    std::int32_t(std::uint32_t, std::uint32_t, std::uint32_t*)>);
static_assert(std::is_same_v<decltype(velto_channel_angle),
    std::int32_t(std::uint32_t, std::uint32_t, std::uint32_t*, std::uint32_t*)>);
static_assert(std::is_same_v<decltype(velto_channel_ee),
    std::int32_t(std::uint32_t, std::uint32_t, std::uint32_t*, std::uint32_t*)>);
static_assert(std::is_same_v<decltype(velto_channel_precue_count),
    std::int32_t(std::uint32_t, std::uint32_t, std::uint32_t*)>);
static_assert(std::is_same_v<decltype(velto_playlist_count),
    std::int32_t(std::uint32_t, std::uint32_t, std::uint32_t*)>);
static_assert(std::is_same_v<decltype(velto_playlist_status),
    std::int32_t(std::uint32_t, std::uint32_t, std::uint32_t*)>);
// Notices
static_assert(std::is_same_v<decltype(velto_get_notification),
    std::int32_t(std::uint32_t, std::uint32_t, std::uint32_t*, std::uint32_t*)>);
// Play and stop
static_assert(std::is_same_v<decltype(velto_cmd_play3),
    std::int32_t(std::uint32_t, std::uint32_t, double, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_cmd_play2),
    std::int32_t(std::uint32_t, std::uint32_t, double)>);
static_assert(std::is_same_v<decltype(velto_cmd_play1),
    std::int32_t(std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_cmd_stop2),
    std::int32_t(std::uint32_t, std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_cmd_stop1),
    std::int32_t(std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_cmd_gang_play3),
    std::int32_t(std::uint32_t, std::uint32_t, double, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_cmd_gang_play2),
    std::int32_t(std::uint32_t, std::uint32_t, double)>);
static_assert(std::is_same_v<decltype(velto_cmd_gang_play1),
    std::int32_t(std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_cmd_gang_stop2),
    std::int32_t(std::uint32_t, std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_cmd_gang_stop1),
    std::int32_t(std::uint32_t, std::uint32_t)>);
// Seek
static_assert(std::is_same_v<decltype(velto_goto2),
    std::int32_t(std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_goto1),
    std::int32_t(std::uint32_t, std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_gang_goto2),
    std::int32_t(std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_gang_goto1),
    std::int32_t(std::uint32_t, std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_jog2),
    std::int32_t(std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_jog1),
    std::int32_t(std::uint32_t, std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_gang_jog2),
    std::int32_t(std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_gang_jog1),
    std::int32_t(std::uint32_t, std::uint32_t, std::uint32_t)>);
// Load
static_assert(std::is_same_v<decltype(velto_cmd_loadclip4),
    std::int32_t(std::uint32_t, std::uint32_t, const VeltoChar*, std::uint32_t, std::uint32_t,
                 std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_cmd_loadclip3),
    std::int32_t(std::uint32_t, std::uint32_t, const VeltoChar*, std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_cmd_loadclip2),
    std::int32_t(std::uint32_t, std::uint32_t, const VeltoChar*, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_cmd_loadclip1),
    std::int32_t(std::uint32_t, std::uint32_t, const VeltoChar*)>);
static_assert(std::is_same_v<decltype(velto_cmd_loadclip7),
    std::int32_t(std::uint32_t, std::uint32_t, const VeltoChar*, std::uint32_t, std::uint32_t,
                 std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_cmd_loadclip6),
    std::int32_t(std::uint32_t, std::uint32_t, const VeltoChar*, std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_cmd_loadclip5),
    std::int32_t(std::uint32_t, std::uint32_t, const VeltoChar*, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_cmd_load_vclip3),
    std::int32_t(std::uint32_t, std::uint32_t, const VeltoChar*, std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_cmd_load_vclip2),
    std::int32_t(std::uint32_t, std::uint32_t, const VeltoChar*, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_cmd_load_vclip1),
    std::int32_t(std::uint32_t, std::uint32_t, const VeltoChar*)>);
static_assert(std::is_same_v<decltype(velto_cmd_loadlist1),
    std::int32_t(std::uint32_t, std::uint32_t, const VeltoChar*)>);
static_assert(std::is_same_v<decltype(velto_unload_channel),
    std::int32_t(std::uint32_t, std::uint32_t)>);
// Pre-cue
static_assert(std::is_same_v<decltype(velto_precue4),
    std::int32_t(std::uint32_t, std::uint32_t, const VeltoChar*, std::uint32_t, std::uint32_t,
                 std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_precue3),
    std::int32_t(std::uint32_t, std::uint32_t, const VeltoChar*, std::uint32_t, std::uint32_t,
                 std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_precue2),
    std::int32_t(std::uint32_t, std::uint32_t, const VeltoChar*, std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_precue1),
    std::int32_t(std::uint32_t, std::uint32_t, const VeltoChar*, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_precue_activate1),
    std::int32_t(std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_gang_precue_activate1),
    std::int32_t(std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_precue_clear1),
    std::int32_t(std::uint32_t, std::uint32_t)>);
// Live and take
static_assert(std::is_same_v<decltype(velto_go_live4),
    std::int32_t(std::uint32_t, std::uint32_t, const VeltoChar*, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_go_live3),
    std::int32_t(std::uint32_t, std::uint32_t, const VeltoChar*)>);
static_assert(std::is_same_v<decltype(velto_go_live2),
    std::int32_t(std::uint32_t, std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_go_live1), std::int32_t(std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_take2),
    std::int32_t(std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_take1),
    std::int32_t(std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_angle1),
    std::int32_t(std::uint32_t, std::uint32_t, std::uint32_t)>);
// Edit and monitor
static_assert(std::is_same_v<decltype(velto_edit1),
    std::int32_t(std::uint32_t, std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_edit_all_on),
    std::int32_t(std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_edit_all_off),
    std::int32_t(std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_gang_edit1),
    std::int32_t(std::uint32_t, std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_gang_edit_all_on),
    std::int32_t(std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_gang_edit_all_off),
    std::int32_t(std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_ee1),
    std::int32_t(std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_ee_all_on),
    std::int32_t(std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_ee_all_off),
    std::int32_t(std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_gang_ee1),
    std::int32_t(std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_gang_ee_all_on),
    std::int32_t(std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_gang_ee_all_off),
    std::int32_t(std::uint32_t, std::uint32_t)>);
// Loop and out point
static_assert(std::is_same_v<decltype(velto_set_repeat),
    std::int32_t(std::uint32_t, std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_set_channel_repeat),
    std::int32_t(std::uint32_t, std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_set_out1),
    std::int32_t(std::uint32_t, std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_clear_out),
    std::int32_t(std::uint32_t, std::uint32_t)>);
// List play-out
static_assert(std::is_same_v<decltype(velto_cmd_playlist_cue_now),
    std::int32_t(std::uint32_t, std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_cmd_playlist_cue_list),
    std::int32_t(std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_cmd_playlist_cue_next),
    std::int32_t(std::uint32_t, std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_cmd_playlist_play_now),
    std::int32_t(std::uint32_t, std::uint32_t, std::uint32_t)>);
static_assert(std::is_same_v<decltype(velto_cmd_playlist_play_next),
    std::int32_t(std::uint32_t, std::uint32_t, std::uint32_t)>);
// clang-format on

namespace
{

// Functions that may be one and the same code.
const std::set<std::set<std::string>> same_code = {
    {"velto_set_repeat", "velto_set_channel_repeat"},
};

const std::vector<std::string> described = {
    "velto_connect",
    "velto_wait_until_connected",
    "velto_connected",
    "velto_synchronous",
    "velto_sync",
    "velto_get_last_error",
    "velto_close",
    "velto_server_name",
    "velto_video_standard",
    "velto_video_frequency",
    "velto_video_resolution",
    "velto_channel_status",
    "velto_channel_clip",
    "velto_channel_clip_length",
    "velto_channel_position",
    "velto_channel_speed",
    "velto_channel_repeat",
    "velto_channel_angle",
    "velto_channel_ee",
    "velto_channel_precue_count",
    "velto_playlist_count",
    "velto_playlist_status",
    "velto_get_notification",
    "velto_cmd_play3",
    "velto_cmd_play2",
    "velto_cmd_play1",
    "velto_cmd_stop2",
    "velto_cmd_stop1",
    "velto_cmd_gang_play3",
    "velto_cmd_gang_play2",
    "velto_cmd_gang_play1",
    "velto_cmd_gang_stop2",
    "velto_cmd_gang_stop1",
    "velto_goto2",
    "velto_goto1",
    "velto_gang_goto2",
    "velto_gang_goto1",
    "velto_jog2",
    "velto_jog1",
    "velto_gang_jog2",
    "velto_gang_jog1",
    "velto_cmd_loadclip4",
    "velto_cmd_loadclip3",
    "velto_cmd_loadclip2",
    "velto_cmd_loadclip1",
    "velto_cmd_loadclip7",
    "velto_cmd_loadclip6",
    "velto_cmd_loadclip5",
    "velto_cmd_load_vclip3",
    "velto_cmd_load_vclip2",
    "velto_cmd_load_vclip1",
    "velto_cmd_loadlist1",
    "velto_unload_channel",
    "velto_precue4",
    "velto_precue3",
    "velto_precue2",
    "velto_precue1",
    "velto_precue_activate1",
    "velto_gang_precue_activate1",
    "velto_precue_clear1",
    "velto_go_live4",
    "velto_go_live3",
    "velto_go_live2",
    "velto_go_live1",
    "velto_take2",
    "velto_take1",
    "velto_angle1",
    "velto_edit1",
    "velto_edit_all_on",
    "velto_edit_all_off",
    "velto_gang_edit1",
    "velto_gang_edit_all_on",
    "velto_gang_edit_all_off",
    "velto_ee1",
    "velto_ee_all_on",
    "velto_ee_all_off",
    "velto_gang_ee1",
    "velto_gang_ee_all_on",
    "velto_gang_ee_all_off",
    "velto_set_repeat",
    "velto_set_channel_repeat",
    "velto_set_out1",
    "velto_clear_out",
    "velto_cmd_playlist_cue_now",
    "velto_cmd_playlist_cue_list",
    "velto_cmd_playlist_cue_next",
    "velto_cmd_playlist_play_now",
    "velto_cmd_playlist_play_next",
};

std::vector<VeltoPrototype> linked()
{
    std::vector<VeltoPrototype> prototypes(velto_prototypes(nullptr, 0));
    velto_prototypes(prototypes.data(), prototypes.size());
    return prototypes;
}

} // namespace

TEST(Prototypes, AreThoseOfTheDescription)
{
    std::vector<std::string> names;
    for (const VeltoPrototype& prototype : linked()) {
        names.emplace_back(prototype.name);
    }
    EXPECT_EQ(names.size(), std::size_t{88});
    EXPECT_EQ(names, described);
}

TEST(Prototypes, EachFunctionHasAnAddress)
{
    for (const VeltoPrototype& prototype : linked()) {
        EXPECT_NE(prototype.address, nullptr) << prototype.name;
    }
}

TEST(Prototypes, OnlyFunctionsOfOneCodeShareAnAddress)
{
    const std::vector<VeltoPrototype> prototypes = linked();
    for (const VeltoPrototype& one : prototypes) {
        for (const VeltoPrototype& other : prototypes) {
            const std::set<std::string> pair = {one.name, other.name};
            if (one.address == other.address && pair.size() == 2) {
                EXPECT_EQ(same_code.count(pair), 1U) << one.name << " and " << other.name;
            }
        }
    }
}
