#pragma once

#include "support/channel_script.h"

#include <gtest/gtest.h>

#include <map>
#include <vector>

// What the scripts about key-value stores have in common: the store as an application has it, and
// the server's part.

using Units = std::basic_string<VeltoChar>;

// ASCII as the units of the boundary, and back.
inline Units units(std::string_view text)
{
    return Units(text.begin(), text.end());
}

inline std::string ascii(const VeltoChar* text)
{
    return std::string(text, text + std::char_traits<VeltoChar>::length(text));
}

inline const Outcome timed_out{VELTO_RESULT_TIMEOUT, "Timeout"};
inline const Outcome read_only{VELTO_RESULT_READ_ONLY, "Read only"};
inline const Outcome write_only{VELTO_RESULT_WRITE_ONLY, "Write only"};
inline const Outcome invalid_argument{VELTO_RESULT_INVALID_ARGUMENT, "Invalid argument"};

inline constexpr std::uint32_t long_ms = 60'000; // only catches a hang

using Texts = std::vector<std::string>;

// The result of the next change, or the change: "key = value", "no key".
inline std::string change_of(VeltoStoreHandle store, std::uint32_t timeout_ms = 0)
{
    std::uint32_t kind = 0;
    std::vector<VeltoChar> key(64, 'x');
    std::vector<VeltoChar> value(64, 'x');
    const Outcome outcome = outcome_of([&] {
        return velto_kvstore_get_change(store, timeout_ms, &kind, {key.data(), 64},
                                        {value.data(), 64});
    });
    if (outcome != succeeded) {
        return outcome.text;
    }
    return kind == VELTO_STORE_CHANGE_SET ? ascii(key.data()) + " = " + ascii(value.data())
                                          : "no " + ascii(key.data()) + ascii(value.data());
}

// What `next` gives until there is no more, or far more than any test wants.
template <typename Next>
Texts changes_until_timeout(Next next)
{
    Texts changes;
    for (std::string change = next(); change != "Timeout" && changes.size() < 100;
         change = next()) {
        changes.push_back(change);
    }
    return changes;
}

// A store that is closed at the end.
class Store
{
public:
    Store(VeltoHandle connection, std::uint32_t mode, std::string_view prefix = "p/",
          std::string_view folder = "notes")
    {
        EXPECT_EQ(outcome_of([&] {
                      return velto_open_kvstore(connection, units(folder).c_str(),
                                                units(prefix).c_str(), mode, &handle);
                  }),
                  succeeded);
    }
    Store(const Store&) = delete;
    Store& operator=(const Store&) = delete;
    ~Store() { close(); }

    void close() { velto_close_key_value_store(std::exchange(handle, 0)); }

    Outcome set(std::string_view key, std::string_view value) const
    {
        return outcome_of(
            [&] { return velto_kvstore_set(handle, units(key).c_str(), units(value).c_str()); });
    }
    Outcome erase(std::string_view key) const
    {
        return outcome_of([&] { return velto_kvstore_erase(handle, units(key).c_str()); });
    }
    Outcome flush(std::uint32_t timeout_ms) const
    {
        return outcome_of([&] { return velto_kvstore_flush(handle, timeout_ms); });
    }
    Outcome wait_scan(std::uint32_t timeout_ms) const
    {
        return outcome_of([&] { return velto_kvstore_wait_scan(handle, timeout_ms); });
    }
    std::string change(std::uint32_t timeout_ms = 0) const { return change_of(handle, timeout_ms); }
    Texts changes() const
    {
        return changes_until_timeout([this] { return change(); });
    }

    VeltoStoreHandle handle = 0;
};

// A command of a folder, without its xid, from what stands behind the folder's name.
inline std::string store_command(const std::string& name, const std::string& fields = {},
                                 const std::string& folder = "notes")
{
    return xml_element(name, "\r\n" + xml_element("MetadataDatabase", folder) + "\r\n" + fields);
}

inline std::string set_command(const std::string& key, const std::string& value,
                               const std::string& folder = "notes")
{
    const std::string entry =
        "\r\n" + xml_element("Key", key) + "\r\n" + xml_element("Value", value) + "\r\n";
    return store_command(
        "metadata_set",
        xml_element("MetadataList", "\r\n" + xml_element("Metadata", entry) + "\r\n") + "\r\n",
        folder);
}

inline std::string erase_command(const std::string& key, const std::string& folder = "notes")
{
    return store_command("metadata_erase",
                         xml_element("KeyList", "\r\n" + xml_element("Key", key) + "\r\n") + "\r\n",
                         folder);
}

// The next command has to be this one; its xid.
inline std::string expect_bytes(ScriptLink& link, const std::string& element)
{
    const ReceivedCommand command = link.expect_command();
    EXPECT_EQ(command.bytes, command_bytes(command.xid, element));
    return command.xid;
}

// One that nobody waits for.
inline void expect_unanswered(ScriptLink& link, const std::string& name,
                              const std::string& folder = "notes")
{
    EXPECT_TRUE(expect_bytes(link, store_command(name, {}, folder)).starts_with("none"));
}

inline void expect_watch(ScriptLink& link, const std::string& folder = "notes")
{
    expect_unanswered(link, "watch_metadata_database", folder);
}

inline void expect_unwatch(ScriptLink& link, const std::string& folder = "notes")
{
    expect_unanswered(link, "unwatch_metadata_database", folder);
}

inline std::string expect_download(ScriptLink& link, const std::string& folder = "notes")
{
    const std::string xid = expect_bytes(link, store_command("download_metadata", {}, folder));
    EXPECT_EQ(xid.find_first_not_of("0123456789"), std::string::npos) << xid;
    return xid;
}

using Entries = std::vector<std::pair<std::string, std::string>>;

inline std::string database_fields(const std::string& prefix, const std::string& folder)
{
    return xml_element("MetadataDatabase", folder) + xml_element("MetadataPrefix", prefix);
}

inline std::string metadata_fields(const Entries& entries, const std::string& prefix = {},
                                   const std::string& folder = "notes")
{
    std::string list;
    for (const auto& [key, value] : entries) {
        list += xml_element("Metadata", xml_element("Key", key) + xml_element("Value", value));
    }
    return database_fields(prefix, folder) + xml_element("MetadataList", list);
}

inline std::string change_report(const Entries& entries, const std::string& prefix = {},
                                 const std::string& folder = "notes")
{
    return xml_element("report",
                       xml_element("metadata_change", metadata_fields(entries, prefix, folder)));
}

inline std::string removal_report(const Texts& keys, const std::string& prefix = {},
                                  const std::string& folder = "notes")
{
    std::string list;
    for (const std::string& key : keys) {
        list += xml_element("Key", key);
    }
    return xml_element("report", xml_element("metadata_remove", database_fields(prefix, folder) +
                                                                    xml_element("KeyList", list)));
}

inline std::string scan_reply(const std::string& xid, const Entries& entries,
                              const std::string& prefix = {}, const std::string& folder = "notes")
{
    return reply_message(xid, xml_element("metadata", metadata_fields(entries, prefix, folder)));
}
