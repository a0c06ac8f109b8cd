#include "protocol/zavl3_elements.h"

#include "support/describe.h"
#include "support/wire_model.h"
#include "support/xml_text.h"

#include <map>
#include <string>

#include <gtest/gtest.h>

namespace
{

using namespace ZAVL3;

struct Outcome {
    bool good;
    std::string seen;
    std::string error;
};

template <FixedString Name>
Outcome read_element(const XMLTree& tree)
{
    using Codec = typename ElementCodec<Name>::type;
    typename Codec::value_type value{};
    AString error;
    const bool good = Codec::read(tree, tag<Name>(), value, &error);
    return {good, good ? describe(value) : "", error.to_utf8()};
}

using Reader = Outcome (*)(const XMLTree&);

template <FixedString... Names>
std::map<std::string, Reader> make_readers()
{
    return {{std::string(Names.view()), &read_element<Names>}...};
}

const auto readers =
    make_readers<"Alert", "ChannelInformation", "ChaseElement", "ChasePlaybackIndex", "ClipInfo",
                 "CompressionInfo", "ConfigurationItem", "ContentID", "DiskSpaceChange", "EEStatus",
                 "Frame0Timecode", "ListElement", "ListPlaybackIndex", "MeltFlags", "MeltItem",
                 "Metadata", "Timecode", "TrackInfo", "Transition">();

// Every composite that is read, as a table: tests/support/wire_model.cpp.
class CompositeElement : public testing::TestWithParam<wire::Layout>
{
protected:
    const wire::Layout& layout() const { return GetParam(); }

    // As a child, which is how messages hold it.
    Outcome read(const std::string& xml) const
    {
        return readers.at(layout().name)(parse_xml(xml_element("holder", xml)));
    }

    Outcome read_with(std::size_t changed, const std::string& replacement) const
    {
        return read(layout().xml_with(changed, replacement));
    }

    static void expect_value(const Outcome& outcome, const std::string& seen)
    {
        EXPECT_TRUE(outcome.good);
        EXPECT_EQ(outcome.seen, seen);
        EXPECT_EQ(outcome.error, "");
    }

    static void expect_failure(const Outcome& outcome, const std::string& error)
    {
        EXPECT_FALSE(outcome.good);
        EXPECT_EQ(outcome.error, error);
    }

