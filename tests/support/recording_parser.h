#pragma once

#include "protocol/zavl3_api_parser2.h"
#include "support/describe.h"

// Keeps every call of an operation as text: "17 clipexists{news_open, true}" for a reply, with its
// xid, "clip_created{news_open}" for a report.
class RecordingParser : public ZAVL3::APIParser2
{
public:
#define RECORD_REPLY(name, ...)                                                                    \
    void on_reply_##name(const AString& xid, const ZAVL3::reply::name& message) override           \
    {                                                                                              \
        calls.push_back(xid.to_utf8() + " " #name + describe(message));                            \
    }
#define RECORD_REPORT(name, ...)                                                                   \
    void on_report_##name(const ZAVL3::report::name& message) override                             \
    {                                                                                              \
        calls.push_back(#name + describe(message));                                                \
    }
    ZAVL3_REPLIES(RECORD_REPLY)
    ZAVL3_REPORTS(RECORD_REPORT)
#undef RECORD_REPLY
#undef RECORD_REPORT

    void feed(const std::string& bytes)
    {
        feed_bytes(bytes.data(), bytes.size());
    }

    std::vector<std::string> calls;
};
