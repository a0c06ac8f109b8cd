#include "sim/metadata_commands.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "commands_fixture.h"

namespace veltosim
{

namespace
{

using Lines = std::vector<std::string>;

class MetadataCommandsTest : public CommandsTest
{
protected:
    MetadataCommandsTest()
        : CommandsTest(parse_scenario(R"({"metadata": {"db": {"a": "1", "p/x": "2", "p/y": "3"},
                                                       "other": {"k": " <v> "}}})",
                                      "test")
                           .clips)
    {
    }

    Lines download(const std::string& database, const std::string& prefix = "")
    {
        Lines parts = answers_to("<download_metadata><MetadataDatabase>" + database +
                                 "</MetadataDatabase>" + prefix + "</download_metadata>");
        EXPECT_EQ(parts.back(), "<ok/>");
        parts.pop_back();
        return parts;
    }
    std::string set(const std::string& database, const std::string& pairs,
                    const std::string& prefix = "")
    {
        return answer_to("<metadata_set><MetadataDatabase>" + database +
                         "</MetadataDatabase><MetadataList>" + pairs + "</MetadataList>" + prefix +
                         "</metadata_set>");
    }
    std::string erase(const std::string& database, const std::string& keys,
                      const std::string& prefix = "")
    {
        return answer_to("<metadata_erase><MetadataDatabase>" + database +
                         "</MetadataDatabase><KeyList>" + keys + "</KeyList>" + prefix +
                         "</metadata_erase>");
    }
    void watch(const std::string& database, const std::string& prefix = "")
    {
        obey("<watch_metadata_database><MetadataDatabase>" + database + "</MetadataDatabase>" +
             prefix + "</watch_metadata_database>");
    }
};

std::string with_prefix(const std::string& prefix)
{
    return "<MetadataPrefix>" + prefix + "</MetadataPrefix>";
}

std::string pair(const std::string& key, const std::string& value)
{
    return "<Metadata><Key>" + key + "</Key><Value>" + value + "</Value></Metadata>";
}

std::string key(const std::string& name)
{
    return "<Key>" + name + "</Key>";
}

std::string content(const std::string& kind, const std::string& database, const std::string& prefix,
                    const std::string& entries)
{
    const std::string list = kind == "metadata_remove" ? "KeyList" : "MetadataList";
    return "<" + kind + "><MetadataDatabase>" + database + "</MetadataDatabase><MetadataPrefix>" +
           prefix + "</MetadataPrefix><" + list + ">" + entries + "</" + list + "></" + kind + ">";
}

std::string report(const std::string& kind, const std::string& database, const std::string& prefix,
                   const std::string& entries)
{
    return "<report>" + content(kind, database, prefix, entries) + "</report>";
}

} // namespace

TEST_F(MetadataCommandsTest, ADatabaseIsDownloadedInTheOrderOfItsKeys)
{
    EXPECT_EQ(download("db"), Lines{content("metadata", "db", "",
                                            pair("a", "1") + pair("p/x", "2") + pair("p/y", "3"))});
    EXPECT_EQ(download("db", with_prefix("p/")),
              Lines{content("metadata", "db", "p/", pair("x", "2") + pair("y", "3"))});
    EXPECT_EQ(download("other"), Lines{content("metadata", "other", "", pair("k", " &lt;v&gt; "))});
}

TEST_F(MetadataCommandsTest, ADatabaseThatNobodyHasWrittenIsEmpty)
{
    EXPECT_EQ(download("new"), Lines{});
    EXPECT_EQ(download("db", with_prefix("q")), Lines{});
}

TEST_F(MetadataCommandsTest, SettingAndErasingShow)
{
    EXPECT_EQ(set("new", pair("k", "v") + pair("", "empty")), "<ok/>");
    EXPECT_EQ(download("new"),
              Lines{content("metadata", "new", "", pair("", "empty") + pair("k", "v"))});
    EXPECT_EQ(set("new", pair("k", "") + pair("l", "w"), with_prefix("p")), "<ok/>");
    EXPECT_EQ(erase("new", key("") + key("k")), "<ok/>");
    EXPECT_EQ(download("new"),
              Lines{content("metadata", "new", "", pair("pk", "") + pair("pl", "w"))});
    EXPECT_EQ(erase("new", key("l") + key("k"), with_prefix("p")), "<ok/>");
    EXPECT_EQ(download("new"), Lines{});
    EXPECT_EQ(set("new", ""), "<ok/>");
    EXPECT_EQ(erase("new", key("gone")), "<ok/>");
}

