#include "sim/located_json.h"

#include <string>

#include <gtest/gtest.h>

namespace veltosim
{

namespace
{

std::string error_in(const std::string& text)
{
    try {
        parse_json(text);
    } catch (const LocatedError& error) {
        return std::to_string(error.line) + ": " + error.what();
    }
    return "(none)";
}

} // namespace

TEST(LocatedJson, KnowsTheLineOfEachValue)
{
    const LocatedJson root =
        parse_json("{\n\"a\":\n\n1,\n\"b\": [true,\n-2\n,\"x\\n\", null\n,{}]}");
    EXPECT_EQ(root.line, 1u);
    ASSERT_EQ(root.items.size(), 2u);
    EXPECT_EQ(root.items[0].key, "a");
    EXPECT_EQ(root.items[0].line, 4u);
    EXPECT_EQ(root.items[0].value, 1);
    const LocatedJson* array = root.find("b");
    ASSERT_NE(array, nullptr);
    EXPECT_EQ(array->line, 5u);
    ASSERT_EQ(array->items.size(), 5u);
    const std::size_t lines[] = {5, 6, 7, 7, 8};
    for (std::size_t i = 0; i < 5; ++i) {
        EXPECT_EQ(array->items[i].line, lines[i]) << i;
        EXPECT_EQ(array->items[i].key, "");
    }
    EXPECT_TRUE(array->items[4].value.is_object());
    EXPECT_EQ(root.find("c"), nullptr);
}

TEST(LocatedJson, ANumberBeforeALineEndIsOfTheLineBefore)
{
    const LocatedJson root = parse_json("[1\n,2\r\n]\n");
    EXPECT_EQ(root.items[0].line, 1u);
    EXPECT_EQ(root.items[1].line, 2u);
}

TEST(LocatedJson, BadTextsAreToldWithTheirLine)
{
    EXPECT_EQ(error_in(""),
              "1: syntax error while parsing value - unexpected end of input; expected "
              "'[', '{', or a literal");
    EXPECT_EQ(
        error_in("{\n\n\"a\" 1}"),
        "3: syntax error while parsing object separator - unexpected number literal; expected "
        "':'");
    EXPECT_EQ(error_in("[1,\n2\n}").substr(0, 29), "3: syntax error while parsing");
    EXPECT_EQ(error_in("[]\n\nx").substr(0, 29), "3: syntax error while parsing");
    EXPECT_EQ(error_in("[\n1e999]"), "2: number overflow parsing '1e999'");
    EXPECT_EQ(error_in("[\n\"\xFF\"]").substr(0, 29), "2: syntax error while parsing");
}

TEST(LocatedJson, AKeyStandsOnceInAnObject)
{
    EXPECT_EQ(error_in("{\"a\": 1,\n\"b\": {\"a\": 2},\n\"a\": 3}"),
              "3: the key 'a' is given twice");
}

TEST(LocatedJson, DeepNestingIsRefusedAndNotFollowed)
{
    EXPECT_EQ(error_in(std::string(16, '[') + std::string(16, ']')), "(none)");
    EXPECT_EQ(error_in(std::string(17, '[') + std::string(17, ']')),
              "1: more than 16 levels are nested");
    EXPECT_EQ(error_in(std::string(1000000, '[')), "1: more than 16 levels are nested");
}

} // namespace veltosim
