#pragma once

#include <ostream>
#include <string>
#include <vector>

// What the tests know of the messages by themselves, written down a second time, without the
// library's tables: the elements with a sample of each, what a reader must see in it and how it
// complains about a bad one; the composites and the messages with their fields in reading order.
namespace wire
{

enum class Presence { required, optional, flag };

struct Field {
    std::string name;
    Presence presence;
    std::string xml;
    std::string seen;      // the value, as `describe` shows it
    std::string bad;       // one that cannot be read; empty where there is no such thing
    std::string complaint; // about the bad one

    std::string seen_absent() const { return presence == Presence::flag ? "false" : "-"; }
};

// The fields of one composite or message.
struct Layout {
    std::string name;
    std::vector<Field> fields;

    // With all fields, or with the one at `changed` replaced by other text, seen as told.
    std::string xml() const;
    std::string xml_with(std::size_t changed, const std::string& replacement) const;
    std::string seen() const;
    std::string seen_with(std::size_t changed, const std::string& replacement) const;
};

struct Message {
    bool is_reply;
    Layout content;

    // The whole message around this content; a reply has the xid 17.
    std::string wrap(const std::string& content_xml) const;
    // The call of its operation, as RecordingParser keeps it.
    std::string call(const std::string& content_seen) const;
};

// What GoogleTest shows of them.
inline void PrintTo(const Layout& layout, std::ostream* out)
{
    *out << layout.name;
}
inline void PrintTo(const Message& message, std::ostream* out)
{
    *out << message.content.name;
}

// In the order of their kinds: 24 replies, 53 reports.
const std::vector<Message>& messages();
const Message& message(const std::string& name);

// Those that are read.
const std::vector<Layout>& composites();

} // namespace wire
