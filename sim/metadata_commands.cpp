#include "sim/metadata_commands.h"

#include <string>
#include <utility>

#include <fmt/format.h>

#include "sim/command_fields.h"
#include "sim/metadata.h"
#include "sim/refusal.h"

namespace veltosim
{

namespace
{

using namespace rules;

constexpr FieldRule database = short_text("MetadataDatabase");
constexpr FieldRule prefix = optional(short_text("MetadataPrefix"));

void commit(Call& call, std::vector<MetadataChange> changes)
{
    if (!changes.empty()) {
        StoreChange change;
        change.metadata = std::move(changes);
        call.station.commit(change);
    }
}

void metadata_set(Call& call)
{
    const std::string& name = call.fields.text("MetadataDatabase");
    std::vector<MetadataChange> changes;
    for (const FieldValue& pair : call.fields.find("MetadataList")->items) {
        MetadataChange& change = changes.emplace_back(
            MetadataChange{name, call.fields.text("MetadataPrefix") + pair.parts.text("Key"),
                           pair.parts.text("Value")});
        check_entry_size(name, change.key, *change.value);
    }
    commit(call, std::move(changes));
}

// A key that is not there is gone already.
void metadata_erase(Call& call)
{
    const std::string& name = call.fields.text("MetadataDatabase");
    const MetadataTable& table = call.station.clips.metadata().table(name);
    std::vector<MetadataChange> changes;
    for (const FieldValue& item : call.fields.find("KeyList")->items) {
        const std::string key = call.fields.text("MetadataPrefix") + item.text;
        if (table.find(key) != table.end()) {
            changes.push_back({name, key, {}});
        }
    }
    commit(call, std::move(changes));
}

void download_metadata(Call& call)
{
    const std::string& name = call.fields.text("MetadataDatabase");
    const std::string& wanted = call.fields.text("MetadataPrefix");
    add_entries(name, wanted, entries_in(call.station.clips.metadata().table(name), wanted),
                [&] { return call.replies.add("metadata"); });
    call.replies.add("ok");
}

void watch_metadata_database(Call& call)
{
    constexpr std::size_t most = 1000;
    if (call.registrations.metadata.size() >= most) {
        throw Refusal(fmt::format("a client can watch {} metadata prefixes and no more", most));
    }
    call.registrations.metadata.emplace(call.fields.text("MetadataDatabase"),
                                        call.fields.text("MetadataPrefix"));
}

void unwatch_metadata_database(Call& call)
{
    const std::string& name = call.fields.text("MetadataDatabase");
    std::erase_if(call.registrations.metadata,
                  [&](const auto& watch) { return watch.first == name; });
}

} // namespace

std::vector<CommandRule> metadata_commands()
{
    return {
        {"download_metadata", {database, prefix}, download_metadata},
        {"metadata_erase", {database, key_list, prefix}, metadata_erase},
        {"metadata_set", {database, metadata_list, prefix}, metadata_set},
        {"unwatch_metadata_database", {database}, unwatch_metadata_database},
        {"watch_metadata_database", {database, prefix}, watch_metadata_database},
    };
}

} // namespace veltosim
