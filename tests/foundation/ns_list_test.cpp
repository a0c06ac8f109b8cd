#include "foundation/ns_list.h"

#include "support/assert_watch.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace
{

using List = nonstd_list<int>;

template <typename... Values>
List list_of(Values... values)
{
    List list;
    (list.push_back(values), ...);
    return list;
}

std::vector<int> forwards(const List& list)
{
    return {list.begin(), list.end()};
}

std::vector<int> backwards(const List& list)
{
    std::vector<int> values;
    for (auto entry = list.get_readable().tail; entry; entry = entry->prev) {
        values.push_back(entry->value);
    }
    return values;
}

TEST(NonstdList, IsEmptyAtFirst)
{
    const List list;
    EXPECT_EQ(list.length(), 0u);
    EXPECT_TRUE(list.begin() == list.end());
    EXPECT_EQ(list.get_readable().head, nullptr);
    EXPECT_EQ(list.get_readable().tail, nullptr);
    EXPECT_EQ(list.get_readable().count, 0u);
}

TEST(NonstdList, PushBackLinksBothWays)
{
    const List list = list_of(1, 2, 3);
    EXPECT_EQ(list.length(), 3u);
    EXPECT_EQ(forwards(list), (std::vector{1, 2, 3}));
    EXPECT_EQ(backwards(list), (std::vector{3, 2, 1}));
}

TEST(NonstdList, PopFrontGivesTheEntriesInOrder)
{
    List list = list_of(1, 2, 3);
    const List::Entry first = list.pop_front();
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(first->value, 1);
    EXPECT_EQ(first->next, nullptr);
    EXPECT_EQ(first->prev, nullptr);
    EXPECT_EQ(forwards(list), (std::vector{2, 3}));
    EXPECT_EQ(backwards(list), (std::vector{3, 2}));
    EXPECT_EQ(list.length(), 2u);
}

TEST(NonstdList, PopFrontOfTheOnlyEntryLeavesNothing)
{
    List list = list_of(1);
    EXPECT_EQ(list.pop_front()->value, 1);
    EXPECT_EQ(list.get_readable().head, nullptr);
    EXPECT_EQ(list.get_readable().tail, nullptr);
    EXPECT_EQ(list.length(), 0u);
    list.push_back(2);
    EXPECT_EQ(forwards(list), (std::vector{2}));
}

TEST(NonstdList, PopFrontOfAnEmptyOneIsNull)
{
    List untouched;
    EXPECT_EQ(untouched.pop_front(), nullptr);
    List emptied = list_of(1);
    emptied.clear();
    EXPECT_EQ(emptied.pop_front(), nullptr);
    EXPECT_EQ(emptied.length(), 0u);
}

TEST(NonstdList, NullEntryIsReportedAndNotLinked)
{
    List list = list_of(1);
    const AssertWatch watch;
    list.get_writable().link(nullptr);
    EXPECT_EQ(watch.count("ns_list"), 1u);
    EXPECT_EQ(forwards(list), (std::vector{1}));
    EXPECT_EQ(list.length(), 1u);
}

TEST(NonstdList, CopySharesUntilItIsWritten)
{
    const List first = list_of(1, 2);
    List second = first;
    EXPECT_EQ(&first.get_readable(), &second.get_readable());
    EXPECT_FALSE(first.is_sole_owner());
    second.push_back(3);
    EXPECT_NE(&first.get_readable(), &second.get_readable());
    EXPECT_EQ(forwards(first), (std::vector{1, 2}));
    EXPECT_EQ(first.length(), 2u);
    EXPECT_EQ(forwards(second), (std::vector{1, 2, 3}));
    EXPECT_TRUE(first.is_sole_owner());
}

TEST(NonstdList, EveryWriterLeavesTheOtherOwnersAlone)
{
    const List original = list_of(1, 2);
    const auto is_unchanged_by = [&](auto write) {
        List copy = original;
        write(copy);
        return forwards(original) == std::vector{1, 2} &&
               backwards(original) == std::vector{2, 1} && original.length() == 2;
    };
    EXPECT_TRUE(is_unchanged_by([](List& list) { list.pop_front(); }));
    EXPECT_TRUE(is_unchanged_by([](List& list) { list.at(0) = 7; }));
    EXPECT_TRUE(is_unchanged_by([](List& list) { list.clear(); }));
    EXPECT_TRUE(is_unchanged_by([](List& list) { list.append(list_of(8, 9)); }));
}

TEST(NonstdList, CloneCopiesItsValuesAndWhatTheyShareStaysShared)
{
    nonstd_list<std::shared_ptr<int>> first;
    first.push_back(std::make_shared<int>(1));
    auto second = first;
    second.push_back(nullptr);
    EXPECT_EQ(first.at(0), second.at(0));
    EXPECT_EQ(std::as_const(first).at(0).use_count(), 2);
}

TEST(NonstdList, ReadingNeverUnshares)
{
    const List first = list_of(1, 2);
    const List second = first;
    EXPECT_EQ(second.length(), 2u);
    EXPECT_EQ(second.at(1), 2);
    EXPECT_EQ(forwards(second), (std::vector{1, 2}));
    EXPECT_EQ(&first.get_readable(), &second.get_readable());
}

TEST(NonstdList, SoleOwnerIsWrittenInPlace)
{
    List list = list_of(1);
    const List::Body* body = &list.get_readable();
    list.push_back(2);
    list.pop_front();
    list.clear();
    EXPECT_EQ(&list.get_readable(), body);
}

TEST(NonstdList, ConstructedFromABodyHasCopiesOfItsValues)
{
    const List first = list_of(1, 2, 3);
    List second(first.get_readable());
    EXPECT_NE(&first.get_readable(), &second.get_readable());
    EXPECT_EQ(forwards(second), (std::vector{1, 2, 3}));
    EXPECT_EQ(backwards(second), (std::vector{3, 2, 1}));
    EXPECT_TRUE(first.is_sole_owner());
}

TEST(NonstdList, AppendCopiesEachValueInOrder)
{
    List list = list_of(1, 2);
    const List other = list_of(3, 4);
    list.append(other);
    EXPECT_EQ(forwards(list), (std::vector{1, 2, 3, 4}));
    EXPECT_EQ(forwards(other), (std::vector{3, 4}));
    list.append(List());
    EXPECT_EQ(list.length(), 4u);
}

TEST(NonstdList, AppendedToItselfItDoubles)
{
    List list = list_of(1, 2);
    list.append(list);
    EXPECT_EQ(forwards(list), (std::vector{1, 2, 1, 2}));
}

TEST(NonstdList, AtWalksFromTheHead)
{
    List list = list_of(10, 20, 30);
    EXPECT_EQ(std::as_const(list).at(0), 10);
    EXPECT_EQ(std::as_const(list).at(2), 30);
    list.at(1) = 21;
    EXPECT_EQ(forwards(list), (std::vector{10, 21, 30}));
}

TEST(NonstdList, ClearTakesTheEntriesApart)
{
    List list = list_of(1, 2, 3);
    const List::Entry middle = list.get_readable().head->next;
    list.clear();
    EXPECT_EQ(list.length(), 0u);
    EXPECT_EQ(list.get_readable().head, nullptr);
    EXPECT_EQ(list.get_readable().tail, nullptr);
    EXPECT_EQ(middle->next, nullptr);
    EXPECT_EQ(middle->prev, nullptr);
    EXPECT_EQ(middle.use_count(), 1);
    EXPECT_EQ(middle->value, 2);
    list.clear();
    EXPECT_EQ(list.length(), 0u);
}

TEST(NonstdList, IteratorKeepsItsEntryAlive)
{
    nonstd_list<std::string> list;
    list.push_back("kept");
    list.push_back("gone");
    auto position = list.begin();
    list.release();
    EXPECT_EQ(*position, "kept");
    EXPECT_EQ(position->size(), 4u);
    ++position;
    EXPECT_TRUE(position == list.end());
}

TEST(NonstdList, IteratorMovesAlong)
{
    const List list = list_of(1, 2);
    auto position = list.begin();
    EXPECT_EQ(*position++, 1);
    EXPECT_EQ(*position, 2);
    EXPECT_TRUE(++position == list.end());
    EXPECT_TRUE(List::iterator() == list.end());
}

TEST(NonstdList, LastOwnerFreesEveryEntryOfALongList)
{
    const auto value = std::make_shared<int>(0);
    {
        nonstd_list<std::shared_ptr<int>> list;
        for (int i = 0; i != 200'000; ++i) {
            list.push_back(value);
        }
        const auto copy = list;
        list.release();
        EXPECT_EQ(value.use_count(), 200'001);
    }
    EXPECT_EQ(value.use_count(), 1);
}

TEST(NonstdList, ReleaseGivesUpTheBodyWithoutTouchingIt)
{
    List first = list_of(1);
    const List second = first;
    first.release();
    EXPECT_EQ(first.length(), 0u);
    EXPECT_FALSE(first.is_sole_owner());
    EXPECT_TRUE(second.is_sole_owner());
    EXPECT_EQ(forwards(second), (std::vector{1}));
}

TEST(NonstdList, SpliceBackMovesEntriesToTheEnd)
{
    List list = list_of(1, 2);
    List other = list_of(3, 4);
    const auto moved = other.get_readable().head;
    list.get_writable().splice_back(other.get_writable());
    EXPECT_EQ(forwards(list), (std::vector{1, 2, 3, 4}));
    EXPECT_EQ(backwards(list), (std::vector{4, 3, 2, 1}));
    EXPECT_EQ(list.length(), 4u);
    EXPECT_EQ(&list.at(2), &moved->value);
    EXPECT_EQ(other.length(), 0u);
    EXPECT_TRUE(forwards(other).empty());
    EXPECT_TRUE(backwards(other).empty());
}

TEST(NonstdList, SpliceBackWithAnEmptyListOnEitherSide)
{
    List list;
    List other = list_of(1, 2);
    list.get_writable().splice_back(other.get_writable());
    EXPECT_EQ(forwards(list), (std::vector{1, 2}));
    EXPECT_EQ(backwards(list), (std::vector{2, 1}));
    list.get_writable().splice_back(other.get_writable());
    EXPECT_EQ(forwards(list), (std::vector{1, 2}));
    EXPECT_EQ(list.length(), 2u);
}

} // namespace
