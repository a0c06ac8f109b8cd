#include "support/wire_model.h"

#include <sstream>
#include <stdexcept>
#include <string_view>

namespace wire
{

namespace
{

enum class Type { text, boolean, u8, u16, u32, u64, i32, fixed, word, flag };
using enum Type;

// An element with a value of its own, and one sample that is too wide for every narrower type.
struct Simple {
    std::string_view name;
    Type type;
    std::string_view content;
    std::string_view seen = {}; // where it is not the content
};

constexpr Simple simple_elements[] = {
    {"AlertName", text, "genlock"},
    {"AlertNameDescription", text, "Reference input"},
    {"AlertValueDescription", text, "  lost  "},
    {"AlertingLevel", word, "error", "3"},
    {"AlertingPriority", word, "malfunction", "1"},
    {"Angle", u8, "254"},
    {"AngleCount", u8, "7"},
    {"AudioTrackCount", u8, "16"},
    {"AutoEE", boolean, "true"},
    {"AvailableDiskSpace", u64, "18446744073709551615"},
    {"Channel", word, "C", "2"},
    {"ChannelStatus", word, "play", "4"},
    {"ChaseElementAtEnd", word, "loop", "2"},
    {"ChaseID", text, "chase one"},
    {"ChaseIndex", u16, "65535"},
    {"ClipFileType", text, "mxf"},
    {"ClipID", text, "news_open"},
    {"ClipLength", u32, "100001"},
    {"ClipLengthUntrimmed", u32, "100002"},
    {"ClipPosition", u32, "100003"},
    {"ClipStartOffset", u32, "100004"},
    {"ClipUUID", text, "0a1b"},
    {"CompressionAFrameBased", boolean, "true"},
    {"CompressionASymbol", text, "pcm"},
    {"CompressionBitrate", u32, "4294967295"},
    {"CompressionCSize", u32, "100005"},
    {"CompressionKFrameBased", boolean, "0", "false"},
    {"CompressionKSize", u32, "100006"},
    {"CompressionKSymbol", text, "key"},
    {"CompressionType", word, "xavc", "3"},
    {"CompressionVFrameBased", boolean, "-7", "true"},
    {"CompressionVSymbol", text, "video"},
    {"CompressionYSize", u32, "100007"},
    {"ComputerName", text, "STUDIO-7"},
    {"ConfigurationItemAccess", word, "eng", "1"},
    {"ConfigurationItemBootValue", text, "boot"},
    {"ConfigurationItemEffectiveValue", text, "effective"},
    {"ConfigurationItemName", text, "genlock_mode"},
    {"ConfigurationItemRequiresReboot", flag, ""},
    {"ConfigurationItemSavedValue", text, "saved"},
    {"ContentEditStamp", u64, "10000000005"},
    {"Creator", text, "Zo&amp;e", "Zo&e"},
    {"DirectoryName", text, "rushes"},
    {"DropFrameFlag", word, "ndf", "1"},
    {"ErrorCode", word, "clipnotfound", "1"},
    {"ErrorMessage", text, " Clip &lt;x&gt; not found ", " Clip <x> not found "},
    {"Exists", boolean, "true"},
    {"FieldNumber", i32, "-2147483648"},
    {"FieldSize", u32, "100008"},
    {"GotoPosition", u32, "100009"},
    {"ID8", text, "NEWSOPEN"},
    {"ISOCount", u32, "100010"},
    {"Interp", word, "off", "2"},
    {"Key", text, "take"},
    {"ListElementAtEnd", word, "pause", "1"},
    {"ListElementAtStart", word, "pause", "1"},
    {"ListID", text, "evening"},
    {"ListIndex", u16, " 65535 ", "65535"},
    {"ListPlayMode", word, "pgm_pvw", "1"},
    {"LoadedStamp", u64, "10000000001"},
    {"Loop", word, "pingpongto", "4"},
    {"LoopIn", u32, "100011"},
    {"LoopOut", u32, "100012"},
    {"MeltClientID", u32, "100013"},
    {"MeltElementID", u32, "100014"},
    {"MeltFlagInhibitElementNumbering", flag, ""},
    {"MeltFlagInhibitListNumbering", flag, ""},
    {"MeltFlagInhibitPortNumbering", flag, ""},
    {"MeltFlagInhibitTimecodeNumbering", flag, ""},
    {"MeltFlagInhibitUserInteraction", flag, ""},
    {"MeltInPoint", u32, "100015"},
    {"MeltLabel", text, "goal"},
    {"MeltListID", u32, "100016"},
    {"MeltOutPoint", u32, "100017"},
    {"MetaEditStamp", u64, "10000000004"},
    {"MetadataDatabase", text, "main"},
    {"MetadataPrefix", text, "show."},
    {"ModifiedFlag", word, "modified", "1"},
    {"NaturalSpeed", fixed, "-0.5X", "-32768"},
    {"ParentUUID", text, "2c3d"},
    {"Playback", word, "f12", "2"},
    {"PlayedStamp", u64, "10000000003"},
    {"PrecueCount", u32, "100018"},
    {"PreviewChannel", word, "L", "11"},
    {"ProgramChannel", word, "K", "10"},
    {"Project", text, "Olympia"},
    {"ReadOnly", boolean, "false"},
    {"ReadOnlyContent", boolean, "true"},
    {"ReadOnlyMeta", boolean, " false ", "false"},
    {"ReferenceSource", word, "refsdhd", "3"},
    {"SSMSpeed", u32, "100019"},
    {"SVNPath", text, "trunk"},
    {"SVNVersion", text, "4711"},
    {"SonyEditMask", u16, "1023"},
    {"SpecialClipType", word, "ssm3", "9"},
    {"Speed", fixed, "1.5X", "98304"},
    {"StealStatus", word, "export", "2"},
    {"StealSwapped", boolean, "true"},
    {"TcStartTrigger", u32, "100020"},
    {"Temperature10", u32, "100021"},
    {"TimecodeSource", word, "rec0_stripe", "3"},
    {"Title", text, "\u00D6ffnung"},
    {"TotalDiskSpace", u64, "10000000006"},
    {"TrackType", word, "audio", "2"},
    {"TransitionDuration", u32, "100022"},
    {"TransitionInProgress", boolean, "true"},
    {"TransitionType", word, "dissolve", "1"},
    {"TrimEnd", u32, "100023"},
    {"TrimStart", u32, "100024"},
    {"UnloadedStamp", u64, "10000000002"},
    {"VClipID", text, "vclip 1"},
    {"Valid", boolean, "true"},
    {"Value", text, " two "},
    {"VideoRate", word, "47_95", "4"},
    {"VideoResolution", word, "525i", "5"},
    {"VideoStandard", word, "525_59_94i", "26"},
};

// Lists and vectors, and the elements that are a timecode under another name.
struct Literal {
    std::string_view name;
    std::string_view content;
    std::string_view seen;
    std::string_view bad = {};
    std::string_view complaint = {};
};

constexpr Literal literal_elements[] = {
    {"ConfigurationItemAllowedValues",
     "<ConfigurationItemValue>on</ConfigurationItemValue>"
     "<ConfigurationItemValue> off </ConfigurationItemValue>",
     "[on,  off ]"},
    {"DisplayTimecode",
     "<Valid>true</Valid><VideoStandard>1080_50i</VideoStandard><FieldNumber>1001</FieldNumber>"
     "<DropFrameFlag>ndf</DropFrameFlag>",
     "{true, 19, 1001, 1}", "<FieldNumber>1001</FieldNumber>",
     "Tag 'Valid' not found within 'DisplayTimecode'"},
    {"InputTimecode", "<Valid>false</Valid><DropFrameFlag>df</DropFrameFlag>", "{false, -, -, 0}",
     "<Valid>false</Valid><DropFrameFlag>DF</DropFrameFlag>",
     "Tag InputTimecode contains invalid value 'DropFrameFlag'"},
    {"KeyList", "<Key>title</Key><Key> shot </Key><Key></Key>", "[title,  shot , ]"},
    {"LevelList", "<Level>0</Level><Level> 100025 </Level>", "[0, 100025]",
     "<Level>0</Level><Level>loud</Level>", "Tag Level contains invalid value 'loud'"},
    {"MetadataList",
     "<Metadata><Key>title</Key><Value>Final</Value></Metadata>"
     "<Metadata><Value></Value><Key> shot</Key></Metadata>",
     "[{title, Final}, { shot, }]", "<Metadata><Key>title</Key></Metadata>",
     "Tag 'Value' not found within 'Metadata'"},
    {"StripeTimecode", "<Valid>true</Valid><FieldNumber>-5</FieldNumber>", "{true, -, -5, -}",
     "<Valid>perhaps</Valid>", "Tag Valid contains invalid boolean value 'perhaps'"},
    {"TrackInfoVector",
     "<TrackInfo><TrackType>video</TrackType></TrackInfo>"
     "<TrackInfo><TrackType>timecode</TrackType><TrimStart>100026</TrimStart></TrackInfo>",
     "[{0, -}, {3, 100026}]", "<TrackInfo><TrimStart>1</TrimStart></TrackInfo>",
     "Tag 'TrackType' not found within 'TrackInfo'"},
};

// The fields in reading order: `?` marks an optional one, `!` a flag.
struct LayoutRow {
    std::string_view name;
    std::string_view fields;
};

constexpr LayoutRow composite_rows[] = {
    {"Alert",
     "AlertingPriority AlertingLevel AlertName AlertNameDescription AlertValueDescription"},
    {"ChannelInformation",
     "ClipID ClipLength? Interp? Loop? LoopIn? LoopOut? Playback? AngleCount? Angle? "
     "AudioTrackCount? EEStatus? ProgramChannel? PreviewChannel? PrecueCount? StealStatus? "
     "TransitionInProgress? NaturalSpeed?"},
    {"ChaseElement", "ContentID GotoPosition? ClipPosition? Speed? Angle? ChaseElementAtEnd? "
                     "ClipStartOffset? TcStartTrigger?"},
    {"ChasePlaybackIndex", "ChaseIndex?"},
    {"ClipInfo",
     "ClipID VideoStandard TrackInfoVector Title Creator Project Playback Interp Loop LoopOut "
     "LoopIn ClipLength TimecodeSource StripeTimecode ReadOnly ID8? ReadOnlyMeta? "
     "ReadOnlyContent? MetadataList? SpecialClipType? ISOCount? SSMSpeed? CompressionBitrate? "
     "Frame0Timecode? TrimStart? TrimEnd? ClipLengthUntrimmed? CompressionType? ClipUUID? "
     "ParentUUID? Angle? LoadedStamp? UnloadedStamp? PlayedStamp? MetaEditStamp? "
     "ContentEditStamp? ClipFileType?"},
    {"CompressionInfo",
     "CompressionYSize CompressionCSize CompressionKSize AudioTrackCount CompressionVSymbol "
     "CompressionKSymbol CompressionASymbol CompressionVFrameBased? CompressionKFrameBased? "
     "CompressionAFrameBased?"},
    {"ConfigurationItem",
     "ConfigurationItemName ConfigurationItemAccess ConfigurationItemEffectiveValue "
     "ConfigurationItemBootValue ConfigurationItemSavedValue ConfigurationItemAllowedValues "
     "ConfigurationItemRequiresReboot!"},
    {"ContentID", "ClipID? VClipID?"},
    {"DiskSpaceChange", "TotalDiskSpace AvailableDiskSpace"},
    {"EEStatus", "SonyEditMask AutoEE"},
    {"Frame0Timecode", "FieldNumber? DropFrameFlag?"},
    {"ListElement", "ContentID GotoPosition? ClipPosition? Speed? Angle? ListElementAtStart? "
                    "ListElementAtEnd? Transition?"},
    {"ListPlaybackIndex", "ListIndex?"},
    {"MeltFlags", "MeltClientID MeltFlagInhibitPortNumbering! MeltFlagInhibitListNumbering! "
                  "MeltFlagInhibitElementNumbering! MeltFlagInhibitUserInteraction! "
                  "MeltFlagInhibitTimecodeNumbering!"},
    {"MeltItem", "MeltClientID MeltListID MeltElementID ClipID MeltInPoint MeltOutPoint Angle? "
                 "Speed? MeltLabel?"},
    {"Metadata", "Key Value"},
    {"Timecode", "Valid VideoStandard? FieldNumber? DropFrameFlag?"},
    {"TrackInfo", "TrackType TrimStart?"},
    {"Transition", "TransitionType TransitionDuration?"},
};

constexpr LayoutRow reply_rows[] = {
    {"ok", ""},
    {"error", "ErrorMessage ErrorCode"},
    {"clipexists", "ClipID Exists"},
    {"clipid", "ClipID"},
    {"directory_name", "DirectoryName"},
    {"configuration_item", "ConfigurationItem"},
    {"one_configuration_item", "ConfigurationItem"},
    {"clipinfo", "ClipInfo"},
    {"computername", "ComputerName"},
    {"reference_source", "ReferenceSource"},
    {"video_standard", "VideoStandard VideoRate VideoResolution"},
    {"disk_usage", "TotalDiskSpace AvailableDiskSpace FieldSize"},
    {"version_info", "SVNVersion SVNPath"},
    {"compression_info", "CompressionInfo"},
    {"melt_item", "MeltItem"},
    {"melt_flags", "MeltFlags"},
    {"steal_info", "StealSwapped"},
    {"listid", "ListID"},
    {"chaseid", "ChaseID"},
    {"list_element", "ListElement"},
    {"chase_element", "ChaseElement"},
    {"metadata", "MetadataDatabase MetadataPrefix MetadataList"},
    {"volatile_file_info", "KeyList"},
    {"channel_current_timecode", "Channel DisplayTimecode ClipLength ClipPosition"},
};

constexpr LayoutRow report_rows[] = {
    {"clip_created", "ClipID"},
    {"clip_changed", "ClipID"},
    {"clip_deleted", "ClipID"},
    {"directory_created", "DirectoryName"},
    {"directory_deleted", "DirectoryName"},
    {"playlist_created", "ListID"},
    {"playlist_changed", "ListID"},
    {"playlist_deleted", "ListID"},
    {"chaselist_created", "ChaseID"},
    {"chaselist_changed", "ChaseID"},
    {"chaselist_deleted", "ChaseID"},
    {"config_changed", "ConfigurationChange?"},
    {"disk_space_changed", "DiskSpaceChange"},
    {"temperature", "Temperature10"},
    {"chase_ltc_timecode", "Timecode"},
    {"channel_status", "Channel ChannelStatus ClipID?"},
    {"channel_clipid", "Channel ClipID"},
    {"channel_speed", "Channel Speed"},
    {"channel_timecode", "Channel ClipPosition DisplayTimecode InputTimecode"},
    {"channel_info", "Channel ChannelInformation"},
    {"channel_peak", "Channel LevelList"},
    {"channel_aux_audio_status", "Channel ChannelStatus ClipID?"},
    {"channel_aux_audio_clipid", "Channel ClipID"},
    {"channel_aux_audio_speed", "Channel Speed"},
    {"channel_aux_audio_timecode", "Channel ClipPosition"},
    {"channel_aux_audio_info", "Channel ChannelInformation"},
    {"channel_aux_audio_peak", "Channel LevelList"},
    {"melt_available", "MeltClientID"},
    {"channel_listplay_list", "Channel ListID ListPlayMode"},
    {"channel_listplay_unloaded", "Channel"},
    {"channel_listplay_item_exists", "Channel ListIndex ListElement"},
    {"channel_listplay_item_insert", "Channel ListIndex ListElement"},
    {"channel_listplay_item_remove", "Channel ListIndex"},
    {"channel_listplay_clear_all", "Channel"},
    {"channel_listplay_air_now", "Channel ListPlaybackIndex"},
    {"channel_listplay_air_lock", "Channel ListPlaybackIndex"},
    {"channel_listplay_air_next", "Channel ListPlaybackIndex"},
    {"channel_listplay_loop", "Channel Loop"},
    {"channel_listplay_modified", "Channel ModifiedFlag"},
    {"channel_chaseplay_chase", "Channel ChaseID"},
    {"channel_chaseplay_unloaded", "Channel"},
    {"channel_chaseplay_item_exists", "Channel ChaseIndex ChaseElement"},
    {"channel_chaseplay_item_insert", "Channel ChaseIndex ChaseElement"},
    {"channel_chaseplay_item_remove", "Channel ChaseIndex"},
    {"channel_chaseplay_clear_all", "Channel"},
    {"channel_chaseplay_air_now", "Channel ChasePlaybackIndex"},
    {"channel_chaseplay_modified", "Channel ModifiedFlag"},
    {"metadata_change", "MetadataDatabase MetadataPrefix MetadataList"},
    {"metadata_remove", "MetadataDatabase MetadataPrefix KeyList"},
    {"export_requested", "Channel"},
    {"userdict_change", "Key"},
    {"alert", "Alert"},
    {"ltc_timecode", "Timecode"},
};

struct Bad {
    std::string content;
    std::string complaint;
};

// One step outside of the type.
Bad bad_value(Type type, const std::string& name, const std::string& parent)
{
    const auto number = [&name](const std::string& content) {
        return Bad{content, "Tag " + name + " contains invalid value '" + content + "'"};
    };
    switch (type) {
    case boolean:
        return {"yes", "Tag " + name + " contains invalid boolean value 'yes'"};
    case u8:
        return number("256");
    case u16:
        return number("65536");
    case u32:
        return number("4294967296");
    case u64:
        return number("18446744073709551616");
    case i32:
        return number("-2147483649");
    case fixed:
        return number("1.5");
    case word:
        return {"nonsense", "Tag " + parent + " contains invalid value '" + name + "'"};
    default:
        return {};
    }
}

std::string element(const std::string& name, const std::string& content)
{
    return "<" + name + ">" + content + "</" + name + ">";
}

Layout make_layout(const LayoutRow& row);

template <typename Rows>
const auto* find_row(const Rows& rows, std::string_view name)
{
    for (const auto& row : rows) {
        if (row.name == name) {
            return &row;
        }
    }
    return static_cast<decltype(&rows[0])>(nullptr);
}

Layout composite(std::string_view name)
{
    const LayoutRow* row = find_row(composite_rows, name);
    if (row == nullptr) {
        throw std::invalid_argument("no sample of element " + std::string(name));
    }
    return make_layout(*row);
}

// A composite is bad by the first of its fields that can be.
Bad bad_composite(const Layout& layout)
{
    for (std::size_t i = 0; i < layout.fields.size(); ++i) {
        if (!layout.fields[i].bad.empty()) {
            return {layout.xml_with(i, layout.fields[i].bad), layout.fields[i].complaint};
        }
    }
    return {};
}

Field make_field(const std::string& name, Presence presence, const std::string& parent)
{
    if (const Simple* simple = find_row(simple_elements, name)) {
        const Bad bad = bad_value(simple->type, name, parent);
        const std::string content(simple->content);
        const std::string seen(simple->seen.empty() ? simple->content : simple->seen);
        return {name,
                presence,
                element(name, content),
                simple->type == flag ? "true" : seen,
                bad.content.empty() ? "" : element(name, bad.content),
                bad.complaint};
    }
    if (const Literal* literal = find_row(literal_elements, name)) {
        const std::string bad(literal->bad);
        return {name,
                presence,
                element(name, std::string(literal->content)),
                std::string(literal->seen),
                bad.empty() ? "" : element(name, bad),
                std::string(literal->complaint)};
    }
    if (name == "ConfigurationChange") {
        const Layout item = composite("ConfigurationItem");
        const Bad bad = bad_composite(item);
        return {name,
                presence,
                element(name, item.xml() + item.xml()),
                "[" + item.seen() + ", " + item.seen() + "]",
                element(name, item.xml() + bad.content),
                bad.complaint};
    }
    const Layout layout = composite(name);
    const Bad bad = bad_composite(layout);
    return {name, presence, layout.xml(), layout.seen(), bad.content, bad.complaint};
}

Layout make_layout(const LayoutRow& row)
{
    Layout layout{std::string(row.name), {}};
    std::istringstream names{std::string(row.fields)};
    for (std::string name; names >> name;) {
        Presence presence = Presence::required;
        if (name.back() == '?' || name.back() == '!') {
            presence = name.back() == '?' ? Presence::optional : Presence::flag;
            name.pop_back();
        }
        layout.fields.push_back(make_field(name, presence, layout.name));
    }
    return layout;
}

std::vector<Message> make_messages()
{
    std::vector<Message> all;
    for (const LayoutRow& row : reply_rows) {
        all.push_back({true, make_layout(row)});
    }
    for (const LayoutRow& row : report_rows) {
        all.push_back({false, make_layout(row)});
    }
    return all;
}

std::vector<Layout> make_composites()
{
    std::vector<Layout> all;
    for (const LayoutRow& row : composite_rows) {
        all.push_back(make_layout(row));
    }
    return all;
}

} // namespace

std::string Layout::xml() const
{
    return xml_with(fields.size(), {});
}

std::string Layout::xml_with(std::size_t changed, const std::string& replacement) const
{
    std::string content;
    for (std::size_t i = 0; i < fields.size(); ++i) {
        content += i == changed ? replacement : fields[i].xml;
    }
    return element(name, content);
}

std::string Layout::seen() const
{
    return seen_with(fields.size(), {});
}

std::string Layout::seen_with(std::size_t changed, const std::string& replacement) const
{
    std::string values;
    for (std::size_t i = 0; i < fields.size(); ++i) {
        values += (i == 0 ? "" : ", ") + (i == changed ? replacement : fields[i].seen);
    }
    return "{" + values + "}";
}

std::string Message::wrap(const std::string& content_xml) const
{
    return is_reply ? element("reply", element("xid", "17") + content_xml)
                    : element("report", content_xml);
}

std::string Message::call(const std::string& content_seen) const
{
    return (is_reply ? "17 " : "") + content.name + content_seen;
}

const std::vector<Message>& messages()
{
    static const std::vector<Message> all = make_messages();
    return all;
}

const Message& message(const std::string& name)
{
    for (const Message& known : messages()) {
        if (known.content.name == name) {
            return known;
        }
    }
    throw std::invalid_argument("no message " + name);
}

const std::vector<Layout>& composites()
{
    static const std::vector<Layout> all = make_composites();
    return all;
}

} // namespace wire
