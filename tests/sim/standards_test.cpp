#include "sim/standards.h"

#include <set>
#include <string>

#include <gtest/gtest.h>

namespace veltosim
{

TEST(Standards, ThereAreTwentySevenOfDifferentNames)
{
    std::set<std::string_view> names;
    for (const Standard& standard : standards()) {
        names.insert(standard.name);
        EXPECT_EQ(find_standard(standard.name), &standard);
    }
    EXPECT_EQ(names.size(), 27u);
    EXPECT_EQ(find_standard("1080_50"), nullptr);
    EXPECT_EQ(find_standard(""), nullptr);
}

TEST(Standards, NameResolutionAndRateAgree)
{
    for (const Standard& standard : standards()) {
        const std::string name(standard.name);
        const std::string lines = name.substr(0, name.find('_'));
        EXPECT_EQ(standard.resolution.substr(0, lines.size()), lines) << name;
        EXPECT_EQ(name.substr(lines.size() + 1, standard.rate.size()), standard.rate) << name;
        const bool interlaced = name.back() == 'i';
        EXPECT_EQ(standard.resolution.back() == 'i', interlaced) << name;
    }
}

TEST(Standards, FieldRateIsTheRateInNumbers)
{
    struct Case {
        const char* name;
        const char* rate;
        const char* resolution;
        FieldRate field_rate;
    };
    const Case cases[] = {
        {"4K_60p", "60", "4K", {60, 1}},
        {"1080_50i", "50", "1080i", {50, 1}},
        {"1080_59_94i", "59_94", "1080i", {60000, 1001}},
        {"1080_48i", "48", "1080i", {48, 1}},
        {"1080_47_95i", "47_95", "1080i", {48000, 1001}},
        {"1080_23_98psf", "23_98", "1080p", {24000, 1001}},
        {"720_59_94p", "59_94", "720p", {60000, 1001}},
        {"625_50i", "50", "625i", {50, 1}},
        {"525_59_94i", "59_94", "525i", {60000, 1001}},
    };
    for (const Case& row : cases) {
        const Standard* standard = find_standard(row.name);
        ASSERT_NE(standard, nullptr) << row.name;
        EXPECT_EQ(standard->rate, row.rate);
        EXPECT_EQ(standard->resolution, row.resolution);
        EXPECT_EQ(standard->field_rate.fields, row.field_rate.fields);
        EXPECT_EQ(standard->field_rate.seconds, row.field_rate.seconds);
    }
}

} // namespace veltosim
