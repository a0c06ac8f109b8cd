#include "protocol/zavl3_types.h"

#include "support/assert_watch.h"

#include <ostream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace
{

using namespace ZAVL3;

// An enumeration as functions on numbers, and the words that it must have, value 0 first.
struct EnumerationRow {
    const char* name;
    std::size_t count;
    std::string (*to_word)(std::int32_t);
    bool (*from_word)(const std::string&, std::int32_t*);
    std::vector<std::string> words;
};

void PrintTo(const EnumerationRow& row, std::ostream* out)
{
    *out << row.name;
}

template <typename E>
EnumerationRow make_row(const char* name, std::vector<std::string> words)
{
    const auto to_word = [](std::int32_t value) { return to_wire(E{value}).to_utf8(); };
    const auto from_word = [](const std::string& word, std::int32_t* value) {
        E known{*value};
        const bool found = from_wire(AString(word.c_str()), &known);
        *value = static_cast<std::int32_t>(known);
        return found;
    };
    return {name, word_count<E>, to_word, from_word, std::move(words)};
}

#define ROW(E, ...) make_row<E>(#E, {__VA_ARGS__})

const std::vector<EnumerationRow> rows = {
    ROW(AlertingLevel, "na", "ok", "warning", "error"),
    ROW(AlertingPriority, "harmful", "malfunction"),
    ROW(Channel, "A", "B", "C", "D", "E", "F", "G", "H", "I", "J", "K", "L"),
    ROW(ChannelReportType, "status", "clipid", "speed", "timecode", "info", "peak",
        "aux_audio_status", "aux_audio_clipid", "aux_audio_speed", "aux_audio_timecode",
        "aux_audio_info", "aux_audio_peak", "listplay", "chaseplay"),
    ROW(ChannelStatus, "nochannel", "idle", "cueing", "stop", "play", "record", "insert",
        "testpattern", "timedelay"),
    ROW(ChaseElementAtEnd, "black", "pause", "loop"),
    ROW(ClipScope, "clip", "vclip"),
    ROW(CompressionType, "jpeg2000", "dv", "avci", "xavc"),
    ROW(ConfigurationItemAccess, "user", "eng"),
    ROW(DropFrameFlag, "df", "ndf"),
    ROW(ErrorCode, "general", "clipnotfound", "configname_invalid", "configvalue_invalid"),
    ROW(FollowSpeed, "none", "smart", "oneX", "follow"),
    ROW(Interp, "auto", "on", "off"),
    ROW(Layer, "normal", "bed"),
    ROW(ListElementAtEnd, "take", "pause", "loop"),
    ROW(ListElementAtStart, "play", "pause"),
    ROW(ListPlayMode, "single_channel", "pgm_pvw"),
    ROW(Loop, "off", "loop", "loopto", "pingpong", "pingpongto", "auto", "record"),
    ROW(ModifiedFlag, "unmodified", "modified"),
    ROW(ChannelDirection, "play", "record"),
    ROW(Playback, "auto", "field", "f12"),
    ROW(PrecueCondition, "explicit_switch", "previous_stops", "immediate", "end_of_clip",
        "end_of_clip2"),
    ROW(ReferenceSource, "input1", "input2", "refin", "refsdhd", "freerun"),
    ROW(ReportType, "clip_change", "config_change", "disk_space", "temperature", "melt",
        "directory_change", "playlist_change", "chaselist_change", "export", "alerts",
        "chase_ltc_timecode", "ltc_input"),
    ROW(Roll, "cueonly", "roll"),
    ROW(SpecialClipType, "normal", "iso2", "iso3", "iso4", "iso5", "iso6", "iso7", "iso8", "ssm2",
        "ssm3"),
    ROW(StealStatus, "available", "import", "export"),
    ROW(TimecodeSource, "zerobased", "striped", "rectc", "rec0_stripe"),
    ROW(TrackType, "video", "key", "audio", "timecode"),
    ROW(TransitionType, "cut", "dissolve"),
    ROW(VideoRate, "60", "59_94", "50", "48", "47_95", "30", "29_97", "25", "24", "23_98"),
    ROW(VideoResolution, "4K", "1080p", "1080i", "720p", "625i", "525i"),
    ROW(VideoStandard, "4K_60p", "4K_59_94p", "4K_50p", "4K_30p", "4K_29_97p", "4K_25p", "4K_24p",
        "4K_23_98p", "1080_60p", "1080_59_94p", "1080_50p", "1080_30p", "1080_29_97p", "1080_25p",
        "1080_24p", "1080_23_98p", "1080_23_98psf", "1080_60i", "1080_59_94i", "1080_50i",
        "1080_48i", "1080_47_95i", "720_60p", "720_59_94p", "720_50p", "625_50i", "525_59_94i"),
    ROW(Boolean, "false", "true"),
};

class Enumeration : public testing::TestWithParam<EnumerationRow>
{
};

TEST_P(Enumeration, GivesItsWords)
{
    const EnumerationRow& row = GetParam();
    std::vector<std::string> given;
    for (std::size_t i = 0; i < row.count; ++i) {
        given.push_back(row.to_word(static_cast<std::int32_t>(i)));
    }
    EXPECT_EQ(given, row.words);
}

TEST_P(Enumeration, TakesItsWords)
{
    const EnumerationRow& row = GetParam();
    std::int32_t expected = 0;
    for (const std::string& word : row.words) {
        std::int32_t value = -7;
        EXPECT_TRUE(row.from_word(word, &value)) << word;
        EXPECT_EQ(value, expected++) << word;
    }
}

TEST_P(Enumeration, GivesTheEmptyTextOutsideItsTable)
{
    const EnumerationRow& row = GetParam();
    for (const std::int32_t value :
         {-1, static_cast<std::int32_t>(row.words.size()), INT32_MAX, INT32_MIN}) {
        EXPECT_EQ(row.to_word(value), "");
    }
}

TEST_P(Enumeration, TakesNoOtherWordAndLeavesTheValueAlone)
{
    const std::string& word = GetParam().words.front();
    std::string other_case = word;
    for (char& c : other_case) {
        c = static_cast<char>(c >= 'a' && c <= 'z' ? c - 32 : c >= 'A' && c <= 'Z' ? c + 32 : c);
    }
    for (const std::string& text : {std::string(), word + " ", " " + word, word + word,
                                    other_case == word ? word + "x" : other_case}) {
        std::int32_t value = -7;
        EXPECT_FALSE(GetParam().from_word(text, &value)) << text;
        EXPECT_EQ(value, -7);
    }
}

INSTANTIATE_TEST_SUITE_P(All, Enumeration, testing::ValuesIn(rows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(Types, AreTheEnumerationsOfTheTable)
{
    std::vector<std::string> known = {
#define NAME(E, ...) #E,
        ZAVL3_ENUMERATIONS(NAME)
#undef NAME
    };
    known.emplace_back("Boolean");
    std::vector<std::string> expected;
    for (const EnumerationRow& row : rows) {
        expected.emplace_back(row.name);
    }
    EXPECT_EQ(known, expected);
    EXPECT_EQ(known.size(), 34u);
}

TEST(Types, NameAValueByItsWord)
{
    static_assert(word<FollowSpeed>("oneX") == FollowSpeed{2});
    EXPECT_EQ(to_wire(word<FollowSpeed>("oneX")).to_utf8(), "oneX");
    EXPECT_EQ(to_wire(ReportType{9}).to_utf8(), "alerts");
    EXPECT_EQ(to_wire(ReportType{12}).to_utf8(), "");
}

TEST(Types, TellWhetherAWordIsKnownWithoutGivingItsValue)
{
    EXPECT_TRUE(from_wire<ChannelStatus>(AString("play"), nullptr));
    EXPECT_FALSE(from_wire<ChannelStatus>(AString("Play"), nullptr));
}

TEST(Types, HaveTablesThatGiveMinusOneAndTheEmptyTextForTheUnknown)
{
    EXPECT_EQ(enum_string<ChannelStatus>->invalid_value, -1);
    EXPECT_TRUE(enum_string<ChannelStatus>->invalid_text.is_empty());
    EXPECT_EQ(enum_string<ChannelStatus>->from_string(AString("Play")), -1);
    EXPECT_EQ(enum_string<Boolean>->from_string(AString("yes")), -1);
}

template <typename Set>
std::vector<std::int32_t> values_of(const Set& set)
{
    std::vector<std::int32_t> values;
    for (std::uint32_t i = 0; i < set.count; ++i) {
        values.push_back(static_cast<std::int32_t>(set.vec[i]));
    }
    return values;
}

TEST(BoundedSet, HoldsEachValueOnceInTheOrderOfFirstAddition)
{
    ChannelSet set;
    EXPECT_EQ(set.count, 0u);
    for (const std::int32_t channel : {3, 0, 3, 11, 0}) {
        set.add(Channel{channel});
    }
    EXPECT_EQ(values_of(set), (std::vector{3, 0, 11}));
}

TEST(BoundedSet, HoldsAAndAAsOneEntry)
{
    ChannelSet set;
    set.add(word<Channel>("A"));
    set.add(word<Channel>("A"));
    EXPECT_EQ(values_of(set), std::vector{0});
}

template <typename Set>
void expect_all(std::uint32_t bound)
{
    const Set all = Set::all();
    EXPECT_EQ(Set::bound, bound);
    EXPECT_EQ(all.vec.size(), bound);
    std::vector<std::int32_t> expected;
    for (std::uint32_t i = 0; i < bound; ++i) {
        expected.push_back(static_cast<std::int32_t>(i));
    }
    EXPECT_EQ(values_of(all), expected);
}

TEST(BoundedSet, HasRoomForAllValuesOfItsEnumeration)
{
    AssertWatch watch;
    expect_all<ChannelSet>(12);
    expect_all<ReportSet>(12);
    expect_all<ChannelReportSet>(14);
    expect_all<TrackSet>(4);
    EXPECT_EQ(watch.count(), 0u);
}

TEST(BoundedSet, ReportsAndDropsAValueBeyondItsBound)
{
    ChannelSet set = ChannelSet::all();
    AssertWatch watch;
    set.add(Channel{12});
    EXPECT_EQ(watch.count("zavl3_types"), 1u);
    EXPECT_EQ(watch.count(), 1u);
    EXPECT_EQ(values_of(set), values_of(ChannelSet::all()));
}

TEST(BoundedSet, TakesAValueThatItHoldsAlsoWhenItIsFull)
{
    ChannelSet set = ChannelSet::all();
    AssertWatch watch;
    set.add(Channel{11});
    EXPECT_EQ(watch.count(), 0u);
    EXPECT_EQ(set.count, 12u);
}

} // namespace
