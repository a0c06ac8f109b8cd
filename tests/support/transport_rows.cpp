#include "support/transport_rows.h"

#include "support/wire_call.h"

#include <limits>

namespace
{

constexpr double infinite = std::numeric_limits<double>::infinity();
constexpr double not_a_number = std::numeric_limits<double>::quiet_NaN();
constexpr double largest = std::numeric_limits<double>::max();
constexpr double smallest = std::numeric_limits<double>::denorm_min();

constexpr const VeltoChar* clip = VELTO_TEXT("news_open");
constexpr const VeltoChar* empty = VELTO_TEXT("");

// 3,000 units, and what they are on the wire.
const VeltoChar* long_clip()
{
    static const std::basic_string<VeltoChar> text(3000, VeltoChar{0xE9});
    return text.c_str();
}

std::string long_clip_element(const std::string& tag)
{
    std::string text;
    for (int i = 0; i < 3000; ++i) {
        text += "\xC3\xA9";
    }
    return "<" + tag + ">" + text + "</" + tag + ">";
}

} // namespace

WireRows play_and_stop_rows()
{
    // clang-format off
    static const WireRow rows[] = {
        {CALL(velto_cmd_play1, 0), {"<play>", "<Channel>A</Channel>", "</play>"}},
        {CALL(velto_cmd_play1, 12), {"<play>", "<Channel>A</Channel>", "</play>"}},

        {CALL(velto_cmd_play2, 1, 1.0), {"<play>", "<Channel>B</Channel>", "<Speed>1X</Speed>", "</play>"}},
        {CALL(velto_cmd_play2, 1, -1.0), {"<play>", "<Channel>B</Channel>", "<Speed>-1X</Speed>", "</play>"}},
        {CALL(velto_cmd_play2, 1, 1.5), {"<play>", "<Channel>B</Channel>", "<Speed>1.5X</Speed>", "</play>"}},
        {CALL(velto_cmd_play2, 1, -0.5), {"<play>", "<Channel>B</Channel>", "<Speed>-0.5X</Speed>", "</play>"}},
        {CALL(velto_cmd_play2, 1, 0.0), {"<play>", "<Channel>B</Channel>", "<Speed>0X</Speed>", "</play>"}},
        {CALL(velto_cmd_play2, 1, -0.0), {"<play>", "<Channel>B</Channel>", "<Speed>0X</Speed>", "</play>"}},
        {CALL(velto_cmd_play2, 1, 0.1), {"<play>", "<Channel>B</Channel>", "<Speed>0.099990844726563X</Speed>", "</play>"}},
        {CALL(velto_cmd_play2, 1, -0.1), {"<play>", "<Channel>B</Channel>", "<Speed>-0.099990844726563X</Speed>", "</play>"}},
        {CALL(velto_cmd_play2, 1, 1.0 / 65536), {"<play>", "<Channel>B</Channel>", "<Speed>0.000015258789063X</Speed>", "</play>"}},
        {CALL(velto_cmd_play2, 1, 0.9 / 65536), {"<play>", "<Channel>B</Channel>", "<Speed>0X</Speed>", "</play>"}},
        {CALL(velto_cmd_play2, 1, -0.9 / 65536), {"<play>", "<Channel>B</Channel>", "<Speed>0X</Speed>", "</play>"}},
        {CALL(velto_cmd_play2, 1, smallest), {"<play>", "<Channel>B</Channel>", "<Speed>0X</Speed>", "</play>"}},
        {CALL(velto_cmd_play2, 1, 199.99999), {"<play>", "<Channel>B</Channel>", "<Speed>199.999984741210938X</Speed>", "</play>"}},
        {CALL(velto_cmd_play2, 1, 200.0), {"<play>", "<Channel>B</Channel>", "<Speed>200X</Speed>", "</play>"}},
        {CALL(velto_cmd_play2, 1, 200.00001), {"<play>", "<Channel>B</Channel>", "<Speed>200X</Speed>", "</play>"}},
        {CALL(velto_cmd_play2, 1, 1000.0), {"<play>", "<Channel>B</Channel>", "<Speed>200X</Speed>", "</play>"}},
        {CALL(velto_cmd_play2, 1, -1000.0), {"<play>", "<Channel>B</Channel>", "<Speed>-200X</Speed>", "</play>"}},
        {CALL(velto_cmd_play2, 1, largest), {"<play>", "<Channel>B</Channel>", "<Speed>200X</Speed>", "</play>"}},
        {CALL(velto_cmd_play2, 1, infinite), {"<play>", "<Channel>B</Channel>", "<Speed>200X</Speed>", "</play>"}},
        {CALL(velto_cmd_play2, 1, -infinite), {"<play>", "<Channel>B</Channel>", "<Speed>-200X</Speed>", "</play>"}},
        {CALL(velto_cmd_play2, 1, not_a_number), {"<play>", "<Channel>B</Channel>", "<Speed>0X</Speed>", "</play>"}},

        {CALL(velto_cmd_play3, 2, 2.25, 0), {"<play>", "<Channel>C</Channel>", "<Speed>2.25X</Speed>", "<Layer>normal</Layer>", "</play>"}},
        {CALL(velto_cmd_play3, 2, 2.25, 1), {"<play>", "<Channel>C</Channel>", "<Speed>2.25X</Speed>", "<Layer>normal</Layer>", "<MinLatency />", "</play>"}},
        {CALL(velto_cmd_play3, 2, 2.25, 2), {"<play>", "<Channel>C</Channel>", "<Speed>2.25X</Speed>", "<Layer>normal</Layer>", "</play>"}},
        {CALL(velto_cmd_play3, 2, -1e300, all_ones), {"<play>", "<Channel>C</Channel>", "<Speed>-200X</Speed>", "<Layer>normal</Layer>", "</play>"}},

        {CALL(velto_cmd_stop1, 0), {"<stop>", "<Channel>A</Channel>", "</stop>"}},
        {CALL(velto_cmd_stop1, 1), {"<stop>", "<Channel>B</Channel>", "</stop>"}},
        {CALL(velto_cmd_stop1, 2), {"<stop>", "<Channel>C</Channel>", "</stop>"}},
        {CALL(velto_cmd_stop1, 3), {"<stop>", "<Channel>D</Channel>", "</stop>"}},
        {CALL(velto_cmd_stop1, 4), {"<stop>", "<Channel>E</Channel>", "</stop>"}},
        {CALL(velto_cmd_stop1, 5), {"<stop>", "<Channel>F</Channel>", "</stop>"}},
        {CALL(velto_cmd_stop1, 6), {"<stop>", "<Channel>G</Channel>", "</stop>"}},
        {CALL(velto_cmd_stop1, 7), {"<stop>", "<Channel>H</Channel>", "</stop>"}},
        {CALL(velto_cmd_stop1, 8), {"<stop>", "<Channel>I</Channel>", "</stop>"}},
        {CALL(velto_cmd_stop1, 9), {"<stop>", "<Channel>J</Channel>", "</stop>"}},
        {CALL(velto_cmd_stop1, 10), {"<stop>", "<Channel>K</Channel>", "</stop>"}},
        {CALL(velto_cmd_stop1, 11), {"<stop>", "<Channel>L</Channel>", "</stop>"}},
        {CALL(velto_cmd_stop1, 12), {"<stop>", "<Channel>A</Channel>", "</stop>"}},
        {CALL(velto_cmd_stop1, 256 + 1), {"<stop>", "<Channel>A</Channel>", "</stop>"}},
        {CALL(velto_cmd_stop1, all_ones), {"<stop>", "<Channel>A</Channel>", "</stop>"}},

        {CALL(velto_cmd_stop2, 3, 0), {"<stop>", "<Channel>D</Channel>", "<Layer>normal</Layer>", "</stop>"}},
        {CALL(velto_cmd_stop2, 3, 1), {"<stop>", "<Channel>D</Channel>", "<Layer>normal</Layer>", "<MinLatency />", "</stop>"}},
        {CALL(velto_cmd_stop2, 3, 2), {"<stop>", "<Channel>D</Channel>", "<Layer>normal</Layer>", "</stop>"}},

        {CALL(velto_cmd_gang_play1, 0x105), {"<gang_play>", "<ChannelSet>", "<Channel>A</Channel>", "<Channel>C</Channel>", "</ChannelSet>", "</gang_play>"}},
        {CALL(velto_cmd_gang_play2, 0x80, 1.5), {"<gang_play>", "<ChannelSet>", "<Channel>H</Channel>", "</ChannelSet>", "<Speed>1.5X</Speed>", "</gang_play>"}},
        {CALL(velto_cmd_gang_play2, 0, not_a_number), {"<gang_play>", "<ChannelSet />", "<Speed>0X</Speed>", "</gang_play>"}},
        {CALL(velto_cmd_gang_play3, 2, -0.25, 0), {"<gang_play>", "<ChannelSet>", "<Channel>B</Channel>", "</ChannelSet>", "<Speed>-0.25X</Speed>", "</gang_play>"}},
        {CALL(velto_cmd_gang_play3, 2, 300.0, 1), {"<gang_play>", "<ChannelSet>", "<Channel>B</Channel>", "</ChannelSet>", "<Speed>200X</Speed>", "<MinLatency />", "</gang_play>"}},
        {CALL(velto_cmd_gang_play3, 2, 1.0, 2), {"<gang_play>", "<ChannelSet>", "<Channel>B</Channel>", "</ChannelSet>", "<Speed>1X</Speed>", "</gang_play>"}},

        {CALL(velto_cmd_gang_stop1, 0), {"<gang_stop>", "<ChannelSet />", "</gang_stop>"}},
        {CALL(velto_cmd_gang_stop1, 0xFFFFFF00), {"<gang_stop>", "<ChannelSet />", "</gang_stop>"}},
        {CALL(velto_cmd_gang_stop1, 0xFF), {"<gang_stop>", "<ChannelSet>", "<Channel>A</Channel>", "<Channel>B</Channel>", "<Channel>C</Channel>", "<Channel>D</Channel>", "<Channel>E</Channel>", "<Channel>F</Channel>", "<Channel>G</Channel>", "<Channel>H</Channel>", "</ChannelSet>", "</gang_stop>"}},
        {CALL(velto_cmd_gang_stop1, all_ones), {"<gang_stop>", "<ChannelSet>", "<Channel>A</Channel>", "<Channel>B</Channel>", "<Channel>C</Channel>", "<Channel>D</Channel>", "<Channel>E</Channel>", "<Channel>F</Channel>", "<Channel>G</Channel>", "<Channel>H</Channel>", "</ChannelSet>", "</gang_stop>"}},
        {CALL(velto_cmd_gang_stop2, 0x12, 0), {"<gang_stop>", "<ChannelSet>", "<Channel>B</Channel>", "<Channel>E</Channel>", "</ChannelSet>", "</gang_stop>"}},
        {CALL(velto_cmd_gang_stop2, 0x12, 1), {"<gang_stop>", "<ChannelSet>", "<Channel>B</Channel>", "<Channel>E</Channel>", "</ChannelSet>", "<MinLatency />", "</gang_stop>"}},
        {CALL(velto_cmd_gang_stop2, 0x12, 2), {"<gang_stop>", "<ChannelSet>", "<Channel>B</Channel>", "<Channel>E</Channel>", "</ChannelSet>", "</gang_stop>"}},
    };
    // clang-format on
    return rows;
}

