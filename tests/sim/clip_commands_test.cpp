#include "sim/clip_commands.h"

#include <regex>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "commands_fixture.h"

namespace veltosim
{

namespace
{

using Lines = std::vector<std::string>;

const char* const scenario_text = R"({
"disk": {"total": 1000000, "field_size": 100},
"directories": ["empty/made"],
"clips": [
    {"name": "plain", "length": 100},
    {"name": "full", "length": 50, "angles": 2, "title": "T & t", "creator": " C ", "project": "P",
     "playback": "field", "interp": "off", "loop": "loopto", "loop_in": 5, "loop_out": 40,
     "standard": "720_60p", "timecode_source": "rec0_stripe",
     "stripe_timecode": {"valid": true, "standard": "625_50i", "field": -1, "drop_frame": "df"},
     "tracks": [{"type": "video", "trim_start": 4}, "key", "audio", "timecode"],
     "read_only": false, "id8": "FULLFULL", "read_only_meta": false, "read_only_content": false,
     "metadata": {"a": "1", "b": " <2> "}, "special_type": "iso5", "iso_count": 4294967295,
     "ssm_speed": 3, "bitrate": 100, "frame0_timecode": {"field": -5, "drop_frame": "ndf"},
     "trim_start": 10, "trim_end": 20, "untrimmed_length": 80, "compression": "avci",
     "uuid": "u-1", "parent_uuid": "u-0", "angle": 3, "loaded": 18446744073709551615,
     "unloaded": 2, "played": 3, "meta_edited": 4, "content_edited": 5, "file_type": "mxf"},
    {"name": "dir/deep/one", "length": 10},
    {"name": "dir/two", "length": 10},
    {"name": "locked", "length": 10, "read_only": true, "uuid": "u-locked"},
    {"name": "locked_meta", "length": 10, "read_only_meta": true},
    {"name": "locked_content", "length": 10, "read_only_content": true, "uuid": "u-content"}
],
"playlists": [{"name": "b", "elements": [{"clip": "plain"}]},
              {"name": "a", "elements": [{"clip": "plain"}]}]
})";

class ClipCommandsTest : public CommandsTest
{
protected:
    ClipCommandsTest() : CommandsTest(parse_scenario(scenario_text, "test").clips) {}

    std::string info(const std::string& clip)
    {
        return answer_to("<get_clip_info><ClipID>" + clip + "</ClipID></get_clip_info>");
    }
    // One element of the record, with its tag, or nothing.
    std::string info(const std::string& clip, const std::string& tag)
    {
        const std::string all = info(clip);
        const std::size_t begin = all.find("<" + tag + ">");
        const std::string end = "</" + tag + ">";
        return begin == all.npos ? "" : all.substr(begin, all.find(end) + end.size() - begin);
    }
    std::string modify(const std::string& clip, const std::string& fields)
    {
        return answer_to("<modify_clip_attributes><ClipID>" + clip + "</ClipID><ClipAttrChange>" +
                         fields + "</ClipAttrChange></modify_clip_attributes>");
    }
    std::string create(const std::string& clip, const std::string& more = "",
                       const std::string& tracks = "<TrackType>video</TrackType>"
                                                   "<TrackType>timecode</TrackType>")
    {
        return answer_to("<create_clip><ClipID>" + clip + "</ClipID><TrackSet>" + tracks +
                         "</TrackSet>" + more + "</create_clip>");
    }
    std::string remove(const std::string& clip)
    {
        return answer_to("<delete_clip><ClipID>" + clip + "</ClipID></delete_clip>");
    }
    std::string rename(const std::string& from, const std::string& to)
    {
        return answer_to("<rename_clip><FromID>" + from + "</FromID><ToID>" + to +
                         "</ToID></rename_clip>");
    }
    std::string child(const std::string& clip, const std::string& parent,
                      const std::string& more = "")
    {
        return answer_to("<create_child_clip><ClipID>" + clip + "</ClipID><ParentClipID>" + parent +
                         "</ParentClipID>" + more + "</create_child_clip>");
    }
    // The names that a list command gives, which must end well.
    Lines list(const std::string& command, const std::string& tag, const std::string& fields = "")
    {
        Lines names = answers_to("<" + command + ">" + fields + "</" + command + ">");
        EXPECT_EQ(names.back(), "<ok/>");
        names.pop_back();
        const std::size_t begin = tag.size() + 2;
        for (std::string& name : names) {
            name = name.substr(name.find(">", 1) + 1);
            name = name.substr(begin, name.rfind("</" + tag) - begin);
        }
        return names;
    }
    Lines clips(const std::string& fields = "")
    {
        return list("download_clipids", "ClipID", fields);
    }
    Lines directories(const std::string& fields = "")
    {
        return list("download_directory_names", "DirectoryName", fields);
    }
    std::uint64_t available()
    {
        const std::string usage = answer_to("<get_disk_usage />");
        const std::string tag = "<AvailableDiskSpace>";
        return std::stoull(usage.substr(usage.find(tag) + tag.size()));
    }
};

