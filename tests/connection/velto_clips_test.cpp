#include "connection/velto.h"

#include "support/await.h"
#include "support/outcome.h"
#include "support/xml_text.h"

#include <map>
#include <random>

#include <gtest/gtest.h>

namespace
{

// A report, the sets that it finds a clip in, and the one that it leaves it in.
struct ReportRow {
    const char* report;
    const char* before;
    const char* after;
};

const ReportRow clip_rows[] = {
    {"clip_created", "none", "added"},      {"clip_created", "added", "added"},
    {"clip_created", "changed", "added"},   {"clip_created", "deleted", "added"},
    {"clip_changed", "none", "changed"},    {"clip_changed", "added", "added"},
    {"clip_changed", "changed", "changed"}, {"clip_changed", "deleted", "changed"},
    {"clip_deleted", "none", "deleted"},    {"clip_deleted", "added", "deleted"},
    {"clip_deleted", "changed", "deleted"}, {"clip_deleted", "deleted", "deleted"},
};

const ReportRow directory_rows[] = {
    {"directory_created", "none", "added"},    {"directory_created", "added", "added"},
    {"directory_created", "deleted", "added"}, {"directory_deleted", "none", "deleted"},
    {"directory_deleted", "added", "deleted"}, {"directory_deleted", "deleted", "deleted"},
};

using NamedSets = std::map<std::string, VeltoConnObject::IdSet*>;

std::string sets_with(const AString& id, const NamedSets& sets)
{
    std::string names;
    for (const auto& [name, set] : sets) {
        names += set->contains(id) ? name : "";
    }
    return names.empty() ? "none" : names;
}

// A connection without a link, which is fed with what a server would send.
class ChangeSets : public testing::Test
{
protected:
    ChangeSets()
    {
        connection->clip_tracking = 1; // as if the server had accepted it
        connection->directory_tracking = 1;
    }

    void report(const std::string& name, const std::string& id)
    {
        const char* element = name.starts_with("clip") ? "ClipID" : "DirectoryName";
        const std::string message =
            xml_element("report", xml_element(name, xml_element(element, id)));
        connection->feed_bytes(message.data(), message.size());
    }

    // Each row, begun with a clip or directory that is in the set it names.
    template <std::size_t Count>
    void expect_rows(const ReportRow (&rows)[Count], const NamedSets& sets)
    {
        const AString id("x");
        for (const ReportRow& row : rows) {
            for (const auto& [name, set] : sets) {
                set->clear();
                if (name == row.before) {
                    set->insert(id);
                }
            }
            report(row.report, "x");
            EXPECT_EQ(sets_with(id, sets), row.after) << row.report << " with " << row.before;
        }
    }

    // The first of a set, which is then no longer in it.
    std::string take(const VeltoConnObject::ChangeKind& kind,
                     VeltoConnObject::IdSet VeltoConnObject::*set)
    {
        VeltoChar units[32] = {};
        const VeltoResult result = VeltoConnObject::take_change(connection, kind, set, {units, 32});
        EXPECT_EQ(result, VELTO_RESULT_OK);
        std::u16string text;
        for (const VeltoChar* unit = units; *unit != 0; ++unit) {
            text += static_cast<char16_t>(*unit);
        }
        return AString(text).to_utf8();
    }

