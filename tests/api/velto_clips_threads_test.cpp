#include "support/clip_script.h"

#include <atomic>
#include <functional>

#include <gtest/gtest.h>

namespace
{

constexpr int rounds = 60;

constexpr const VeltoChar* titles[] = {VELTO_TEXT("even"), VELTO_TEXT("odd")};

// Answers what comes until the stop that ends the test: clips with their record, lists with three
// names, and every change with an ok.
class Answering
{
public:
    explicit Answering(ScriptLink& server_link) : link(server_link) {}

    void operator()()
    {
        for (;;) {
            const ReceivedCommand command = link.expect_command();
            link.send(names_for(command) + reply_message(command.xid, content_for(command)));
            if (command.name == "stop") {
                return;
            }
        }
    }

private:
    static std::string content_for(const ReceivedCommand& command)
    {
        return command.name == "get_clip_info"
                   ? clip_info({{"MetadataList", metadata_pair("even", "0")}})
                   : "<ok />";
    }

    static std::string names_for(const ReceivedCommand& command)
    {
        std::string replies;
        if (command.name == "download_clipids") {
            for (const char* name : {"a", "b", "c"}) {
                replies +=
                    reply_message(command.xid, xml_element("clipid", xml_element("ClipID", name)));
            }
            // And changes meanwhile.
            replies += "<report><clip_created><ClipID>" + command.xid +
                       "</ClipID></clip_created></report>";
        }
        return replies;
    }

