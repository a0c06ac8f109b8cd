#include "fuzz/link.h"

#include "api/connection_registry.h"
#include "fuzz/check.h"
#include "velto/velto.h"

#include <array>
#include <utility>

namespace fuzz
{

namespace
{

using namespace ZAVL3;

// Tracked, but not all of them: each that is registered is registered again on a new link.
constexpr std::uint32_t watched_channels[] = {VELTO_CHANNEL_A, VELTO_CHANNEL_H};

// The parts of a client that are its worker's.
struct Worker : VeltoConnObject {
    static constexpr auto is_up = &Worker::connected;
    static constexpr auto send = &Worker::send_block;
};

// A buffer as callers have it, small enough for texts to be cut.
class Text
{
public:
    VeltoTextBuffer buffer() { return {units.data(), room}; }

    // Checks what a function has written there, and forgets it.
    void check()
    {
        std::size_t length = 0;
        while (length < room && units[length] != 0) {
            ++length;
        }
        FUZZ_CHECK(length < room);
        FUZZ_CHECK(AString(units.data(), length).to_wide().size() == length); // no half of a pair
        FUZZ_CHECK(units[room] == guard);
        units.fill(guard);
    }

private:
    static constexpr VeltoChar guard = 0x7E7E;
    static constexpr std::uint32_t room = 24;
    std::array<VeltoChar, room + 1> units = [] {
        std::array<VeltoChar, room + 1> filled;
        filled.fill(guard);
        return filled;
    }();
};

// Whether `read` succeeds; if so, what it has put into its text.
template <typename Read>
bool read_text(Read read)
{
    Text text;
    if (read(text.buffer()) != VELTO_RESULT_OK) {
        return false;
    }
    text.check();
    return true;
}

void read_channel(VeltoHandle handle, std::uint32_t channel)
{
    for (const auto getter :
         {&velto_channel_status, &velto_channel_clip_length, &velto_channel_position,
          &velto_channel_repeat, &velto_channel_precue_count, &velto_playlist_count,
          &velto_playlist_status}) {
        std::uint32_t value = 0;
        FUZZ_CHECK(getter(handle, channel, &value) == VELTO_RESULT_OK);
    }
    for (const auto getter : {&velto_channel_angle, &velto_channel_ee}) {
        std::uint32_t first = 0;
        std::uint32_t second = 0;
        FUZZ_CHECK(getter(handle, channel, &first, &second) == VELTO_RESULT_OK);
    }
    double speed = 0;
    FUZZ_CHECK(velto_channel_speed(handle, channel, &speed) == VELTO_RESULT_OK);
    FUZZ_CHECK(speed >= -32768.0 && speed < 32768.0);
    FUZZ_CHECK(
        read_text([&](VeltoTextBuffer b) { return velto_channel_clip(handle, channel, b); }));
}

void read_notices(VeltoHandle handle)
{
    std::uint32_t kind = 0;
    do {
        std::uint32_t channel = VELTO_TRACKED_CHANNELS;
        FUZZ_CHECK(velto_get_notification(handle, 0, &kind, &channel) == VELTO_RESULT_OK);
        FUZZ_CHECK(channel < VELTO_TRACKED_CHANNELS);
    } while (kind != VELTO_NOTICE_NONE);
}

// All names up to the empty text; `take` is a function that takes one.
template <typename Take>
void read_names(Take take)
{
    for (std::array<VeltoChar, 24> name{1}; name.front() != 0;) {
        if (take(VeltoTextBuffer{name.data(), name.size()}) != VELTO_RESULT_OK) {
            return;
        }
    }
}

void read_changes(VeltoHandle handle)
{
    for (const auto take : {&velto_track_change_added_clip, &velto_track_change_changed_clip,
                            &velto_track_change_deleted_clip, &velto_track_change_added_directory,
                            &velto_track_change_deleted_directory}) {
        read_names([&](VeltoTextBuffer name) { return take(handle, name); });
    }
}

void read_store(VeltoStoreHandle store)
{
    velto_kvstore_wait_scan(store, 0);
    for (VeltoResult result = VELTO_RESULT_OK; result == VELTO_RESULT_OK;) {
        Text key;
        Text value;
        std::uint32_t kind = 0;
        result = velto_kvstore_get_change(store, 0, &kind, key.buffer(), value.buffer());
        if (result == VELTO_RESULT_OK) {
            FUZZ_CHECK(kind == VELTO_STORE_CHANGE_SET || kind == VELTO_STORE_CHANGE_ERASED);
            key.check();
            value.check();
        } else {
            FUZZ_CHECK(result == VELTO_RESULT_TIMEOUT);
        }
    }
}

void read_list(VeltoListHandle list)
{
    read_names([&](VeltoTextBuffer name) { return velto_get_clip_name(list, name); });
    velto_close_clip_list(list);
}

void read_record(VeltoRecordHandle record)
{
    for (const auto reader : {&velto_clip_title, &velto_clip_creator, &velto_clip_project,
                              &velto_clip_uuid, &velto_clip_parent_uuid}) {
        FUZZ_CHECK(read_text([&](VeltoTextBuffer text) { return reader(record, text); }));
    }
    for (const auto reader :
         {&velto_clip_length, &velto_clip_loop_in_point, &velto_clip_loop_out_point,
          &velto_clip_trim_start, &velto_clip_trim_end, &velto_clip_playback, &velto_clip_repeat,
          &velto_clip_video_standard, &velto_clip_timecode_source, &velto_clip_is_readonly,
          &velto_get_tracks}) {
        std::uint32_t value = 0;
        FUZZ_CHECK(reader(record, &value) == VELTO_RESULT_OK);
    }
    for (const auto reader :
         {&velto_clip_content_last_edited, &velto_clip_metadata_last_edited,
          &velto_clip_last_loaded, &velto_clip_last_unloaded, &velto_clip_last_played}) {
        std::uint64_t stamp = 0;
        FUZZ_CHECK(reader(record, &stamp) == VELTO_RESULT_OK);
    }
    for (const auto reader : {&velto_clip_recorded_timecode0, &velto_clip_timecode_stripe}) {
        std::uint32_t field = 0;
        std::uint32_t non_drop = 0;
        FUZZ_CHECK(reader(record, &field, &non_drop) == VELTO_RESULT_OK);
        FUZZ_CHECK(non_drop <= VELTO_NON_DROP_FRAME);
    }
    std::uint32_t has = 0;
    velto_clip_has_meta(record, u"title", &has);
    FUZZ_CHECK(read_text(
        [&](VeltoTextBuffer value) { return velto_clip_get_meta(record, u"title", value); }));
    VeltoListHandle keys = 0;
    FUZZ_CHECK(velto_clip_open_metakeys(record, &keys) == VELTO_RESULT_OK);
    read_list(keys);
    velto_close_clip_metadata(record);
}

void open_record(VeltoHandle handle)
{
    VeltoRecordHandle record = 0;
    if (velto_open_clip_metadata(handle, u"news_open", &record) == VELTO_RESULT_OK) {
        read_record(record);
    }
}

template <auto Open>
void open_list(VeltoHandle handle)
{
    VeltoListHandle list = 0;
    if (Open(handle, &list) == VELTO_RESULT_OK) {
        read_list(list);
    }
}

template <auto Ask>
void ask_for_number(VeltoHandle handle)
{
    std::uint32_t value = 0;
    Ask(handle, &value);
}

void command_channel(VeltoHandle handle)
{
    velto_cmd_stop1(handle, VELTO_CHANNEL_A);
    FUZZ_CHECK(read_text([](VeltoTextBuffer text) {
        velto_get_last_error(text);
        return VELTO_RESULT_OK;
    }));
}

// An exported function that waits, and the reply that it waits for.
struct Question {
    std::string_view reply;
    void (*ask)(VeltoHandle handle);
};

constexpr Question questions[] = {
    {"clipinfo", &open_record},
    {"ok", &open_list<&velto_open_clip_list>},
    {"ok", &open_list<&velto_open_directory_list>},
    {"ok", &open_list<&velto_open_playlist_list>},
    {"ok", &command_channel},
    {"video_standard", &ask_for_number<&velto_video_standard>},
    {"video_standard", &ask_for_number<&velto_video_frequency>},
    {"video_standard", &ask_for_number<&velto_video_resolution>},
    {"computername",
     [](VeltoHandle handle) {
         read_text([&](VeltoTextBuffer name) { return velto_server_name(handle, name); });
     }},
    {"disk_usage",
     [](VeltoHandle handle) {
         std::uint64_t total = 0;
         std::uint64_t available = 0;
         std::uint32_t field_size = 0;
         velto_disk_usage1(handle, &total, &available, &field_size);
     }},
    {"disk_usage",
     [](VeltoHandle handle) {
         std::uint32_t total = 0;
         std::uint32_t available = 0;
         velto_disk_usage2(handle, &total, &available);
     }},
    {"clipexists",
     [](VeltoHandle handle) {
         std::uint32_t exists = 0;
         velto_clip_exists(handle, u"news_open", &exists);
     }},
};

constexpr std::string_view final_replies[] = {
#define FINAL_REPLY(name, ...) reply::name::ending == Ending::final ? #name : "",
    ZAVL3_REPLIES(FINAL_REPLY)
#undef FINAL_REPLY
};

// Issues a command whose outcome nobody looks at, with the completion object that the exported
// functions use. The caller gets a share of that.
template <typename Command, typename Callback, auto... Members>
CBBaseObject* issue(const ARef<VeltoConnObject>& connection)
{
    const CBHolder<Callback> callback(connection, CBBaseObject::Waiting::does_not_wait);
    connection->issue(Command{}, {callback.template delegate<Members>()...,
                                  callback.template delegate<&Callback::error_delegate>()});
    callback->add_share();
    return callback.operator->();
}

template <typename Command>
CBBaseObject* issue_question(const ARef<VeltoConnObject>& connection)
{
    using Callback = CBReplyObject<FinalReply<Command>>;
    return issue<Command, Callback, &Callback::reply_delegate>(connection);
}

template <typename Command>
CBBaseObject* issue_download(const ARef<VeltoConnObject>& connection)
{
    using Callback = CBNamesObject<Command>;
    return issue<Command, Callback, &Callback::ok_delegate, &Callback::name_delegate>(connection);
}

// One for each reply that ends or feeds a command, in the order of their transactions; the store's
// watch and scan take the first two.
struct Waiting {
    std::string_view reply;
    CBBaseObject* (*issue)(const ARef<VeltoConnObject>& connection);
};

constexpr Waiting waiting[] = {
    {"ok", &issue<command::stop, CBOkObject, &CBOkObject::ok_delegate>},
    {"error", &issue<command::stop, CBOkObject, &CBOkObject::ok_delegate>},
    {"clipexists", &issue_question<command::clip_exists>},
    {"clipinfo", &issue_question<command::get_clip_info>},
    {"computername", &issue_question<command::get_computer_name>},
    {"video_standard", &issue_question<command::get_video_standard>},
    {"disk_usage", &issue_question<command::get_disk_usage>},
    {"clipid", &issue_download<command::download_clipids>},
    {"directory_name", &issue_download<command::download_directory_names>},
    {"listid", &issue_download<command::download_listids>},
};
constexpr std::size_t scan_xid = 2;

} // namespace

Link* Link::current = nullptr;

Link::Link() : connection(ARef<VeltoConnObject>::create())
{
    FUZZ_CHECK(std::exchange(current, this) == nullptr);
    last_xid_number = 0; // an input must do the same every time
    connection.get()->*Worker::send = &Link::take_bytes;
    connection.get()->*Worker::is_up = true;
    connection->clip_tracking = 1;
    connection->directory_tracking = 1;
    for (const std::uint32_t channel : watched_channels) {
        for (ChannelItem* item : connection->channel_state(channel)->items()) {
            item->channel_item_registered = 1;
        }
    }
    handle = connection_registry().add_connection(connection);
    velto_open_kvstore(handle, u"main", u"s", VELTO_STORE_READ, &store);
    issue_commands();
}

Link::~Link()
{
    connection->fail_all_outstanding();
    for (CBBaseObject* completion : completions) {
        // A final reply of the wrong kind has ended the command without a word.
        if (completion->connection) {
            completion->error_delegate(AString(), ErrorCode{});
        }
        completion->drop_share();
    }
    velto_close_key_value_store(store);
    velto_close(handle);
    FUZZ_CHECK(connection->outstanding_callbacks == 0);
    current = nullptr;
}

void Link::feed(std::string_view bytes)
{
    // A copy of exactly this size, so that reading beyond it shows.
    const std::vector<char> block(bytes.begin(), bytes.end());
    connection->feed_bytes(block.data(), block.size());
}

void Link::lose()
{
    connection.get()->*Worker::is_up = false;
    connection->fail_all_outstanding();
    connection->reset_stream();
    connection->on_connection_down();
    FUZZ_CHECK(connection->outstanding_count() == 0);
    connection.get()->*Worker::is_up = true;
    connection->on_connection_up();
    issue_commands();
}

std::uint8_t Link::question_count()
{
    return static_cast<std::uint8_t>(std::size(questions));
}

void Link::ask(std::uint8_t question, const std::function<void()>& answer)
{
    expected_reply = questions[question].reply;
    answer_to_question = answer;
    questions[question].ask(handle);
    answer_to_question = nullptr;
    issue_commands();
}

void Link::read_back()
{
    for (const std::uint32_t channel : watched_channels) {
        read_channel(handle, channel);
    }
    read_notices(handle);
    read_changes(handle);
    read_store(store);
}

std::string Link::waiting_xid(std::string_view reply)
{
    std::size_t xid = scan_xid;
    for (const Waiting& command : waiting) {
        ++xid;
        if (command.reply == reply) {
            return std::to_string(xid);
        }
    }
    return std::to_string(scan_xid);
}

std::string Link::question_xid()
{
    return std::to_string(scan_xid + std::size(waiting) + 1);
}

std::ptrdiff_t Link::take_bytes(platform::SocketHandle /*socket*/, const void* bytes,
                                std::size_t count)
{
    current->on_written({static_cast<const char*>(bytes), count});
    return static_cast<std::ptrdiff_t>(count);
}

void Link::issue_commands()
{
    for (const Waiting& command : waiting) {
        completions.push_back(command.issue(connection));
    }
}

void Link::on_written(std::string_view bytes)
{
    constexpr std::string_view end_of_command = "</cmd>";
    written_tail += bytes;
    if (answer_to_question && written_tail.ends_with(end_of_command)) {
        asked_xid = from_u64(last_xid_number);
        connection->message_tap = bind<&Link::before_dispatch>(this);
        answer_to_question();
        connection->message_tap = {};
        connection->fail_all_outstanding();
    }
    written_tail.erase(0,
                       written_tail.size() - std::min(written_tail.size(), end_of_command.size()));
}

// A final reply of the wrong kind ends a command without a word, and whoever waits goes on waiting:
// wanted, but not here. The link is lost in front of it.
void Link::before_dispatch(XMLTree message)
{
    XMLTree xid;
    message.count_children(AString("xid"), &xid);
    if (!(xid.get_text() == asked_xid)) {
        return;
    }
    for (const std::string_view reply : final_replies) {
        if (reply != "" && reply != "error" && reply != expected_reply &&
            message.has_child(AString(reply.data(), reply.size()))) {
            connection->fail_all_outstanding();
        }
    }
}

} // namespace fuzz
