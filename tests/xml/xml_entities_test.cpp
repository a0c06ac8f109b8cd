#include "xml/xml_entities.h"

#include "support/await.h"
#include "xml/xml_texts.h"

#include <gtest/gtest.h>

#include <thread>

namespace
{

std::string escaped(std::string_view text)
{
    return xml_escape(from_bytes(text)).to_utf8();
}

std::string unescaped(std::string_view text)
{
    return xml_unescape(from_bytes(text)).to_utf8();
}

} // namespace

TEST(XMLEntities, TableStandsInItsFixedOrder)
{
    std::string characters;
    std::string entities;
    for (const XMLEntity& row : xml_entities) {
        characters += static_cast<char>(row.character);
        entities += row.entity.get_bytes();
    }
    EXPECT_EQ(characters, "'<>\"&");
    EXPECT_EQ(entities, "&apos;&lt;&gt;&quot;&amp;");
}

TEST(XMLEntities, EscapeReplacesTheFiveCharacters)
{
    EXPECT_EQ(escaped("a<b&c"), "a&lt;b&amp;c");
    EXPECT_EQ(escaped("'<>\"&"), "&apos;&lt;&gt;&quot;&amp;");
    EXPECT_EQ(escaped("<<"), "&lt;&lt;");
    EXPECT_EQ(escaped("&amp;"), "&amp;amp;");
    EXPECT_EQ(escaped("\xC3\xA9<\xF0\x9D\x84\x9E"), "\xC3\xA9&lt;\xF0\x9D\x84\x9E");
}

TEST(XMLEntities, EscapeTakesNoOtherCharacterForOneOfThem)
{
    AStringBuilder builder;
    for (AChar low : {L1('\''), L1('<'), L1('>'), L1('"'), L1('&')}) {
        builder.append(low + 64);
        builder.append(low + 256);
        builder.append(low + 0x10000);
    }
    const AString text = builder.finish();
    EXPECT_EQ(xml_escape(text), text);
}

TEST(XMLEntities, TextWithNothingToReplaceIsShared)
{
    const AString text("no entity; none");
    EXPECT_EQ(xml_escape(text).storage.get(), text.storage.get());
    EXPECT_EQ(xml_unescape(text).storage.get(), text.storage.get());
    const AString unknown("a & b &#65; &x;");
    EXPECT_EQ(xml_unescape(unknown).storage.get(), unknown.storage.get());
    EXPECT_TRUE(xml_escape(AString()).is_empty());
    EXPECT_TRUE(xml_unescape(AString()).is_empty());
}

TEST(XMLEntities, UnescapeReplacesTheFiveEntities)
{
    EXPECT_EQ(unescaped("&apos;&lt;&gt;&quot;&amp;"), "'<>\"&");
    EXPECT_EQ(unescaped("a&lt;b&amp;c"), "a<b&c");
    EXPECT_EQ(unescaped("&lt;"), "<");
    EXPECT_EQ(unescaped("x&gt;"), "x>");
    EXPECT_EQ(unescaped("&quot;x"), "\"x");
}

TEST(XMLEntities, UnescapeReplacesOnceOnly)
{
    EXPECT_EQ(unescaped("&amp;lt;"), "&lt;");
    EXPECT_EQ(unescaped("&amp;amp;amp;"), "&amp;amp;");
}

TEST(XMLEntities, OtherSequencesStayAsWritten)
{
    for (const char* text : {"&", "&&", "&;", "&lt", "& lt;", "&LT;", "&Lt;", "&#65;", "&#x41;",
                             "&nbsp;", "&l", "&a", "&ampamp", "&apo;", "&quo t;"}) {
        EXPECT_EQ(unescaped(text), text);
    }
    EXPECT_EQ(unescaped("&lt;&#65;"), "<&#65;");
    EXPECT_EQ(unescaped("&&lt;"), "&<");
    EXPECT_EQ(unescaped("&l&lt;t;"), "&l<t;");
    EXPECT_EQ(unescaped("&ap&apos;os;&amp"), "&ap'os;&amp");
}

TEST(XMLEntities, EntityAcrossTwoBlocksOfAStringIsFound)
{
    for (std::uint64_t before = 250; before <= 258; ++before) {
        const AString text = AString("x").repeat(before) + AString("&quot;y&amp;");
        EXPECT_EQ(xml_unescape(text), AString("x").repeat(before) + AString("\"y&"));
        EXPECT_EQ(xml_escape(xml_unescape(text)), text);
    }
}

TEST(XMLEntities, LongRunsOfSpecialCharactersRoundTrip)
{
    const AString text = AString("<&'\">").repeat(20000);
    const AString wire = xml_escape(text);
    EXPECT_EQ(wire, AString("&lt;&amp;&apos;&quot;&gt;").repeat(20000));
    EXPECT_EQ(xml_unescape(wire), text);
    const AString unknown = AString("&").repeat(100000);
    EXPECT_EQ(xml_unescape(unknown), unknown);
}

TEST(XMLConstant, StringIsMadeOnceAndShared)
{
    for (XMLEntity& row : xml_entities) {
        const AString& first = row.entity.get_text();
        EXPECT_EQ(first.to_utf8(), row.entity.get_bytes());
        EXPECT_EQ(&row.entity.get_text(), &first);
    }
}

TEST(XMLConstant, ThreadsThatRaceForItAllGetTheSameString)
{
    constexpr int threads = 4;
    for (int round = 0; round < 200; ++round) {
        XMLConstant constant("&quot;");
        std::atomic<int> ready{0};
        const auto use = [&] {
            for (++ready; ready != threads;) {
                std::this_thread::yield();
            }
            return &constant.get_text();
        };
        std::vector<std::future<const AString*>> users;
        for (int i = 0; i < threads; ++i) {
            users.push_back(in_thread(use));
        }
        const AString* first = await(std::move(users.front()));
        EXPECT_EQ(first->to_utf8(), "&quot;");
        for (auto user = users.begin() + 1; user != users.end(); ++user) {
            EXPECT_EQ(await(std::move(*user)), first);
        }
        delete first; // this constant ends here; one of the library never does
    }
}
