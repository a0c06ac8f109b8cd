#pragma once

#include "fuzz/check.h"
#include "support/recording_parser.h"

#include <string_view>

namespace fuzz
{

// One stream, read where it is received as far as it is plain, and once more through trees alone:
// both come to the same operations, and to the same failures.
class BothRoads
{
public:
    BothRoads() { through_trees.message_tap = AFunction<XMLTree>(&ignore); }

    void feed(std::string_view piece)
    {
        plain.feed_bytes(piece.data(), piece.size());
        through_trees.feed_bytes(piece.data(), piece.size());
        FUZZ_CHECK(plain.calls == through_trees.calls);
        FUZZ_CHECK(plain.message_ok == through_trees.message_ok);
        FUZZ_CHECK(plain.error_xid == through_trees.error_xid);
        FUZZ_CHECK(plain.error_text == through_trees.error_text);
        FUZZ_CHECK(plain.is_stream_broken() == through_trees.is_stream_broken());
        plain.calls.clear();
        through_trees.calls.clear();
    }

    void lose()
    {
        plain.reset_stream();
        through_trees.reset_stream();
    }

private:
    static void ignore(XMLTree /*message*/) {}

    RecordingParser plain;
    RecordingParser through_trees; // a tap wants trees
};

} // namespace fuzz
