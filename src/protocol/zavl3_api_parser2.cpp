#include "protocol/zavl3_api_parser2.h"

namespace ZAVL3
{

namespace
{
constexpr std::uint64_t largest_message = 32768;
}

APIParser2::APIParser2() : stream_parser(largest_message)
{
    stream_parser.add_root_tag("reply");
    stream_parser.add_root_tag("report");
    stream_parser.use_known_names(known_words());
}

void APIParser2::feed_bytes(const void* bytes, std::uint64_t count)
{
    if (stream_broken) {
        return;
    }
    stream_idle = false;
    const auto* next = static_cast<const unsigned char*>(bytes);
    while (count != 0) {
        const std::uint64_t consume = stream_parser.feed(next, count);
        if (consume == 0) { // full, with no complete element in it: a message over the limit
            stream_broken = true;
            return;
        }
        if (consume > count) {
            assert_failed("zavl3_api_parser2", 41, "consume <= bufcount");
            return;
        }
        next += consume;
        count -= consume;
        if (!stream_idle && !dispatch_complete_messages()) {
            return;
        }
    }
}

bool APIParser2::dispatch_complete_messages()
{
    do {
        if (stream_parser.has_failed()) {
            stream_broken = true;
            return false;
        }
        if (!dispatch_next_message()) {
            return true;
        }
    } while (!stream_idle);
    return true;
}

bool APIParser2::dispatch_next_message()
{
    const XMLPlainElement* plain =
        message_tap.is_empty() ? stream_parser.next_plain_element() : nullptr;
    if (plain != nullptr) {
        dispatch_message(*plain);
        return true;
    }
    const XMLTree message = stream_parser.next_element();
    if (!message.is_null) {
        dispatch_message(message);
    }
    return !message.is_null;
}

void APIParser2::reset_stream()
{
    stream_idle = true;
    stream_broken = false;
    stream_parser.reset();
}

} // namespace ZAVL3
