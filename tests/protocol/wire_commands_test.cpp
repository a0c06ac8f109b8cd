// Every command of the library and its exact bytes. The rows below are written down a second time,
// without a look at the library's tables.

#include "protocol/zavl3_commands.h"

#include "support/assert_watch.h"
#include "support/recording_api.h"
#include "support/xml_text.h"

#include <functional>
#include <ostream>
#include <string>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

namespace
{

using namespace ZAVL3;

// An element with a value of exactly the type that callers give, and its bytes.
template <FixedString Name>
struct Sample;

#define SAMPLE(name, bytes, ...)                                                                   \
    template <>                                                                                    \
    struct Sample<name> {                                                                          \
        static constexpr const char* wire = bytes;                                                 \
        static auto value() { return __VA_ARGS__; }                                                \
    };

#define NL "\r\n"

ChannelSet channels()
{
    ChannelSet set;
    set.add(word<Channel>("B"));
    set.add(word<Channel>("A"));
    set.add(word<Channel>("B"));
    return set;
}

TrackSet tracks()
{
    TrackSet set;
    set.add(word<TrackType>("audio"));
    set.add(word<TrackType>("video"));
    return set;
}

Metadata metadata(const char* key, const char* value)
{
    Metadata entry;
    entry.set<"Key">(AString(key)).set<"Value">(AString(value));
    return entry;
}

Transition dissolve()
{
    Transition transition;
    transition.set<"TransitionType">(word<TransitionType>("dissolve"));
    transition.set<"TransitionDuration">(25u);
    return transition;
}

ClipAttrChange title_change()
{
    ClipAttrChange change;
    change.set<"Title">(AString("Final"));
    return change;
}

SAMPLE("Angle", "<Angle>255</Angle>", std::uint8_t{255})
SAMPLE("AutoEE", "<AutoEE>true</AutoEE>", true)
SAMPLE("BlackOnCue", "<BlackOnCue />", true)
SAMPLE("Channel", "<Channel>C</Channel>", word<Channel>("C"))
SAMPLE("ChannelReportType", "<ChannelReportType>listplay</ChannelReportType>",
       word<ChannelReportType>("listplay"))
SAMPLE("ChannelSet",
       "<ChannelSet>" NL "<Channel>B</Channel>" NL "<Channel>A</Channel>" NL "</ChannelSet>",
       channels())
SAMPLE("ClipAttrChange", "<ClipAttrChange>" NL "<Title>Final</Title>" NL "</ClipAttrChange>",
       title_change())
SAMPLE("ClipID", "<ClipID>news_open</ClipID>", AString("news_open"))
SAMPLE("ClipLength", "<ClipLength>4294967295</ClipLength>", std::uint32_t{4294967295})
SAMPLE("ClipPosition", "<ClipPosition>1500</ClipPosition>", std::uint32_t{1500})
SAMPLE("ClipScope", "<ClipScope>vclip</ClipScope>", word<ClipScope>("vclip"))
SAMPLE("DirectoryName", "<DirectoryName>rushes</DirectoryName>", AString("rushes"))
SAMPLE("FollowSpeed", "<FollowSpeed>oneX</FollowSpeed>", word<FollowSpeed>("oneX"))
SAMPLE("FromID", "<FromID>old</FromID>", AString("old"))
SAMPLE("GotoPosition", "<GotoPosition>0</GotoPosition>", std::uint32_t{0})
SAMPLE("JogDistance", "<JogDistance>-2147483648</JogDistance>", std::int32_t{-2147483647 - 1})
SAMPLE("KeyList", "<KeyList>" NL "<Key>title</Key>" NL "<Key>shot</Key>" NL "</KeyList>",
       std::vector{AString("title"), AString("shot")})
SAMPLE("Layer", "<Layer>bed</Layer>", word<Layer>("bed"))
SAMPLE("ListID", "<ListID>evening</ListID>", AString("evening"))
SAMPLE("ListIndex", "<ListIndex>65535</ListIndex>", std::uint16_t{65535})
SAMPLE("ListPlayMode", "<ListPlayMode>pgm_pvw</ListPlayMode>", word<ListPlayMode>("pgm_pvw"))
SAMPLE("Loop", "<Loop>pingpong</Loop>", word<Loop>("pingpong"))
SAMPLE("LoopIn", "<LoopIn>11</LoopIn>", std::uint32_t{11})
SAMPLE("LoopOut", "<LoopOut>22</LoopOut>", std::uint32_t{22})
SAMPLE("MetadataDatabase", "<MetadataDatabase>main</MetadataDatabase>", AString("main"))
SAMPLE("MetadataList",
       "<MetadataList>" NL "<Metadata>" NL "<Key>title</Key>" NL "<Value>Final</Value>" NL
       "</Metadata>" NL "<Metadata>" NL "<Key>shot</Key>" NL "<Value />" NL "</Metadata>" NL
       "</MetadataList>",
       std::vector{metadata("title", "Final"), metadata("shot", "")})
SAMPLE("MetadataPrefix", "<MetadataPrefix>show.</MetadataPrefix>", AString("show."))
SAMPLE("MinLatency", "<MinLatency />", true)
SAMPLE("ParentClipID", "<ParentClipID>master</ParentClipID>", AString("master"))
SAMPLE("Playback", "<Playback>field</Playback>", word<Playback>("field"))
SAMPLE("PrecueCondition", "<PrecueCondition>end_of_clip</PrecueCondition>",
       word<PrecueCondition>("end_of_clip"))
SAMPLE("ReportType", "<ReportType>clip_change</ReportType>", word<ReportType>("clip_change"))
SAMPLE("Roll", "<Roll>cueonly</Roll>", word<Roll>("cueonly"))
SAMPLE("SonyEditMask", "<SonyEditMask>1023</SonyEditMask>", std::uint16_t{0x3FF})
SAMPLE("Speed", "<Speed>-1.25X</Speed>", fract16{-0x14000})
SAMPLE("TimeDelay", "<TimeDelay>3000</TimeDelay>", std::uint32_t{3000})
SAMPLE("ToID", "<ToID>new</ToID>", AString("new"))
SAMPLE("TrackSet",
       "<TrackSet>" NL "<TrackType>audio</TrackType>" NL "<TrackType>video</TrackType>" NL
       "</TrackSet>",
       tracks())
SAMPLE("Transition",
       "<Transition>" NL "<TransitionType>dissolve</TransitionType>" NL
       "<TransitionDuration>25</TransitionDuration>" NL "</Transition>",
       dissolve())
SAMPLE("TransitionDuration", "<TransitionDuration>50</TransitionDuration>", std::uint32_t{50})
SAMPLE("TransitionType", "<TransitionType>cut</TransitionType>", word<TransitionType>("cut"))
SAMPLE("VClipDistance", "<VClipDistance>-7</VClipDistance>", std::int32_t{-7})
SAMPLE("VClipID", "<VClipID>vclip 1</VClipID>", AString("vclip 1"))
SAMPLE("VClipPosition", "<VClipPosition>90000</VClipPosition>", std::uint32_t{90000})

struct RowField {
    bool optional;
    const char* wire;
};

struct Row {
    std::string command;
    std::vector<RowField> fields; // in wire order
    // Sends the command with the chosen fields; gives the bytes.
    std::function<std::string(const std::vector<bool>&)> send;
};

void PrintTo(const Row& row, std::ostream* out)
{
    *out << row.command;
}

template <FixedString Spelling, typename Command>
void set_sample(Command& command, bool chosen)
{
    constexpr auto name = FieldOf<Spelling>::name;
    const auto value = Sample<name>::value();
    using Value = typename ElementCodec<name>::type::value_type;
    static_assert(std::is_same_v<std::remove_const_t<decltype(value)>, Value>);
    if (chosen) {
        command.template set<name>(value);
    }
}

// `?` marks what can be left out, flags too.
template <typename Command, FixedString... Spellings>
Row make_row(const char* command)
{
    static_assert(Command::field_count == sizeof...(Spellings), "a field too many or too few");
    const auto send = [](const std::vector<bool>& chosen) {
        RecordingAPI api;
        Command fields;
        [[maybe_unused]] std::size_t at = 0;
        (set_sample<Spellings>(fields, chosen[at++]), ...);
        api.send(AString("17"), fields);
        return api.take_bytes();
    };
    return {
        command, {{FieldOf<Spellings>::marked, Sample<FieldOf<Spellings>::name>::wire}...}, send};
}

#define ROW(name, ...) make_row<command::name __VA_OPT__(, ) __VA_ARGS__>(#name)

const std::vector<Row> rows = {
    ROW(channel_report_register, "Channel", "ChannelReportType"),
    ROW(clear_out_point, "Channel"),
    ROW(clip_exists, "ClipID"),
    ROW(create_child_clip, "ClipID", "ParentClipID", "Angle?"),
    ROW(create_clip, "ClipID", "TrackSet", "ClipLength?", "Channel?"),
    ROW(create_directory, "DirectoryName"),
    ROW(cue_clip, "Channel", "ClipID", "Loop?", "GotoPosition?", "ClipPosition?", "Angle?",
        "Playback?", "Speed?", "ClipScope?", "LoopIn?", "LoopOut?", "Layer?", "BlackOnCue?"),
    ROW(delete_clip, "ClipID"),
    ROW(download_clipids, "DirectoryName?"),
    ROW(download_directory_names, "DirectoryName?"),
    ROW(download_listids),
    ROW(download_metadata, "MetadataDatabase", "MetadataPrefix?"),
    ROW(ee, "Channel", "SonyEditMask", "AutoEE"),
    ROW(gang_ee, "ChannelSet", "SonyEditMask", "AutoEE"),
    ROW(gang_gotocmd, "ChannelSet", "GotoPosition", "MinLatency?"),
    ROW(gang_insert_edit, "ChannelSet", "SonyEditMask"),
    ROW(gang_jog, "ChannelSet", "JogDistance", "MinLatency?"),
    ROW(gang_play, "ChannelSet", "Speed?", "MinLatency?"),
    ROW(gang_precue_activate, "ChannelSet"),
    ROW(gang_stop, "ChannelSet", "MinLatency?"),
    ROW(get_clip_info, "ClipID"),
    ROW(get_computer_name),
    ROW(get_disk_usage),
    ROW(get_video_standard),
    ROW(go_live, "Channel", "ClipID?", "Angle?", "TimeDelay?", "MinLatency?"),
    ROW(gotocmd, "Channel", "GotoPosition", "MinLatency?"),
    ROW(insert_edit, "Channel", "SonyEditMask"),
    ROW(iso_angle, "Channel", "Angle"),
    ROW(jog, "Channel", "JogDistance", "Layer?", "MinLatency?"),
    ROW(list_load, "Channel", "ListID", "ListPlayMode?", "Transition?", "Layer?"),
    ROW(list_play_next, "Channel", "ListIndex", "Roll"),
    ROW(list_play_now, "Channel", "ListIndex", "Roll", "JogDistance?"),
    ROW(metadata_erase, "MetadataDatabase", "KeyList", "MetadataPrefix?"),
    ROW(metadata_set, "MetadataDatabase", "MetadataList", "MetadataPrefix?"),
    ROW(modify_clip_attributes, "ClipID", "ClipAttrChange"),
    ROW(play, "Channel", "Speed?", "Layer?", "MinLatency?"),
    ROW(precue, "Channel", "ClipID", "PrecueCondition?", "GotoPosition?", "ClipLength?", "Angle?",
        "LoopIn?", "LoopOut?", "Loop?", "MinLatency?"),
    ROW(precue_activate, "Channel"),
    ROW(precue_clear, "Channel"),
    ROW(rename_clip, "FromID", "ToID"),
    ROW(report_register, "ReportType"),
    ROW(set_loop, "Channel", "Loop", "Layer?"),
    ROW(set_out_point, "Channel", "ClipPosition"),
    ROW(stop, "Channel", "Layer?", "MinLatency?"),
    ROW(take, "Channel", "TransitionType?", "TransitionDuration?", "FollowSpeed?"),
    ROW(unload, "Channel", "Layer?"),
    ROW(unwatch_metadata_database, "MetadataDatabase"),
    ROW(vclip_add_segment, "VClipID", "ClipID", "ClipPosition", "TrackSet", "VClipPosition",
        "ClipLength", "Speed?"),
    ROW(vclip_cfg_tracks, "VClipID", "ClipID", "TrackSet"),
    ROW(vclip_clear_segment, "VClipID", "TrackSet", "VClipPosition", "ClipLength"),
    ROW(vclip_create, "VClipID", "ClipLength"),
    ROW(vclip_free, "VClipID"),
    ROW(vclip_modification_end, "VClipID"),
    ROW(vclip_modification_start, "VClipID"),
    ROW(vclip_ripple, "VClipID", "TrackSet", "VClipPosition", "VClipDistance"),
    ROW(vclip_track_enable, "VClipID", "TrackSet"),
    ROW(watch_metadata_database, "MetadataDatabase", "MetadataPrefix?"),
};

std::string expected_bytes(const Row& row, const std::vector<bool>& chosen)
{
    std::string fields;
    for (std::size_t i = 0; i < row.fields.size(); ++i) {
        if (chosen[i]) {
            fields += row.fields[i].wire;
            fields += NL;
        }
    }
    const std::string own = fields.empty()
                                ? "<" + row.command + " />"
                                : "<" + row.command + ">" NL + fields + "</" + row.command + ">";
    return "<cmd>" NL "<xid>17</xid>" NL + own + NL "</cmd>";
}

class WireCommand : public testing::TestWithParam<Row>
{
protected:
    static const Row& row() { return GetParam(); }