std::string in_directory(const std::string& name)
{
    return "<DirectoryName>" + name + "</DirectoryName>";
}

std::string report(const std::string& kind, const std::string& name)
{
    const std::string tag = kind.starts_with("clip") ? "ClipID" : "DirectoryName";
    return "<report><" + kind + "><" + tag + ">" + name + "</" + tag + "></" + kind + "></report>";
}

std::string not_there(const std::string& command, const std::string& clip = "x")
{
    return error(command + ": there is no clip '" + clip +
                     "'; there are: 'dir/deep/one', 'dir/two', 'full', 'locked', "
                     "'locked_content', 'locked_meta', 'plain'",
                 "clipnotfound");
}

std::string without(const std::string& record, const std::string& tag)
{
    const std::string end = "</" + tag + ">";
    const std::size_t begin = record.find("<" + tag + ">");
    return record.substr(0, begin) + record.substr(record.find(end) + end.size());
}

std::string refused(const std::string& text)
{
    return error(text);
}

} // namespace

TEST_F(ClipCommandsTest, ExistenceIsTold)
{
    EXPECT_EQ(answer_to("<clip_exists><ClipID>dir/two</ClipID></clip_exists>"),
              "<clipexists><ClipID>dir/two</ClipID><Exists>true</Exists></clipexists>");
    EXPECT_EQ(answer_to("<clip_exists><ClipID>dir</ClipID></clip_exists>"),
              "<clipexists><ClipID>dir</ClipID><Exists>false</Exists></clipexists>");
    EXPECT_EQ(answer_to("<clip_exists><ClipID /></clip_exists>"),
              "<clipexists><ClipID></ClipID><Exists>false</Exists></clipexists>");
}

TEST_F(ClipCommandsTest, ARecordWithNothingOptionalHoldsWhatEveryClipHas)
{
    EXPECT_EQ(info("plain"),
              "<clipinfo><ClipInfo><ClipID>plain</ClipID><VideoStandard>1080_50i</VideoStandard>"
              "<TrackInfoVector><TrackInfo><TrackType>video</TrackType></TrackInfo>"
              "<TrackInfo><TrackType>audio</TrackType></TrackInfo>"
              "<TrackInfo><TrackType>audio</TrackType></TrackInfo></TrackInfoVector>"
              "<Title></Title><Creator></Creator><Project></Project><Playback>auto</Playback>"
              "<Interp>auto</Interp><Loop>off</Loop><LoopOut>100</LoopOut><LoopIn>0</LoopIn>"
              "<ClipLength>100</ClipLength><TimecodeSource>zerobased</TimecodeSource>"
              "<StripeTimecode><Valid>false</Valid></StripeTimecode><ReadOnly>false</ReadOnly>"
              "</ClipInfo></clipinfo>");
}

TEST_F(ClipCommandsTest, ARecordCanHoldEveryField)
{
    EXPECT_EQ(info("full"),
              "<clipinfo><ClipInfo><ClipID>full</ClipID><VideoStandard>720_60p</VideoStandard>"
              "<TrackInfoVector><TrackInfo><TrackType>video</TrackType><TrimStart>4</TrimStart>"
              "</TrackInfo><TrackInfo><TrackType>key</TrackType></TrackInfo>"
              "<TrackInfo><TrackType>audio</TrackType></TrackInfo>"
              "<TrackInfo><TrackType>timecode</TrackType></TrackInfo></TrackInfoVector>"
              "<Title>T &amp; t</Title><Creator> C </Creator><Project>P</Project>"
              "<Playback>field</Playback><Interp>off</Interp><Loop>loopto</Loop>"
              "<LoopOut>40</LoopOut><LoopIn>5</LoopIn><ClipLength>50</ClipLength>"
              "<TimecodeSource>rec0_stripe</TimecodeSource>"
              "<StripeTimecode><Valid>true</Valid><VideoStandard>625_50i</VideoStandard>"
              "<FieldNumber>-1</FieldNumber><DropFrameFlag>df</DropFrameFlag></StripeTimecode>"
              "<ReadOnly>false</ReadOnly><ID8>FULLFULL</ID8><ReadOnlyMeta>false</ReadOnlyMeta>"
              "<ReadOnlyContent>false</ReadOnlyContent><MetadataList>"
              "<Metadata><Key>a</Key><Value>1</Value></Metadata>"
              "<Metadata><Key>b</Key><Value> &lt;2&gt; </Value></Metadata></MetadataList>"
              "<SpecialClipType>iso5</SpecialClipType><ISOCount>4294967295</ISOCount>"
              "<SSMSpeed>3</SSMSpeed><CompressionBitrate>100</CompressionBitrate>"
              "<Frame0Timecode><FieldNumber>-5</FieldNumber><DropFrameFlag>ndf</DropFrameFlag>"
              "</Frame0Timecode><TrimStart>10</TrimStart><TrimEnd>20</TrimEnd>"
              "<ClipLengthUntrimmed>80</ClipLengthUntrimmed>"
              "<CompressionType>avci</CompressionType><ClipUUID>u-1</ClipUUID>"
              "<ParentUUID>u-0</ParentUUID><Angle>3</Angle>"
              "<LoadedStamp>18446744073709551615</LoadedStamp><UnloadedStamp>2</UnloadedStamp>"
              "<PlayedStamp>3</PlayedStamp><MetaEditStamp>4</MetaEditStamp>"
              "<ContentEditStamp>5</ContentEditStamp><ClipFileType>mxf</ClipFileType>"
              "</ClipInfo></clipinfo>");
}

