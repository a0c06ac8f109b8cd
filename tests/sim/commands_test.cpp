#include "sim/commands.h"

#include <chrono>
#include <set>
#include <string>

#include <gtest/gtest.h>

#include "commands_fixture.h"
#include "sim/refusal.h"

namespace veltosim
{

using namespace std::chrono_literals;

namespace
{

std::string on(char letter, const std::string& command, const std::string& fields = "")
{
    return "<" + command + ">\r\n<Channel>" + letter + "</Channel>\r\n" + fields + "\r\n</" +
           command + ">";
}

std::string gang(const std::string& letters, const std::string& command,
                 const std::string& fields = "")
{
    std::string set;
    for (const char letter : letters) {
        set += std::string("<Channel>") + letter + "</Channel>\r\n";
    }
    return "<" + command + "><ChannelSet>\r\n" + set + "</ChannelSet>" + fields + "</" + command +
           ">";
}

const std::string news = "<ClipID>news_open</ClipID>";

} // namespace

TEST_F(CommandsTest, TheTableHoldsEachCommandOnce)
{
    std::set<std::string_view> names;
    for (const CommandRule& rule : commands()) {
        names.insert(rule.name);
    }
    EXPECT_EQ(commands().size(), 57u);
    EXPECT_EQ(names.size(), 57u);
}

TEST_F(CommandsTest, TellsItsNameAndItsStandard)
{
    EXPECT_EQ(answer_to("<get_computer_name />"),
              "<computername><ComputerName>studio</ComputerName></computername>");
    EXPECT_EQ(answer_to("<get_video_standard />"),
              "<video_standard><VideoStandard>1080_50i</VideoStandard><VideoRate>50</VideoRate>"
              "<VideoResolution>1080i</VideoResolution></video_standard>");
}

TEST_F(CommandsTest, EscapesWhatItSends)
{
    station.name = "a<b>&'\"\xC3\xA9";
    EXPECT_EQ(answer_to("<get_computer_name />"),
              "<computername><ComputerName>a&lt;b&gt;&amp;'\"\xC3\xA9</ComputerName>"
              "</computername>");
}

TEST_F(CommandsTest, KeepsTheXidAsItIs)
{
    const auto messages = answer(
        station, registrations, "<cmd><xid> none&lt;1&gt; </xid><get_computer_name/></cmd>", start);
    ASSERT_EQ(messages.size(), 1u);
    EXPECT_EQ(messages.front().substr(0, 39), "<reply><xid> none&lt;1&gt; </xid><compu");
}

TEST_F(CommandsTest, CueClipTakesAllItsFields)
{
    obey(on('B', "cue_clip",
            "<ClipID>sport_replay</ClipID><Loop>loopto</Loop><GotoPosition>10</GotoPosition>"
            "<ClipPosition>900</ClipPosition><Angle>5</Angle><Playback>field</Playback>"
            "<Speed>1.5X</Speed><ClipScope>clip</ClipScope><LoopIn>100</LoopIn>"
            "<LoopOut>200</LoopOut><Layer>normal</Layer><BlackOnCue />"));
    const ChannelView seen = view('B');
    EXPECT_EQ(seen.status, ChannelStatus::cueing);
    EXPECT_EQ(seen.clip, "sport_replay");
    EXPECT_EQ(seen.position, 10u);
    EXPECT_EQ(seen.loop, Loop::loopto);
    EXPECT_EQ(seen.loop_in, 100u);
    EXPECT_EQ(seen.loop_out, 200u);
    EXPECT_EQ(seen.out_point, 900u);
    EXPECT_EQ(seen.angle, 5);
    EXPECT_EQ(seen.playback, Playback::field);
    obey(on('B', "play"));
    EXPECT_EQ(view('B', 1s).position, 85u);
    EXPECT_EQ(view('A').status, ChannelStatus::idle);
}

TEST_F(CommandsTest, AClipBringsItsOwnLoop)
{
    obey(on('A', "cue_clip", "<ClipID>weather_map</ClipID>"));
    EXPECT_EQ(view('A').loop, Loop::loopto);
    EXPECT_EQ(view('A').loop_in, 250u);
    EXPECT_EQ(view('A').loop_out, 1000u);
}

TEST_F(CommandsTest, ClipsAndVirtualClipsHaveNamesOfTheirOwn)
{
    obey(on('A', "cue_clip", "<ClipID>headlines</ClipID><ClipScope>vclip</ClipScope>"));
    EXPECT_EQ(view('A').clip, "headlines");
    EXPECT_NE(answer_to(on('A', "cue_clip", "<ClipID>headlines</ClipID>"))
                  .find("<ErrorCode>clipnotfound</ErrorCode>"),
              std::string::npos);
    EXPECT_EQ(
        answer_to(on('A', "cue_clip", news + "<ClipScope>vclip</ClipScope>")),
        error("cue_clip: there is no virtual clip 'news_open'; there are: 'goals_of_the_day', "
              "'headlines'",
              "clipnotfound"));
}

TEST_F(CommandsTest, UnknownClipsAreNotFound)
{
    for (const char* command : {"cue_clip", "precue", "go_live"}) {
        const std::string reply =
            answer_to(on('A', command, "<ClipID>n\xC3\xB6 &amp; \n</ClipID>"));
        EXPECT_NE(reply.find("there is no clip 'n\xC3\xB6 &amp; .'"), std::string::npos) << reply;
        EXPECT_NE(reply.find("<ErrorCode>clipnotfound</ErrorCode>"), std::string::npos) << reply;
    }
    EXPECT_EQ(answer_to(on('A', "list_load", "<ListID>x</ListID>")),
              error("list_load: there is no playlist 'x'; there are: 'evening_news', 'idents', "
                    "'promos', 'sport_desk'"));
}

TEST_F(CommandsTest, PlayStopJogAndGotoObey)
{
    obey(on('A', "cue_clip", news));
    obey(on('A', "play", "<Speed>-0.5X</Speed><Layer>normal</Layer><MinLatency />"), 1s);
    obey(on('A', "gotocmd", "<GotoPosition>100</GotoPosition><MinLatency />"), 2s);
    EXPECT_EQ(view('A', 3s).position, 100u);
    obey(on('A', "jog", "<JogDistance>-30</JogDistance><Layer>normal</Layer>"), 3s);
    EXPECT_EQ(view('A', 3s).position, 70u);
    obey(on('A', "play"), 4s);
    obey(on('A', "stop", "<Layer>normal</Layer><MinLatency />"), 5s);
    EXPECT_EQ(view('A', 9s).position, 120u);
    EXPECT_EQ(view('A', 9s).status, ChannelStatus::stop);
    obey(on('A', "unload", "<Layer>normal</Layer>"), 9s);
    EXPECT_EQ(view('A', 9s).status, ChannelStatus::idle);
}

TEST_F(CommandsTest, SpeedsAreReadInBothForms)
{
    struct Case {
        const char* text;
        Speed speed;
    };
    const Case cases[] = {
        {"1X", 0x10000},           {"1.5X", 0x18000},         {"-0.5X", -0x8000}, {"0X", 0},
        {"200X", 200 * 0x10000},   {"-200X", -200 * 0x10000}, {"98304", 98304},   {"-1", -1},
        {"0.000015258789063X", 1}, {"0.25X", 0x4000}};
    obey(on('A', "cue_clip", "<ClipID>interview</ClipID><GotoPosition>45000</GotoPosition>"));
    for (const Case& row : cases) {
        obey(on('A', "play", std::string("<Speed>") + row.text + "</Speed>"));
        EXPECT_EQ(view('A').speed, row.speed) << row.text;
    }
    for (const char* bad : {"1.5", "X", "-X", "--1X", "+1X", "1.-5X", "1.5.5X", "200.1X", "-201X",
                            "13107201", "x", "", " 1X", "99999999999999999999X"}) {
        const std::string text = bad;
        EXPECT_EQ(answer_to(on('A', "play", "<Speed>" + text + "</Speed>")),
                  error("play: Speed holds '" + text +
                        "'; allowed is a speed such as 1.5X, from -200X to 200X"));
    }
}

TEST_F(CommandsTest, GangCommandsActOnTheWholeSetAtOnce)
{
    for (const char letter : {'A', 'C', 'L'}) {
        obey(on(letter, "cue_clip", news));
    }
    obey(gang("ACL", "gang_play", "<Speed>2X</Speed><MinLatency />"), 1s);
    for (const char letter : {'A', 'C', 'L'}) {
        EXPECT_EQ(view(letter, 2s).position, 100u);
    }
    EXPECT_EQ(view('B', 2s).status, ChannelStatus::idle);
    obey(gang("AC", "gang_stop", "<MinLatency />"), 2s);
    EXPECT_EQ(view('C', 3s).position, 100u);
    EXPECT_EQ(view('L', 3s).position, 200u);
    obey(gang("AC", "gang_jog", "<JogDistance>-10</JogDistance>"), 3s);
    EXPECT_EQ(view('A', 3s).position, 90u);
    obey(gang("AC", "gang_gotocmd", "<GotoPosition>7</GotoPosition>"), 3s);
    EXPECT_EQ(view('C', 3s).position, 7u);
    obey(gang("AC", "gang_insert_edit", "<SonyEditMask>16</SonyEditMask>"), 3s);
    EXPECT_EQ(view('C', 3s).edit_mask, 0x10);
    obey(gang("AB", "gang_ee", "<SonyEditMask>1023</SonyEditMask><AutoEE>false</AutoEE>"), 3s);
    EXPECT_EQ(view('B', 3s).ee_mask, 0x3FF);
    EXPECT_FALSE(view('B', 3s).auto_ee);
    obey(on('A', "precue", "<ClipID>weather</ClipID>"), 3s);
    obey(on('C', "precue", "<ClipID>weather</ClipID>"), 3s);
    obey(gang("AC", "gang_precue_activate"), 3s);
    EXPECT_EQ(view('A', 3s).clip, "weather");
    EXPECT_EQ(view('C', 3s).clip, "weather");
}

TEST_F(CommandsTest, AChannelNamedTwiceInASetMovesOnce)
{
    obey(on('A', "cue_clip", news));
    obey(gang("AA", "gang_jog", "<JogDistance>5</JogDistance>"));
    EXPECT_EQ(view('A').position, 5u);
}

TEST_F(CommandsTest, IfOneOfAGangRefusesNoneHasMoved)
{
    obey(on('A', "cue_clip", news));
    EXPECT_EQ(answer_to(gang("AB", "gang_play")),
              error("gang_play: channel B has nothing loaded; load a clip or a list first"));
    EXPECT_EQ(view('A', 1s).position, 0u);
    EXPECT_EQ(view('A', 1s).status, ChannelStatus::stop);
}

TEST_F(CommandsTest, AGangOfNoneIsRefused)
{
    EXPECT_EQ(answer_to("<gang_stop><ChannelSet /></gang_stop>"),
              error("gang_stop: ChannelSet names no channel; name one at least"));
}

TEST_F(CommandsTest, PrecueTakesAllItsFields)
{
    obey(on('A', "cue_clip", news));
    obey(on('A', "precue",
            "<ClipID>sport_goal</ClipID><PrecueCondition>end_of_clip</PrecueCondition>"
            "<GotoPosition>100</GotoPosition><ClipLength>50</ClipLength><Angle>2</Angle>"
            "<LoopIn>10</LoopIn><LoopOut>20</LoopOut><Loop>off</Loop><MinLatency />"));
    EXPECT_EQ(view('A').precued_clip, "sport_goal");
    EXPECT_EQ(view('A').precue_condition, PrecueCondition::end_of_clip);
    obey(on('A', "precue_activate"));
    const ChannelView seen = view('A');
    EXPECT_EQ(seen.clip, "sport_goal");
    EXPECT_EQ(seen.position, 100u);
    EXPECT_EQ(seen.out_point, 150u);
    EXPECT_EQ(seen.angle, 2);
    EXPECT_EQ(seen.loop, Loop::off);
}

TEST_F(CommandsTest, APrecueLengthBehindTheClipsEndIsRefused)
{
    for (const char* length : {"0", "1402", "4294967295"}) {
        EXPECT_NE(answer_to(on('A', "precue",
                               news + "<GotoPosition>100</GotoPosition><ClipLength>" + length +
                                   "</ClipLength>"))
                      .find("cannot take out point"),
                  std::string::npos);
    }
    obey(on('A', "precue", news + "<GotoPosition>100</GotoPosition><ClipLength>1400</ClipLength>"));
    obey(on('A', "precue_clear"));
    EXPECT_EQ(view('A').precued_clip, "");
}

TEST_F(CommandsTest, GoLiveTakeAndAngleObey)
{
    obey(on('A', "go_live", "<ClipID>sport_goal</ClipID><Angle>3</Angle><MinLatency />"));
    EXPECT_EQ(view('A').status, ChannelStatus::timedelay);
    EXPECT_EQ(view('A').position, 599u);
    EXPECT_EQ(view('A').angle, 3);
    obey(on('A', "go_live", "<Angle>1</Angle><TimeDelay>99</TimeDelay><MinLatency />"));
    EXPECT_EQ(view('A').position, 500u);
    EXPECT_EQ(view('A').angle, 1);
    obey(on('A', "iso_angle", "<Angle>2</Angle>"));
    EXPECT_EQ(view('A').angle, 2);
    obey(on('A', "precue", news));
    obey(on('A', "take",
            "<TransitionType>dissolve</TransitionType><TransitionDuration>50</TransitionDuration>"
            "<FollowSpeed>oneX</FollowSpeed>"));
    EXPECT_EQ(view('A').clip, "news_open");
    EXPECT_EQ(view('A', 1s).position, 50u);
    EXPECT_TRUE(view('A', 999ms).transition_in_progress);
}

TEST_F(CommandsTest, EditMonitorLoopAndOutPointAreKept)
{
    obey(on('A', "cue_clip", news));
    obey(on('A', "insert_edit", "<SonyEditMask>975</SonyEditMask>"));
    EXPECT_EQ(view('A').edit_mask, 0x3CF);
    obey(on('A', "ee", "<SonyEditMask>48</SonyEditMask><AutoEE>true</AutoEE>"));
    EXPECT_EQ(view('A').ee_mask, 0x30);
    EXPECT_TRUE(view('A').auto_ee);
    obey(on('A', "set_loop", "<Loop>pingpong</Loop>"));
    EXPECT_EQ(view('A').loop, Loop::pingpong);
    obey(on('A', "set_out_point", "<ClipPosition>1000</ClipPosition>"));
    EXPECT_EQ(view('A').out_point, 1000u);
    obey(on('A', "clear_out_point"));
    EXPECT_EQ(view('A').out_point, std::nullopt);
}

TEST_F(CommandsTest, AListLoadsAndPlays)
{
    obey(on('A', "list_load",
            "<ListID>sport_desk</ListID><ListPlayMode>pgm_pvw</ListPlayMode><Transition>"
            "<TransitionType>cut</TransitionType></Transition><Layer>normal</Layer>"));
    EXPECT_EQ(view('A').list, "sport_desk");
    EXPECT_EQ(view('A').list_mode, ListPlayMode::pgm_pvw);
    EXPECT_EQ(view('A').clip, "sport_intro");
    obey(on('A', "list_play_now",
            "<ListIndex>1</ListIndex><Roll>roll</Roll><JogDistance>5</JogDistance>"));
    EXPECT_EQ(view('A').clip, "sport_goal");
    EXPECT_EQ(view('A', 1s).position, 55u);
    obey(on('A', "list_play_next", "<ListIndex>0</ListIndex><Roll>cueonly</Roll>"), 1s);
    EXPECT_EQ(view('A', 1h).clip, "sport_intro");
    EXPECT_EQ(view('A', 1h).status, ChannelStatus::stop);
}

TEST_F(CommandsTest, EachExamplePlaylistLoads)
{
    for (const char* name : {"evening_news", "sport_desk", "idents", "promos"}) {
        obey(on('A', "list_load", std::string("<ListID>") + name + "</ListID>"));
    }
}

TEST_F(CommandsTest, StandingRegistrationsAreRemembered)
{
    obey("<report_register><ReportType>alerts</ReportType></report_register>");
    obey(on('L', "channel_report_register", "<ChannelReportType>listplay</ChannelReportType>"));
    obey(on('L', "channel_report_register", "<ChannelReportType>listplay</ChannelReportType>"));
    obey("<watch_metadata_database><MetadataDatabase>db</MetadataDatabase>"
         "</watch_metadata_database>");
    obey("<watch_metadata_database><MetadataDatabase>db</MetadataDatabase><MetadataPrefix>p"
         "</MetadataPrefix></watch_metadata_database>");
    obey("<watch_metadata_database><MetadataDatabase>other</MetadataDatabase>"
         "</watch_metadata_database>");
    using Watches = decltype(registrations.metadata);
    EXPECT_EQ(registrations.reports, std::set<ReportType>{ReportType::alerts});
    EXPECT_TRUE(registrations.channel_reports.has(11, ChannelReportType::listplay));
    EXPECT_FALSE(registrations.channel_reports.has(11, ChannelReportType::status));
    EXPECT_FALSE(registrations.channel_reports.has(10, ChannelReportType::listplay));
    EXPECT_EQ(registrations.metadata, (Watches{{"db", ""}, {"db", "p"}, {"other", ""}}));
    obey("<unwatch_metadata_database><MetadataDatabase>db</MetadataDatabase>"
         "</unwatch_metadata_database>");
    EXPECT_EQ(registrations.metadata, (Watches{{"other", ""}}));
}

TEST_F(CommandsTest, AClientCannotFillTheMemoryWithWatches)
{
    const auto watch = [&](const std::string& name) {
        return answer_to("<watch_metadata_database><MetadataDatabase>" + name +
                         "</MetadataDatabase></watch_metadata_database>");
    };
    EXPECT_NE(watch(std::string(4097, 'x')).find("allowed is a text of 4096 bytes"),
              std::string::npos);
    for (int i = 0; i < 1000; ++i) {
        ASSERT_EQ(watch(std::to_string(i)), "<ok/>");
    }
    EXPECT_NE(watch("one more").find("can watch 1000 metadata prefixes"), std::string::npos);
}

TEST_F(CommandsTest, NonsenseIsRefusedWithAReason)
{
    struct Case {
        std::string content;
        std::string text;
    };
    const Case cases[] = {
        {"<fly />", "there is no command 'fly'"},
        {"", "a message holds no command"},
        {"<stop /><play />", "one message holds two commands, 'stop' and 'play'"},
        {"<xid>8</xid><stop />", "a message holds 2 elements xid; it must hold one"},
        {"junk<stop />", "'..junk' stands where only elements are expected"},
        {"<stop />", "stop: Channel is missing"},
        {on('A', "cue_clip"), "cue_clip: ClipID is missing"},
        {on('M', "stop"), "stop: Channel holds 'M'; allowed is A, B, C, D, E, F, G, H, I, J, K or "
                          "L"},
        {on('a', "stop"), "stop: Channel holds 'a'; allowed is A, B, C, D, E, F, G, H, I, J, K or "
                          "L"},
        {on('A', "stop", "<Channel>B</Channel>"), "stop: Channel is given twice"},
        {on('A', "stop", "<Speed>1X</Speed>"),
         "stop: there is no field 'Speed'; its fields are Channel, Layer, MinLatency"},
        {"<get_computer_name><x/></get_computer_name>",
         "get_computer_name: there is no field 'x'; it has no fields"},
        {on('A', "stop", "text"), "stop: '..text..' stands where only elements are expected"},
        {on('A', "stop", "<MinLatency>1</MinLatency>"),
         "stop: MinLatency holds '1'; allowed is nothing, since it is a flag"},
        {on('A', "stop", "<Layer>bed</Layer>"), "stop: Layer holds 'bed'; allowed is normal"},
        {on('A', "cue_clip", "<ClipID><b>x</b></ClipID>"),
         "cue_clip: 'ClipID' holds elements where a value is expected"},
        {on('A', "iso_angle", "<Angle>256</Angle>"),
         "iso_angle: Angle holds '256'; allowed is a number from 0 to 255"},
        {on('A', "gotocmd", "<GotoPosition>4294967296</GotoPosition>"),
         "gotocmd: GotoPosition holds '4294967296'; allowed is a number from 0 to 4294967295"},
        {on('A', "jog", "<JogDistance>2147483648</JogDistance>"),
         "jog: JogDistance holds '2147483648'; allowed is a number from -2147483648 to 2147483647"},
        {on('A', "jog", "<JogDistance>1x</JogDistance>"),
         "jog: JogDistance holds '1x'; allowed is a number from -2147483648 to 2147483647"},
        {on('A', "insert_edit", "<SonyEditMask>1024</SonyEditMask>"),
         "insert_edit: SonyEditMask holds '1024'; allowed is a number from 0 to 1023"},
        {on('A', "ee", "<SonyEditMask>1</SonyEditMask><AutoEE>yes</AutoEE>"),
         "ee: AutoEE holds 'yes'; allowed is false or true"},
        {on('A', "list_play_now", "<ListIndex>65536</ListIndex><Roll>roll</Roll>"),
         "list_play_now: ListIndex holds '65536'; allowed is a number from 0 to 65535"},
        {on('A', "list_play_now", "<ListIndex>0</ListIndex><Roll>roll</Roll>"),
         "list_play_now: channel A has no list loaded; load one first"},
        {on('A', "list_load", "<ListID>idents</ListID><Transition />"),
         "list_load: TransitionType is missing"},
        {"<gang_stop><ChannelSet><Chan>A</Chan></ChannelSet></gang_stop>",
         "gang_stop: ChannelSet holds 'Chan'; allowed are elements Channel"},
        {on('A', "play"), "play: channel A has nothing loaded; load a clip or a list first"},
    };
    for (const Case& row : cases) {
        EXPECT_EQ(answer_to(row.content), error(row.text)) << row.content;
    }
}

TEST_F(CommandsTest, AMessageWithoutXidIsAnsweredWithoutOne)
{
    const auto messages = answer(station, registrations, "<cmd><get_computer_name/></cmd>", start);
    ASSERT_EQ(messages.size(), 1u);
    EXPECT_EQ(messages.front(), "<reply><xid></xid>" +
                                    error("a message holds 0 elements xid; it must hold one") +
                                    "</reply>");
}

TEST_F(CommandsTest, LongTextsAreQuotedInShort)
{
    std::string text;
    for (int i = 0; i < 100000; ++i) {
        text += "\xC3\xA9";
    }
    const std::string reply = answer_to(on('A', "cue_clip", "<ClipID>x" + text + "</ClipID>"));
    EXPECT_NE(reply.find("'x" + text.substr(0, 62) + "...'"), std::string::npos) << reply;
    const std::string long_name(5000, 'n');
    EXPECT_NE(answer_to("<" + long_name + "/>").find("nnn...'"), std::string::npos);
}

TEST_F(CommandsTest, WhatIsNoCommandIsJunk)
{
    std::string deep = "<cmd><xid>1</xid>";
    for (int i = 0; i < 100000; ++i) {
        deep += "<a>";
    }
    const std::string cases[] = {
        "<cmd><xid>1</xid><stop></cmd>",
        "<cmd><xid>1</xid></stop></cmd>",
        "<cmd><xid>1</xid><stop a=\"1\" /></cmd>",
        "<cmd><xid>1</xid><!-- c --><stop /></cmd>",
        "<cmd><xid>1</xid><stop><Channel><![CDATA[A]]></Channel></stop></cmd>",
        "<cmd><?pi?><xid>1</xid><stop /></cmd>",
        "<cmd><xid>\xFF</xid><stop /></cmd>",
        "<cmd><xid>\xC0\x80</xid><stop /></cmd>",
        "<cmd><xid>" + std::string(1, '\0') + "</xid><stop /></cmd>",
        "<cmd><xid>" + std::string(1001, '1') + "</xid><stop /></cmd>",
        "<cmd><></cmd>",
        deep + "</cmd>",
    };
    for (const std::string& command : cases) {
        EXPECT_THROW(answer(station, registrations, command, start), Junk) << command.substr(0, 80);
    }
}

TEST_F(CommandsTest, DeepNestingDoesNotRecurse)
{
    std::string open;
    std::string close;
    for (int i = 0; i < 100000; ++i) {
        open += "<a>";
        close += "</a>";
    }
    EXPECT_EQ(answer_to(open + close), error("there is no command 'a'"));
    EXPECT_EQ(answer_to(on('A', "stop", "<Layer>" + open + close + "</Layer>")),
              error("stop: 'Layer' holds elements where a value is expected"));
}

TEST_F(CommandsTest, ARefusedCommandChangesNothing)
{
    obey(on('A', "cue_clip", news));
    obey(on('A', "play"));
    const std::string refused[] = {
        on('A', "cue_clip", "<ClipID>unknown</ClipID>"),
        on('A', "cue_clip", news + "<GotoPosition>1500</GotoPosition>"),
        on('A', "go_live", "<ClipID>weather</ClipID><TimeDelay>4500</TimeDelay>"),
        on('A', "gotocmd", "<GotoPosition>1500</GotoPosition>"),
        on('A', "set_out_point", "<ClipPosition>0</ClipPosition>"),
    };
    for (const std::string& content : refused) {
        EXPECT_NE(answer_to(content, 1s), "<ok/>") << content;
    }
    EXPECT_EQ(view('A', 2s).clip, "news_open");
    EXPECT_EQ(view('A', 2s).position, 100u);
    EXPECT_EQ(view('A', 2s).out_point, std::nullopt);
}

} // namespace veltosim
