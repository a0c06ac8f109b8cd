#include "protocol/zavl3_tag.h"

#include "protocol/zavl3_commands.h"
#include "xml/xml_parse.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace
{

using namespace ZAVL3;

AString known_of(const std::vector<AChar>& characters)
{
    const AStringTable::Entry* entry = known_words().find(characters.data(), characters.size());
    return entry != nullptr ? entry->text : AString("unknown");
}

AString known(const std::string& text)
{
    return known_of(std::vector<AChar>(text.begin(), text.end()));
}

TEST(Tag, IsTheSameStringAtEveryUse)
{
    EXPECT_EQ(tag<"ClipID">().to_utf8(), "ClipID");
    EXPECT_EQ(&tag<"ClipID">(), &tag<"ClipID">());
    EXPECT_EQ(tag<"xid">().to_utf8(), "xid");
}

TEST(Tag, IsFoundByItsCharacters)
{
    for (const AString* name :
         {&tag<"reply">(), &tag<"ClipID">(), &tag<"MeltFlagInhibitTimecodeNumbering">(),
          &command::vclip_modification_start::name()}) {
        EXPECT_EQ(known(name->to_utf8()).storage.get(), name->storage.get());
    }
}

TEST(Tag, IsNotFoundByOtherCharacters)
{
    for (const char* text : {"", "clipId", "ClipI", "ClipIDs", "never_heard_of"}) {
        EXPECT_EQ(known(std::string(text)).to_utf8(), "unknown") << text;
    }
    EXPECT_EQ(known_of(std::vector<AChar>(64, 'a')).to_utf8(), "unknown");
    EXPECT_EQ(known_of(std::vector<AChar>(65, 'a')).to_utf8(), "unknown");
    EXPECT_EQ(known_of(std::vector<AChar>(100000, 'a')).to_utf8(), "unknown");
}

TEST(Tag, IsNotFoundByCharactersThatOnlyEndInItsBytes)
{
    EXPECT_EQ(known_of({'K', 'e', 0x100 + 'y'}).to_utf8(), "unknown");
    EXPECT_EQ(known_of({'K', 'e', 0xF9}).to_utf8(), "unknown");
    EXPECT_EQ(known_of({0xFFFFFFFF, 'e', 'y'}).to_utf8(), "unknown");
    EXPECT_EQ(known_of({'K', 'e', 'y'}).to_utf8(), "Key");
}

TEST(Tag, IsTheOneConstantOfItsText)
{
    // A name of an element that is a word too.
    const AString& name = tag<"Channel">();
    EXPECT_EQ(add_known_word(AString("Channel")).storage.get(), name.storage.get());
    EXPECT_EQ(Tag("clipid").name.storage.get(), tag<"clipid">().storage.get());
}

TEST(Tag, SharesItsStringWithTheNamesOfParsedElements)
{
    const AString text("<ClipID>a</ClipID>");
    const XMLTree tree = XMLTreeBuilder::parse(text, nullptr, &known_words());
    EXPECT_EQ(tree.get_name().storage.get(), tag<"ClipID">().storage.get());
}

TEST(Tag, WordsAndMessagesAreKnownToo)
{
    const AString& standard = to_wire(word<VideoStandard>("1080_50i"));
    EXPECT_EQ(known("1080_50i").storage.get(), standard.storage.get());
    EXPECT_EQ(known("channel_timecode").to_utf8(), "channel_timecode");
    const XMLTree tree = XMLTreeBuilder::parse(AString("<VideoStandard>1080_50i</VideoStandard>"),
                                               nullptr, &known_words());
    EXPECT_EQ(tree.get_text().storage.get(), standard.storage.get());
}

} // namespace
