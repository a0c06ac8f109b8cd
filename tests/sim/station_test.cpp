#include "sim/station.h"

#include <algorithm>
#include <chrono>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "sim/scenario.h"

namespace veltosim
{

using namespace std::chrono_literals;

namespace
{

std::string squeezed(const std::string& line)
{
    std::istringstream words(line);
    std::string all;
    for (std::string word; words >> word;) {
        all += (all.empty() ? "" : " ") + word;
    }
    return all;
}

} // namespace

TEST(Station, PrintsItsChannelsAsATable)
{
    Station station("studio", *find_standard("1080_50i"), default_scenario().clips);
    Material goal;
    goal.clip = station.clips.clip("sport_goal");
    goal.angle = 2;
    goal.loop = Loop::loop;
    station.channels[1].cue(TimePoint{}, goal);
    station.channels[1].play(TimePoint{}, 2 * normal_speed);

    std::istringstream table(channel_table(station, TimePoint{} + 1s));
    std::vector<std::string> lines;
    for (std::string line; std::getline(table, line);) {
        lines.push_back(line);
    }
    ASSERT_EQ(lines.size(), 13u);
    EXPECT_EQ(squeezed(lines[0]), "channel status clip position speed loop angle");
    EXPECT_EQ(squeezed(lines[1]), "A idle - - - - -");
    EXPECT_EQ(squeezed(lines[2]), "B play sport_goal 100 2.00X loop 2/4");
    EXPECT_EQ(squeezed(lines[12]), "L idle - - - - -");
    EXPECT_TRUE(std::all_of(lines.begin(), lines.end(), [&](const std::string& line) {
        return line.size() == lines[0].size();
    }));
}

TEST(Station, TheTableNamesAListAndItsElement)
{
    Station station("studio", *find_standard("1080_50i"), default_scenario().clips);
    Material ident;
    ident.clip = station.clips.clip("station_ident");
    LoadedList list;
    list.name = "idents";
    list.elements = std::make_shared<const std::vector<Material>>(std::vector{ident});
    station.channels[0].load_list(TimePoint{}, list);
    EXPECT_NE(channel_table(station, TimePoint{}).find("station_ident (idents 0)"),
              std::string::npos);
}

} // namespace veltosim
