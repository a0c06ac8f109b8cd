#pragma once

#include <cstdint>
#include <string>

// The channels that are tracked, A to H.
constexpr std::uint32_t channel_count = 8;

// A channel_timecode report of nearly 500 bytes, broken into lines as a server may do it.
void append_timecode_report(std::string& text, char channel, std::uint32_t position);
