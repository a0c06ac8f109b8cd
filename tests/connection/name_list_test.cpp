#include "connection/name_list.h"

#include <random>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace
{

using Names = std::vector<std::string>;

NameList built(const Names& names)
{
    NameListBuilder builder;
    for (const std::string& name : names) {
        builder.append(AString::from_utf8(name.data(), name.size()));
    }
    return builder.finish();
}

Names contents(const NameList& list)
{
    Names names;
    for (const AString& name : *list) {
        names.push_back(name.to_utf8());
    }
    return names;
}

// `length` characters, which tell where they are.
std::string name_of(std::size_t length, std::mt19937& random)
{
    static const char* const characters[] = {"a", "Z", " ", "\u00E9", "\u2603", "\U0001F3AC"};
    std::string name;
    for (std::size_t i = 0; i < length; ++i) {
        name += characters[random() % std::size(characters)];
    }
    return name;
}

TEST(NameList, CanBeEmpty)
{
    NameListBuilder builder;
    const NameList list = builder.finish();
    ASSERT_TRUE(list);
    EXPECT_EQ(list->length(), 0u);
    EXPECT_EQ(list->pop_front(), nullptr);
}

TEST(NameList, HoldsItsNamesInOrder)
{
    const Names names = {"b", "a", "b", "", "\u00E9\U0001F3AC", ""};
    EXPECT_EQ(contents(built(names)), names);
}

TEST(NameList, HoldsEmptyNamesAlone)
{
    const Names names(1000);
    EXPECT_EQ(contents(built(names)), names);
}

// Every pair of lengths meets at every fill of what they are packed into.
TEST(NameList, HoldsNamesOfAnyLengthBehindEachOther)
{
    std::mt19937 random(1);
    const std::size_t lengths[] = {0, 1, 2, 127, 128, 129, 254, 255, 256, 257, 511, 512, 513, 1000};
    for (const std::size_t before : lengths) {
        for (const std::size_t first : lengths) {
            for (const std::size_t second : lengths) {
                const Names names = {name_of(before, random), name_of(first, random),
                                     name_of(second, random), "end"};
                ASSERT_EQ(contents(built(names)), names) << before << " " << first << " " << second;
            }
        }
    }
}

TEST(NameList, HoldsNamesOfRandomLengths)
{
    std::mt19937 random(2);
    for (int round = 0; round < 20; ++round) {
        Names names;
        for (int i = 0; i < 200; ++i) {
            names.push_back(name_of(random() % (round % 2 == 0 ? 40 : 600), random));
        }
        ASSERT_EQ(contents(built(names)), names) << round;
    }
}

TEST(NameList, IsTakenFromTheFront)
{
    const NameList list = built({"a", "b", "c"});
    EXPECT_EQ(list->pop_front()->value.to_utf8(), "a");
    EXPECT_EQ(list->pop_front()->value.to_utf8(), "b");
    EXPECT_EQ(list->length(), 1u);
    EXPECT_EQ(list->pop_front()->value.to_utf8(), "c");
    EXPECT_EQ(list->pop_front(), nullptr);
}

// A text of its own for each name would be ten times the memory.
TEST(NameList, HoldsManyNamesInFewTexts)
{
    constexpr int count = 100'000;
    NameListBuilder builder;
    for (int i = 0; i < count; ++i) {
        builder.append(AString(("clip_name_" + std::to_string(100'000 + i)).c_str()));
    }
    const NameList list = builder.finish();
    ASSERT_EQ(list->length(), std::uint32_t{count});
    std::set<const AStringStorage*> texts;
    int number = 100'000;
    for (const AString& name : *list) {
        ASSERT_EQ(name.to_utf8(), "clip_name_" + std::to_string(number++));
        texts.insert(name.storage.get());
    }
    EXPECT_EQ(texts.size(), count / 16); // so many names of 16 characters fill a segment
}

// A name that is a piece of a long text does not keep that text.
TEST(NameList, KeepsNothingOfTheTextsThatItsNamesCameFrom)
{
    const AString message = AString("x").repeat(10'000);
    NameListBuilder builder;
    builder.append(message.mid(5'000, 10));
    const NameList list = builder.finish();
    EXPECT_EQ(list->begin()->to_utf8(), "xxxxxxxxxx");
    EXPECT_EQ(list->begin()->storage->total_len, 10u);
}

} // namespace