    // Which fields go out when none of the optional ones is set.
    static std::vector<bool> required()
    {
        std::vector<bool> chosen;
        for (const RowField& field : row().fields) {
            chosen.push_back(!field.optional);
        }
        return chosen;
    }

    static void expect_exact_bytes(const std::vector<bool>& chosen)
    {
        EXPECT_EQ(row().send(chosen), expected_bytes(row(), chosen));
    }
};

TEST_P(WireCommand, GoesOutWithoutItsOptionalFields)
{
    expect_exact_bytes(required());
}

TEST_P(WireCommand, GoesOutWithEachOptionalFieldAlone)
{
    for (std::size_t i = 0; i < row().fields.size(); ++i) {
        std::vector<bool> chosen = required();
        chosen[i] = true;
        expect_exact_bytes(chosen);
    }
}

TEST_P(WireCommand, GoesOutWithAllItsFieldsInOrder)
{
    expect_exact_bytes(std::vector<bool>(row().fields.size(), true));
}

INSTANTIATE_TEST_SUITE_P(All, WireCommand, testing::ValuesIn(rows),
                         [](const auto& row) { return row.param.command; });

TEST(WireCommands, AreAllThatTheLibraryKnows)
{
    const std::vector<std::string> known = {
#define NAME(name, ...) #name,
        ZAVL3_COMMANDS(NAME)
#undef NAME
    };
    std::vector<std::string> expected;
    for (const Row& row : rows) {
        expected.push_back(row.command);
    }
    EXPECT_EQ(known, expected);
    EXPECT_EQ(rows.size(), 57u);
}

template <typename Command>
std::string sent(const Command& fields)
{
    RecordingAPI api;
    api.send(AString("4711"), fields);
    return api.take_bytes();
}

template <typename Command>
Command on_channel(const char* letter)
{
    Command fields;
    Channel channel{};
    EXPECT_TRUE(from_wire(AString(letter), &channel));
    fields.template set<"Channel">(channel);
    return fields;
}

TEST(WireCommands, LookLikeThis)
{
    command::stop stop = on_channel<command::stop>("A");
    EXPECT_EQ(sent(stop), "<cmd>\r\n<xid>4711</xid>\r\n<stop>\r\n<Channel>A</Channel>\r\n</stop>"
                          "\r\n</cmd>");
    stop.set<"MinLatency">(true);
    EXPECT_EQ(sent(stop), "<cmd>\r\n<xid>4711</xid>\r\n<stop>\r\n<Channel>A</Channel>\r\n"
                          "<MinLatency />\r\n</stop>\r\n</cmd>");
    EXPECT_EQ(sent(command::get_disk_usage()),
              "<cmd>\r\n<xid>4711</xid>\r\n<get_disk_usage />\r\n</cmd>");
}

TEST(WireCommands, FollowEachOtherWithNothingBetween)
{
    RecordingAPI api;
    api.send(AString("1"), command::get_disk_usage());
    api.send(AString("2"), command::get_computer_name());
    EXPECT_EQ(api.take_bytes(), "<cmd>\r\n<xid>1</xid>\r\n<get_disk_usage />\r\n</cmd>"
                                "<cmd>\r\n<xid>2</xid>\r\n<get_computer_name />\r\n</cmd>");
}

std::string sent_clip(const std::string& id)
{
    command::clip_exists fields;
    fields.set<"ClipID">(utf8(id));
    return sent(fields);
}

std::string clip_exists_bytes(const std::string& element)
{
    return "<cmd>\r\n<xid>4711</xid>\r\n<clip_exists>\r\n" + element +
           "\r\n</clip_exists>\r\n</cmd>";
}

TEST(WireCommands, CarryTextsAsUTF8)
{
    const std::string id = "\u00D6l \u20AC \U0001F3AC";
    EXPECT_EQ(sent_clip(id), clip_exists_bytes("<ClipID>" + id + "</ClipID>"));
}

TEST(WireCommands, EscapeAllFiveEntities)
{
    EXPECT_EQ(sent_clip("'<a>' & \"b\" &amp;"),
              clip_exists_bytes("<ClipID>&apos;&lt;a&gt;&apos; &amp; &quot;b&quot; &amp;amp;"
                                "</ClipID>"));
}

TEST(WireCommands, KeepTheSpacesOfTexts)
{
    EXPECT_EQ(sent_clip("  a\tb\r\n "), clip_exists_bytes("<ClipID>  a\tb\r\n </ClipID>"));
}

TEST(WireCommands, CarryAnEmptyTextInTheShortForm)
{
    EXPECT_EQ(sent_clip(""), clip_exists_bytes("<ClipID />"));
}

TEST(WireCommands, HaveNoLimitOfLength)
{
    std::string id;
    for (int i = 0; i < 40000; ++i) {
        id += static_cast<char>('a' + i % 26);
    }
    EXPECT_EQ(sent_clip(id), clip_exists_bytes("<ClipID>" + id + "</ClipID>"));
}

TEST(WireCommands, CarryAnEnumerationOutsideItsTableAsAnEmptyText)
{
    command::set_loop fields;
    fields.set<"Channel">(Channel{12}).set<"Loop">(Loop{-1}).set<"Layer">(Layer{2});
    EXPECT_EQ(sent(fields), "<cmd>\r\n<xid>4711</xid>\r\n<set_loop>\r\n<Channel />\r\n<Loop />\r\n"
                            "<Layer />\r\n</set_loop>\r\n</cmd>");
}

TEST(WireCommands, CarrySpeedsWithUpTo15Digits)
{
    struct SpeedRow {
        fract16 value;
        const char* text;
    };
    for (const SpeedRow& row :
         {SpeedRow{0, "0X"}, SpeedRow{0x10000, "1X"}, SpeedRow{-0x10000, "-1X"},
          SpeedRow{-0x8000, "-0.5X"}, SpeedRow{200 * 65536, "200X"},
          SpeedRow{-200 * 65536, "-200X"}, SpeedRow{0x4000, "0.25X"},
          SpeedRow{1, "0.000015258789063X"}, SpeedRow{-1, "-0.000015258789063X"},
          SpeedRow{0x2666, "0.149993896484375X"}, SpeedRow{0x7FFFFFFF, "32767.999984741210938X"},
          SpeedRow{-0x7FFFFFFF - 1, "-32768X"}}) {
        command::play fields = on_channel<command::play>("A");
        fields.set<"Speed">(row.value);
        EXPECT_EQ(sent(fields), std::string("<cmd>\r\n<xid>4711</xid>\r\n<play>\r\n"
                                            "<Channel>A</Channel>\r\n<Speed>") +
                                    row.text + "</Speed>\r\n</play>\r\n</cmd>");
    }
}

// A composite as the one field of a command, in one line for reading.
template <FixedString Name, typename Value>
std::string written(const Value& value)
{
    return to_xml(ElementCodec<Name>::type::write(tag<Name>(), value));
}

TEST(WireCommands, CarryEveryFieldOfAnAttributeChange)
{
    ClipAttrChange change;
    Frame0Timecode frame0;
    frame0.set<"FieldNumber">(-1).set<"DropFrameFlag">(word<DropFrameFlag>("df"));
    TrackAttr attr;
    attr.set<"TrackType">(word<TrackType>("key"));
    TrackAttrVector attrs;
    attrs.push_back(attr);
    Timecode stripe;
    stripe.set<"Valid">(true).set<"FieldNumber">(90000);
    change.set<"Frame0Timecode">(frame0)
        .set<"TrackAttrVector">(attrs)
        .set<"TrimEnd">(9u)
        .set<"TrimStart">(8u)
        .set<"KeyList">(std::vector{AString("k")})
        .set<"MetadataList">(std::vector{metadata("m", "v")})
        .set<"StripeTimecode">(stripe)
        .set<"TimecodeSource">(word<TimecodeSource>("striped"))
        .set<"LoopIn">(6u)
        .set<"LoopOut">(7u)
        .set<"Loop">(word<Loop>("loopto"))
        .set<"Interp">(word<Interp>("on"))
        .set<"Playback">(word<Playback>("auto"))
        .set<"Project">(AString("p"))
        .set<"Creator">(AString("c"))
        .set<"Title">(AString("t"))
        .set<"ID8">(AString("i"));
    EXPECT_EQ(written<"ClipAttrChange">(change),
              "<ClipAttrChange><ID8>i</ID8><Title>t</Title><Creator>c</Creator>"
              "<Project>p</Project><Playback>auto</Playback><Interp>on</Interp>"
              "<Loop>loopto</Loop><LoopOut>7</LoopOut><LoopIn>6</LoopIn>"
              "<TimecodeSource>striped</TimecodeSource>"
              "<StripeTimecode><Valid>true</Valid><FieldNumber>90000</FieldNumber></StripeTimecode>"
              "<MetadataList><Metadata><Key>m</Key><Value>v</Value></Metadata></MetadataList>"
              "<KeyList><Key>k</Key></KeyList><TrimStart>8</TrimStart><TrimEnd>9</TrimEnd>"
              "<TrackAttrVector><TrackAttr><TrackType>key</TrackType></TrackAttr></TrackAttrVector>"
              "<Frame0Timecode><FieldNumber>-1</FieldNumber><DropFrameFlag>df</DropFrameFlag>"
              "</Frame0Timecode></ClipAttrChange>");
    EXPECT_EQ(written<"ClipAttrChange">(ClipAttrChange()), "<ClipAttrChange />");
}

TEST(WireCommands, CarryTimecodesWithTheFieldsThatAreSet)
{
    Timecode timecode;
    EXPECT_EQ(written<"StripeTimecode">(timecode),
              "<StripeTimecode><Valid>false</Valid></StripeTimecode>");
    timecode.set<"DropFrameFlag">(word<DropFrameFlag>("ndf"))
        .set<"FieldNumber">(-12)
        .set<"VideoStandard">(word<VideoStandard>("1080_23_98psf"))
        .set<"Valid">(true);
    EXPECT_EQ(written<"StripeTimecode">(timecode),
              "<StripeTimecode><Valid>true</Valid><VideoStandard>1080_23_98psf</VideoStandard>"
              "<FieldNumber>-12</FieldNumber><DropFrameFlag>ndf</DropFrameFlag></StripeTimecode>");
    EXPECT_EQ(written<"Frame0Timecode">(Frame0Timecode()), "<Frame0Timecode />");
    Frame0Timecode frame0;
    frame0.set<"DropFrameFlag">(word<DropFrameFlag>("df"));
    EXPECT_EQ(written<"Frame0Timecode">(frame0),
              "<Frame0Timecode><DropFrameFlag>df</DropFrameFlag></Frame0Timecode>");
}

TEST(WireCommands, CarryATransitionWithOrWithoutItsDuration)
{
    EXPECT_EQ(written<"Transition">(Transition()),
              "<Transition><TransitionType>cut</TransitionType></Transition>");
    EXPECT_EQ(written<"Transition">(dissolve()),
              "<Transition><TransitionType>dissolve</TransitionType>"
              "<TransitionDuration>25</TransitionDuration></Transition>");
}

TEST(WireCommands, CarryEmptySetsAndListsInTheShortForm)
{
    EXPECT_EQ(written<"ChannelSet">(ChannelSet()), "<ChannelSet />");
    EXPECT_EQ(written<"TrackSet">(TrackSet()), "<TrackSet />");
    EXPECT_EQ(written<"KeyList">(std::vector<AString>()), "<KeyList />");
    EXPECT_EQ(written<"MetadataList">(std::vector<Metadata>()), "<MetadataList />");
    EXPECT_EQ(written<"TrackAttrVector">(TrackAttrVector()), "<TrackAttrVector />");
}

TEST(WireCommands, CarryAllOfASet)
{
    EXPECT_EQ(written<"TrackSet">(TrackSet::all()),
              "<TrackSet><TrackType>video</TrackType><TrackType>key</TrackType>"
              "<TrackType>audio</TrackType><TrackType>timecode</TrackType></TrackSet>");
    std::string all = "<ChannelSet>";
    for (const char letter : std::string("ABCDEFGHIJKL")) {
        all += xml_element("Channel", std::string(1, letter));
    }
    EXPECT_EQ(written<"ChannelSet">(ChannelSet::all()), all + "</ChannelSet>");
}

template <FixedString Name, typename Vector>
void expect_to_stop_at_the_bound(Vector vector, std::uint32_t bound)
{
    AssertWatch watch;
    vector.count = bound;
    const std::string full = written<Name>(vector);
    EXPECT_EQ(watch.count(), 0u);
    EXPECT_EQ(parse_xml(full).get_children().length(), bound);
    for (const std::uint32_t beyond : {bound + 1, 0xFFFFFFFFu}) {
        vector.count = beyond;
        EXPECT_EQ(written<Name>(vector), full);
    }
    EXPECT_EQ(watch.count(), 2u);
    EXPECT_EQ(watch.count("zavl3_tree"), 2u);
}

TEST(WireCommands, StopAtTheBoundOfAVectorAndReportIt)
{
    expect_to_stop_at_the_bound<"ChannelSet">(ChannelSet(), 12);
    expect_to_stop_at_the_bound<"TrackSet">(TrackSet(), 4);
    TrackAttrVector attrs;
    attrs.vec[11].set<"TrimStart">(3u);
    expect_to_stop_at_the_bound<"TrackAttrVector">(attrs, 12);
}

} // namespace