TEST_F(ClipCommandsTest, WhatIsNotThereIsNotFound)
{
    EXPECT_EQ(info("x"), not_there("get_clip_info"));
    EXPECT_EQ(modify("x", ""), not_there("modify_clip_attributes"));
    EXPECT_EQ(remove("x"), not_there("delete_clip"));
    EXPECT_EQ(rename("x", "y"), not_there("rename_clip"));
    EXPECT_EQ(child("y", "x"), not_there("create_child_clip"));
    EXPECT_EQ(told(), Lines{});
}

TEST_F(ClipCommandsTest, NamesComeInOrderAndFromOneDirectoryIfWanted)
{
    EXPECT_EQ(clips(), (Lines{"dir/deep/one", "dir/two", "full", "locked", "locked_content",
                              "locked_meta", "plain"}));
    EXPECT_EQ(clips(in_directory("dir")), Lines{"dir/two"});
    EXPECT_EQ(clips(in_directory("empty/made")), Lines{});
    EXPECT_EQ(clips(in_directory("")),
              (Lines{"full", "locked", "locked_content", "locked_meta", "plain"}));
    EXPECT_EQ(directories(), (Lines{"dir", "dir/deep", "empty", "empty/made"}));
    EXPECT_EQ(directories(in_directory("dir")), Lines{"dir/deep"});
    EXPECT_EQ(directories(in_directory("")), (Lines{"dir", "empty"}));
    EXPECT_EQ(list("download_listids", "ListID"), (Lines{"a", "b"}));
    EXPECT_EQ(answer_to("<download_clipids><DirectoryName>x</DirectoryName></download_clipids>"),
              refused("download_clipids: there is no directory 'x'; there are: 'dir', 'dir/deep', "
                      "'empty', 'empty/made'"));
    EXPECT_EQ(answers_to("<download_listids />"),
              (Lines{"<listid><ListID>a</ListID></listid>", "<listid><ListID>b</ListID></listid>",
                     "<ok/>"}));
}

TEST_F(ClipCommandsTest, ACreatedClipHasWhatWasAskedFor)
{
    EXPECT_EQ(create("new/n\xC3\xA9", "<ClipLength>42</ClipLength>"), "<ok/>");
    EXPECT_EQ(told(),
              (Lines{report("directory_created", "new"), report("clip_created", "new/n\xC3\xA9")}));
    const std::string uuid = info("new/n\xC3\xA9", "ClipUUID");
    EXPECT_TRUE(std::regex_match(
        uuid, std::regex("<ClipUUID>[0-9a-f]{8}-[0-9a-f]{4}-4[0-9a-f]{3}-[89ab][0-9a-f]{3}-"
                         "[0-9a-f]{12}</ClipUUID>")))
        << uuid;
    EXPECT_EQ(info("new/n\xC3\xA9"),
              "<clipinfo><ClipInfo><ClipID>new/n\xC3\xA9</ClipID>"
              "<VideoStandard>1080_50i</VideoStandard><TrackInfoVector>"
              "<TrackInfo><TrackType>video</TrackType></TrackInfo>"
              "<TrackInfo><TrackType>timecode</TrackType></TrackInfo></TrackInfoVector>"
              "<Title></Title><Creator></Creator><Project></Project><Playback>auto</Playback>"
              "<Interp>auto</Interp><Loop>off</Loop><LoopOut>42</LoopOut><LoopIn>0</LoopIn>"
              "<ClipLength>42</ClipLength><TimecodeSource>zerobased</TimecodeSource>"
              "<StripeTimecode><Valid>false</Valid></StripeTimecode><ReadOnly>false</ReadOnly>" +
                  uuid +
                  "<MetaEditStamp>5000</MetaEditStamp><ContentEditStamp>5000</ContentEditStamp>"
                  "</ClipInfo></clipinfo>");
    EXPECT_EQ(create("unmeasured"), "<ok/>");
    EXPECT_EQ(info("unmeasured", "ClipLength"), "<ClipLength>3000</ClipLength>");
}

