#include "sim/options.h"

#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "sim/scenario.h"

namespace veltosim
{

namespace
{

struct Reading {
    std::optional<Options> options;
    int exit_code = -1;
    std::string out;
    std::string err;
};

Reading read(std::vector<const char*> arguments)
{
    arguments.insert(arguments.begin(), "veltosim");
    std::ostringstream out;
    std::ostringstream err;
    Reading reading;
    reading.options = read_options(static_cast<int>(arguments.size()), arguments.data(), out, err,
                                   reading.exit_code);
    reading.out = out.str();
    reading.err = err.str();
    return reading;
}

} // namespace

TEST(Options, HaveDefaults)
{
    const auto [options, exit_code, out, err] = read({});
    ASSERT_TRUE(options);
    EXPECT_EQ(options->address.to_string(), "127.0.0.1");
    EXPECT_EQ(options->standard->name, "1080_50i");
    EXPECT_EQ(options->name, "veltosim");
    EXPECT_TRUE(options->clips.empty());
    EXPECT_EQ(options->scenario, "");
    EXPECT_EQ(options->store, "");
    EXPECT_FALSE(options->report_rate);
    EXPECT_FALSE(options->trace);
    EXPECT_EQ(out + err, "");
}

TEST(Options, AreRead)
{
    const auto [options, exit_code, out, err] = read(
        {"--address", "127.1.2.3",     "--standard", "720_60p",     "--name",    "b\xC3\xBChne",
         "--clip",    "race:18000:4",  "--clip",     "two words:1", "--trace",   "--scenario",
         "mine.json", "--report-rate", "10",         "--store",     "studio.db", "--fault",
         "delay 5",   "--fault",       "refuse stop"});
    ASSERT_TRUE(options);
    EXPECT_EQ(options->address.to_string(), "127.1.2.3");
    EXPECT_EQ(options->standard->name, "720_60p");
    EXPECT_EQ(options->name, "b\xC3\xBChne");
    EXPECT_TRUE(options->trace);
    EXPECT_EQ(options->scenario, "mine.json");
    EXPECT_EQ(options->store, "studio.db");
    EXPECT_EQ(options->faults, (std::vector<std::string>{"delay 5", "refuse stop"}));
    ASSERT_TRUE(options->report_rate);
    EXPECT_EQ(options->report_rate->fields, 10u);
    EXPECT_EQ(options->report_rate->seconds, 1u);
    ASSERT_EQ(options->clips.size(), 2u);
    EXPECT_EQ(options->clips[0].name, "race");
    EXPECT_EQ(options->clips[0].length, 18000u);
    EXPECT_EQ(options->clips[0].angles, 4);
    EXPECT_EQ(options->clips[1].name, "two words");
    EXPECT_EQ(options->clips[1].length, 1u);
    EXPECT_EQ(options->clips[1].angles, 1);
}

TEST(Options, BadOnesAreRefusedWithAReason)
{
    struct Case {
        std::vector<const char*> arguments;
        const char* text;
    };
    const Case cases[] = {
        {{"--address", "localhost"}, "--address: 'localhost' is no IPv4 address"},
        {{"--address", "::1"}, "--address: '::1' is no IPv4 address"},
        {{"--standard", "1080"}, "--standard: '1080' is no video standard; allowed is 4K_60p, "},
        {{"--name", ""}, "--name: '' is no name"},
        {{"--name", "a\nb"}, "--name: 'a.b' is no name"},
        {{"--name", "\xFF"}, "is no name"},
        {{"--clip", "a"}, "--clip: 'a' has no length; write NAME:LENGTH or NAME:LENGTH:ANGLES"},
        {{"--clip", ":5"}, "--clip: '' is no name"},
        {{"--clip", "a:0"}, "--clip: the length of 'a' cannot be '0'; 1 to 4294967295 are"},
        {{"--clip", "a:4294967296"}, "--clip: the length of 'a' cannot be '4294967296'"},
        {{"--clip", "a:5x"}, "--clip: the length of 'a' cannot be '5x'"},
        {{"--clip", "a:5:256"}, "the number of angles of 'a' cannot be '256'; 1 to 255 are"},
        {{"--clip", "a:5:"}, "the number of angles of 'a' cannot be ''"},
        {{"--clip", "a:5", "--clip", "a:6"}, "--clip: 'a' is given twice"},
        {{"--report-rate", "0"}, "--report-rate: 0 is no rate; 1 to 1000 are allowed"},
        {{"--report-rate", "1001"}, "--report-rate: 1001 is no rate"},
        {{"--report-rate", "x"}, "--report-rate"},
        {{"--fault", "delay x"}, "--fault: error: 'x' is no number from 0 to 3600000"},
        {{"--fault", "drop now"}, "--fault: error: there are no links yet"},
        {{"--port", "1"}, "--port"},
        {{"extra"}, "extra"},
    };
    for (const Case& row : cases) {
        const Reading reading = read(row.arguments);
        EXPECT_FALSE(reading.options) << row.text;
        EXPECT_EQ(reading.exit_code, exit_bad_option) << row.text;
        EXPECT_EQ(reading.out, "");
        EXPECT_NE(reading.err.find(row.text), std::string::npos) << reading.err;
    }
}

TEST(Options, HelpAndVersionEndWell)
{
    const Reading help = read({"--help"});
    EXPECT_FALSE(help.options);
    EXPECT_EQ(help.exit_code, exit_ok);
    for (const char* text :
         {"--address", "--clip", "8913", "sport_goal (4 angles)", "headlines", "evening_news",
          "--scenario", "--report-rate", "Exit codes", "5 bad scenario", "--store",
          "6 the store cannot be used", "--fault", "drop before-reply [COMMAND]"}) {
        EXPECT_NE(help.out.find(text), std::string::npos) << text;
    }
    const Reading version = read({"--version"});
    EXPECT_EQ(version.exit_code, exit_ok);
    EXPECT_EQ(version.out.substr(0, 9), "veltosim ");
}

TEST(Options, TheBuiltInScenarioIsPrinted)
{
    const Reading reading = read({"--print-scenario"});
    EXPECT_FALSE(reading.options);
    EXPECT_EQ(reading.exit_code, exit_ok);
    EXPECT_EQ(reading.out, default_scenario_text());
}

} // namespace veltosim
