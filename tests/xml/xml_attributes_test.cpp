#include "xml/xml_attributes.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace
{

std::string listed(const XMLAttributes& attributes)
{
    std::string text;
    for (const auto& [name, value] : attributes) {
        text += name.to_utf8() + "=" + value.to_utf8() + " ";
    }
    return text;
}

} // namespace

TEST(XMLAttributes, AreNoneAtFirst)
{
    const XMLAttributes none;
    EXPECT_TRUE(none.empty());
    EXPECT_TRUE(none.begin() == none.end());
    EXPECT_EQ(none, XMLAttributes());
}

TEST(XMLAttributes, StandInTheOrderOfTheirNames)
{
    XMLAttributes attributes;
    attributes[AString("b")] = AString("2");
    attributes[AString("a")] = AString("1");
    attributes[AString("b")] = AString("3");
    EXPECT_FALSE(attributes.empty());
    EXPECT_EQ(listed(attributes), "a=1 b=3 ");
    EXPECT_EQ(attributes.at(AString("b")), AString("3"));
}

TEST(XMLAttributes, CopiesAreApart)
{
    XMLAttributes first{{AString("a"), AString("1")}};
    XMLAttributes copy = first;
    copy[AString("a")] = AString("2");
    EXPECT_EQ(listed(first), "a=1 ");
    EXPECT_EQ(listed(copy), "a=2 ");
    const XMLAttributes& same = first;
    first = same;
    EXPECT_EQ(listed(first), "a=1 ");
    first = XMLAttributes();
    EXPECT_TRUE(first.empty());
    const XMLAttributes moved = std::move(copy);
    EXPECT_EQ(listed(moved), "a=2 ");
}

TEST(XMLAttributes, AreEqualWithTheSameNamesAndValues)
{
    const XMLAttributes one{{AString("a"), AString("1")}};
    EXPECT_EQ(one, (XMLAttributes{{AString("a"), AString("1")}}));
    EXPECT_FALSE(one == (XMLAttributes{{AString("a"), AString("2")}}));
    EXPECT_FALSE(one == XMLAttributes());
    EXPECT_FALSE(XMLAttributes() == one);
    EXPECT_EQ(XMLAttributes{},
              XMLAttributes(std::initializer_list<XMLAttributes::Map::value_type>{}));
}