TEST_F(ClipCommandsTest, AClipCanBeCreatedOnAChannel)
{
    EXPECT_EQ(create("new", "<ClipLength>42</ClipLength><Channel>C</Channel>"), "<ok/>");
    EXPECT_EQ(view('C').clip, "new");
    EXPECT_EQ(info("new", "LoadedStamp"), "<LoadedStamp>5001</LoadedStamp>");
}

TEST_F(ClipCommandsTest, ClipsThatCannotBeAreNotCreated)
{
    EXPECT_EQ(create("plain"), refused("create_clip: there is a clip 'plain' already"));
    EXPECT_EQ(create("x", "", ""),
              refused("create_clip: TrackSet names no track; name one at least"));
    EXPECT_EQ(create("x", "<ClipLength>0</ClipLength>"),
              refused("create_clip: a clip of no length cannot be created; 1 field is the least"));
    EXPECT_EQ(create("x", "<ClipLength>9771</ClipLength>"),
              refused("create_clip: clip 'x' of 9771 fields needs 977100 bytes; 977000 are "
                      "available"));
    for (const char* name : {"", "/x", "x/", "x//y", "a\nb"}) {
        EXPECT_EQ(create(name).find("<error><ErrorMessage>studio: create_clip: '"), 0u) << name;
    }
    EXPECT_EQ(create("/x"),
              refused("create_clip: '/x' cannot be the name of a clip; 1 to 255 bytes of UTF-8 are "
                      "allowed, without control characters, and none of the parts between slashes "
                      "is empty"));
    EXPECT_EQ(clips().size(), 7u);
    EXPECT_EQ(available(), 977000u);
    EXPECT_EQ(told(), Lines{});
}

TEST_F(ClipCommandsTest, TheDiskFillsAndEmpties)
{
    EXPECT_EQ(answer_to("<get_disk_usage />"),
              "<disk_usage><TotalDiskSpace>1000000</TotalDiskSpace>"
              "<AvailableDiskSpace>977000</AvailableDiskSpace><FieldSize>100</FieldSize>"
              "</disk_usage>");
    EXPECT_EQ(create("x", "<ClipLength>9770</ClipLength>"), "<ok/>");
    EXPECT_EQ(available(), 0u);
    EXPECT_EQ(create("y", "<ClipLength>1</ClipLength>"),
              refused("create_clip: clip 'y' of 1 fields needs 100 bytes; 0 are available"));
    EXPECT_EQ(remove("plain"), "<ok/>");
    EXPECT_EQ(available(), 10000u);
    EXPECT_EQ(modify("x", "<TrimStart>100</TrimStart>"), "<ok/>");
    EXPECT_EQ(available(), 10000u) << "what is trimmed stays on the disk";
    EXPECT_EQ(rename("x", "z"), "<ok/>");
    EXPECT_EQ(available(), 10000u);
    EXPECT_EQ(remove("z"), "<ok/>");
    EXPECT_EQ(available(), 987000u);
}

TEST_F(ClipCommandsTest, ChildrenBelongToTheirParent)
{
    EXPECT_EQ(child("c1", "full"), "<ok/>");
    EXPECT_EQ(child("c4", "full", "<Angle>4</Angle>"), "<ok/>");
    EXPECT_EQ(child("c2", "full"), "<ok/>");
    EXPECT_EQ(info("c1", "ParentUUID") + info("c1", "Angle") + info("c1", "ClipLength") +
                  info("c1", "VideoStandard"),
              "<ParentUUID>u-1</ParentUUID><Angle>1</Angle><ClipLength>50</ClipLength>"
              "<VideoStandard>720_60p</VideoStandard>");
    EXPECT_EQ(info("c4", "Angle"), "<Angle>4</Angle>");
    EXPECT_EQ(info("c2", "Angle"), "<Angle>2</Angle>");
    EXPECT_EQ(info("c2", "TrackInfoVector"), info("full", "TrackInfoVector"));
    EXPECT_EQ(station.clips.clip("full")->angles, 5);
    EXPECT_EQ(child("c", "full", "<Angle>4</Angle>"),
              refused("create_child_clip: angle 4 of clip 'full' is clip 'c4' already"));
    EXPECT_EQ(child("c", "full", "<Angle>0</Angle>"),
              refused("create_child_clip: a child cannot be angle 0; 1 to 254 are allowed"));
    EXPECT_EQ(child("plain", "full"),
              refused("create_child_clip: there is a clip 'plain' already"));
    EXPECT_EQ(remove("full"),
              refused("delete_clip: clip 'full' has the child 'c1'; delete that first"));
    for (const char* clip : {"c1", "c2", "c4", "full"}) {
        EXPECT_EQ(remove(clip), "<ok/>") << clip;
    }
}

