#pragma once

#include "foundation/amutex.h"
#include "protocol/zavl3_elements.h"

#include <array>
#include <vector>

// One kind of channel report, and what it has come to. Both flags are set once and never cleared.
struct ChannelItem {
    explicit ChannelItem(ZAVL3::ChannelReportType report_type) : type(report_type) {}

    std::atomic<std::uint32_t> channel_item_registered{0}; // registered again at each connection-up
    std::atomic<std::uint32_t> channel_item_received{0};   // a report has come at least once
    const ZAVL3::ChannelReportType type;
};

// An item with the value of its last report, behind a lock of its own.
template <typename Value>
struct CachedItem : ChannelItem {
    using ChannelItem::ChannelItem;

    AMutex lock;
    Value value{}; // guarded by lock
};

struct ChannelTimecodes {
    std::uint32_t position = 0;
    ZAVL3::Timecode display_timecode; // kept, though no getter reads them
    ZAVL3::Timecode input_timecode;
};

// The list that the server plays out on a channel.
struct ChannelListPlay {
    using Index = ZAVL3::Maybe<std::uint16_t>;
    enum Air : std::size_t { air_now, air_next, air_lock };

    void load(const AString& id, ZAVL3::ListPlayMode play_mode);
    void unload();
    void clear_all();
    // The vector grows up to and including `index`; what lies between is a hole.
    void replace(std::uint16_t index, const ZAVL3::ListElement& element);
    void insert(std::uint16_t index, const ZAVL3::ListElement& element);
    void remove(std::uint16_t index);
    void set_air(Air entry, const ZAVL3::ListPlaybackIndex& index);
    void set_loop(ZAVL3::Loop list_loop);
    // The elements, without a hole at the end; a hole before is counted.
    std::uint32_t count() const;

    bool list_loaded = false;
    AString list_id;
    bool mode_known = false;
    ZAVL3::ListPlayMode mode{};
    std::vector<ZAVL3::ListElement> elements;
    std::array<Index, 3> playback_indices; // by Air
    bool loop_known = false;
    ZAVL3::Loop loop{};
};

// What the server has told of one channel. Nothing here is ever reset: getters go on answering
// while the link is down.
class ChannelState
{
public:
    CachedItem<ZAVL3::ChannelStatus> status{ZAVL3::word<ZAVL3::ChannelReportType>("status")};
    CachedItem<AString> clip_id{ZAVL3::word<ZAVL3::ChannelReportType>("clipid")};
    CachedItem<fract16> speed{ZAVL3::word<ZAVL3::ChannelReportType>("speed")};
    CachedItem<ChannelTimecodes> timecode{ZAVL3::word<ZAVL3::ChannelReportType>("timecode")};
    CachedItem<ZAVL3::ChannelInformation> info{ZAVL3::word<ZAVL3::ChannelReportType>("info")};
    CachedItem<ChannelListPlay> list_play{ZAVL3::word<ZAVL3::ChannelReportType>("listplay")};

    // In the order in which they are registered again.
    std::array<ChannelItem*, 6> items()
    {
        return {&status, &clip_id, &speed, &timecode, &info, &list_play};
    }
};
