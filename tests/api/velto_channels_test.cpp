#include "support/channel_script.h"

#include <gtest/gtest.h>

using namespace std::chrono_literals;

namespace
{

class Channels : public testing::Test
{
protected:
    // Makes an item of channel A live, and leaves its value to reports to come.
    void make_live(const ChannelGetter& getter)
    {
        EXPECT_EQ(first_read(session, getter, 0), read_to(getter.values));
    }

    // The same for all that channel_info feeds.
    void make_information_live() { make_live(length_getter); }

    ChannelReading after_info(ReadChannel read, const std::string& optional_fields)
    {
        session.link->send(info_report('A', optional_fields));
        session.settle();
        return read(session.handle, 0);
    }

    Session session;
};

TEST_F(Channels, TheFirstReadRegistersAndWaitsForTheReportAndTheSecondIsLocal)
{
    auto asking = reading(&read_number<velto_channel_status>, session.handle, 0);
    session.link->reply_ok(expect_registration(session, 'A', "status"));
    EXPECT_EQ(asking.wait_for(50ms), std::future_status::timeout);
    session.link->send(status_report('A', "play"));
    EXPECT_EQ(await(std::move(asking)), read_to("3"));

    EXPECT_EQ(read_number<velto_channel_status>(session.handle, 0), read_to("3"));
    session.settle();
}

TEST_F(Channels, EachGetterRegistersItsItem)
{
    std::uint32_t channel = 0;
    for (const ChannelGetter& getter : channel_getters) {
        SCOPED_TRACE(getter.name);
        EXPECT_EQ(first_read(session, getter, channel), read_to(getter.values));
        EXPECT_EQ(getter.read(session.handle, channel), read_to(getter.values));
        session.settle();
        channel = (channel + 1) % 8; // a new item for each
    }
}

TEST_F(Channels, GettersOfOneItemShareItsRegistration)
{
    make_information_live();
    for (const ChannelGetter& getter : channel_getters) {
        if (getter.item == std::string("info")) {
            EXPECT_EQ(getter.read(session.handle, 0), read_to(getter.values)) << getter.name;
        }
    }
    session.settle();
}

TEST_F(Channels, EachChannelHasItsLetter)
{
    for (std::uint32_t channel = 0; channel < 8; ++channel) {
        const std::string position = std::to_string(channel * 1000);
        EXPECT_EQ(first_read(session, &read_number<velto_channel_position>, channel, "timecode",
                             position_report(letter_of(channel), position)),
                  read_to(position));
    }
    for (std::uint32_t channel = 0; channel < 8; ++channel) {
        EXPECT_EQ(read_number<velto_channel_position>(session.handle, channel),
                  read_to(std::to_string(channel * 1000)));
    }
}

TEST_F(Channels, AReportBeforeTheReplyCounts)
{
    auto asking = reading(&read_speed, session.handle, 0);
    const std::string xid = expect_registration(session, 'A', "speed");
    session.link->send(speed_report('A', "2X"));
    EXPECT_EQ(asking.wait_for(50ms), std::future_status::timeout);
    session.link->reply_ok(xid);
    EXPECT_EQ(await(std::move(asking)), read_to("2"));
}

TEST_F(Channels, AReportThatNobodyAskedForSparesTheWaitButNotTheRegistration)
{
    session.link->send(speed_report('A', "2X"));
    session.settle();
    auto asking = reading(&read_speed, session.handle, 0);
    session.link->reply_ok(expect_registration(session, 'A', "speed"));
    EXPECT_EQ(await(std::move(asking)), read_to("2"));
}

TEST_F(Channels, NineStatesBecomeFive)
{
    const struct {
        const char* word;
        const char* exported;
    } rows[] = {
        {"nochannel", "0"}, {"idle", "1"},        {"cueing", "2"},
        {"stop", "1"},      {"play", "3"},        {"record", "4"},
        {"insert", "4"},    {"testpattern", "1"}, {"timedelay", "0"},
    };
    make_live(status_getter);
    for (const auto& [word, exported] : rows) {
        session.link->send(status_report('A', word));
        session.settle();
        EXPECT_EQ(read_number<velto_channel_status>(session.handle, 0), read_to(exported)) << word;
    }
}

TEST_F(Channels, TheClipIsCutToTheBuffer)
{
    EXPECT_EQ(first_read(session, &read_clip, 0, "clipid", clip_report('A', "")), read_to(""));
    session.link->send(clip_report('A', "a\xF0\x9F\x8E\xAC"));
    session.settle();
    const auto clip_in = [&](std::uint32_t size) {
        std::vector<VeltoChar> units(5, 0x2A);
        EXPECT_EQ(outcome_of([&] {
                      return velto_channel_clip(session.handle, 0, {units.data(), size});
                  }),
                  succeeded);
        return units;
    };
    using Units = std::vector<VeltoChar>;
    EXPECT_EQ(clip_in(5), (Units{'a', 0xD83C, 0xDFAC, 0, 0x2A}));
    EXPECT_EQ(clip_in(3), (Units{'a', 0, 0x2A, 0x2A, 0x2A})); // no half of a pair
    EXPECT_EQ(clip_in(1), (Units{0, 0x2A, 0x2A, 0x2A, 0x2A}));
    EXPECT_EQ(clip_in(0), Units(5, 0x2A));
}

TEST_F(Channels, TheSpeedIsExact)
{
    const struct {
        const char* text;
        double speed;
    } rows[] = {
        {"0X", 0.0},        {"1X", 1.0},          {"-1X", -1.0},
        {"1.5X", 1.5},      {"200X", 200.0},      {"-32768X", -32768.0},
        {"1", 1.0 / 65536}, {"-1", -1.0 / 65536}, {"65536", 1.0},
    };
    make_live(speed_getter);
    for (const auto& [text, expected] : rows) {
        session.link->send(speed_report('A', text));
        session.settle();
        double speed = 77;
        EXPECT_EQ(velto_channel_speed(session.handle, 0, &speed), 0);
        EXPECT_EQ(speed, expected) << text;
    }
}

TEST_F(Channels, ThePositionHasAllBits)
{
    make_live(position_getter);
    for (const char* position : {"0", "4294967295"}) {
        session.link->send(position_report('A', position));
        session.settle();
        EXPECT_EQ(read_number<velto_channel_position>(session.handle, 0), read_to(position));
    }
}

TEST_F(Channels, TheRepeatHasFiveModesAndZeroForAllElse)
{
    const struct {
        const char* fields;
        const char* exported;
    } rows[] = {
        {"<Loop>pingpongto</Loop>", "4"}, {"<Loop>off</Loop>", "0"},
        {"<Loop>loop</Loop>", "1"},       {"<Loop>auto</Loop>", "0"},
        {"<Loop>loopto</Loop>", "2"},     {"<Loop>record</Loop>", "0"},
        {"<Loop>pingpong</Loop>", "3"},   {"", "0"},
    };
    make_information_live();
    for (const auto& [fields, exported] : rows) {
        EXPECT_EQ(after_info(&read_number<velto_channel_repeat>, fields), read_to(exported))
            << fields;
    }
}

TEST_F(Channels, TheLengthAndThePrecuesAreZeroWhenNotTold)
{
    make_information_live();
    const ReadChannel length = &read_number<velto_channel_clip_length>;
    const ReadChannel precues = &read_number<velto_channel_precue_count>;
    EXPECT_EQ(after_info(length, "<ClipLength>4294967295</ClipLength>"), read_to("4294967295"));
    EXPECT_EQ(precues(session.handle, 0), read_to("0"));
    EXPECT_EQ(after_info(precues, "<PrecueCount>4294967295</PrecueCount>"), read_to("4294967295"));
    EXPECT_EQ(length(session.handle, 0), read_to("0"));
}

TEST_F(Channels, TheAngleIsZeroOfOneWhenNotTold)
{
    make_information_live();
    const ReadChannel angle = &read_pair<velto_channel_angle>;
    EXPECT_EQ(after_info(angle, ""), read_to("0 1"));
    EXPECT_EQ(after_info(angle, "<Angle>255</Angle>"), read_to("255 1"));
    EXPECT_EQ(after_info(angle, "<AngleCount>8</AngleCount>"), read_to("0 8"));
    EXPECT_EQ(after_info(angle, "<AngleCount>0</AngleCount><Angle>3</Angle>"), read_to("3 0"));
}

std::string ee_status(const std::string& mask, const std::string& automatic)
{
    return xml_element("EEStatus",
                       xml_element("SonyEditMask", mask) + xml_element("AutoEE", automatic));
}

TEST_F(Channels, TheMonitorHasThreeBitsAndWhoSetsThem)
{
    const struct {
        const char* mask;
        const char* bits;
    } rows[] = {
        {"0", "0"},   {"16", "1"},   {"32", "2"},    {"1", "4"},  {"8", "4"},     {"64", "4"},
        {"512", "4"}, {"1024", "0"}, {"64512", "0"}, {"48", "3"}, {"65535", "7"}, {"975", "4"},
    };
    make_information_live();
    const ReadChannel ee = &read_pair<velto_channel_ee>;
    for (const auto& [mask, bits] : rows) {
        EXPECT_EQ(after_info(ee, ee_status(mask, "true")), read_to(std::string(bits) + " 0"))
            << mask;
        EXPECT_EQ(after_info(ee, ee_status(mask, "false")), read_to(std::string(bits) + " 1"))
            << mask;
    }
    EXPECT_EQ(after_info(ee, ""), read_to("0 0"));
}

TEST_F(Channels, NullOutputsAreSkippedWhereTheyAreOptional)
{
    make_information_live();
    using PairGetter = VeltoResult (*)(VeltoHandle, std::uint32_t, std::uint32_t*, std::uint32_t*);
    const struct {
        PairGetter getter;
        std::uint32_t first;
        std::uint32_t second;
    } rows[] = {{velto_channel_angle, 2, 4}, {velto_channel_ee, 1, 1}};
    for (const auto& row : rows) {
        const auto get = [&](std::uint32_t* first, std::uint32_t* second) {
            return outcome_of([&] { return row.getter(session.handle, 0, first, second); });
        };
        std::uint32_t value = 77;
        EXPECT_EQ(get(nullptr, nullptr), succeeded);
        EXPECT_EQ(get(&value, nullptr), succeeded);
        EXPECT_EQ(value, row.first);
        value = 77;
        EXPECT_EQ(get(nullptr, &value), succeeded);
        EXPECT_EQ(value, row.second);
    }
}

TEST_F(Channels, AListReportLetsTheGettersOfTheInformationThrough)
{
    EXPECT_EQ(first_read(session, &read_number<velto_channel_clip_length>, 0, "info",
                         list_report("list", 'A', list_loaded("evening"))),
              read_to("0"));
    EXPECT_EQ(read_number<velto_channel_repeat>(session.handle, 0), read_to("0"));
    EXPECT_EQ(read_pair<velto_channel_angle>(session.handle, 0), read_to("0 1"));
    EXPECT_EQ(read_pair<velto_channel_ee>(session.handle, 0), read_to("0 0"));
    EXPECT_EQ(read_number<velto_channel_precue_count>(session.handle, 0), read_to("0"));
    EXPECT_EQ(after_info(&read_pair<velto_channel_angle>, "<Angle>2</Angle>"), read_to("2 1"));
}

// No call of an application comes to what is behind the wait of the list getters.
TEST_F(Channels, TheListGettersReadTheCacheBehindTheirWait)
{
    session.connection->channel_state(0)->list_play.channel_item_registered = 1;
    EXPECT_EQ(read_number<velto_playlist_status>(session.handle, 0), read_to("0"));
    EXPECT_EQ(read_number<velto_playlist_count>(session.handle, 0), read_to("0"));
    session.link->send(list_report("list", 'A', list_loaded("evening")) +
                       list_report("item_exists", 'A', list_item(0, "a")) +
                       list_report("item_exists", 'A', list_hole(1)));
    session.settle();
    EXPECT_EQ(read_number<velto_playlist_status>(session.handle, 0), read_to("1"));
    EXPECT_EQ(read_number<velto_playlist_count>(session.handle, 0), read_to("1"));
    EXPECT_EQ(velto_playlist_status(session.handle, 0, nullptr), 0);
    EXPECT_EQ(velto_playlist_count(session.handle, 0, nullptr), 0);
}

TEST_F(Channels, AnUntrackedChannelFailsAndTheTextIsOk)
{
    for (const ChannelGetter& getter : all_channel_getters()) {
        for (const std::uint32_t channel : {8u, 11u, 12u, 0x80000000u, 0xFFFFFFFFu}) {
            EXPECT_EQ(getter.read(session.handle, channel), getter.failed()) << getter.name;
        }
    }
    session.settle();
}

TEST_F(Channels, ARefusedRegistrationFailsAndTheNextReadTriesAgain)
{
    for (const ChannelGetter& getter : all_channel_getters()) {
        SCOPED_TRACE(getter.name);
        for (int attempt = 0; attempt < 2; ++attempt) {
            auto asking = reading(getter.read, session.handle, 5);
            session.link->reply_error(expect_registration(session, 'F', getter.item), "refused");
            EXPECT_EQ(await(std::move(asking)), getter.failed());
        }
    }
    EXPECT_EQ(first_read(session, status_getter, 5), read_to("3"));
}

TEST_F(Channels, TheLossOfTheLinkEndsARegistration)
{
    auto asking = reading(&read_speed, session.handle, 0);
    expect_registration(session, 'A', "speed");
    session.link->close();
    EXPECT_EQ(await(std::move(asking)), speed_getter.failed());
}

TEST_F(Channels, AFirstReadWithoutALinkFailsAtOnceAndTheNextTriesAgain)
{
    lose_link(session);
    for (const ChannelGetter& getter : all_channel_getters()) {
        EXPECT_EQ(getter.read(session.handle, 0), getter.failed()) << getter.name;
    }
    restore_link(session);
    make_live(clip_getter);
}

TEST_F(Channels, LiveItemsAreReadFromTheCacheWhileTheLinkIsDown)
{
    for (const ChannelGetter& getter : channel_getters) {
        if (getter.name == std::string("velto_channel_repeat")) {
            break; // the rest is live with the information
        }
        make_live(getter);
    }
    lose_link(session);
    for (const ChannelGetter& getter : channel_getters) {
        EXPECT_EQ(getter.read(session.handle, 0), read_to(getter.values)) << getter.name;
    }
    restore_link(session);
    for (const char* item : {"status", "clipid", "speed", "timecode", "info"}) {
        session.link->reply_ok(expect_registration(session, 'A', item));
    }
    EXPECT_EQ(read_speed(session.handle, 0), read_to("-0.5")); // does not wait for the new report
    session.link->send(speed_report('A', "3X"));
    session.settle();
    EXPECT_EQ(read_speed(session.handle, 0), read_to("3"));
}

TEST_F(Channels, AReconnectionRegistersWhatWasRegisteredAndNothingElse)
{
    EXPECT_TRUE(registrations_after_loss(session).empty());

    const struct {
        const ChannelGetter& getter;
        std::uint32_t channel;
    } reads[] = {
        {angle_getter, 7}, {speed_getter, 0}, {position_getter, 3},
        {clip_getter, 3},  {angle_getter, 0}, {status_getter, 7},
    };
    for (const auto& [getter, channel] : reads) {
        EXPECT_EQ(first_read(session, getter, channel), read_to(getter.values));
    }
    // Refused, reported without being read, and not finished when the link goes.
    auto refused = reading(status_getter.read, session.handle, 1);
    session.link->reply_error(expect_registration(session, 'B', "status"), "refused");
    EXPECT_EQ(await(std::move(refused)), speed_getter.failed());
    session.link->send(clip_report('B', "news_open"));
    auto unfinished = reading(speed_getter.read, session.handle, 2);
    expect_registration(session, 'C', "speed");

    const std::vector<std::string> expected = {
        registration('A', "speed"),    registration('A', "info"),   registration('D', "clipid"),
        registration('D', "timecode"), registration('H', "status"), registration('H', "info"),
    };
    EXPECT_EQ(registrations_after_loss(session), expected);
    EXPECT_EQ(await(std::move(unfinished)), speed_getter.failed());
    EXPECT_EQ(registrations_after_loss(session), expected); // refused as they all were
}

TEST_F(Channels, AReconnectionGoesChannelByChannelAndItemByItem)
{
    std::vector<std::string> expected;
    for (std::uint32_t channel = 0; channel < 8; ++channel) {
        for (ChannelItem* item : session.connection->channel_state(channel)->items()) {
            item->channel_item_registered = 1;
        }
        for (const char* item : {"status", "clipid", "speed", "timecode", "info", "listplay"}) {
            expected.push_back(registration(letter_of(channel), item));
        }
    }
    EXPECT_EQ(registrations_after_loss(session), expected);
}

TEST_F(Channels, AFirstReadWaitsAlsoWhereCommandsDoNot)
{
    velto_synchronous(session.handle, VELTO_COMMANDS_DO_NOT_WAIT);
    auto refused = reading(&read_speed, session.handle, 0);
    const std::string xid = expect_registration(session, 'A', "speed");
    EXPECT_EQ(refused.wait_for(50ms), std::future_status::timeout);
    session.link->reply_error(xid, "refused");
    EXPECT_EQ(await(std::move(refused)), speed_getter.failed());
    make_live(speed_getter);
}

TEST_F(Channels, TwoThreadsThatReadANewItemBothRegisterIt)
{
    auto first = reading(&read_speed, session.handle, 0);
    auto second = reading(&read_speed, session.handle, 0);
    const std::string first_xid = expect_registration(session, 'A', "speed");
    const std::string second_xid = expect_registration(session, 'A', "speed");
    EXPECT_NE(first_xid, second_xid);
    session.link->send(reply_message(second_xid, "<ok />") + reply_message(first_xid, "<ok />") +
                       speed_report('A', "0.25X"));
    EXPECT_EQ(await(std::move(first)), read_to("0.25"));
    EXPECT_EQ(await(std::move(second)), read_to("0.25"));
    EXPECT_EQ(read_speed(session.handle, 0), read_to("0.25"));
    session.settle();
}

TEST_F(Channels, AReportThatCannotBeReadChangesNothing)
{
    make_live(speed_getter);
    session.link->send(speed_report('A', "fast"));
    session.settle();
    EXPECT_EQ(read_speed(session.handle, 0), read_to("-0.5"));
    session.link->send_byte_by_byte(speed_report('A', "1X"));
    session.settle();
    EXPECT_EQ(read_speed(session.handle, 0), read_to("1"));
}

TEST(ChannelsWithoutHandle, EveryGetterGivesInvalidHandle)
{
    for (const ChannelGetter& getter : all_channel_getters()) {
        EXPECT_EQ(getter.read(0, 0), getter.failed(invalid_handle)) << getter.name;
    }
}

} // namespace