TEST_F(ClipCommandsTest, AParentWithoutUuidGetsOne)
{
    EXPECT_EQ(info("plain", "ClipUUID"), "");
    EXPECT_EQ(child("c", "plain"), "<ok/>");
    EXPECT_EQ(told(), (Lines{report("clip_changed", "plain"), report("clip_created", "c")}));
    const std::string uuid = info("plain", "ClipUUID");
    EXPECT_NE(uuid, "");
    EXPECT_EQ(info("c", "ParentUUID"), std::regex_replace(uuid, std::regex("Clip"), "Parent"));
}

TEST_F(ClipCommandsTest, DirectoriesComeAndGoWithWhatIsInThem)
{
    EXPECT_EQ(answer_to("<create_directory><DirectoryName>m/n</DirectoryName></create_directory>"),
              "<ok/>");
    EXPECT_EQ(told(),
              (Lines{report("directory_created", "m"), report("directory_created", "m/n")}));
    EXPECT_EQ(create("a/b/c"), "<ok/>");
    EXPECT_EQ(create("m/n/d"), "<ok/>");
    EXPECT_EQ(told(), (Lines{report("directory_created", "a"), report("directory_created", "a/b"),
                             report("clip_created", "a/b/c"), report("clip_created", "m/n/d")}));
    EXPECT_EQ(rename("a/b/c", "a/e"), "<ok/>");
    EXPECT_EQ(told(), (Lines{report("clip_created", "a/e"), report("clip_deleted", "a/b/c"),
                             report("directory_deleted", "a/b")}));
    EXPECT_EQ(remove("a/e"), "<ok/>");
    EXPECT_EQ(remove("m/n/d"), "<ok/>");
    EXPECT_EQ(told(), (Lines{report("clip_deleted", "a/e"), report("directory_deleted", "a"),
                             report("clip_deleted", "m/n/d")}));
    EXPECT_EQ(directories(), (Lines{"dir", "dir/deep", "empty", "empty/made", "m", "m/n"}));
    EXPECT_EQ(answer_to("<create_directory><DirectoryName>dir</DirectoryName></create_directory>"),
              refused("create_directory: there is a directory 'dir' already"));
    EXPECT_EQ(answer_to("<create_directory><DirectoryName>/</DirectoryName></create_directory>"),
              refused("create_directory: '/' cannot be the name of a directory; 1 to 255 bytes of "
                      "UTF-8 are allowed, without control characters, and none of the parts "
                      "between slashes is empty"));
}

TEST_F(ClipCommandsTest, ARenamedClipKeepsItsRecord)
{
    std::string before = info("full");
    EXPECT_EQ(rename("full", "other"), "<ok/>");
    EXPECT_EQ(told(), (Lines{report("clip_created", "other"), report("clip_deleted", "full")}));
    before.replace(before.find(">full<"), 6, ">other<");
    before.replace(before.find("<MetaEditStamp>4<"), 17, "<MetaEditStamp>5000<");
    EXPECT_EQ(info("other"), before);
    EXPECT_EQ(rename("other", "plain"), refused("rename_clip: there is a clip 'plain' already"));
    EXPECT_EQ(rename("other", "other"), refused("rename_clip: there is a clip 'other' already"));
    EXPECT_EQ(rename("other", "x/")
                  .find("<error><ErrorMessage>studio: rename_clip: 'x/' cannot be the name"),
              0u);
}