    ScriptLink& link;
};

class ClipThreads : public ClipScript
{
protected:
    // Runs all of these at once while the server answers.
    void run(const std::vector<std::function<void()>>& works)
    {
        auto answering = in_thread(Answering(*session.link));
        std::vector<std::future<void>> threads;
        for (const std::function<void()>& work : works) {
            threads.push_back(in_thread(work));
        }
        for (std::future<void>& thread : threads) {
            await(std::move(thread));
        }
        EXPECT_EQ(velto_cmd_stop1(session.handle, 0), VELTO_RESULT_OK);
        await(std::move(answering));
    }
};

TEST_F(ClipThreads, ReadAndWriteOneRecord)
{
    const VeltoRecordHandle record = open({{"MetadataList", metadata_pair("even", "0")}});
    const auto write_title = [&] {
        for (int i = 0; i < rounds; ++i) {
            EXPECT_EQ(velto_set_clip_title(record, titles[i % 2]), VELTO_RESULT_OK);
        }
    };
    const auto write_loop = [&] {
        for (int i = 1; i <= rounds; ++i) {
            EXPECT_EQ(velto_set_clip_loop_in_point(record, static_cast<std::uint32_t>(i)),
                      VELTO_RESULT_OK);
        }
    };
    const auto write_metadata = [&] {
        for (int i = 0; i < rounds; ++i) {
            EXPECT_EQ(velto_clip_set_meta(record, titles[i % 2], titles[i % 2]), VELTO_RESULT_OK);
            if (i % 2 == 1) {
                EXPECT_EQ(velto_clip_delete_meta(record, titles[1]), VELTO_RESULT_OK);
            }
        }
    };
    const auto read = [&] {
        std::uint32_t last = 0;
        while (last < std::uint32_t{rounds}) {
            const std::string title = read_text<velto_clip_title>(record).values;
            EXPECT_TRUE(title == "News opener" || title == "even" || title == "odd") << title;
            std::uint32_t loop_in = 0;
            EXPECT_EQ(velto_clip_loop_in_point(record, &loop_in), VELTO_RESULT_OK);
            EXPECT_TRUE(loop_in == 100 || loop_in >= last) << loop_in << " after " << last;
            last = loop_in == 100 ? last : loop_in;
            EXPECT_EQ(has_meta(record, "even"), read_to("1"));
            VeltoListHandle keys = 0;
            EXPECT_EQ(velto_clip_open_metakeys(record, &keys), VELTO_RESULT_OK);
            const std::string names = take_all(keys);
            EXPECT_TRUE(names == "even|" || names == "even|odd|") << names;
            velto_close_metakeys(keys);
        }
    };
    run({write_title, write_loop, write_metadata, read, read});
    EXPECT_EQ(read_text<velto_clip_title>(record), read_to("odd"));
    EXPECT_EQ(read_number<velto_clip_loop_in_point>(record), read_to(std::to_string(rounds)));
    EXPECT_EQ(read_meta(record, "even"), read_to("even"));
    EXPECT_EQ(has_meta(record, "odd"), read_to("0"));
    velto_close_clip_metadata(record);
}

TEST_F(ClipThreads, OpenAndCloseRecordsListsAndChanges)
{
    const auto list_clips = [&] {
        for (int i = 0; i < rounds; ++i) {
            VeltoListHandle list = 0;
            EXPECT_EQ(velto_open_clip_list(session.handle, &list), VELTO_RESULT_OK);
            EXPECT_EQ(take_all(list), "a|b|c|");
            velto_close_directory_list(list);
            EXPECT_EQ(read_text<velto_get_clip_name>(list).outcome, invalid_handle);
        }
    };
    const auto open_records = [&] {
        for (int i = 0; i < rounds; ++i) {
            VeltoRecordHandle record = 0;
            EXPECT_EQ(velto_open_clip_metadata(session.handle, VELTO_TEXT("news_open"), &record),
                      VELTO_RESULT_OK);
            EXPECT_EQ(read_number<velto_clip_length>(record), read_to("1500"));
            EXPECT_EQ(velto_set_clip_title(record, titles[i % 2]), VELTO_RESULT_OK);
            EXPECT_EQ(velto_close_clip_metadata(record), VELTO_RESULT_OK);
        }
    };
    std::atomic<int> changes{0};
    const auto take_changes = [&] {
        while (changes < 2 * rounds) {
            const Reading added = read_text<velto_track_change_added_clip>(session.handle);
            EXPECT_EQ(added.outcome, succeeded);
            changes += added.values.empty() ? 0 : 1;
        }
    };
    run({list_clips, list_clips, open_records, take_changes, take_changes});
    EXPECT_EQ(changes, 2 * rounds); // one for each list
}

// The names of one list go to the threads that take them, each to one.
TEST_F(ClipThreads, TakeTheNamesOfOneList)
{
    constexpr int name_count = 3000;
    VeltoListHandle list = 0;
    auto opening = calling([&] { return velto_open_clip_list(session.handle, &list); });
    const std::string xid = session.link->expect("download_clipids").xid;
    for (int i = 0; i < name_count; ++i) {
        session.link->reply(xid, xml_element("clipid", xml_element("ClipID", std::to_string(i))));
    }
    session.link->reply_ok(xid);
    EXPECT_EQ(await(std::move(opening)), succeeded);

    std::atomic<int> taken{0};
    std::atomic<long> sum{0};
    const auto take = [&] {
        for (;;) {
            const Reading name = read_text<velto_get_clip_name>(list);
            EXPECT_EQ(name.outcome, succeeded);
            if (name.values.empty()) {
                return;
            }
            ++taken;
            sum += std::stol(name.values);
        }
    };
    run({take, take, take});
    EXPECT_EQ(taken, name_count);
    EXPECT_EQ(sum, long{name_count} * (name_count - 1) / 2);
    velto_close_clip_list(list);
}

// Whoever closes it first: every call ends as if it came before or after.
TEST_F(ClipThreads, CloseWhatOthersUse)
{
    for (int round = 0; round < 10; ++round) {
        const VeltoRecordHandle record = open();
        const auto use = [&] {
            for (;;) {
                const Reading title = read_text<velto_clip_title>(record);
                if (title.outcome == invalid_handle) {
                    return;
                }
                EXPECT_EQ(title.outcome, succeeded);
                const VeltoResult result = velto_set_clip_title(record, titles[0]);
                EXPECT_TRUE(result == VELTO_RESULT_OK || result == VELTO_RESULT_INVALID_HANDLE);
            }
        };
        const auto close = [&] {
            EXPECT_EQ(velto_set_clip_creator(record, titles[1]), VELTO_RESULT_OK);
            EXPECT_EQ(velto_close_clip_metadata(record), VELTO_RESULT_OK);
        };
        run({use, use, close});
    }
}

} // namespace
