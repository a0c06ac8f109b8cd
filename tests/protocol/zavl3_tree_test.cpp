#include "protocol/zavl3_tree.h"

#include "support/assert_watch.h"
#include "support/describe.h"
#include "support/xml_text.h"

#include <limits>
#include <string>

#include <gtest/gtest.h>

namespace
{

using namespace ZAVL3;

// The texts of an element `x` within `y`, as a codec reads it.
template <typename Codec>
struct Reading {
    explicit Reading(const std::string& text)
        : Reading(parse_xml(xml_element("y", xml_element("x", text))))
    {
    }
    explicit Reading(const XMLTree& tree) : good(Codec::read(tree, AString("x"), value, &error)) {}

    std::string error_text() const { return error.to_utf8(); }

    typename Codec::value_type value{};
    AString error;
    bool good;
};

template <typename Codec>
void expect_value(const std::string& text, const typename Codec::value_type& value)
{
    const Reading<Codec> reading(text);
    EXPECT_TRUE(reading.good) << text;
    EXPECT_EQ(reading.value, value) << text;
    EXPECT_EQ(reading.error_text(), "") << text;
}

template <typename Codec>
void expect_refused(const std::string& text, const std::string& error)
{
    const Reading<Codec> reading(text);
    EXPECT_FALSE(reading.good) << text;
    EXPECT_EQ(reading.error_text(), error);
}

template <typename Codec>
std::string written(const typename Codec::value_type& value)
{
    return to_xml(Codec::write(AString("x"), value));
}

TEST(GetTag, GivesTheElementItselfWhenItHasTheName)
{
    const XMLTree tree = parse_xml("<ClipID><ClipID>inner</ClipID></ClipID>");
    AString error;
    EXPECT_EQ(get_tag(tree, AString("ClipID"), &error), &tree);
    EXPECT_TRUE(error.is_empty());
}

TEST(GetTag, GivesTheOneChildOfTheName)
{
    const XMLTree tree = parse_xml("<x><a>1</a><ClipID>2</ClipID><b>3</b></x>");
    const XMLTree* found = get_tag(tree, AString("ClipID"), nullptr);
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(found->get_text().to_utf8(), "2");
}

TEST(GetTag, LooksAtDirectChildrenOnly)
{
    const XMLTree tree = parse_xml("<x><a><ClipID>2</ClipID></a></x>");
    AString error;
    EXPECT_EQ(get_tag(tree, AString("ClipID"), &error), nullptr);
    EXPECT_EQ(error.to_utf8(), "Tag 'ClipID' not found within 'x'");
}

TEST(GetTag, MatchesTheNameExactly)
{
    AString error;
    EXPECT_EQ(get_tag(parse_xml("<x><clipid>2</clipid></x>"), AString("ClipID"), &error), nullptr);
    EXPECT_EQ(error.to_utf8(), "Tag 'ClipID' not found within 'x'");
}

TEST(GetTag, RefusesMoreThanOne)
{
    AString error;
    EXPECT_EQ(get_tag(parse_xml("<x><ClipID>a</ClipID><b/><ClipID>a</ClipID></x>"),
                      AString("ClipID"), &error),
              nullptr);
    EXPECT_EQ(error.to_utf8(), "More than one tag 'ClipID' found within 'x'");
}

TEST(GetTag, FailsWithoutATextWhenNobodyAsks)
{
    EXPECT_EQ(get_tag(parse_xml("<x/>"), AString("ClipID"), nullptr), nullptr);
    EXPECT_EQ(get_tag(parse_xml("<x><a/><a/></x>"), AString("a"), nullptr), nullptr);
}

TEST(TreeTexts, AreTrimmedOrAsTheyStand)
{
    const XMLTree tree = parse_xml("<x> \t a b \r\n</x>");
    EXPECT_EQ(get_trimmed_text(tree).to_utf8(), "a b");
    EXPECT_EQ(get_raw_text(tree).to_utf8(), " \t a b \r\n");
}

TEST(TreeErrors, NameTheElementTheValueAndTheType)
{
    const XMLTree tree = parse_xml("<Speed>fast</Speed>");
    AString error;
    EXPECT_FALSE(invalid_value(tree, AString("fast"), &error));
    EXPECT_EQ(error.to_utf8(), "Tag Speed contains invalid value 'fast'");
    EXPECT_FALSE(invalid_typed_value(tree, AString("fixed"), AString("fast"), &error));
    EXPECT_EQ(error.to_utf8(), "Tag Speed contains invalid fixed value 'fast'");
    EXPECT_FALSE(too_many_subelements(AString("Levels"), 64, &error));
    EXPECT_EQ(error.to_utf8(), "Tag Levels contains %u subelements. The maximum is 64.");
}

TEST(TreeErrors, AreNotBuiltWhenNobodyAsks)
{
    const XMLTree tree = parse_xml("<x/>");
    EXPECT_FALSE(invalid_value(tree, AString("v"), nullptr));
    EXPECT_FALSE(invalid_typed_value(tree, AString("t"), AString("v"), nullptr));
    EXPECT_FALSE(too_many_subelements(AString("x"), 1, nullptr));
}

TEST(TreeErrors, KeepPlaceholdersOfTheServerAsTheyAre)
{
    expect_refused<U32>("%1 %2", "Tag x contains invalid value '%1 %2'");
    expect_refused<Bool>("%3", "Tag x contains invalid boolean value '%3'");
}

TEST(ReadXid, TakesTheTextAsItStands)
{
    AString xid;
    AString error;
    EXPECT_TRUE(read_xid(parse_xml("<reply><xid> none7 </xid></reply>"), xid, &error));
    EXPECT_EQ(xid.to_utf8(), " none7 ");
    EXPECT_FALSE(read_xid(parse_xml("<reply><ok/></reply>"), xid, &error));
    EXPECT_EQ(error.to_utf8(), "Tag 'xid' not found within 'reply'");
    EXPECT_FALSE(read_xid(parse_xml("<reply><xid/><xid/></reply>"), xid, &error));
    EXPECT_EQ(error.to_utf8(), "More than one tag 'xid' found within 'reply'");
}

TEST(Codecs, AllMissTheirTagInTheSameWay)
{
    const XMLTree none = parse_xml("<y><z/></y>");
    const std::string missing = "Tag 'x' not found within 'y'";
    EXPECT_EQ(Reading<Text>(none).error_text(), missing);
    EXPECT_EQ(Reading<Bool>(none).error_text(), missing);
    EXPECT_EQ(Reading<U8>(none).error_text(), missing);
    EXPECT_EQ(Reading<Fixed>(none).error_text(), missing);
    EXPECT_EQ(Reading<Word<Loop>>(none).error_text(), missing);
    EXPECT_EQ((Reading<List<"Key", Text>>(none).error_text()), missing);
    EXPECT_EQ((Reading<Vector<TrackSet, "TrackType", Word<TrackType>>>(none).error_text()),
              missing);
}

TEST(TextCodec, KeepsSpacesAndEntities)
{
    expect_value<Text>("  a &lt; b ", AString("  a < b "));
    expect_value<Text>("", AString());
    EXPECT_EQ(written<Text>(AString(" a < b ")), "<x> a &lt; b </x>");
    EXPECT_EQ(written<Text>(AString()), "<x />");
}

TEST(BoolCodec, TakesTheTwoWordsAndNumbers)
{
    for (const char* text :
         {"true", "  true ", "1", "-7", "+2", "2147483647", " -2147483648", "0x1"}) {
        expect_value<Bool>(text, true);
    }
    for (const char* text : {"false", "\tfalse\r\n", "0", "-0", "000"}) {
        expect_value<Bool>(text, false);
    }
}

TEST(BoolCodec, RefusesTheRest)
{
    for (const std::string text : {"yes", "True", "FALSE", "", "1.0", "2147483648", "t rue"}) {
        expect_refused<Bool>(text, "Tag x contains invalid boolean value '" + text + "'");
    }
    expect_refused<Bool>(" no ", "Tag x contains invalid boolean value 'no'");
}

TEST(BoolCodec, WritesWords)
{
    EXPECT_EQ(written<Bool>(true), "<x>true</x>");
    EXPECT_EQ(written<Bool>(false), "<x>false</x>");
}

// Everything at its limits, one beyond them, and what is no number.
template <typename Codec>
void expect_limits(const std::string& below, const std::string& least, const std::string& most,
                   const std::string& above)
{
    using Limits = std::numeric_limits<typename Codec::value_type>;
    expect_value<Codec>(least, Limits::min());
    expect_value<Codec>(" " + most + "\r\n", Limits::max());
    for (const std::string& text : {below, above, std::string(), std::string("12x"),
                                    std::string("1 2"), std::string("--1"), std::string("1.0")}) {
        expect_refused<Codec>(text, "Tag x contains invalid value '" + text + "'");
    }
    EXPECT_EQ(written<Codec>(Limits::min()), xml_element("x", least));
    EXPECT_EQ(written<Codec>(Limits::max()), xml_element("x", most));
    EXPECT_EQ(written<Codec>(7), "<x>7</x>");
}

TEST(NumberCodec, TakesWhatItsTypeHolds)
{
    expect_limits<U8>("-1", "0", "255", "256");
    expect_limits<U16>("-1", "0", "65535", "65536");
    expect_limits<U32>("-1", "0", "4294967295", "4294967296");
    expect_limits<U64>("-1", "0", "18446744073709551615", "18446744073709551616");
    expect_limits<I32>("-2147483649", "-2147483648", "2147483647", "2147483648");
}

TEST(FixedCodec, TakesDecimalsWithAnXAndRawNumbersWithout)
{
    expect_value<Fixed>("1.5X", 0x18000);
    expect_value<Fixed>(" -0.5X ", -0x8000);
    expect_value<Fixed>("X", 0);
    expect_value<Fixed>("65536", 0x10000);
    expect_value<Fixed>("-65536", -0x10000);
    expect_value<Fixed>("4294967295", -1);
    expect_value<Fixed>("-32768.5X", 0x7FFF8000);
    for (const std::string text : {"1.5", "32768X", "", "fast", "1.5x", "1.xX", "4294967296"}) {
        expect_refused<Fixed>(text, "Tag x contains invalid value '" + text + "'");
    }
}

TEST(FixedCodec, WritesDecimalsWithAnX)
{
    EXPECT_EQ(written<Fixed>(0x18000), "<x>1.5X</x>");
    EXPECT_EQ(written<Fixed>(-0x10000), "<x>-1X</x>");
    EXPECT_EQ(written<Fixed>(0), "<x>0X</x>");
}

TEST(WordCodec, TakesTheWordsOfItsEnumeration)
{
    expect_value<Word<Loop>>(" pingpong ", Loop{3});
    EXPECT_EQ(written<Word<Loop>>(Loop{3}), "<x>pingpong</x>");
    EXPECT_EQ(written<Word<Loop>>(Loop{7}), "<x />");
}

// Users match on this text: it names the enclosing element and the tag.
TEST(WordCodec, NamesTheEnclosingElementWhenItRefusesAWord)
{
    expect_refused<Word<Loop>>("Pingpong", "Tag y contains invalid value 'x'");
    Channel channel{};
    AString error;
    EXPECT_FALSE(Word<Channel>::read(parse_xml("<Foo><Channel>M</Channel></Foo>"),
                                     AString("Channel"), channel, &error));
    EXPECT_EQ(error.to_utf8(), "Tag Foo contains invalid value 'Channel'");
}

using Keys = List<"Key", Text>;
using Tracks = Vector<TrackSet, "TrackType", Word<TrackType>>;

TEST(ListCodec, HoldsItsItemsInOrderWithoutABound)
{
    std::string items;
    std::string seen;
    for (int i = 0; i < 300; ++i) {
        items += xml_element("Key", std::to_string(i)) + "<Other/>";
        seen += (i == 0 ? "" : ", ") + std::to_string(i);
    }
    const Reading<Keys> reading(items);
    EXPECT_TRUE(reading.good);
    EXPECT_EQ(describe(reading.value), "[" + seen + "]");
}

TEST(ListCodec, ForgetsWhatTheValueHeld)
{
    std::vector<AString> keys{AString("old")};
    EXPECT_TRUE(Keys::read(parse_xml("<x><Key>new</Key></x>"), AString("x"), keys, nullptr));
    EXPECT_EQ(describe(keys), "[new]");
}

TEST(ListCodec, FailsWithItsFirstBadItem)
{
    const Reading<List<"Level", U32>> reading("<Level>1</Level><Level>a</Level><Level>b</Level>");
    EXPECT_FALSE(reading.good);
    EXPECT_EQ(reading.error_text(), "Tag Level contains invalid value 'a'");
}

TEST(ListCodec, WritesItsItemsInOrder)
{
    EXPECT_EQ(written<Keys>({AString("a"), AString("")}), "<x><Key>a</Key><Key /></x>");
}

TEST(VectorCodec, HoldsUpToItsBound)
{
    const std::string track = "<TrackType>key</TrackType>";
    EXPECT_EQ(describe(Reading<Tracks>("").value), "[]");
    EXPECT_EQ(describe(Reading<Tracks>(track + "<Other/>" + track).value), "[1, 1]");
    EXPECT_TRUE(Reading<Tracks>(track + track + track + track).good);
}

// Too many fail before the first one is read.
TEST(VectorCodec, StaysEmptyWhenThereAreTooMany)
{
    const std::string bad = "<TrackType>bad</TrackType>";
    TrackSet tracks = TrackSet::all();
    AString error;
    EXPECT_FALSE(Tracks::read(parse_xml(xml_element("x", bad + bad + bad + bad + bad)),
                              AString("x"), tracks, &error));
    EXPECT_EQ(tracks.count, 0u);
    EXPECT_EQ(error.to_utf8(), "Tag x contains %u subelements. The maximum is 4.");
}

TEST(VectorCodec, FailsWithItsFirstBadItem)
{
    EXPECT_FALSE(Reading<Tracks>("<TrackType>key</TrackType><TrackType>bad</TrackType>").good);
}

TEST(VectorCodec, WritesItsItemsInOrder)
{
    TrackSet tracks;
    tracks.add(word<TrackType>("audio"));
    tracks.add(word<TrackType>("video"));
    EXPECT_EQ(written<Tracks>(tracks),
              "<x><TrackType>audio</TrackType><TrackType>video</TrackType></x>");
}

TEST(BasicWriters, MakeElements)
{
    EXPECT_EQ(to_xml(write_text(AString("x"), AString("a"))), "<x>a</x>");
    EXPECT_EQ(to_xml(write_empty(AString("x"))), "<x />");
    XMLTreeList children;
    EXPECT_EQ(to_xml(write_children(AString("x"), children)), "<x />");
    children.push_back(write_empty(AString("a")));
    children.push_back(write_text(AString("b"), AString("1")));
    EXPECT_EQ(to_xml(write_children(AString("x"), children)), "<x><a /><b>1</b></x>");
}

} // namespace