TEST_F(ClipCommandsTest, OnlyTheFieldsThatAreSentChange)
{
    struct Case {
        std::string sent;
        std::string tag;
        std::string value;
    };
    const Case cases[] = {
        {"<ID8>NEW</ID8>", "ID8", "NEW"},
        {"<Title>New &amp; good</Title>", "Title", "New &amp; good"},
        {"<Creator />", "Creator", ""},
        {"<Project>p</Project>", "Project", "p"},
        {"<Playback>f12</Playback>", "Playback", "f12"},
        {"<Interp>on</Interp>", "Interp", "on"},
        {"<Loop>record</Loop>", "Loop", "record"},
        {"<LoopOut>50</LoopOut>", "LoopOut", "50"},
        {"<LoopIn>6</LoopIn>", "LoopIn", "6"},
        {"<TimecodeSource>striped</TimecodeSource>", "TimecodeSource", "striped"},
        {"<StripeTimecode><Valid>false</Valid><FieldNumber>2147483647</FieldNumber>"
         "</StripeTimecode>",
         "StripeTimecode",
         "<Valid>false</Valid><VideoStandard>625_50i</VideoStandard>"
         "<FieldNumber>2147483647</FieldNumber><DropFrameFlag>df</DropFrameFlag>"},
        {"<MetadataList><Metadata><Key>b</Key><Value>3</Value></Metadata>"
         "<Metadata><Key>c</Key><Value /></Metadata></MetadataList>",
         "MetadataList",
         "<Metadata><Key>a</Key><Value>1</Value></Metadata>"
         "<Metadata><Key>b</Key><Value>3</Value></Metadata>"
         "<Metadata><Key>c</Key><Value></Value></Metadata>"},
        {"<KeyList><Key>a</Key><Key>none</Key></KeyList>", "MetadataList",
         "<Metadata><Key>b</Key><Value>3</Value></Metadata>"
         "<Metadata><Key>c</Key><Value></Value></Metadata>"},
        {"<TrackAttrVector><TrackAttr><TrimStart>8</TrimStart></TrackAttr>"
         "<TrackAttr><TrackType>key</TrackType></TrackAttr></TrackAttrVector>",
         "TrackInfoVector",
         "<TrackInfo><TrackType>video</TrackType><TrimStart>8</TrimStart></TrackInfo>"
         "<TrackInfo><TrackType>key</TrackType></TrackInfo>"
         "<TrackInfo><TrackType>audio</TrackType></TrackInfo>"
         "<TrackInfo><TrackType>timecode</TrackType></TrackInfo>"},
        {"<Frame0Timecode><DropFrameFlag>df</DropFrameFlag></Frame0Timecode>", "Frame0Timecode",
         "<FieldNumber>-5</FieldNumber><DropFrameFlag>df</DropFrameFlag>"},
    };
    const auto others = [&](const std::string& tag) {
        return without(without(without(info("full"), tag), "MetaEditStamp"), "ContentEditStamp");
    };
    for (const Case& row : cases) {
        const std::string before = others(row.tag);
        EXPECT_EQ(modify("full", row.sent), "<ok/>") << row.sent;
        EXPECT_EQ(told(), Lines{report("clip_changed", "full")});
        EXPECT_EQ(info("full", row.tag), "<" + row.tag + ">" + row.value + "</" + row.tag + ">");
        EXPECT_EQ(others(row.tag), before) << row.sent;
    }
}

TEST_F(ClipCommandsTest, EditsMoveTheirStamps)
{
    EXPECT_EQ(modify("plain", "<Title>t</Title>"), "<ok/>");
    EXPECT_EQ(info("plain", "MetaEditStamp"), "<MetaEditStamp>5000</MetaEditStamp>");
    EXPECT_EQ(info("plain", "ContentEditStamp"), "");
    milliseconds = 6000;
    EXPECT_EQ(modify("plain", "<TrimEnd>2</TrimEnd>"), "<ok/>");
    EXPECT_EQ(info("plain", "MetaEditStamp"), "<MetaEditStamp>5000</MetaEditStamp>");
    EXPECT_EQ(info("plain", "ContentEditStamp"), "<ContentEditStamp>6000</ContentEditStamp>");
    EXPECT_EQ(modify("plain", "<Title>u</Title>"), "<ok/>");
    EXPECT_EQ(info("plain", "MetaEditStamp"), "<MetaEditStamp>6001</MetaEditStamp>");
    told();
    EXPECT_EQ(modify("plain", ""), "<ok/>");
    EXPECT_EQ(info("plain", "MetaEditStamp"), "<MetaEditStamp>6001</MetaEditStamp>");
    EXPECT_EQ(told(), Lines{});
}

TEST_F(ClipCommandsTest, TrimsSetTheLength)
{
    EXPECT_EQ(modify("plain", "<TrimStart>10</TrimStart><TrimEnd>20</TrimEnd>"), "<ok/>");
    EXPECT_EQ(info("plain", "ClipLength") + info("plain", "ClipLengthUntrimmed"),
              "<ClipLength>70</ClipLength><ClipLengthUntrimmed>100</ClipLengthUntrimmed>");
    EXPECT_EQ(modify("plain", "<TrimStart>0</TrimStart>"), "<ok/>");
    EXPECT_EQ(info("plain", "ClipLength"), "<ClipLength>80</ClipLength>");
    EXPECT_EQ(modify("plain", "<TrimStart>80</TrimStart>"),
              refused("modify_clip_attributes: trims of 80 and 20 leave nothing of the 100 fields "
                      "of clip 'plain'"));
    EXPECT_EQ(modify("plain", "<TrimStart>4294967295</TrimStart>"),
              refused("modify_clip_attributes: trims of 4294967295 and 20 leave nothing of the 100 "
                      "fields of clip 'plain'"));
    EXPECT_EQ(modify("full", "<TrimEnd>40</TrimEnd>"),
              refused("modify_clip_attributes: clip 'full' of 30 fields cannot take loop out 40; 6 "
                      "to 30 are allowed"));
}

