#pragma once

#include "protocol/zavl3_messages.h"

namespace ZAVL3
{

// Looks at one complete element, decides which message it is, reads its fields and calls the
// operation of its kind.
//
// Thread: worker. Locks: none.
class APIParser
{
public:
    APIParser() = default;
    APIParser(const APIParser&) = delete;
    APIParser& operator=(const APIParser&) = delete;
    virtual ~APIParser() = default;

    // One operation per kind, in the order of the kinds. Here they do nothing.
#define ZAVL3_REPLY_OPERATION(name, ...)                                                           \
    virtual void on_reply_##name(const AString& /*xid*/, const reply::name& /*message*/) {}
#define ZAVL3_REPORT_OPERATION(name, ...)                                                          \
    virtual void on_report_##name(const report::name& /*message*/) {}
    ZAVL3_REPLIES(ZAVL3_REPLY_OPERATION)
    ZAVL3_REPORTS(ZAVL3_REPORT_OPERATION)
#undef ZAVL3_REPLY_OPERATION
#undef ZAVL3_REPORT_OPERATION

    void dispatch_message(const XMLTree& tree);
    // The same for an element that was read where it was received. No tree is made for the tap: it
    // must be empty.
    void dispatch_message(const XMLPlainElement& root);
    // Reads the fields of the kind from `content` and calls its operation.
    template <typename Element>
    void dispatch_kind(std::int32_t kind, const Element& content, const AString& xid);

    // The first failure of the latest message. Only for inspection: the library reads none of them.
    bool message_ok = true;
    AString error_xid;
    AString error_text;
    AFunction<XMLTree> message_tap;

private:
    template <typename Element>
    void dispatch_element(const Element& root);
    template <typename Element, typename Message>
    bool read_fields(const Element& content, Message& message, const AString& xid);
    template <typename Element, typename Message,
              void (APIParser::*Operation)(const AString&, const Message&)>
    void receive_reply(const Element& content, const AString& xid);
    template <typename Element, typename Message, void (APIParser::*Operation)(const Message&)>
    void receive_report(const Element& content, const AString& xid);
    void record_failure(const AString& xid, const AString& text);

    template <typename Element>
    struct Receivers;

    AString last_xid; // of the latest reply
};

} // namespace ZAVL3