WireRows seek_rows()
{
    // clang-format off
    static const WireRow rows[] = {
        {CALL(velto_goto1, 0, 250), {"<gotocmd>", "<Channel>A</Channel>", "<GotoPosition>250</GotoPosition>", "</gotocmd>"}},
        {CALL(velto_goto1, 0, 0), {"<gotocmd>", "<Channel>A</Channel>", "<GotoPosition>0</GotoPosition>", "</gotocmd>"}},
        {CALL(velto_goto1, 0, all_ones), {"<gotocmd>", "<Channel>A</Channel>", "<GotoPosition>4294967295</GotoPosition>", "</gotocmd>"}},
        {CALL(velto_goto2, 1, 250, 0), {"<gotocmd>", "<Channel>B</Channel>", "<GotoPosition>250</GotoPosition>", "</gotocmd>"}},
        {CALL(velto_goto2, 1, 250, 1), {"<gotocmd>", "<Channel>B</Channel>", "<GotoPosition>250</GotoPosition>", "<MinLatency />", "</gotocmd>"}},
        {CALL(velto_goto2, 1, 250, 2), {"<gotocmd>", "<Channel>B</Channel>", "<GotoPosition>250</GotoPosition>", "</gotocmd>"}},

        {CALL(velto_gang_goto1, 0x88, 99), {"<gang_gotocmd>", "<ChannelSet>", "<Channel>D</Channel>", "<Channel>H</Channel>", "</ChannelSet>", "<GotoPosition>99</GotoPosition>", "</gang_gotocmd>"}},
        {CALL(velto_gang_goto1, 0x100, 0), {"<gang_gotocmd>", "<ChannelSet />", "<GotoPosition>0</GotoPosition>", "</gang_gotocmd>"}},
        {CALL(velto_gang_goto2, 1, 2147483648u, 0), {"<gang_gotocmd>", "<ChannelSet>", "<Channel>A</Channel>", "</ChannelSet>", "<GotoPosition>2147483648</GotoPosition>", "</gang_gotocmd>"}},
        {CALL(velto_gang_goto2, 1, 5, 1), {"<gang_gotocmd>", "<ChannelSet>", "<Channel>A</Channel>", "</ChannelSet>", "<GotoPosition>5</GotoPosition>", "<MinLatency />", "</gang_gotocmd>"}},
        {CALL(velto_gang_goto2, 1, 5, 2), {"<gang_gotocmd>", "<ChannelSet>", "<Channel>A</Channel>", "</ChannelSet>", "<GotoPosition>5</GotoPosition>", "</gang_gotocmd>"}},

        {CALL(velto_jog1, 0, 5), {"<jog>", "<Channel>A</Channel>", "<JogDistance>5</JogDistance>", "</jog>"}},
        {CALL(velto_jog1, 0, 0), {"<jog>", "<Channel>A</Channel>", "<JogDistance>0</JogDistance>", "</jog>"}},
        {CALL(velto_jog1, 0, all_ones), {"<jog>", "<Channel>A</Channel>", "<JogDistance>-1</JogDistance>", "</jog>"}},
        {CALL(velto_jog1, 0, 0x7FFFFFFF), {"<jog>", "<Channel>A</Channel>", "<JogDistance>2147483647</JogDistance>", "</jog>"}},
        {CALL(velto_jog1, 0, 0x80000000), {"<jog>", "<Channel>A</Channel>", "<JogDistance>-2147483648</JogDistance>", "</jog>"}},
        {CALL(velto_jog2, 11, 0xFFFFFF9C, 0), {"<jog>", "<Channel>L</Channel>", "<JogDistance>-100</JogDistance>", "<Layer>normal</Layer>", "</jog>"}},
        {CALL(velto_jog2, 11, 100, 1), {"<jog>", "<Channel>L</Channel>", "<JogDistance>100</JogDistance>", "<Layer>normal</Layer>", "<MinLatency />", "</jog>"}},
        {CALL(velto_jog2, 11, 100, 2), {"<jog>", "<Channel>L</Channel>", "<JogDistance>100</JogDistance>", "<Layer>normal</Layer>", "</jog>"}},

        {CALL(velto_gang_jog1, 3, all_ones), {"<gang_jog>", "<ChannelSet>", "<Channel>A</Channel>", "<Channel>B</Channel>", "</ChannelSet>", "<JogDistance>-1</JogDistance>", "</gang_jog>"}},
        {CALL(velto_gang_jog2, 3, 10, 0), {"<gang_jog>", "<ChannelSet>", "<Channel>A</Channel>", "<Channel>B</Channel>", "</ChannelSet>", "<JogDistance>10</JogDistance>", "</gang_jog>"}},
        {CALL(velto_gang_jog2, 3, 10, 1), {"<gang_jog>", "<ChannelSet>", "<Channel>A</Channel>", "<Channel>B</Channel>", "</ChannelSet>", "<JogDistance>10</JogDistance>", "<MinLatency />", "</gang_jog>"}},
        {CALL(velto_gang_jog2, 3, 10, 2), {"<gang_jog>", "<ChannelSet>", "<Channel>A</Channel>", "<Channel>B</Channel>", "</ChannelSet>", "<JogDistance>10</JogDistance>", "</gang_jog>"}},
    };
    // clang-format on
    return rows;
}