TEST_F(ClipCommandsTest, ChangesThatDoNotFitAreRefusedAndChangeNothing)
{
    const std::string before = info("full");
    struct Case {
        std::string sent;
        std::string text;
    };
    const Case cases[] = {
        {"<Title>x</Title><LoopIn>40</LoopIn>",
         "clip 'full' of 50 fields cannot take loop out 40; 41 to 50 are allowed"},
        {"<LoopIn>50</LoopIn>", "clip 'full' of 50 fields cannot take loop in 50; 0 to 49 are "
                                "allowed"},
        {"<LoopOut>51</LoopOut>",
         "clip 'full' of 50 fields cannot take loop out 51; 6 to 50 are allowed"},
        {"<TrackAttrVector><TrackAttr><TrackType>audio</TrackType></TrackAttr></TrackAttrVector>",
         "track 0 of clip 'full' is video, and not audio"},
        {"<TrackAttrVector><TrackAttr /><TrackAttr /><TrackAttr /><TrackAttr /><TrackAttr />"
         "</TrackAttrVector>",
         "TrackAttrVector holds 5 tracks; clip 'full' has 4"},
        {"<Loop>once</Loop>",
         "Loop holds 'once'; allowed is off, loop, loopto, pingpong, pingpongto, auto or record"},
        {"<ReadOnly>true</ReadOnly>",
         "there is no field 'ReadOnly'; its fields are ID8, Title, Creator, Project, Playback, "
         "Interp, Loop, LoopOut, LoopIn, TimecodeSource, StripeTimecode, MetadataList, KeyList, "
         "TrimStart, TrimEnd, TrackAttrVector, Frame0Timecode"},
        {"<StripeTimecode />", "Valid is missing"},
        {"<MetadataList><Metadata><Key>a</Key></Metadata></MetadataList>", "Value is missing"},
    };
    for (const Case& row : cases) {
        EXPECT_EQ(modify("full", row.sent), refused("modify_clip_attributes: " + row.text));
    }
    EXPECT_EQ(info("full"), before);
    EXPECT_EQ(told(), Lines{});
}

TEST_F(ClipCommandsTest, ARecordStaysSmallEnoughForAMessage)
{
    const auto set = [&](const std::string& value) {
        return modify("plain", "<MetadataList><Metadata><Key>k</Key><Value>" + value +
                                   "</Value></Metadata></MetadataList>");
    };
    EXPECT_EQ(set(std::string(29000, 'x')), "<ok/>");
    EXPECT_LT(info("plain").size(), largest_message);
    const std::string before = info("plain");
    std::string escaped;
    for (int i = 0; i < 7000; ++i) {
        escaped += "&amp;";
    }
    EXPECT_EQ(
        set(escaped).find("<error><ErrorMessage>studio: modify_clip_attributes: the record of "
                          "clip 'plain' would take 35"),
        0u);
    EXPECT_EQ(set(std::string(29000, 'x')), "<ok/>");
    EXPECT_EQ(info("plain").size(), before.size());
}

TEST_F(ClipCommandsTest, ReadOnlyClipsRefuse)
{
    const auto read_only = [](const std::string& command, const std::string& clip,
                              const std::string& what) {
        return refused(command + ": clip '" + clip + "' is read only; " + what);
    };
    const std::string attributes = "its attributes cannot be changed";
    const std::string content = "its content cannot be changed";
    const std::string title = "<Title>t</Title>";
    const std::string trim = "<TrimEnd>2</TrimEnd>";
    for (const char* clip : {"locked", "locked_meta"}) {
        EXPECT_EQ(modify(clip, title), read_only("modify_clip_attributes", clip, attributes));
        EXPECT_EQ(modify(clip, title + trim),
                  read_only("modify_clip_attributes", clip, attributes));
        EXPECT_EQ(rename(clip, "x"), read_only("rename_clip", clip, "it cannot be renamed"));
    }
    for (const char* clip : {"locked", "locked_content"}) {
        EXPECT_EQ(modify(clip, trim), read_only("modify_clip_attributes", clip, content));
        EXPECT_EQ(remove(clip), read_only("delete_clip", clip, "it cannot be deleted"));
        EXPECT_EQ(child("x", clip), read_only("create_child_clip", clip, "it gets no child"));
        obey("<cue_clip><Channel>A</Channel><ClipID>" + std::string(clip) + "</ClipID></cue_clip>");
        EXPECT_EQ(answer_to("<insert_edit><Channel>A</Channel><SonyEditMask>1</SonyEditMask>"
                            "</insert_edit>"),
                  read_only("insert_edit", clip, "nothing can be recorded into it"));
    }
    EXPECT_EQ(told(), Lines{});
    EXPECT_EQ(modify("locked_meta", trim), "<ok/>");
    EXPECT_EQ(modify("locked_content", title), "<ok/>");
    EXPECT_EQ(rename("locked_content", "x"), "<ok/>");
    EXPECT_EQ(remove("locked_meta"), "<ok/>");
}