    ARef<VeltoConnObject> connection = ARef<VeltoConnObject>::create();
};

TEST_F(ChangeSets, HoldAClipInOneSetAtMost)
{
    expect_rows(clip_rows, {{"added", &connection->clips_added},
                            {"changed", &connection->clips_changed},
                            {"deleted", &connection->clips_deleted}});
}

TEST_F(ChangeSets, HoldADirectoryInOneSetAtMost)
{
    expect_rows(directory_rows, {{"added", &connection->directories_added},
                                 {"deleted", &connection->directories_deleted}});
}

TEST_F(ChangeSets, LeaveOtherIdsAndTheOtherKindAlone)
{
    report("clip_created", "a");
    report("clip_changed", "b");
    report("directory_created", "a");
    report("clip_deleted", "c");
    report("directory_deleted", "b");
    EXPECT_EQ(connection->clips_added, VeltoConnObject::IdSet{AString("a")});
    EXPECT_EQ(connection->clips_changed, VeltoConnObject::IdSet{AString("b")});
    EXPECT_EQ(connection->clips_deleted, VeltoConnObject::IdSet{AString("c")});
    EXPECT_EQ(connection->directories_added, VeltoConnObject::IdSet{AString("a")});
    EXPECT_EQ(connection->directories_deleted, VeltoConnObject::IdSet{AString("b")});
}

TEST_F(ChangeSets, IgnoreAReportThatCannotBeRead)
{
    for (const std::string bad : {"<report><clip_created /></report>",
                                  "<report><clip_deleted><ClipID>a</ClipID><ClipID>a</ClipID>"
                                  "</clip_deleted></report>"}) {
        connection->feed_bytes(bad.data(), bad.size());
        EXPECT_FALSE(connection->message_ok);
    }
    EXPECT_TRUE(connection->clips_added.empty());
    EXPECT_TRUE(connection->clips_deleted.empty());
    report("clip_created", "a");
    EXPECT_EQ(take(VeltoConnObject::clip_changes, &VeltoConnObject::clips_added), "a");
}

TEST_F(ChangeSets, RaiseNoNotice)
{
    report("clip_created", "a");
    report("directory_deleted", "b");
    std::uint32_t kind = 77;
    std::uint32_t channel = 77;
    connection->notices.wait_notice(0, &kind, &channel);
    EXPECT_EQ(kind, 0u);
}

// What the sets must say, by the fate of each id alone.
class ChangeModel
{
public:
    void report(const std::string& name, const std::string& id)
    {
        if (id.empty()) {
            return;
        }
        std::string& fate = fates[id];
        const std::string event = name.substr(name.find('_') + 1);
        if (event == "created") {
            fate = "added";
        } else if (event == "deleted") {
            fate = "deleted";
        } else if (fate != "added") {
            fate = "changed";
        }
    }

