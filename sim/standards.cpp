#include "sim/standards.h"

#include <algorithm>
#include <array>
#include <iterator>

#include "sim/words.h"

namespace veltosim
{

namespace
{

struct Rate {
    std::string_view word;
    FieldRate field_rate;
};

constexpr Rate r60{"60", {60, 1}};
constexpr Rate r59_94{"59_94", {60000, 1001}};
constexpr Rate r50{"50", {50, 1}};
constexpr Rate r48{"48", {48, 1}};
constexpr Rate r47_95{"47_95", {48000, 1001}};
constexpr Rate r30{"30", {30, 1}};
constexpr Rate r29_97{"29_97", {30000, 1001}};
constexpr Rate r25{"25", {25, 1}};
constexpr Rate r24{"24", {24, 1}};
constexpr Rate r23_98{"23_98", {24000, 1001}};

constexpr Standard standard(std::string_view name, const Rate& rate, std::string_view resolution)
{
    return {name, rate.word, resolution, rate.field_rate};
}

constexpr std::array table{
    standard("4K_60p", r60, "4K"),
    standard("4K_59_94p", r59_94, "4K"),
    standard("4K_50p", r50, "4K"),
    standard("4K_30p", r30, "4K"),
    standard("4K_29_97p", r29_97, "4K"),
    standard("4K_25p", r25, "4K"),
    standard("4K_24p", r24, "4K"),
    standard("4K_23_98p", r23_98, "4K"),
    standard("1080_60p", r60, "1080p"),
    standard("1080_59_94p", r59_94, "1080p"),
    standard("1080_50p", r50, "1080p"),
    standard("1080_30p", r30, "1080p"),
    standard("1080_29_97p", r29_97, "1080p"),
    standard("1080_25p", r25, "1080p"),
    standard("1080_24p", r24, "1080p"),
    standard("1080_23_98p", r23_98, "1080p"),
    standard("1080_23_98psf", r23_98, "1080p"),
    standard("1080_60i", r60, "1080i"),
    standard("1080_59_94i", r59_94, "1080i"),
    standard("1080_50i", r50, "1080i"),
    standard("1080_48i", r48, "1080i"),
    standard("1080_47_95i", r47_95, "1080i"),
    standard("720_60p", r60, "720p"),
    standard("720_59_94p", r59_94, "720p"),
    standard("720_50p", r50, "720p"),
    standard("625_50i", r50, "625i"),
    standard("525_59_94i", r59_94, "525i"),
};
static_assert(
    std::equal(table.begin(), table.end(), video_standard_words.begin(), video_standard_words.end(),
               [](const Standard& row, std::string_view word) { return row.name == word; }));

} // namespace

std::span<const Standard> standards()
{
    return table;
}

VideoStandard value_of(const Standard& standard)
{
    const auto word =
        std::find(video_standard_words.begin(), video_standard_words.end(), standard.name);
    return static_cast<VideoStandard>(std::distance(video_standard_words.begin(), word));
}

const Standard* find_standard(std::string_view name)
{
    const auto row = std::find_if(table.begin(), table.end(),
                                  [&](const Standard& entry) { return entry.name == name; });
    return row == table.end() ? nullptr : &*row;
}

} // namespace veltosim
