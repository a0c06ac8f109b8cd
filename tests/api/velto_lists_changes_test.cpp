#include "support/clip_script.h"

#include <gtest/gtest.h>

namespace
{

using Track = VeltoResult (*)(VeltoHandle);

// A kind of changes: what is registered for it, and the takers of its sets.
struct KindRow {
    const char* name;
    Track track;
    std::vector<Read> takers;
    const char* type;
};

const KindRow kinds[] = {
    {"clips",
     velto_track_clip_changes,
     {read_text<velto_track_change_added_clip>, read_text<velto_track_change_changed_clip>,
      read_text<velto_track_change_deleted_clip>},
     "clip_change"},
    {"directories",
     velto_track_directory_changes,
     {read_text<velto_track_change_added_directory>,
      read_text<velto_track_change_deleted_directory>},
     "directory_change"},
};

std::vector<std::string> registration_lines(const KindRow& kind)
{
    return {"<report_register>", xml_element("ReportType", kind.type), "</report_register>"};
}

class Changes : public CommandScript
{
protected:
    Outcome tracked(const KindRow& kind, const std::string& content = "<ok />")
    {
        auto tracking = calling([&] { return kind.track(session.handle); });
        session.link->reply(expect_lines(session, registration_lines(kind)), content);
        return await(std::move(tracking));
    }

    // A taker that has to register first.
    Reading first_taken(const KindRow& kind, Read taker, const std::string& content)
    {
        auto taking = in_thread([&] { return taker(session.handle); });
        session.link->reply(expect_lines(session, registration_lines(kind)), content);
        return await(std::move(taking));
    }

    void report(const std::string& name, const std::string& id)
    {
        const char* element = name.starts_with("clip") ? "ClipID" : "DirectoryName";
        session.link->send(xml_element("report", xml_element(name, xml_element(element, id))));
    }

    // All that is in a set.
    std::string taken(Read taker)
    {
        std::string ids;
        for (;;) {
            const Reading next = taker(session.handle);
            EXPECT_EQ(next.outcome, succeeded);
            if (next.values.empty() || next.outcome != succeeded) {
                return ids;
            }
            ids += next.values + "|";
        }
    }

    std::string clips()
    {
        session.settle();
        return "added " + taken(kinds[0].takers[0]) + " changed " + taken(kinds[0].takers[1]) +
               " deleted " + taken(kinds[0].takers[2]);
    }