WireRows load_rows()
{
    // clang-format off
    static const WireRow rows[] = {
        {CALL(velto_cmd_loadclip1, 0, clip), {"<cue_clip>", "<Channel>A</Channel>", "<ClipID>news_open</ClipID>", "</cue_clip>"}},
        {CALL(velto_cmd_loadclip1, 0, empty), {"<cue_clip>", "<Channel>A</Channel>", "<ClipID />", "</cue_clip>"}},
        {CALL(velto_cmd_loadclip1, 0, none), {"<cue_clip>", "<Channel>A</Channel>", "<ClipID />", "</cue_clip>"}, 1},
        {CALL(velto_cmd_loadclip1, 0, VELTO_TEXT(" a b\t")), {"<cue_clip>", "<Channel>A</Channel>", "<ClipID> a b\t</ClipID>", "</cue_clip>"}},
        {CALL(velto_cmd_loadclip1, 0, VELTO_TEXT("<a> & 'b' \"c\" &amp;")), {"<cue_clip>", "<Channel>A</Channel>", "<ClipID>&lt;a&gt; &amp; &apos;b&apos; &quot;c&quot; &amp;amp;</ClipID>", "</cue_clip>"}},
        {CALL(velto_cmd_loadclip1, 0, VELTO_TEXT("\u00E9\u2603\U0001F3AC")), {"<cue_clip>", "<Channel>A</Channel>", "<ClipID>\xC3\xA9\xE2\x98\x83\xF0\x9F\x8E\xAC</ClipID>", "</cue_clip>"}},
        {CALL(velto_cmd_loadclip1, 0, VELTO_TEXT("a\xD800z")), {"<cue_clip>", "<Channel>A</Channel>", "<ClipID>a</ClipID>", "</cue_clip>"}},
        {CALL(velto_cmd_loadclip1, 0, long_clip()), {"<cue_clip>", "<Channel>A</Channel>", long_clip_element("ClipID"), "</cue_clip>"}},

        {CALL(velto_cmd_loadclip2, 1, clip, 0), {"<cue_clip>", "<Channel>B</Channel>", "<ClipID>news_open</ClipID>", "<Loop>off</Loop>", "</cue_clip>"}},
        {CALL(velto_cmd_loadclip2, 1, clip, 1), {"<cue_clip>", "<Channel>B</Channel>", "<ClipID>news_open</ClipID>", "<Loop>loop</Loop>", "</cue_clip>"}},
        {CALL(velto_cmd_loadclip2, 1, clip, 2), {"<cue_clip>", "<Channel>B</Channel>", "<ClipID>news_open</ClipID>", "<Loop>loopto</Loop>", "</cue_clip>"}},
        {CALL(velto_cmd_loadclip2, 1, clip, 3), {"<cue_clip>", "<Channel>B</Channel>", "<ClipID>news_open</ClipID>", "<Loop>pingpong</Loop>", "</cue_clip>"}},
        {CALL(velto_cmd_loadclip2, 1, clip, 4), {"<cue_clip>", "<Channel>B</Channel>", "<ClipID>news_open</ClipID>", "<Loop>pingpongto</Loop>", "</cue_clip>"}},
        {CALL(velto_cmd_loadclip2, 1, clip, 5), {"<cue_clip>", "<Channel>B</Channel>", "<ClipID>news_open</ClipID>", "<Loop>off</Loop>", "</cue_clip>"}},
        {CALL(velto_cmd_loadclip2, 1, none, all_ones), {"<cue_clip>", "<Channel>B</Channel>", "<ClipID />", "<Loop>off</Loop>", "</cue_clip>"}, 1},
        {CALL(velto_cmd_loadclip3, 2, clip, 1, 100), {"<cue_clip>", "<Channel>C</Channel>", "<ClipID>news_open</ClipID>", "<Loop>loop</Loop>", "<GotoPosition>100</GotoPosition>", "</cue_clip>"}},
        {CALL(velto_cmd_loadclip3, 2, none, 6, all_ones), {"<cue_clip>", "<Channel>C</Channel>", "<ClipID />", "<Loop>off</Loop>", "<GotoPosition>4294967295</GotoPosition>", "</cue_clip>"}, 1},
        {CALL(velto_cmd_loadclip4, 3, clip, 4, 100, 200, 300), {"<cue_clip>", "<Channel>D</Channel>", "<ClipID>news_open</ClipID>", "<Loop>pingpongto</Loop>", "<GotoPosition>100</GotoPosition>", "<ClipPosition>300</ClipPosition>", "<LoopIn>200</LoopIn>", "</cue_clip>"}},
        {CALL(velto_cmd_loadclip4, 3, none, 0, 0, all_ones, 0), {"<cue_clip>", "<Channel>D</Channel>", "<ClipID />", "<Loop>off</Loop>", "<GotoPosition>0</GotoPosition>", "<ClipPosition>0</ClipPosition>", "<LoopIn>4294967295</LoopIn>", "</cue_clip>"}, 1},
        {CALL(velto_cmd_loadclip5, 4, clip, 3), {"<cue_clip>", "<Channel>E</Channel>", "<ClipID>news_open</ClipID>", "<Angle>3</Angle>", "</cue_clip>"}},
        {CALL(velto_cmd_loadclip5, 4, clip, 256 + 5), {"<cue_clip>", "<Channel>E</Channel>", "<ClipID>news_open</ClipID>", "<Angle>5</Angle>", "</cue_clip>"}},
        {CALL(velto_cmd_loadclip5, 4, none, all_ones), {"<cue_clip>", "<Channel>E</Channel>", "<ClipID />", "<Angle>255</Angle>", "</cue_clip>"}, 1},
        {CALL(velto_cmd_loadclip6, 5, clip, 2, 100), {"<cue_clip>", "<Channel>F</Channel>", "<ClipID>news_open</ClipID>", "<GotoPosition>100</GotoPosition>", "<Angle>2</Angle>", "</cue_clip>"}},
        {CALL(velto_cmd_loadclip6, 5, none, 256, 0), {"<cue_clip>", "<Channel>F</Channel>", "<ClipID />", "<GotoPosition>0</GotoPosition>", "<Angle>0</Angle>", "</cue_clip>"}, 1},
        {CALL(velto_cmd_loadclip7, 6, clip, 2, 100, 300), {"<cue_clip>", "<Channel>G</Channel>", "<ClipID>news_open</ClipID>", "<GotoPosition>100</GotoPosition>", "<ClipPosition>300</ClipPosition>", "<Angle>2</Angle>", "</cue_clip>"}},
        {CALL(velto_cmd_loadclip7, 6, none, 65536 + 9, 1, all_ones), {"<cue_clip>", "<Channel>G</Channel>", "<ClipID />", "<GotoPosition>1</GotoPosition>", "<ClipPosition>4294967295</ClipPosition>", "<Angle>9</Angle>", "</cue_clip>"}, 1},

        {CALL(velto_cmd_load_vclip1, 0, clip), {"<cue_clip>", "<Channel>A</Channel>", "<ClipID>news_open</ClipID>", "<ClipScope>vclip</ClipScope>", "</cue_clip>"}},
        {CALL(velto_cmd_load_vclip1, 0, none), {"<cue_clip>", "<Channel>A</Channel>", "<ClipID />", "<ClipScope>vclip</ClipScope>", "</cue_clip>"}, 1},
        {CALL(velto_cmd_load_vclip2, 0, clip, 3), {"<cue_clip>", "<Channel>A</Channel>", "<ClipID>news_open</ClipID>", "<Loop>pingpong</Loop>", "<ClipScope>vclip</ClipScope>", "</cue_clip>"}},
        {CALL(velto_cmd_load_vclip2, 0, none, 5), {"<cue_clip>", "<Channel>A</Channel>", "<ClipID />", "<Loop>off</Loop>", "<ClipScope>vclip</ClipScope>", "</cue_clip>"}, 1},
        {CALL(velto_cmd_load_vclip3, 0, clip, 2, 7), {"<cue_clip>", "<Channel>A</Channel>", "<ClipID>news_open</ClipID>", "<Loop>loopto</Loop>", "<GotoPosition>7</GotoPosition>", "<ClipScope>vclip</ClipScope>", "</cue_clip>"}},
        {CALL(velto_cmd_load_vclip3, 0, none, 99, 0), {"<cue_clip>", "<Channel>A</Channel>", "<ClipID />", "<Loop>off</Loop>", "<GotoPosition>0</GotoPosition>", "<ClipScope>vclip</ClipScope>", "</cue_clip>"}, 1},

        {CALL(velto_cmd_loadlist1, 0, VELTO_TEXT("evening")), {"<list_load>", "<Channel>A</Channel>", "<ListID>evening</ListID>", "</list_load>"}},
        {CALL(velto_cmd_loadlist1, 0, empty), {"<list_load>", "<Channel>A</Channel>", "<ListID />", "</list_load>"}},
        {CALL(velto_cmd_loadlist1, 0, none), {"<list_load>", "<Channel>A</Channel>", "<ListID />", "</list_load>"}, 1},
        {CALL(velto_cmd_loadlist1, 0, VELTO_TEXT("\u00E9 & \u2603")), {"<list_load>", "<Channel>A</Channel>", "<ListID>\xC3\xA9 &amp; \xE2\x98\x83</ListID>", "</list_load>"}},
        {CALL(velto_cmd_loadlist1, 0, long_clip()), {"<list_load>", "<Channel>A</Channel>", long_clip_element("ListID"), "</list_load>"}},
        {CALL(velto_unload_channel, 8), {"<unload>", "<Channel>I</Channel>", "</unload>"}},
    };
    // clang-format on
    return rows;
}

