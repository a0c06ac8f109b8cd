#include "connection/channel_state.h"

#include "support/channel_list.h"

#include <gtest/gtest.h>

namespace
{

using ZAVL3::ListElement;
using ZAVL3::word;

ListElement with_content(const ZAVL3::ContentID& content)
{
    ListElement element;
    element.set<"ContentID">(content);
    return element;
}

ListElement clip(const char* name)
{
    ZAVL3::ContentID content;
    content.set<"ClipID">(AString(name));
    return with_content(content);
}

ListElement virtual_clip(const char* name)
{
    ZAVL3::ContentID content;
    content.set<"VClipID">(AString(name));
    return with_content(content);
}

// It has a position, but nothing to show there.
ListElement positioned_hole()
{
    ListElement element;
    element.set<"GotoPosition">(250u);
    return element;
}

ZAVL3::ListPlaybackIndex at(std::uint16_t index)
{
    ZAVL3::ListPlaybackIndex playback;
    playback.set<"ListIndex">(index);
    return playback;
}

class ListPlay : public testing::Test
{
protected:
    void load(std::initializer_list<const char*> clips)
    {
        list.load(AString("evening"), word<ZAVL3::ListPlayMode>("pgm_pvw"));
        for (const char* name : clips) {
            list.replace(static_cast<std::uint16_t>(list.elements.size()), clip(name));
        }
    }

    void set_air(std::uint16_t now, std::uint16_t next, std::uint16_t lock)
    {
        list.set_air(ChannelListPlay::air_now, at(now));
        list.set_air(ChannelListPlay::air_next, at(next));
        list.set_air(ChannelListPlay::air_lock, at(lock));
    }

    std::string contents() const
    {
        const std::string text = describe(list);
        return text.substr(text.find('['), text.find(']') + 1 - text.find('['));
    }

    // The three indices as "now next lock".
    std::string air() const
    {
        return describe(list.playback_indices[ChannelListPlay::air_now]) + " " +
               describe(list.playback_indices[ChannelListPlay::air_next]) + " " +
               describe(list.playback_indices[ChannelListPlay::air_lock]);
    }

