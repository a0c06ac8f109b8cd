#pragma once

#include "protocol/zavl3_api_parser.h"
#include "xml/xml_parse.h"

namespace ZAVL3
{

// Cuts the received bytes into messages. A message is one element whose root is `reply` or
// `report`; its closing tag ends it, and nothing else frames it.
//
// Thread: worker. Locks: none.
class APIParser2 : public APIParser
{
public:
    APIParser2();

    // Messages complete in these bytes are dispatched before it returns. Bytes on a broken stream
    // are dropped.
    void feed_bytes(const void* bytes, std::uint64_t count);
    // The stream cannot be resynchronised: the link must go.
    bool is_stream_broken() const { return stream_broken; }
    // For a new link: nothing of the old one can join its messages.
    void reset_stream();

private:
    // False when the rest of the bytes is to be left alone.
    bool dispatch_complete_messages();
    // False when there is none.
    bool dispatch_next_message();

    XMLParser stream_parser;
    bool stream_idle = true; // while set, no element is taken from the parser
    bool stream_broken = false;
};

} // namespace ZAVL3