WireRows precue_rows()
{
    // clang-format off
    static const WireRow rows[] = {
        {CALL(velto_precue1, 0, clip, 0), {"<precue>", "<Channel>A</Channel>", "<ClipID>news_open</ClipID>", "<PrecueCondition>explicit_switch</PrecueCondition>", "</precue>"}},
        {CALL(velto_precue1, 0, clip, 1), {"<precue>", "<Channel>A</Channel>", "<ClipID>news_open</ClipID>", "<PrecueCondition>previous_stops</PrecueCondition>", "</precue>"}},
        {CALL(velto_precue1, 0, clip, 2), {"<precue>", "<Channel>A</Channel>", "<ClipID>news_open</ClipID>", "<PrecueCondition>immediate</PrecueCondition>", "</precue>"}},
        {CALL(velto_precue1, 0, clip, 3), {"<precue>", "<Channel>A</Channel>", "<ClipID>news_open</ClipID>", "<PrecueCondition>end_of_clip</PrecueCondition>", "</precue>"}},
        {CALL(velto_precue1, 0, clip, 4), {"<precue>", "<Channel>A</Channel>", "<ClipID>news_open</ClipID>", "<PrecueCondition>explicit_switch</PrecueCondition>", "</precue>"}},
        {CALL(velto_precue1, 0, none, all_ones), {"<precue>", "<Channel>A</Channel>", "<ClipID />", "<PrecueCondition>explicit_switch</PrecueCondition>", "</precue>"}, 1},
        {CALL(velto_precue2, 1, clip, 1, 100), {"<precue>", "<Channel>B</Channel>", "<ClipID>news_open</ClipID>", "<PrecueCondition>previous_stops</PrecueCondition>", "<GotoPosition>100</GotoPosition>", "</precue>"}},
        {CALL(velto_precue2, 1, none, 1, all_ones), {"<precue>", "<Channel>B</Channel>", "<ClipID />", "<PrecueCondition>previous_stops</PrecueCondition>", "<GotoPosition>4294967295</GotoPosition>", "</precue>"}, 1},
        {CALL(velto_precue3, 2, clip, 2, 100, 500), {"<precue>", "<Channel>C</Channel>", "<ClipID>news_open</ClipID>", "<PrecueCondition>immediate</PrecueCondition>", "<GotoPosition>100</GotoPosition>", "<ClipLength>500</ClipLength>", "</precue>"}},
        {CALL(velto_precue3, 2, none, 2, 0, all_ones), {"<precue>", "<Channel>C</Channel>", "<ClipID />", "<PrecueCondition>immediate</PrecueCondition>", "<GotoPosition>0</GotoPosition>", "<ClipLength>4294967295</ClipLength>", "</precue>"}, 1},
        {CALL(velto_precue4, 3, clip, 3, 100, 200, 500), {"<precue>", "<Channel>D</Channel>", "<ClipID>news_open</ClipID>", "<PrecueCondition>end_of_clip</PrecueCondition>", "<GotoPosition>100</GotoPosition>", "<ClipLength>500</ClipLength>", "<LoopIn>200</LoopIn>", "<Loop>off</Loop>", "</precue>"}},
        {CALL(velto_precue4, 3, none, 3, 0, all_ones, 0), {"<precue>", "<Channel>D</Channel>", "<ClipID />", "<PrecueCondition>end_of_clip</PrecueCondition>", "<GotoPosition>0</GotoPosition>", "<ClipLength>0</ClipLength>", "<LoopIn>4294967295</LoopIn>", "<Loop>off</Loop>", "</precue>"}, 1},
        {CALL(velto_precue4, 3, long_clip(), 0, 1, 2, 3), {"<precue>", "<Channel>D</Channel>", long_clip_element("ClipID"), "<PrecueCondition>explicit_switch</PrecueCondition>", "<GotoPosition>1</GotoPosition>", "<ClipLength>3</ClipLength>", "<LoopIn>2</LoopIn>", "<Loop>off</Loop>", "</precue>"}},

        {CALL(velto_precue_activate1, 4), {"<precue_activate>", "<Channel>E</Channel>", "</precue_activate>"}},
        {CALL(velto_precue_clear1, 5), {"<precue_clear>", "<Channel>F</Channel>", "</precue_clear>"}},
        {CALL(velto_gang_precue_activate1, 0x41), {"<gang_precue_activate>", "<ChannelSet>", "<Channel>A</Channel>", "<Channel>G</Channel>", "</ChannelSet>", "</gang_precue_activate>"}},
        {CALL(velto_gang_precue_activate1, 0), {"<gang_precue_activate>", "<ChannelSet />", "</gang_precue_activate>"}},
    };
    // clang-format on
    return rows;
}

