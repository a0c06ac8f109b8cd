#include "foundation/astring_table.h"

#include "support/assert_watch.h"

#include <gtest/gtest.h>

#include <string>

namespace
{

std::int32_t value_of(const AStringTable& table, const AString& text)
{
    const AStringTable::Entry* entry = table.find(text);
    return entry != nullptr ? entry->value : -1;
}

AString from_chars(const std::vector<AChar>& characters)
{
    return AString::from_chars(characters.data(), characters.size());
}

AString word(int number)
{
    return AString(("word_" + std::to_string(number)).c_str());
}

TEST(AStringTable, KnowsNothingAtFirst)
{
    const AStringTable table;
    EXPECT_EQ(table.find(AString("a")), nullptr);
    EXPECT_EQ(table.find(AString()), nullptr);
}

TEST(AStringTable, FindsEachOfManyWordsAndNoOther)
{
    constexpr int many = 2000;
    AStringTable table;
    for (int i = 0; i < many; ++i) {
        table.add(word(i), i);
    }
    for (int i = 0; i < many; ++i) {
        ASSERT_EQ(value_of(table, word(i)), i);
    }
    for (int i = many; i < 2 * many; ++i) {
        ASSERT_EQ(table.find(word(i)), nullptr);
    }
}

TEST(AStringTable, WordsThatTheHashDoesNotTellApartAreFoundByTheirCharacters)
{
    AStringTable table;
    table.add(AString("a1bc2d"), 1);
    table.add(AString("a3bc4d"), 2);
    EXPECT_EQ(value_of(table, AString("a1bc2d")), 1);
    EXPECT_EQ(value_of(table, AString("a3bc4d")), 2);
    EXPECT_EQ(table.find(AString("a5bc6d")), nullptr);
}

TEST(AStringTable, FindsWordsByTheirBytes)
{
    AStringTable table;
    table.add(AString("play"), 1);
    table.add(from_chars({'p', 'l', 0xE9, 'y'}), 2);
    EXPECT_EQ(table.find(std::string_view("play")), table.find(AString("play")));
    for (const char* bytes : {"", "pla", "plays", "Play", "pl\xE9y", "pl\xC3\xA9y"}) {
        EXPECT_EQ(table.find(std::string_view(bytes)), nullptr) << bytes;
    }
}

TEST(AStringTable, HoldsTheFirstOfTheSameTexts)
{
    AStringTable table;
    const AString first("play");
    table.add(first, 1);
    table.add(AString("play"), 2);
    EXPECT_EQ(value_of(table, AString("play")), 1);
    EXPECT_EQ(table.find(AString("play"))->text.storage.get(), first.storage.get());
}

TEST(AStringTable, FindsTextsThatLieInSeveralBlocks)
{
    AStringTable table;
    const AString long_text = AString("ab").repeat(300);
    table.add(long_text, 7);
    EXPECT_EQ(value_of(table, AString("x").repeat(200) + long_text), -1);
    EXPECT_EQ(value_of(table, (AString("x").repeat(200) + long_text).drop_left(200)), 7);
}

TEST(AStringTable, TheEmptyTextIsReportedAndLeftOut)
{
    AStringTable table;
    const AssertWatch watch;
    table.add(AString(), 1);
    EXPECT_EQ(watch.count("astring_table"), 1u);
    EXPECT_EQ(table.find(AString()), nullptr);
}

} // namespace