TEST_F(MetadataCommandsTest, WatchersAreToldWhatTheirWatchSees)
{
    EXPECT_EQ(set("db", pair("a", "unseen")), "<ok/>");
    EXPECT_EQ(told(), Lines{});
    watch("db");
    watch("db", with_prefix("p/"));
    EXPECT_EQ(set("db", pair("a", "2") + pair("p/x", "4")), "<ok/>");
    EXPECT_EQ(told(), (Lines{report("metadata_change", "db", "", pair("a", "2") + pair("p/x", "4")),
                             report("metadata_change", "db", "p/", pair("x", "4"))}));
    EXPECT_EQ(set("db", pair("a", "2")), "<ok/>");
    EXPECT_EQ(told(), Lines{report("metadata_change", "db", "", pair("a", "2"))})
        << "also if it is as before";
    EXPECT_EQ(set("other", pair("a", "2")), "<ok/>");
    EXPECT_EQ(told(), Lines{});
    EXPECT_EQ(erase("db", key("none") + key("p/x") + key("a")), "<ok/>");
    EXPECT_EQ(told(), (Lines{report("metadata_remove", "db", "", key("p/x") + key("a")),
                             report("metadata_remove", "db", "p/", key("x"))}));
    EXPECT_EQ(erase("db", key("none")), "<ok/>");
    EXPECT_EQ(told(), Lines{});
    obey("<unwatch_metadata_database><MetadataDatabase>db</MetadataDatabase>"
         "</unwatch_metadata_database>");
    EXPECT_EQ(set("db", pair("a", "3")), "<ok/>");
    EXPECT_EQ(told(), Lines{});
}

TEST_F(MetadataCommandsTest, WhatIsLongComesInSeveralMessages)
{
    watch("long");
    std::string pairs;
    std::string keys;
    for (int i = 0; i < 3000; ++i) {
        const std::string name = "key " + std::to_string(10000 + i);
        pairs += pair(name, "&amp;&lt;" + std::string(80, 'v'));
        keys += key(name);
    }
    const auto joined = [](const Lines& parts, const std::string& begin, const std::string& end) {
        std::string entries;
        for (const std::string& part : parts) {
            EXPECT_LE(part.size(), std::size_t{17000});
            EXPECT_EQ(part.substr(0, begin.size()), begin);
            EXPECT_EQ(part.substr(part.size() - end.size()), end);
            entries += part.substr(begin.size(), part.size() - begin.size() - end.size());
        }
        return entries;
    };
    const std::string head = "<MetadataDatabase>long</MetadataDatabase>"
                             "<MetadataPrefix></MetadataPrefix>";
    EXPECT_EQ(set("long", pairs), "<ok/>");
    EXPECT_EQ(joined(told(), "<report><metadata_change>" + head + "<MetadataList>",
                     "</MetadataList></metadata_change></report>"),
              pairs);
    const Lines parts = download("long");
    EXPECT_GT(parts.size(), 20u);
    EXPECT_EQ(joined(parts, "<metadata>" + head + "<MetadataList>", "</MetadataList></metadata>"),
              pairs);
    EXPECT_EQ(erase("long", keys), "<ok/>");
    EXPECT_EQ(joined(told(), "<report><metadata_remove>" + head + "<KeyList>",
                     "</KeyList></metadata_remove></report>"),
              keys);
}

TEST_F(MetadataCommandsTest, WhatNoMessageCanHoldIsRefusedAndNothingIsSet)
{
    const std::string most(30650, 'v');
    EXPECT_EQ(set("big", pair("key", most)), "<ok/>");
    EXPECT_EQ(download("big").size(), 1u);
    EXPECT_EQ(
        set("big", pair("b", "1") + pair("key", most + "v")),
        error("metadata_set: key 'key' would take 30721 bytes with its value; a message holds "
              "30720"));
    EXPECT_EQ(download("big", with_prefix("b")), Lines{});
    std::string escaped;
    for (int i = 0; i < 7000; ++i) {
        escaped += "&amp;";
    }
    EXPECT_EQ(set("big", pair("k", escaped)),
              error("metadata_set: key 'k' would take 35068 bytes with its value; a message holds "
                    "30720"));
}

TEST_F(MetadataCommandsTest, AHundredThousandKeysAreDownloaded)
{
    for (int i = 0; i < 100000; ++i) {
        station.clips.add_metadata({"many", std::to_string(i), "value"});
    }
    std::size_t entries = 0;
    for (const std::string& part : download("many")) {
        for (std::size_t at = part.find("<Key>"); at != part.npos;
             at = part.find("<Key>", at + 1)) {
            ++entries;
        }
    }
    EXPECT_EQ(entries, 100000u);
}

} // namespace veltosim