WireRows live_and_take_rows()
{
    // clang-format off
    static const WireRow rows[] = {
        {CALL(velto_go_live1, 0), {"<go_live>", "<Channel>A</Channel>", "<MinLatency />", "</go_live>"}},
        {CALL(velto_go_live2, 0, 4), {"<go_live>", "<Channel>A</Channel>", "<Angle>4</Angle>", "<MinLatency />", "</go_live>"}},
        {CALL(velto_go_live2, 0, 256 + 5), {"<go_live>", "<Channel>A</Channel>", "<Angle>5</Angle>", "<MinLatency />", "</go_live>"}},
        {CALL(velto_go_live3, 0, clip), {"<go_live>", "<Channel>A</Channel>", "<ClipID>news_open</ClipID>", "<MinLatency />", "</go_live>"}},
        {CALL(velto_go_live3, 0, empty), {"<go_live>", "<Channel>A</Channel>", "<ClipID />", "<MinLatency />", "</go_live>"}},
        {CALL(velto_go_live3, 0, none), {"<go_live>", "<Channel>A</Channel>", "<ClipID />", "<MinLatency />", "</go_live>"}, 1},
        {CALL(velto_go_live4, 0, clip, 1), {"<go_live>", "<Channel>A</Channel>", "<ClipID>news_open</ClipID>", "<Angle>1</Angle>", "<MinLatency />", "</go_live>"}},
        {CALL(velto_go_live4, 0, none, 511), {"<go_live>", "<Channel>A</Channel>", "<ClipID />", "<Angle>255</Angle>", "<MinLatency />", "</go_live>"}, 1},

        {CALL(velto_take1, 0, 0, 25), {"<take>", "<Channel>A</Channel>", "<TransitionType>cut</TransitionType>", "<TransitionDuration>25</TransitionDuration>", "</take>"}},
        {CALL(velto_take1, 0, 1, all_ones), {"<take>", "<Channel>A</Channel>", "<TransitionType>dissolve</TransitionType>", "<TransitionDuration>4294967295</TransitionDuration>", "</take>"}},
        {CALL(velto_take1, 0, 2, 0), {"<take>", "<Channel>A</Channel>", "<TransitionType>cut</TransitionType>", "<TransitionDuration>0</TransitionDuration>", "</take>"}, 1},
        {CALL(velto_take1, 0, 5, 0), {"<take>", "<Channel>A</Channel>", "<TransitionType>cut</TransitionType>", "<TransitionDuration>0</TransitionDuration>", "</take>"}, 1},
        {CALL(velto_take2, 0, 1, 25, 0), {"<take>", "<Channel>A</Channel>", "<TransitionType>dissolve</TransitionType>", "<TransitionDuration>25</TransitionDuration>", "<FollowSpeed>none</FollowSpeed>", "</take>"}},
        {CALL(velto_take2, 0, 1, 25, 1), {"<take>", "<Channel>A</Channel>", "<TransitionType>dissolve</TransitionType>", "<TransitionDuration>25</TransitionDuration>", "<FollowSpeed>smart</FollowSpeed>", "</take>"}},
        {CALL(velto_take2, 0, 1, 25, 2), {"<take>", "<Channel>A</Channel>", "<TransitionType>dissolve</TransitionType>", "<TransitionDuration>25</TransitionDuration>", "<FollowSpeed>oneX</FollowSpeed>", "</take>"}},
        {CALL(velto_take2, 0, 1, 25, 3), {"<take>", "<Channel>A</Channel>", "<TransitionType>dissolve</TransitionType>", "<TransitionDuration>25</TransitionDuration>", "<FollowSpeed>follow</FollowSpeed>", "</take>"}},
        {CALL(velto_take2, 0, 0, 25, 4), {"<take>", "<Channel>A</Channel>", "<TransitionType>cut</TransitionType>", "<TransitionDuration>25</TransitionDuration>", "<FollowSpeed>none</FollowSpeed>", "</take>"}, 1},
        {CALL(velto_take2, 0, all_ones, 25, all_ones), {"<take>", "<Channel>A</Channel>", "<TransitionType>cut</TransitionType>", "<TransitionDuration>25</TransitionDuration>", "<FollowSpeed>none</FollowSpeed>", "</take>"}, 2},

        {CALL(velto_angle1, 9, 7), {"<iso_angle>", "<Channel>J</Channel>", "<Angle>7</Angle>", "</iso_angle>"}},
        {CALL(velto_angle1, 9, 256 + 5), {"<iso_angle>", "<Channel>J</Channel>", "<Angle>5</Angle>", "</iso_angle>"}},
        {CALL(velto_angle1, 9, all_ones), {"<iso_angle>", "<Channel>J</Channel>", "<Angle>255</Angle>", "</iso_angle>"}},
    };
    // clang-format on
    return rows;
}