    template <typename Check>
    void for_each_field(Check check) const
    {
        for (std::size_t i = 0; i < layout().fields.size(); ++i) {
            SCOPED_TRACE(layout().fields[i].name);
            check(i, layout().fields[i]);
        }
    }
};

TEST_P(CompositeElement, IsReadFromItsParent)
{
    expect_value(read(layout().xml()), layout().seen());
}

TEST_P(CompositeElement, IsReadFromItself)
{
    expect_value(readers.at(layout().name)(parse_xml(layout().xml())), layout().seen());
}

TEST_P(CompositeElement, NeedsExactlyItsRequiredFields)
{
    for_each_field([this](std::size_t at, const wire::Field& field) {
        const Outcome without = read_with(at, "");
        if (field.presence == wire::Presence::required) {
            expect_failure(without,
                           "Tag '" + field.name + "' not found within '" + layout().name + "'");
        } else {
            expect_value(without, layout().seen_with(at, field.seen_absent()));
        }
    });
}

TEST_P(CompositeElement, HoldsNoneOfTheOptionalFieldsWhenOnlyTheRequiredOnesAreThere)
{
    wire::Layout bare = layout();
    for (wire::Field& field : bare.fields) {
        if (field.presence != wire::Presence::required) {
            field.xml.clear();
            field.seen = field.seen_absent();
        }
    }
    expect_value(read(bare.xml()), bare.seen());
}

TEST_P(CompositeElement, FailsWithABadFieldEvenAnOptionalOne)
{
    for_each_field([this](std::size_t at, const wire::Field& field) {
        if (!field.bad.empty()) {
            expect_failure(read_with(at, field.bad), field.complaint);
        }
    });
}

TEST_P(CompositeElement, FailsWithAFieldDoubledUnlessItIsAFlag)
{
    for_each_field([this](std::size_t at, const wire::Field& field) {
        const Outcome doubled = read_with(at, field.xml + field.xml);
        if (field.presence == wire::Presence::flag) {
            expect_value(doubled, layout().seen());
        } else {
            expect_failure(doubled, "More than one tag '" + field.name + "' found within '" +
                                        layout().name + "'");
        }
    });
}

TEST_P(CompositeElement, ReadsRequiredFieldsInOrderAndThenTheOptionalOnes)
{
    for_each_field([this](std::size_t at, const wire::Field& field) {
        // Everything from here on is wrong: this field must be the one complained about, if no
        // required one stands behind an optional one, which is so in all composites.
        wire::Layout wrong = layout();
        std::string complaint;
        for (std::size_t i = at; i < wrong.fields.size(); ++i) {
            const wire::Field& other = layout().fields[i];
            const bool required = other.presence == wire::Presence::required;
            wrong.fields[i].xml = required ? "" : other.bad;
            if (complaint.empty()) {
                complaint =
                    required ? "Tag '" + other.name + "' not found within '" + layout().name + "'"
                             : other.complaint;
            }
        }
        if (!complaint.empty()) {
            SCOPED_TRACE(field.name);
            expect_failure(read(wrong.xml()), complaint);
        }
    });
}

TEST_P(CompositeElement, IsMissedByItsName)
{
    expect_failure(read(""), "Tag '" + layout().name + "' not found within 'holder'");
    expect_failure(read(layout().xml() + layout().xml()),
                   "More than one tag '" + layout().name + "' found within 'holder'");
}

INSTANTIATE_TEST_SUITE_P(All, CompositeElement, testing::ValuesIn(wire::composites()),
                         [](const auto& row) { return row.param.name; });

std::string repeated(const std::string& text, int count)
{
    std::string all;
    for (int i = 0; i < count; ++i) {
        all += text;
    }
    return all;
}

TEST(Elements, TakeUpTo64AllowedValues)
{
    const std::string value = "<ConfigurationItemValue>v</ConfigurationItemValue>";
    const auto read = [&value](int count) {
        return read_element<"ConfigurationItemAllowedValues">(
            parse_xml(xml_element("ConfigurationItemAllowedValues", repeated(value, count))));
    };
    EXPECT_EQ(read(0).seen, "[]");
    EXPECT_EQ(read(64).seen, "[" + repeated("v, ", 63) + "v]");
    EXPECT_FALSE(read(65).good);
    EXPECT_EQ(read(65).error,
              "Tag ConfigurationItemAllowedValues contains %u subelements. The maximum is 64.");
}

TEST(Elements, TakeUpTo17TrackInfos)
{
    const auto read = [](int count) {
        const std::string tracks = "<TrackInfo><TrackType>key</TrackType></TrackInfo>";
        return read_element<"TrackInfoVector">(
            parse_xml(xml_element("TrackInfoVector", repeated(tracks, count))));
    };
    EXPECT_EQ(read(17).seen, "[" + repeated("{1, -}, ", 16) + "{1, -}]");
    EXPECT_FALSE(read(18).good);
    EXPECT_EQ(read(18).error, "Tag TrackInfoVector contains %u subelements. The maximum is 17.");
}

TEST(Elements, ClearAVectorThatGetsTooMany)
{
    TrackInfoVector tracks;
    tracks.push_back(TrackInfo());
    const std::string track = "<TrackInfo><TrackType>key</TrackType></TrackInfo>";
    const XMLTree tree = parse_xml(xml_element("TrackInfoVector", repeated(track, 18)));
    EXPECT_FALSE(ElementCodec<"TrackInfoVector">::type::read(tree, tag<"TrackInfoVector">(), tracks,
                                                             nullptr));
    EXPECT_EQ(tracks.count, 0u);
}

TEST(Elements, IgnoreForeignChildrenOfListsAndVectors)
{
    EXPECT_EQ(read_element<"KeyList">(parse_xml("<KeyList><K>1</K><Key>2</Key></KeyList>")).seen,
              "[2]");
    EXPECT_EQ(
        read_element<"TrackInfoVector">(parse_xml("<TrackInfoVector><T/></TrackInfoVector>")).seen,
        "[]");
}

TEST(Elements, KeepTheSpacesOfTextsAndIgnoreThoseOfNumbers)
{
    EXPECT_EQ(read_element<"Title">(parse_xml("<Title>  a\tb  </Title>")).seen, "  a\tb  ");
    EXPECT_EQ(read_element<"ClipLength">(parse_xml("<ClipLength>\r\n 12 </ClipLength>")).seen,
              "12");
}

TEST(Elements, NameTheNumberThatCannotBeRead)
{
    EXPECT_EQ(read_element<"ClipLength">(parse_xml("<ClipLength>12x</ClipLength>")).error,
              "Tag ClipLength contains invalid value '12x'");
}

TEST(Elements, FailAnAlertWithABadLevelThoughTheRestIsGood)
{
    const Outcome outcome = read_element<"Alert">(
        parse_xml("<Alert><AlertingPriority>harmful</AlertingPriority><AlertingLevel>bad"
                  "</AlertingLevel><AlertName>n</AlertName><AlertNameDescription>d"
                  "</AlertNameDescription><AlertValueDescription>v</AlertValueDescription>"
                  "</Alert>"));
    EXPECT_FALSE(outcome.good);
    EXPECT_EQ(outcome.error, "Tag Alert contains invalid value 'AlertingLevel'");
}

TEST(Elements, AreEmptyByDefault)
{
    EXPECT_EQ(describe(ClipAttrChange()), "{-, -, -, -, -, -, -, -, -, -, -, -, -, -, -, -, -}");
    EXPECT_EQ(describe(ConfigurationItem()), "{, 0, , , , [], false}");
    EXPECT_EQ(describe(Timecode()), "{false, -, -, -}");
    EXPECT_EQ(describe(MeltFlags()), "{0, false, false, false, false, false}");
}

} // namespace