    ChannelListPlay list;
};

TEST_F(ListPlay, StartsWithNothingKnown)
{
    EXPECT_EQ(describe(list), "unloaded , mode -, [], now -, next -, lock -, loop -");
}

TEST_F(ListPlay, ALoadLeavesElementsIndicesAndLoop)
{
    list.replace(0, clip("a"));
    set_air(0, 1, 2);
    list.set_loop(word<ZAVL3::Loop>("loop"));
    list.load(AString("evening"), word<ZAVL3::ListPlayMode>("pgm_pvw"));
    EXPECT_EQ(describe(list), "loaded evening, mode 1, [a], now 0, next 1, lock 2, loop 1");
    list.load(AString("night"), word<ZAVL3::ListPlayMode>("single_channel"));
    EXPECT_EQ(describe(list), "loaded night, mode 0, [a], now 0, next 1, lock 2, loop 1");
}

TEST_F(ListPlay, AnUnloadKeepsTheNameAndTheLoop)
{
    load({"a", "b"});
    set_air(0, 1, 2);
    list.set_loop(word<ZAVL3::Loop>("off"));
    list.unload();
    EXPECT_EQ(describe(list), "unloaded evening, mode -, [], now -, next -, lock -, loop 0");
}

TEST_F(ListPlay, AClearKeepsTheListAndItsMode)
{
    load({"a", "b"});
    set_air(0, 1, 2);
    list.clear_all();
    EXPECT_EQ(describe(list), "loaded evening, mode 1, [], now -, next -, lock -, loop -");
}

TEST_F(ListPlay, AnElementIsReplacedWhole)
{
    list.replace(0, positioned_hole());
    list.replace(0, clip("a"));
    EXPECT_EQ(contents(), "[a]");
    EXPECT_FALSE(list.elements[0].get<"GotoPosition">().has);
}

TEST_F(ListPlay, ReplacingPastTheEndLeavesHoles)
{
    load({"a"});
    set_air(0, 1, 2);
    list.replace(1, clip("b"));
    list.replace(4, clip("e"));
    EXPECT_EQ(contents(), "[a, b, -, -, e]");
    list.replace(2, virtual_clip("c"));
    EXPECT_EQ(contents(), "[a, b, c, -, e]");
    EXPECT_EQ(air(), "0 1 2");
}

TEST_F(ListPlay, AnInsertMovesWhatIsNotBeforeIt)
{
    load({"a", "b", "c"});
    set_air(0, 1, 2);
    list.insert(1, clip("x"));
    EXPECT_EQ(contents(), "[a, x, b, c]");
    EXPECT_EQ(air(), "0 2 3");
    list.insert(0, clip("y"));
    EXPECT_EQ(contents(), "[y, a, x, b, c]");
    EXPECT_EQ(air(), "1 3 4");
}

TEST_F(ListPlay, AnInsertLeavesAbsentIndicesAbsent)
{
    load({"a", "b"});
    list.set_air(ChannelListPlay::air_next, at(0));
    list.insert(0, clip("x"));
    EXPECT_EQ(air(), "- 1 -");
}

TEST_F(ListPlay, AnInsertAtTheEndOrPastItMovesNothing)
{
    load({"a", "b"});
    set_air(1, 2, 7);
    list.insert(2, clip("c"));
    EXPECT_EQ(contents(), "[a, b, c]");
    list.insert(5, clip("f"));
    EXPECT_EQ(contents(), "[a, b, c, -, -, f]");
    EXPECT_EQ(air(), "1 2 7");
}

TEST_F(ListPlay, AnInsertMovesIndicesThatPointPastTheElementsToo)
{
    load({"a"});
    set_air(0, 9, 65534);
    list.insert(0, clip("x"));
    EXPECT_EQ(air(), "1 10 65535");
    list.insert(0, clip("y")); // past the last index there is
    EXPECT_EQ(air(), "2 11 0");
}

TEST_F(ListPlay, ARemovalMovesWhatIsBehindIt)
{
    load({"a", "b", "c", "d"});
    set_air(0, 2, 3);
    list.remove(1);
    EXPECT_EQ(contents(), "[a, c, d]");
    EXPECT_EQ(air(), "0 1 2");
}

TEST_F(ListPlay, ARemovalClearsTheIndicesThatPointThere)
{
    load({"a", "b", "c"});
    set_air(1, 1, 2);
    list.remove(1);
    EXPECT_EQ(contents(), "[a, c]");
    EXPECT_EQ(air(), "- - 1");
    list.remove(0);
    EXPECT_EQ(contents(), "[c]");
    EXPECT_EQ(air(), "- - 0");
    list.remove(0);
    EXPECT_EQ(contents(), "[]");
    EXPECT_EQ(air(), "- - -");
}

TEST_F(ListPlay, ARemovalPastTheEndStillMovesTheIndices)
{
    load({"a", "b"});
    set_air(1, 2, 3);
    list.remove(2);
    EXPECT_EQ(contents(), "[a, b]");
    EXPECT_EQ(air(), "1 - 2");
    list.remove(65535);
    EXPECT_EQ(contents(), "[a, b]");
    EXPECT_EQ(air(), "1 - 2");
}

TEST_F(ListPlay, AnEmptyPlaybackIndexClearsItsEntryAlone)
{
    set_air(4, 5, 65535);
    EXPECT_EQ(air(), "4 5 65535");
    list.set_air(ChannelListPlay::air_next, {});
    EXPECT_EQ(air(), "4 - 65535");
    list.set_air(ChannelListPlay::air_lock, {});
    list.set_air(ChannelListPlay::air_now, at(6));
    EXPECT_EQ(air(), "6 - -");
}

TEST_F(ListPlay, TheLastIndexCanBeFilledMovedAndRemoved)
{
    load({"a"});
    list.replace(65535, clip("last"));
    EXPECT_EQ(list.elements.size(), 65536u);
    EXPECT_EQ(list.count(), 65536u);
    EXPECT_EQ(describe_content(list.elements[65534]), "-");

    list.set_air(ChannelListPlay::air_now, at(65534));
    list.insert(65535, clip("before"));
    EXPECT_EQ(list.elements.size(), 65537u);
    EXPECT_EQ(describe_content(list.elements[65535]), "before");
    EXPECT_EQ(describe_content(list.elements[65536]), "last");
    EXPECT_EQ(air(), "65534 - -");

    list.set_air(ChannelListPlay::air_next, at(65535));
    list.remove(65535);
    EXPECT_EQ(describe_content(list.elements[65535]), "last");
    EXPECT_EQ(air(), "65534 - -");
    list.remove(0);
    EXPECT_EQ(list.count(), 65535u);
    EXPECT_EQ(air(), "65533 - -");
}

TEST_F(ListPlay, CountsNothingUnlessLoadedAndFilled)
{
    list.replace(0, clip("a"));
    EXPECT_EQ(list.count(), 0u);
    load({});
    EXPECT_EQ(list.count(), 1u);
    list.clear_all();
    EXPECT_EQ(list.count(), 0u);
    load({"a", "b"});
    EXPECT_EQ(list.count(), 2u);
    list.unload();
    EXPECT_EQ(list.count(), 0u);
}

TEST_F(ListPlay, CountsAllButOneHoleAtTheEnd)
{
    load({"a", "b", "c"});
    EXPECT_EQ(list.count(), 3u);
    list.replace(1, {});
    EXPECT_EQ(contents(), "[a, -, c]");
    EXPECT_EQ(list.count(), 3u);

    list.replace(2, {});
    EXPECT_EQ(contents(), "[a, -, -]");
    EXPECT_EQ(list.count(), 2u); // the last alone is looked at
    list.replace(1, clip("b"));
    EXPECT_EQ(list.count(), 2u);

    list.clear_all();
    list.replace(0, {});
    EXPECT_EQ(list.count(), 0u);
}

TEST_F(ListPlay, AHoleIsWhatShowsNeitherKindOfClip)
{
    load({"a"});
    list.replace(1, virtual_clip("v"));
    EXPECT_EQ(list.count(), 2u);
    list.replace(1, positioned_hole());
    EXPECT_EQ(list.count(), 1u);
    list.replace(1, clip(""));
    EXPECT_EQ(list.count(), 2u);
}

TEST(ChannelStateItems, AreFreshAndInTheOrderOfTheirRegistration)
{
    ChannelState state;
    std::string types;
    for (const ChannelItem* item : state.items()) {
        types += ZAVL3::to_wire(item->type).to_utf8() + " ";
        EXPECT_EQ(item->channel_item_registered, 0u);
        EXPECT_EQ(item->channel_item_received, 0u);
    }
    EXPECT_EQ(types, "status clipid speed timecode info listplay ");
}

} // namespace