WireRows edit_and_monitor_rows()
{
    // clang-format off
    static const WireRow rows[] = {
        {CALL(velto_edit1, 0, 0), {"<insert_edit>", "<Channel>A</Channel>", "<SonyEditMask>0</SonyEditMask>", "</insert_edit>"}},
        {CALL(velto_edit1, 0, 1), {"<insert_edit>", "<Channel>A</Channel>", "<SonyEditMask>16</SonyEditMask>", "</insert_edit>"}},
        {CALL(velto_edit1, 0, 2), {"<insert_edit>", "<Channel>A</Channel>", "<SonyEditMask>32</SonyEditMask>", "</insert_edit>"}},
        {CALL(velto_edit1, 0, 3), {"<insert_edit>", "<Channel>A</Channel>", "<SonyEditMask>48</SonyEditMask>", "</insert_edit>"}},
        {CALL(velto_edit1, 0, 4), {"<insert_edit>", "<Channel>A</Channel>", "<SonyEditMask>975</SonyEditMask>", "</insert_edit>"}},
        {CALL(velto_edit1, 0, 5), {"<insert_edit>", "<Channel>A</Channel>", "<SonyEditMask>991</SonyEditMask>", "</insert_edit>"}},
        {CALL(velto_edit1, 0, 6), {"<insert_edit>", "<Channel>A</Channel>", "<SonyEditMask>1007</SonyEditMask>", "</insert_edit>"}},
        {CALL(velto_edit1, 0, 7), {"<insert_edit>", "<Channel>A</Channel>", "<SonyEditMask>1023</SonyEditMask>", "</insert_edit>"}},
        {CALL(velto_edit1, 0, 8), {"<insert_edit>", "<Channel>A</Channel>", "<SonyEditMask>0</SonyEditMask>", "</insert_edit>"}},
        {CALL(velto_edit1, 0, all_ones), {"<insert_edit>", "<Channel>A</Channel>", "<SonyEditMask>1023</SonyEditMask>", "</insert_edit>"}},
        {CALL(velto_edit_all_on, 1), {"<insert_edit>", "<Channel>B</Channel>", "<SonyEditMask>1023</SonyEditMask>", "</insert_edit>"}},
        {CALL(velto_edit_all_off, 1), {"<insert_edit>", "<Channel>B</Channel>", "<SonyEditMask>0</SonyEditMask>", "</insert_edit>"}},
        {CALL(velto_gang_edit1, 3, 2), {"<gang_insert_edit>", "<ChannelSet>", "<Channel>A</Channel>", "<Channel>B</Channel>", "</ChannelSet>", "<SonyEditMask>32</SonyEditMask>", "</gang_insert_edit>"}},
        {CALL(velto_gang_edit1, 0, 0xFFFFFFF8), {"<gang_insert_edit>", "<ChannelSet />", "<SonyEditMask>0</SonyEditMask>", "</gang_insert_edit>"}},
        {CALL(velto_gang_edit_all_on, 1), {"<gang_insert_edit>", "<ChannelSet>", "<Channel>A</Channel>", "</ChannelSet>", "<SonyEditMask>1023</SonyEditMask>", "</gang_insert_edit>"}},
        {CALL(velto_gang_edit_all_off, 1), {"<gang_insert_edit>", "<ChannelSet>", "<Channel>A</Channel>", "</ChannelSet>", "<SonyEditMask>0</SonyEditMask>", "</gang_insert_edit>"}},

        {CALL(velto_ee1, 0, 1, 0), {"<ee>", "<Channel>A</Channel>", "<SonyEditMask>16</SonyEditMask>", "<AutoEE>true</AutoEE>", "</ee>"}},
        {CALL(velto_ee1, 0, 6, 1), {"<ee>", "<Channel>A</Channel>", "<SonyEditMask>1007</SonyEditMask>", "<AutoEE>false</AutoEE>", "</ee>"}},
        {CALL(velto_ee1, 0, 15, 2), {"<ee>", "<Channel>A</Channel>", "<SonyEditMask>1023</SonyEditMask>", "<AutoEE>true</AutoEE>", "</ee>"}},
        {CALL(velto_ee1, 0, 8, all_ones), {"<ee>", "<Channel>A</Channel>", "<SonyEditMask>0</SonyEditMask>", "<AutoEE>true</AutoEE>", "</ee>"}},
        {CALL(velto_ee_all_on, 2), {"<ee>", "<Channel>C</Channel>", "<SonyEditMask>1023</SonyEditMask>", "<AutoEE>true</AutoEE>", "</ee>"}},
        {CALL(velto_ee_all_off, 2), {"<ee>", "<Channel>C</Channel>", "<SonyEditMask>0</SonyEditMask>", "<AutoEE>true</AutoEE>", "</ee>"}},
        {CALL(velto_gang_ee1, 0x81, 4, 0), {"<gang_ee>", "<ChannelSet>", "<Channel>A</Channel>", "<Channel>H</Channel>", "</ChannelSet>", "<SonyEditMask>975</SonyEditMask>", "<AutoEE>true</AutoEE>", "</gang_ee>"}},
        {CALL(velto_gang_ee1, 0x81, 4, 1), {"<gang_ee>", "<ChannelSet>", "<Channel>A</Channel>", "<Channel>H</Channel>", "</ChannelSet>", "<SonyEditMask>975</SonyEditMask>", "<AutoEE>false</AutoEE>", "</gang_ee>"}},
        {CALL(velto_gang_ee1, 0x100, 4, 2), {"<gang_ee>", "<ChannelSet />", "<SonyEditMask>975</SonyEditMask>", "<AutoEE>true</AutoEE>", "</gang_ee>"}},
        {CALL(velto_gang_ee_all_on, 4), {"<gang_ee>", "<ChannelSet>", "<Channel>C</Channel>", "</ChannelSet>", "<SonyEditMask>1023</SonyEditMask>", "<AutoEE>true</AutoEE>", "</gang_ee>"}},
        {CALL(velto_gang_ee_all_off, 4), {"<gang_ee>", "<ChannelSet>", "<Channel>C</Channel>", "</ChannelSet>", "<SonyEditMask>0</SonyEditMask>", "<AutoEE>true</AutoEE>", "</gang_ee>"}},
    };
    // clang-format on
    return rows;
}

