#include "sim/store_file.h"

#include <filesystem>
#include <fstream>
#include <random>
#include <string>

#include <gtest/gtest.h>
#include <sqlite3.h>

#include "sim/record_json.h"
#include "sim/scenario.h"
#include "sim/station.h"

namespace veltosim
{

namespace
{

// Everything in a store, as text.
std::string content(const ClipStore& store)
{
    std::string text;
    for (const auto& [name, clip] : store.clips()) {
        text += std::to_string(clip->number) + to_json(*clip) + "\n";
    }
    for (const auto& [name, virtual_clip] : store.virtual_clips()) {
        text += to_json(*virtual_clip) + "\n";
    }
    for (const auto& [name, list] : store.playlists()) {
        text += to_json(list) + "\n";
    }
    for (const std::string& name : store.directory_names()) {
        text += name + "\n";
    }
    for (const auto& [database, table] : store.metadata().all()) {
        for (const auto& [key, value] : table) {
            text += database + ": " + key + "=" + value + "\n";
        }
    }
    return text + std::to_string(store.disk().total) + " " + std::to_string(store.available());
}

class StoreFileTest : public testing::Test
{
protected:
    std::filesystem::path directory =
        std::filesystem::temp_directory_path() /
        ("veltosim_store_test_" + std::to_string(std::random_device{}()));
    std::string file = (directory / "store.db").string();

    void SetUp() override { std::filesystem::create_directory(directory); }
    void TearDown() override { std::filesystem::remove_all(directory); }

