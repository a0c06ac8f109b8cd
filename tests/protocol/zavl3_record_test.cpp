#include "protocol/zavl3_elements.h"

#include "support/describe.h"
#include "support/xml_text.h"

#include <string>
#include <type_traits>

#include <gtest/gtest.h>

namespace
{

using namespace ZAVL3;

using Sample = Record<"ClipID", "Speed?", "MinLatency", "ClipLength", "Loop?">;

struct Reading {
    bool good;
    std::string seen;
    std::string error;
};

Reading as_message(const std::string& fields)
{
    Sample sample;
    AString error;
    const bool good = sample.read_message(parse_xml(xml_element("m", fields)), &error);
    return {good, describe(sample), error.to_utf8()};
}

Reading as_composite(const std::string& fields)
{
    Sample sample;
    AString error;
    const bool good = sample.read_composite(parse_xml(xml_element("m", fields)), &error);
    return {good, describe(sample), error.to_utf8()};
}

std::string written(const Sample& sample)
{
    return to_xml(write_children(AString("m"), sample.write()));
}

const std::string required = "<ClipID>c</ClipID><ClipLength>9</ClipLength>";

TEST(Maybe, IsAbsentAtFirst)
{
    const Maybe<std::uint32_t> none;
    EXPECT_FALSE(none.has);
    EXPECT_EQ(none.value, 0u);
}

TEST(Maybe, IsThereOnceItIsSet)
{
    Maybe<std::uint32_t> length;
    length.set(7);
    EXPECT_TRUE(length.has);
    EXPECT_EQ(length.value, 7u);
    length.clear();
    EXPECT_FALSE(length.has);
    EXPECT_EQ(length.value, 0u);
}

TEST(FieldSpelling, MarksWhatMayBeAbsent)
{
    EXPECT_EQ(FieldOf<"Speed?">::name.view(), "Speed");
    EXPECT_TRUE(FieldOf<"Speed?">::marked);
    EXPECT_EQ(FieldOf<"Speed">::name.view(), "Speed");
    EXPECT_FALSE(FieldOf<"Speed">::marked);
    EXPECT_EQ(field_kind<"Speed">(), FieldKind::required);
    EXPECT_EQ(field_kind<"Speed?">(), FieldKind::optional);
    EXPECT_EQ(field_kind<"MinLatency">(), FieldKind::flag);
}

TEST(RecordFields, HaveTheTypesOfTheirElements)
{
    static_assert(Sample::field_count == 5);
    Sample sample;
    EXPECT_TRUE((std::is_same_v<decltype(sample.get<"ClipID">()), AString&>));
    EXPECT_TRUE((std::is_same_v<decltype(sample.get<"Speed">()), Maybe<fract16>&>));
    EXPECT_TRUE((std::is_same_v<decltype(sample.get<"MinLatency">()), bool&>));
    EXPECT_TRUE((std::is_same_v<decltype(sample.get<"Loop">()), Maybe<Loop>&>));
}

TEST(RecordFields, AreEmptyAtFirst)
{
    EXPECT_EQ(describe(Sample()), "{, -, false, 0, -}");
}

TEST(RecordFields, AreSetByName)
{
    Sample sample;
    sample.set<"Loop">(word<Loop>("loop")).set<"ClipID">(AString("c")).set<"MinLatency">(true);
    sample.set<"Speed">(-1);
    EXPECT_EQ(describe(sample), "{c, -1, true, 0, 1}");
    const Sample& same = sample;
    EXPECT_EQ(same.get<"Speed">().value, -1);
    EXPECT_TRUE(same.get<"MinLatency">());
}

template <typename... Types>
struct TypeList {
};

TEST(RecordFields, GiveTheirTypesInOrder)
{
    EXPECT_TRUE(
        (std::is_same_v<Sample::rebind<TypeList>,
                        TypeList<AString, Maybe<fract16>, bool, std::uint32_t, Maybe<Loop>>>));
    EXPECT_TRUE((std::is_same_v<Record<>::rebind<TypeList>, TypeList<>>));
}

TEST(RecordFields, AreAppliedInOrder)
{
    Sample sample;
    sample.set<"ClipID">(AString("c")).set<"ClipLength">(4u);
    int calls = 0;
    sample.apply([&calls](const AString& id, const Maybe<fract16>& speed, bool latency,
                          std::uint32_t length, const Maybe<Loop>& loop) {
        EXPECT_EQ(id.to_utf8(), "c");
        EXPECT_EQ(length, 4u);
        EXPECT_FALSE(speed.has || latency || loop.has);
        ++calls;
    });
    Record<>().apply([&calls] { ++calls; });
    EXPECT_EQ(calls, 2);
}

TEST(RecordRead, TakesAllFieldsInAnyOrder)
{
    const std::string all = "<Loop>loop</Loop><MinLatency/><ClipLength>9</ClipLength>"
                            "<Other/><Speed>1X</Speed><ClipID>c</ClipID>";
    for (const Reading& reading : {as_message(all), as_composite(all)}) {
        EXPECT_TRUE(reading.good);
        EXPECT_EQ(reading.seen, "{c, 65536, true, 9, 1}");
        EXPECT_EQ(reading.error, "");
    }
}

TEST(RecordRead, TakesTheRequiredFieldsAlone)
{
    for (const Reading& reading : {as_message(required), as_composite(required)}) {
        EXPECT_TRUE(reading.good);
        EXPECT_EQ(reading.seen, "{c, -, false, 9, -}");
    }
}

TEST(RecordRead, FailsWithTheFirstRequiredFieldThatIsMissing)
{
    for (const Reading& reading : {as_message(""), as_composite("")}) {
        EXPECT_FALSE(reading.good);
        EXPECT_EQ(reading.error, "Tag 'ClipID' not found within 'm'");
    }
}

TEST(RecordRead, TakesAFlagThereHoweverOftenAndWhateverItHolds)
{
    const std::string flags = required + "<MinLatency>false</MinLatency><MinLatency/>";
    EXPECT_EQ(as_message(flags).seen, "{c, -, true, 9, -}");
    EXPECT_EQ(as_composite(flags).seen, "{c, -, true, 9, -}");
}

TEST(RecordRead, OfAMessageTakesABadOptionalFieldAsAbsent)
{
    for (const std::string bad : {"<Speed>fast</Speed>", "<Speed>1X</Speed><Speed>1X</Speed>"}) {
        const Reading reading = as_message(required + bad + "<Loop>loop</Loop>");
        EXPECT_TRUE(reading.good);
        EXPECT_EQ(reading.seen, "{c, -, false, 9, 1}");
        EXPECT_EQ(reading.error, "");
    }
}

TEST(RecordRead, OfAMessageLeavesNothingOfABadOptionalField)
{
    Record<"Transition?"> message;
    const XMLTree tree = parse_xml("<m><Transition><TransitionType>dissolve</TransitionType>"
                                   "<TransitionDuration>x</TransitionDuration></Transition></m>");
    EXPECT_TRUE(message.read_message(tree, nullptr));
    EXPECT_FALSE(message.get<"Transition">().has);
    EXPECT_EQ(message.get<"Transition">().value.get<"TransitionType">(), TransitionType{0});
}

TEST(RecordRead, OfACompositeFailsWithABadOptionalField)
{
    const Reading bad = as_composite(required + "<Speed>fast</Speed>");
    EXPECT_FALSE(bad.good);
    EXPECT_EQ(bad.error, "Tag Speed contains invalid value 'fast'");
    const Reading doubled = as_composite(required + "<Speed>1X</Speed><Speed>1X</Speed>");
    EXPECT_FALSE(doubled.good);
    EXPECT_EQ(doubled.error, "More than one tag 'Speed' found within 'm'");
}

// The required field behind it is read before the optional one.
TEST(RecordRead, OfACompositeReadsRequiredFieldsFirst)
{
    const Reading reading = as_composite("<ClipID>c</ClipID><Speed>fast</Speed>");
    EXPECT_EQ(reading.error, "Tag 'ClipLength' not found within 'm'");
}

TEST(RecordWrite, WritesWhatIsSetInOrder)
{
    Sample sample;
    EXPECT_EQ(written(sample), "<m><ClipID /><ClipLength>0</ClipLength></m>");
    sample.set<"Loop">(word<Loop>("off")).set<"MinLatency">(true).set<"Speed">(0);
    EXPECT_EQ(written(sample), "<m><ClipID /><Speed>0X</Speed><MinLatency />"
                               "<ClipLength>0</ClipLength><Loop>off</Loop></m>");
    sample.set<"MinLatency">(false);
    sample.get<"Speed">().clear();
    EXPECT_EQ(written(sample), "<m><ClipID /><ClipLength>0</ClipLength><Loop>off</Loop></m>");
}

TEST(RecordWrite, OfNoFieldsIsEmpty)
{
    EXPECT_EQ(Record<>().write().length(), 0u);
}

} // namespace