WireRows loop_and_out_point_rows()
{
    // clang-format off
    static const WireRow rows[] = {
        {CALL(velto_set_repeat, 0, 0), {"<set_loop>", "<Channel>A</Channel>", "<Loop>off</Loop>", "</set_loop>"}},
        {CALL(velto_set_repeat, 0, 1), {"<set_loop>", "<Channel>A</Channel>", "<Loop>loop</Loop>", "</set_loop>"}},
        {CALL(velto_set_repeat, 0, 4), {"<set_loop>", "<Channel>A</Channel>", "<Loop>pingpongto</Loop>", "</set_loop>"}},
        {CALL(velto_set_repeat, 0, 5), {"<set_loop>", "<Channel>A</Channel>", "<Loop>off</Loop>", "</set_loop>"}},
        {CALL(velto_set_channel_repeat, 10, 3), {"<set_loop>", "<Channel>K</Channel>", "<Loop>pingpong</Loop>", "</set_loop>"}},
        {CALL(velto_set_channel_repeat, 13, all_ones), {"<set_loop>", "<Channel>A</Channel>", "<Loop>off</Loop>", "</set_loop>"}},
        {CALL(velto_set_out1, 0, 1000), {"<set_out_point>", "<Channel>A</Channel>", "<ClipPosition>1000</ClipPosition>", "</set_out_point>"}},
        {CALL(velto_set_out1, 0, all_ones), {"<set_out_point>", "<Channel>A</Channel>", "<ClipPosition>4294967295</ClipPosition>", "</set_out_point>"}},
        {CALL(velto_clear_out, 0), {"<clear_out_point>", "<Channel>A</Channel>", "</clear_out_point>"}},
    };
    // clang-format on
    return rows;
}

