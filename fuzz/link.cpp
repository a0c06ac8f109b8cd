#include "fuzz/link.h"

#include "api/connection_registry.h"
#include "fuzz/check.h"

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

void Link::ask(const Question& question, const std::function<void()>& answer)
{
    expected_reply = question.reply;
    answer_to_question = answer;
    question.ask(handle);
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