    std::string directories()
    {
        session.settle();
        return "added " + taken(kinds[1].takers[0]) + " deleted " + taken(kinds[1].takers[1]);
    }
};

TEST_F(Changes, AreRegisteredOnce)
{
    for (const KindRow& kind : kinds) {
        EXPECT_EQ(tracked(kind), succeeded);
        EXPECT_EQ(outcome_of([&] { return kind.track(session.handle); }), succeeded);
        for (const Read taker : kind.takers) {
            EXPECT_EQ(taker(session.handle), read_to(""));
        }
        session.settle(); // nothing more was sent
    }
}

TEST_F(Changes, AreRegisteredByTheFirstTaker)
{
    EXPECT_EQ(first_taken(kinds[0], kinds[0].takers[0], "<ok />"), read_to(""));
    EXPECT_EQ(first_taken(kinds[1], kinds[1].takers[1], "<ok />"), read_to(""));
    session.settle();
    EXPECT_EQ(clips(), "added  changed  deleted ");
    EXPECT_EQ(directories(), "added  deleted ");
}

// Of a refusal only the code is left, and the next call asks again.
TEST_F(Changes, AreAskedForAgainAfterARefusal)
{
    for (const KindRow& kind : kinds) {
        SCOPED_TRACE(kind.name);
        EXPECT_EQ(tracked(kind, error_content("No reports")), failed_question);
        for (const Read taker : kind.takers) {
            EXPECT_EQ(first_taken(kind, taker, error_content("No reports")),
                      (Reading{failed_question, "77"}));
        }
        EXPECT_EQ(tracked(kind), succeeded);
        EXPECT_EQ(kind.takers[0](session.handle), read_to(""));
    }
}

TEST_F(Changes, AreAskedForAgainAfterALoss)
{
    for (const KindRow& kind : kinds) {
        auto tracking = calling([&] { return kind.track(session.handle); });
        session.link->expect("report_register");
        session.link->close();
        EXPECT_EQ(await(std::move(tracking)), failed_question);
        session.accept();
        session.settle(); // it is not repeated by itself
    }
    for (const KindRow& kind : kinds) {
        EXPECT_EQ(tracked(kind), succeeded);
    }
}

TEST_F(Changes, AreWaitedForAlsoWhereCommandsDoNotWait)
{
    velto_synchronous(session.handle, VELTO_COMMANDS_DO_NOT_WAIT);
    EXPECT_EQ(tracked(kinds[0], error_content("No reports")), failed_question);
    EXPECT_EQ(first_taken(kinds[1], kinds[1].takers[0], "<ok />"), read_to(""));
}

TEST(ChangesWithoutHandle, AreNeitherTrackedNorTaken)
{
    for (const KindRow& kind : kinds) {
        EXPECT_EQ(outcome_of([&] { return kind.track(0); }), invalid_handle);
        for (const Read taker : kind.takers) {
            EXPECT_EQ(taker(0), (Reading{invalid_handle, "77"}));
        }
    }
}

TEST(ChangesWithoutLink, AreNeitherTrackedNorTaken)
{
    ScriptServer server;
    server.stop_listening();
    const VeltoHandle handle = velto_connect(server.address().number);
    for (const KindRow& kind : kinds) {
        EXPECT_EQ(outcome_of([&] { return kind.track(handle); }), failed_question);
        for (const Read taker : kind.takers) {
            EXPECT_EQ(taker(handle), (Reading{failed_question, "77"}));
        }
    }
    velto_close(handle);
}

TEST_F(Changes, OfClipsGoIntoTheirSets)
{
    EXPECT_EQ(tracked(kinds[0]), succeeded);
    report("clip_created", "a");
    report("clip_changed", "b");
    report("clip_deleted", "c");
    EXPECT_EQ(clips(), "added a| changed b| deleted c|");
    EXPECT_EQ(clips(), "added  changed  deleted ");
}

TEST_F(Changes, OfDirectoriesGoIntoTheirSets)
{
    EXPECT_EQ(tracked(kinds[1]), succeeded);
    report("directory_created", "a");
    report("directory_deleted", "b");
    EXPECT_EQ(directories(), "added a| deleted b|");
    EXPECT_EQ(directories(), "added  deleted ");
}

TEST_F(Changes, LeaveANewClipNew)
{
    EXPECT_EQ(tracked(kinds[0]), succeeded);
    report("clip_created", "X");
    report("clip_changed", "X");
    EXPECT_EQ(clips(), "added X| changed  deleted ");
}

TEST_F(Changes, OfADeletedClipAreForgotten)
{
    EXPECT_EQ(tracked(kinds[0]), succeeded);
    report("clip_changed", "X");
    report("clip_deleted", "X");
    report("clip_created", "Y");
    report("clip_deleted", "Y"); // though nobody has ever seen it
    EXPECT_EQ(clips(), "added  changed  deleted X|Y|");
}

TEST_F(Changes, OfAClipThatComesBackCountAsNew)
{
    EXPECT_EQ(tracked(kinds[0]), succeeded);
    report("clip_deleted", "X");
    report("clip_created", "X");
    report("clip_deleted", "Y");
    report("clip_changed", "Y");
    EXPECT_EQ(clips(), "added X| changed Y| deleted ");
}

TEST_F(Changes, AreTakenInTheOrderOfTheirCharacters)
{
    EXPECT_EQ(tracked(kinds[0]), succeeded);
    // The last two stand the other way round as 16-bit units.
    for (const char* id : {"X", "\U0001F3AC", "A", "\uFF5A", "a", "M", "AA"}) {
        report("clip_created", id);
    }
    EXPECT_EQ(clips(), "added A|AA|M|X|a|\uFF5A|\U0001F3AC| changed  deleted ");
}

TEST_F(Changes, OfTheEmptyIdAreIgnored)
{
    for (const char* name : {"clip_created", "clip_changed", "clip_deleted", "directory_created",
                             "directory_deleted"}) {
        report(name, "");
    }
    report("clip_created", " ");
    for (const KindRow& kind : kinds) {
        EXPECT_EQ(tracked(kind), succeeded);
    }
    EXPECT_EQ(clips(), "added  | changed  deleted ");
    EXPECT_EQ(directories(), "added  deleted ");
}

TEST_F(Changes, CountAlsoWhenTheyComeBeforeTheRegistration)
{
    report("clip_created", "a");
    report("directory_deleted", "b");
    session.settle();
    EXPECT_EQ(first_taken(kinds[0], kinds[0].takers[0], "<ok />"), read_to("a"));
    EXPECT_EQ(first_taken(kinds[1], kinds[1].takers[1], "<ok />"), read_to("b"));
}

TEST_F(Changes, AreLostWhereTheBufferIsTooSmall)
{
    EXPECT_EQ(tracked(kinds[0]), succeeded);
    report("clip_created", "abc");
    report("clip_created", "abd");
    session.settle();
    VeltoChar units[3] = {};
    EXPECT_EQ(velto_track_change_added_clip(session.handle, {units, 3}), VELTO_RESULT_OK);
    EXPECT_EQ(text_of(units), "ab");
    EXPECT_EQ(velto_track_change_added_clip(session.handle, {nullptr, 0}), VELTO_RESULT_OK);
    EXPECT_EQ(clips(), "added  changed  deleted ");
}

TEST_F(Changes, OutliveALossOfTheLink)
{
    EXPECT_EQ(tracked(kinds[0]), succeeded);
    report("clip_created", "a");
    report("clip_deleted", "b");
    session.settle();
    lose_link(session);
    EXPECT_EQ(kinds[0].takers[0](session.handle), read_to("a"));
    EXPECT_EQ(kinds[0].takers[2](session.handle), read_to("b"));
}

TEST_F(Changes, AreRegisteredAgainAfterALossClipsFirst)
{
    EXPECT_TRUE(registrations_after_loss(session).empty());
    EXPECT_EQ(tracked(kinds[1]), succeeded);
    const std::string directories = "<report_register>\r\n<ReportType>directory_change"
                                    "</ReportType>\r\n</report_register>";
    EXPECT_EQ(registrations_after_loss(session), std::vector<std::string>{directories});
    EXPECT_EQ(tracked(kinds[0]), succeeded);
    const std::string clips =
        "<report_register>\r\n<ReportType>clip_change</ReportType>\r\n</report_register>";
    EXPECT_EQ(registrations_after_loss(session), (std::vector{clips, directories}));
    EXPECT_EQ(registrations_after_loss(session), (std::vector{clips, directories}));
    session.settle();
    EXPECT_EQ(outcome_of([&] { return velto_track_clip_changes(session.handle); }), succeeded);
}

TEST_F(Changes, AreRegisteredAgainBeforeTheChannels)
{
    std::uint32_t status = 77;
    auto reading = calling([&] { return velto_channel_status(session.handle, 1, &status); });
    const std::string xid = session.link->expect("channel_report_register").xid;
    session.link->send(reply_message(xid, "<ok />") +
                       "<report><channel_status><Channel>B</Channel><ChannelStatus>play"
                       "</ChannelStatus></channel_status></report>");
    EXPECT_EQ(await(std::move(reading)), succeeded);
    EXPECT_EQ(tracked(kinds[1]), succeeded);
    EXPECT_EQ(tracked(kinds[0]), succeeded);

    std::vector<std::string> types;
    for (const std::string& registration : registrations_after_loss(session)) {
        const std::size_t begin = registration.find("Type>") + 5;
        types.push_back(registration.substr(begin, registration.find('<', begin) - begin));
    }
    EXPECT_EQ(types, (std::vector<std::string>{"clip_change", "directory_change", "status"}));
}

// Each connection has its own.
TEST_F(Changes, AreThoseOfTheirConnection)
{
    Session other;
    EXPECT_EQ(tracked(kinds[0]), succeeded);
    report("clip_created", "a");
    session.settle();
    auto taking = in_thread([&] { return kinds[0].takers[0](other.handle); });
    other.link->reply_ok(expect_lines(other, registration_lines(kinds[0])));
    EXPECT_EQ(await(std::move(taking)), read_to(""));
    EXPECT_EQ(clips(), "added a| changed  deleted ");
}

// No lock covers the question, so that both ask.
TEST_F(Changes, CanBeAskedForByTwoThreadsAtOnce)
{
    auto first = calling([&] { return velto_track_clip_changes(session.handle); });
    const std::string first_xid = expect_lines(session, registration_lines(kinds[0]));
    auto second = calling([&] { return velto_track_clip_changes(session.handle); });
    const std::string second_xid = expect_lines(session, registration_lines(kinds[0]));
    session.link->reply_ok(first_xid);
    session.link->reply_error(second_xid, "Once is enough");
    EXPECT_EQ(await(std::move(first)), succeeded);
    EXPECT_EQ(await(std::move(second)), failed_question);
    EXPECT_EQ(kinds[0].takers[0](session.handle), read_to("")); // it is set by the one
    session.settle();
}

} // namespace