WireRows list_play_out_rows()
{
    // clang-format off
    static const WireRow rows[] = {
        {CALL(velto_cmd_playlist_cue_list, 1), {"<list_play_now>", "<Channel>B</Channel>", "<ListIndex>0</ListIndex>", "<Roll>cueonly</Roll>", "</list_play_now>"}},
        {CALL(velto_cmd_playlist_cue_now, 1, 7), {"<list_play_now>", "<Channel>B</Channel>", "<ListIndex>7</ListIndex>", "<Roll>cueonly</Roll>", "</list_play_now>"}},
        {CALL(velto_cmd_playlist_cue_now, 1, 65535), {"<list_play_now>", "<Channel>B</Channel>", "<ListIndex>65535</ListIndex>", "<Roll>cueonly</Roll>", "</list_play_now>"}},
        {CALL(velto_cmd_playlist_cue_now, 1, 65536 + 7), {"<list_play_now>", "<Channel>B</Channel>", "<ListIndex>7</ListIndex>", "<Roll>cueonly</Roll>", "</list_play_now>"}},
        {CALL(velto_cmd_playlist_cue_next, 1, 8), {"<list_play_next>", "<Channel>B</Channel>", "<ListIndex>8</ListIndex>", "<Roll>cueonly</Roll>", "</list_play_next>"}},
        {CALL(velto_cmd_playlist_cue_next, 1, 65536), {"<list_play_next>", "<Channel>B</Channel>", "<ListIndex>0</ListIndex>", "<Roll>cueonly</Roll>", "</list_play_next>"}},
        {CALL(velto_cmd_playlist_play_now, 1, 9), {"<list_play_now>", "<Channel>B</Channel>", "<ListIndex>9</ListIndex>", "<Roll>roll</Roll>", "</list_play_now>"}},
        {CALL(velto_cmd_playlist_play_now, 1, all_ones), {"<list_play_now>", "<Channel>B</Channel>", "<ListIndex>65535</ListIndex>", "<Roll>roll</Roll>", "</list_play_now>"}},
        {CALL(velto_cmd_playlist_play_next, 1, 10), {"<list_play_next>", "<Channel>B</Channel>", "<ListIndex>10</ListIndex>", "<Roll>roll</Roll>", "</list_play_next>"}},
        {CALL(velto_cmd_playlist_play_next, 1, 131072 + 3), {"<list_play_next>", "<Channel>B</Channel>", "<ListIndex>3</ListIndex>", "<Roll>roll</Roll>", "</list_play_next>"}},
    };
    // clang-format on
    return rows;
}

std::vector<WireRow> all_rows()
{
    std::vector<WireRow> all;
    for (const WireRows family :
         {play_and_stop_rows(), seek_rows(), load_rows(), precue_rows(), live_and_take_rows(),
          edit_and_monitor_rows(), loop_and_out_point_rows(), list_play_out_rows()}) {
        all.insert(all.end(), family.begin(), family.end());
    }
    return all;
}