TEST_F(ClipCommandsTest, LoadingAndPlayingMoveStampsAndAreNoNews)
{
    const auto stamps = [&](const std::string& clip) {
        return info(clip, "LoadedStamp") + info(clip, "UnloadedStamp") + info(clip, "PlayedStamp");
    };
    const std::string on_a = "<Channel>A</Channel>";
    obey("<cue_clip>" + on_a + "<ClipID>plain</ClipID></cue_clip>");
    EXPECT_EQ(stamps("plain"), "<LoadedStamp>5000</LoadedStamp>");
    milliseconds = 6000;
    obey("<play>" + on_a + "</play>");
    EXPECT_EQ(stamps("plain"), "<LoadedStamp>5000</LoadedStamp><PlayedStamp>6000</PlayedStamp>");
    milliseconds = 7000;
    obey("<play>" + on_a + "<Speed>2X</Speed></play>");
    EXPECT_EQ(info("plain", "PlayedStamp"), "<PlayedStamp>6000</PlayedStamp>") << "it plays on";
    obey("<cue_clip>" + on_a + "<ClipID>dir/two</ClipID></cue_clip>");
    EXPECT_EQ(info("plain", "UnloadedStamp"), "<UnloadedStamp>7000</UnloadedStamp>");
    EXPECT_EQ(info("dir/two", "LoadedStamp"), "<LoadedStamp>7001</LoadedStamp>");
    milliseconds = 8000;
    obey("<unload>" + on_a + "</unload>");
    EXPECT_EQ(info("dir/two", "UnloadedStamp"), "<UnloadedStamp>8000</UnloadedStamp>");
    EXPECT_EQ(told(), Lines{});
}

TEST_F(ClipCommandsTest, WhatAChannelDoesByItselfIsStampedToo)
{
    obey("<cue_clip><Channel>B</Channel><ClipID>plain</ClipID></cue_clip>");
    obey("<precue><Channel>B</Channel><ClipID>dir/two</ClipID>"
         "<PrecueCondition>end_of_clip</PrecueCondition></precue>");
    obey("<play><Channel>B</Channel></play>");
    milliseconds = 9000;
    obey("<stop><Channel>C</Channel></stop>", 3s);
    EXPECT_EQ(info("dir/two", "PlayedStamp"), "<PlayedStamp>9002</PlayedStamp>");
    EXPECT_EQ(info("plain", "UnloadedStamp"), "<UnloadedStamp>9000</UnloadedStamp>");
}

TEST_F(ClipCommandsTest, RecordingIntoAClipEditsItsContent)
{
    obey("<cue_clip><Channel>A</Channel><ClipID>plain</ClipID></cue_clip>");
    obey("<insert_edit><Channel>A</Channel><SonyEditMask>1</SonyEditMask></insert_edit>");
    EXPECT_EQ(info("plain", "ContentEditStamp"), "");
    obey("<play><Channel>A</Channel></play>");
    EXPECT_EQ(info("plain", "ContentEditStamp"), "<ContentEditStamp>5002</ContentEditStamp>");
    EXPECT_EQ(told(), Lines{report("clip_changed", "plain")});
}

TEST_F(ClipCommandsTest, AChannelKeepsAClipThatIsDeletedOrRenamed)
{
    obey("<cue_clip><Channel>A</Channel><ClipID>plain</ClipID></cue_clip>");
    obey("<cue_clip><Channel>B</Channel><ClipID>dir/two</ClipID></cue_clip>");
    EXPECT_EQ(remove("plain"), "<ok/>");
    EXPECT_EQ(rename("dir/two", "three"), "<ok/>");
    EXPECT_EQ(view('A').clip, "plain");
    obey("<play><Channel>A</Channel></play>");
    obey("<play><Channel>B</Channel></play>");
    EXPECT_EQ(info("plain"), error("get_clip_info: there is no clip 'plain'; there are: "
                                   "'dir/deep/one', 'full', 'locked', 'locked_content', "
                                   "'locked_meta', 'three'",
                                   "clipnotfound"));
    EXPECT_EQ(info("three", "PlayedStamp"), "<PlayedStamp>5003</PlayedStamp>");
}

TEST_F(ClipCommandsTest, AClipBringsItsOwnPlayback)
{
    obey("<cue_clip><Channel>A</Channel><ClipID>full</ClipID></cue_clip>");
    EXPECT_EQ(view('A').playback, Playback::field);
}

TEST_F(ClipCommandsTest, AHundredThousandNamesAreListed)
{
    std::set<std::string> names;
    for (int i = 0; i < 100000; ++i) {
        Clip clip;
        clip.name = "many/" + std::to_string(i);
        names.insert(clip.name);
        station.clips.add_clip(std::move(clip));
    }
    const Lines listed = clips(in_directory("many"));
    EXPECT_EQ(listed, Lines(names.begin(), names.end()));
}

} // namespace veltosim
