#pragma once

#include "support/command_script.h"
#include "support/xml_text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

// What the scripts about clip records have in common: a clip as the server tells of it, opening it,
// and the readers.

// Elements by name, each with its content.
using ClipFields = std::vector<std::pair<std::string, std::string>>;

// The reply to get_clip_info: what every clip has, with these elements replaced or added.
inline std::string clip_info(const ClipFields& changes = {})
{
    ClipFields fields = {
        {"ClipID", "news_open"},
        {"VideoStandard", "1080_59_94i"},
        {"TrackInfoVector", "<TrackInfo><TrackType>video</TrackType></TrackInfo>"},
        {"Title", "News opener"},
        {"Creator", "Zo&amp;e"},
        {"Project", "Olympia"},
        {"Playback", "field"},
        {"Interp", "auto"},
        {"Loop", "off"},
        {"LoopOut", "1200"},
        {"LoopIn", "100"},
        {"ClipLength", "1500"},
        {"TimecodeSource", "zerobased"},
        {"StripeTimecode", "<Valid>false</Valid>"},
        {"ReadOnly", "false"},
    };
    for (const auto& [name, content] : changes) {
        const auto known =
            std::find_if(fields.begin(), fields.end(),
                         [&name = name](const auto& field) { return field.first == name; });
        if (known != fields.end()) {
            known->second = content;
        } else {
            fields.emplace_back(name, content);
        }
    }
    std::string text;
    for (const auto& [name, content] : fields) {
        text += xml_element(name, content);
    }
    return xml_element("clipinfo", xml_element("ClipInfo", text));
}

// One pair of a MetadataList.
inline std::string metadata_pair(const std::string& key, const std::string& value)
{
    return xml_element("Metadata", xml_element("Key", key) + xml_element("Value", value));
}

inline std::string text_of(const VeltoChar* units)
{
    std::u16string text;
    for (; *units != 0; ++units) {
        text += static_cast<char16_t>(*units);
    }
    return AString(text).to_utf8();
}

// A text for a call; it lives as long as this.
class Units
{
public:
    explicit Units(const std::string& text)
    {
        for (const char16_t unit : utf8(text).to_wide()) {
            units.push_back(static_cast<VeltoChar>(unit));
        }
    }
    operator const VeltoChar*() const { return units.c_str(); }

private:
    std::basic_string<VeltoChar> units;
};

// How a reader ended, and its outputs as text. These are 77 before.
struct Reading {
    Outcome outcome;
    std::string values;

    bool operator==(const Reading&) const = default;
    friend std::ostream& operator<<(std::ostream& out, const Reading& reading)
    {
        return out << reading.outcome << " with " << reading.values;
    }
};

inline Reading read_to(const std::string& values)
{
    return {succeeded, values};
}

// What `get` writes into a buffer for long texts.
template <typename Get>
Reading text_reading(Get get)
{
    std::vector<VeltoChar> units(4000);
    units[0] = units[1] = '7';
    const Outcome outcome = outcome_of([&] {
        return get({units.data(), static_cast<std::uint32_t>(units.size())});
    });
    return {outcome, text_of(units.data())};
}

using Read = Reading (*)(std::uint32_t handle);

template <auto Reader>
Reading read_text(std::uint32_t handle)
{
    return text_reading([=](VeltoTextBuffer buffer) { return Reader(handle, buffer); });
}

template <auto Reader, typename Number = std::uint32_t>
Reading read_number(std::uint32_t handle)
{
    Number value = 77;
    const Outcome outcome = outcome_of([&] { return Reader(handle, &value); });
    return {outcome, std::to_string(value)};
}

template <auto Reader>
Reading read_stamp(std::uint32_t handle)
{
    return read_number<Reader, std::uint64_t>(handle);
}

template <auto Reader>
Reading read_pair(std::uint32_t handle)
{
    std::uint32_t first = 77;
    std::uint32_t second = 77;
    const Outcome outcome = outcome_of([&] { return Reader(handle, &first, &second); });
    return {outcome, std::to_string(first) + " " + std::to_string(second)};
}

inline Reading read_meta(std::uint32_t record, const std::string& key)
{
    return text_reading(
        [&](VeltoTextBuffer buffer) { return velto_clip_get_meta(record, Units(key), buffer); });
}

inline Reading has_meta(std::uint32_t record, const std::string& key)
{
    std::uint32_t has = 77;
    const Outcome outcome =
        outcome_of([&] { return velto_clip_has_meta(record, Units(key), &has); });
    return {outcome, std::to_string(has)};
}

// All that is left in a list, each name with a bar behind it.
inline std::string take_all(VeltoListHandle list)
{
    std::string names;
    for (;;) {
        const Reading next = read_text<velto_get_clip_name>(list);
        EXPECT_EQ(next.outcome, succeeded);
        if (next.values.empty() || next.outcome != succeeded) {
            return names;
        }
        names += next.values + "|";
    }
}

// Opens clips and writes to them while the test plays the server.
class ClipScript : public CommandScript
{
protected:
    struct Opened {
        Outcome outcome;
        VeltoRecordHandle record; // 77 where there is none
    };

    // Opens the clip while the server answers with `content`.
    Opened opened(const std::string& content)
    {
        VeltoRecordHandle record = 77;
        auto opening = calling([&] {
            return velto_open_clip_metadata(session.handle, VELTO_TEXT("news_open"), &record);
        });
        session.link->reply(expect_lines(session, {"<get_clip_info>", "<ClipID>news_open</ClipID>",
                                                   "</get_clip_info>"}),
                            content);
        const Outcome outcome = await(std::move(opening));
        return {outcome, record};
    }

    VeltoRecordHandle open(const ClipFields& changes = {})
    {
        const Opened result = opened(clip_info(changes));
        EXPECT_EQ(result.outcome, succeeded);
        return result.record;
    }

    // A read of a record with these changes, which is then closed.
    Reading read_after(const ClipFields& changes, Read read)
    {
        const VeltoRecordHandle record = open(changes);
        const Reading reading = read(record);
        EXPECT_EQ(velto_close_clip_metadata(record), VELTO_RESULT_OK);
        return reading;
    }

    // Makes a call that writes, which sends these elements, and has the server answer.
    template <typename Call>
    Outcome written(Call call, const std::vector<std::string>& elements,
                    const std::string& content = "<ok />")
    {
        auto writing = calling(call);
        session.link->reply(expect_lines(session, change_lines(elements)), content);
        return await(std::move(writing));
    }

    // The command that changes the clip in this way.
    static std::vector<std::string> change_lines(const std::vector<std::string>& elements)
    {
        std::vector<std::string> lines = {"<modify_clip_attributes>", "<ClipID>news_open</ClipID>",
                                          "<ClipAttrChange>"};
        lines.insert(lines.end(), elements.begin(), elements.end());
        lines.insert(lines.end(), {"</ClipAttrChange>", "</modify_clip_attributes>"});
        return lines;
    }
};