    std::string take(const std::string& fate)
    {
        for (const auto& [id, known] : fates) {
            if (known == fate) {
                const std::string taken = id;
                fates.erase(id);
                return taken;
            }
        }
        return {};
    }

private:
    std::map<std::string, std::string> fates; // bytes of UTF-8 stand in the order of characters
};

struct SetRow {
    const char* fate;
    const VeltoConnObject::ChangeKind& kind;
    VeltoConnObject::IdSet VeltoConnObject::*set;
};

const SetRow clip_sets[] = {
    {"added", VeltoConnObject::clip_changes, &VeltoConnObject::clips_added},
    {"changed", VeltoConnObject::clip_changes, &VeltoConnObject::clips_changed},
    {"deleted", VeltoConnObject::clip_changes, &VeltoConnObject::clips_deleted},
};
const SetRow directory_sets[] = {
    {"added", VeltoConnObject::directory_changes, &VeltoConnObject::directories_added},
    {"deleted", VeltoConnObject::directory_changes, &VeltoConnObject::directories_deleted},
};

std::vector<std::string> some_ids()
{
    std::vector<std::string> ids = {"", " ", "\u00E9", "\uFF5A", "\U0001F3AC", "\U0001F3ACa", "~"};
    for (int i = 0; i < 20; ++i) {
        ids.push_back("clip " + std::to_string(i));
    }
    return ids;
}

TEST_F(ChangeSets, FollowAModelThroughRandomReportsAndTakes)
{
    const std::vector<std::string> ids = some_ids();
    const char* const clip_reports[] = {"clip_created", "clip_changed", "clip_deleted"};
    const char* const directory_reports[] = {"directory_created", "directory_deleted"};
    for (unsigned seed = 1; seed <= 20; ++seed) {
        SCOPED_TRACE(seed);
        connection = ARef<VeltoConnObject>::create();
        connection->clip_tracking = 1;
        connection->directory_tracking = 1;
        ChangeModel clips;
        ChangeModel directories;
        std::mt19937 random(seed);
        const auto expect_take = [&](const SetRow& row, ChangeModel& model) {
            const std::string expected = model.take(row.fate);
            ASSERT_EQ(take(row.kind, row.set), expected) << row.fate;
        };
        for (int step = 0; step < 1000; ++step) {
            const std::string& id = ids[random() % ids.size()];
            switch (random() % 8) {
            case 0:
            case 1:
                ASSERT_NO_FATAL_FAILURE(expect_take(clip_sets[random() % 3], clips));
                break;
            case 2:
                ASSERT_NO_FATAL_FAILURE(expect_take(directory_sets[random() % 2], directories));
                break;
            case 3:
            case 4: {
                const char* name = directory_reports[random() % 2];
                report(name, id);
                directories.report(name, id);
                break;
            }
            default: {
                const char* name = clip_reports[random() % 3];
                report(name, id);
                clips.report(name, id);
            }
            }
        }
        for (std::size_t i = 0; i <= ids.size(); ++i) { // what is left, and the end
            for (const SetRow& row : clip_sets) {
                ASSERT_NO_FATAL_FAILURE(expect_take(row, clips));
            }
            for (const SetRow& row : directory_sets) {
                ASSERT_NO_FATAL_FAILURE(expect_take(row, directories));
            }
        }
    }
}

// Each id comes to one taker, whoever it is.
TEST_F(ChangeSets, GiveEachIdToOneOfManyTakers)
{
    constexpr int id_count = 2000;
    std::atomic<bool> has_ended{false};
    const auto take_on = [&] {
        std::vector<std::string> taken;
        for (;;) {
            const bool is_last_look = has_ended;
            std::string id = take(VeltoConnObject::clip_changes, &VeltoConnObject::clips_added);
            if (!id.empty()) {
                taken.push_back(std::move(id));
            } else if (is_last_look) {
                return taken;
            }
        }
    };
    auto first = in_thread(take_on);
    auto second = in_thread(take_on);
    for (int i = 0; i < id_count; ++i) {
        report("clip_created", std::to_string(i));
    }
    has_ended = true;
    std::vector<std::string> all = await(std::move(first));
    const std::vector<std::string> others = await(std::move(second));
    all.insert(all.end(), others.begin(), others.end());
    EXPECT_EQ(all.size(), std::size_t{id_count});
    EXPECT_EQ(std::set<std::string>(all.begin(), all.end()).size(), std::size_t{id_count});
}

// ---- The members that ask

TEST(ClipQuestionsWithoutLink, FailAndKeepTheText)
{
    const auto connection = ARef<VeltoConnObject>::create();
    bool exists = true;
    EXPECT_EQ(
        outcome_of([&] { return VeltoConnObject::clip_exists(connection, AString("a"), &exists); }),
        link_failed);
    EXPECT_FALSE(exists);
    ZAVL3::ClipInfo info;
    EXPECT_EQ(
        outcome_of([&] { return VeltoConnObject::clip_info(connection, AString("a"), &info); }),
        link_failed);
    NameList names;
    EXPECT_EQ(outcome_of([&] {
                  return VeltoConnObject::download_names<ZAVL3::command::download_clipids>(
                      connection, &names);
              }),
              link_failed);
    EXPECT_FALSE(names);
    EXPECT_EQ(connection->outstanding_callbacks, 0u);
}

TEST(ClipQuestionsWithoutLink, TrackNothingAndKeepNoText)
{
    const auto connection = ARef<VeltoConnObject>::create();
    for (const auto* kind : {&VeltoConnObject::clip_changes, &VeltoConnObject::directory_changes}) {
        EXPECT_EQ(outcome_of([&] { return VeltoConnObject::track_changes(connection, *kind); }),
                  failed_question);
        EXPECT_EQ((*connection).*kind->tracking, 0u);
    }
    EXPECT_EQ(outcome_of([&] { return VeltoConnObject::not_implemented(connection); }),
              (Outcome{2, "Not implemented"}));
}

} // namespace