    std::string problem_of_opening() const
    {
        try {
            StoreFile opened(file);
            opened.load();
        } catch (const StoreError& error) {
            return error.what();
        }
        return "(none)";
    }
    void execute(const char* sql) const
    {
        sqlite3* database = nullptr;
        ASSERT_EQ(sqlite3_open(file.c_str(), &database), SQLITE_OK);
        EXPECT_EQ(sqlite3_exec(database, sql, nullptr, nullptr, nullptr), SQLITE_OK);
        sqlite3_close(database);
    }
};

} // namespace

TEST_F(StoreFileTest, ASeededStoreComesBackWhole)
{
    const ClipStore store = default_scenario().clips;
    {
        StoreFile made(file);
        EXPECT_TRUE(made.is_new());
        made.seed(store);
        EXPECT_FALSE(made.is_new());
    }
    StoreFile again(file);
    EXPECT_FALSE(again.is_new());
    EXPECT_EQ(content(again.load()), content(store));
}

TEST_F(StoreFileTest, ChangesComeBack)
{
    auto made = std::make_unique<StoreFile>(file);
    made->seed(default_scenario().clips);
    std::string expected;
    {
        Station station("studio", *find_standard("1080_50i"), default_scenario().clips,
                        std::move(made));
        StoreChange change;
        Clip clip;
        clip.name = "new/clip";
        clip.number = station.clips.next_number();
        change.clips.push_back({nullptr, std::make_shared<const Clip>(clip)});
        change.clips.push_back({station.clips.clip("weather"), nullptr});
        Clip renamed = *station.clips.clip("countdown");
        renamed.name = "count";
        change.clips.push_back(
            {station.clips.clip("countdown"), std::make_shared<const Clip>(renamed)});
        change.virtual_clips.push_back({station.clips.virtual_clip("headlines"), nullptr});
        change.virtual_clips.push_back(
            {nullptr, std::make_shared<const VirtualClip>(VirtualClip{"v", "", 5, {}, {}})});
        change.directories.push_back("made/deep");
        change.metadata.push_back({"operators", "studio 1", {}});
        change.metadata.push_back({"operators", "unknown", {}});
        station.commit(change);
        EXPECT_EQ(station.take_news().size(), 8u);
        StoreChange set;
        set.metadata.push_back({"new", "", " \x01\n"});
        set.metadata.push_back({"operators", "studio 2", "Edith"});
        station.commit(set);
        expected = content(station.clips);
    }
    EXPECT_EQ(content(StoreFile(file).load()), expected);
    EXPECT_NE(expected.find("\"new/clip\""), std::string::npos);
    EXPECT_NE(expected.find("made/deep\n"), std::string::npos);
    EXPECT_NE(expected.find("new: = \x01\n"), std::string::npos);
    EXPECT_NE(expected.find("operators: studio 2=Edith\n"), std::string::npos);
    EXPECT_EQ(expected.find("studio 1"), std::string::npos);
}

TEST_F(StoreFileTest, ANewClipGetsANumberThatNoOtherHas)
{
    {
        StoreFile made(file);
        made.seed(default_scenario().clips);
    }
    ClipStore loaded = StoreFile(file).load();
    EXPECT_EQ(loaded.find_clip(loaded.next_number()), nullptr);
}

TEST_F(StoreFileTest, WhatCannotBeWrittenHasNotHappened)
{
    StoreFile(file).seed(default_scenario().clips);
    execute("CREATE TRIGGER full BEFORE INSERT ON clips WHEN NEW.record LIKE '%too much%' "
            "BEGIN SELECT RAISE (ABORT, 'the disk is full'); END");
    Station station("studio", *find_standard("1080_50i"), default_scenario().clips,
                    std::make_unique<StoreFile>(file));
    const std::string before = content(station.clips);
    StoreChange change;
    change.directories.push_back("made");
    Clip clip;
    clip.name = "too much";
    clip.number = station.clips.next_number();
    change.clips.push_back({nullptr, std::make_shared<const Clip>(std::move(clip))});
    try {
        station.commit(change);
        ADD_FAILURE() << "it was written";
    } catch (const Refusal& refusal) {
        EXPECT_EQ(refusal.what(), "the store " + file + " cannot be written: the disk is full");
    }
    change.clips.clear();
    EXPECT_EQ(content(station.clips), before);
    EXPECT_TRUE(station.take_news().empty());
    station.commit(change);
    EXPECT_EQ(station.take_news().size(), 1u);
}

TEST_F(StoreFileTest, OneProcessHasItAlone)
{
    StoreFile first(file);
    first.seed(default_scenario().clips);
    EXPECT_EQ(problem_of_opening(), file + ": is in use by another process");
}

TEST_F(StoreFileTest, OtherFilesAreRefusedAndLeftAsTheyAre)
{
    std::ofstream(file) << "This is a text, and no database at all, of some length.";
    EXPECT_EQ(problem_of_opening(), file + ": is no store of this simulator");
    EXPECT_EQ(std::filesystem::file_size(file), 55u);
    std::filesystem::remove(file);
    execute("CREATE TABLE theirs (x)");
    EXPECT_EQ(problem_of_opening(), file + ": is no store of this simulator");
    std::filesystem::remove(file);
    execute("PRAGMA application_id = 5");
    EXPECT_EQ(problem_of_opening(), file + ": is no store of this simulator");
}

TEST_F(StoreFileTest, AFileOfANewerVersionIsRefused)
{
    {
        StoreFile made(file);
        made.seed(default_scenario().clips);
    }
    execute("PRAGMA user_version = 1000");
    EXPECT_EQ(problem_of_opening().find(file + ": was written by a newer version of the simulator: "
                                               "its form is 1000, and this one knows up to "),
              0u);
}

TEST_F(StoreFileTest, ADamagedRecordIsToldSo)
{
    {
        StoreFile made(file);
        made.seed(default_scenario().clips);
    }
    execute("UPDATE clips SET record = '{\"name\": \"x\"}' WHERE number = 3");
    EXPECT_EQ(problem_of_opening(), file + ": holds a damaged record: a clip has no 'length'");
}

TEST_F(StoreFileTest, APlaceWhereNoFileCanBeIsToldSo)
{
    file = (directory / "none" / "store.db").string();
    EXPECT_EQ(problem_of_opening(),
              file + ": cannot be used as a store: unable to open database file");
    file = directory.string();
    EXPECT_EQ(problem_of_opening(),
              file + ": cannot be used as a store: unable to open database file");
}

} // namespace veltosim
