#pragma once

#include "protocol/zavl3_api.h"

#include <string>
#include <utility>
#include <vector>

// An API whose link is a string: keeps what is written, block by block.
class RecordingAPI : public ZAVL3::API
{
public:
    void write_bytes(const unsigned char* bytes, std::uint64_t count) override
    {
        blocks.emplace_back(reinterpret_cast<const char*>(bytes), count);
    }

    // What was written since the last call.
    std::string take_bytes()
    {
        std::string bytes;
        for (const std::string& block : std::exchange(blocks, {})) {
            bytes += block;
        }
        return bytes;
    }

    void feed(const std::string& bytes) { feed_bytes(bytes.data(), bytes.size()); }

    std::vector<std::string> blocks;
};
