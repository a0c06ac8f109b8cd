#include "protocol/zavl3_api_parser.h"

namespace ZAVL3
{

struct APIParser::Kind {
    const AString& (*tag)();
    void (APIParser::*receive)(XMLTree& content, const AString& xid);
};

template <typename Message>
bool APIParser::read_fields(Message& message, XMLTree& content, const AString& xid)
{
    AString error;
    const bool good = message.read_message(content, &error);
    if (!good) {
        record_failure(xid, error);
    }
    content = XMLTree();
    return good;
}

template <typename Message, void (APIParser::*Operation)(const AString&, const Message&)>
void APIParser::receive_reply(XMLTree& content, const AString& xid)
{
    Message message;
    if (read_fields(message, content, xid)) {
        (this->*Operation)(xid, message);
    }
}

template <typename Message, void (APIParser::*Operation)(const Message&)>
void APIParser::receive_report(XMLTree& content, const AString& xid)
{
    Message message;
    if (read_fields(message, content, xid)) {
        (this->*Operation)(message);
    }
}

constinit const APIParser::Kind APIParser::kinds[message_kind_count] = {
#define ZAVL3_REPLY_KIND(name, ...)                                                                \
    {&tag<#name>, &APIParser::receive_reply<reply::name, &APIParser::on_reply_##name>},
#define ZAVL3_REPORT_KIND(name, ...)                                                               \
    {&tag<#name>, &APIParser::receive_report<report::name, &APIParser::on_report_##name>},
    ZAVL3_REPLIES(ZAVL3_REPLY_KIND) ZAVL3_REPORTS(ZAVL3_REPORT_KIND)
#undef ZAVL3_REPLY_KIND
#undef ZAVL3_REPORT_KIND
};

namespace
{

// Exact lookup from the tag of a message to its kind, among the replies or among the reports.
template <typename Kind>
AStringTable make_name_table(const Kind* kinds, std::int32_t first, std::int32_t end)
{
    AStringTable names;
    for (std::int32_t kind = first; kind < end; ++kind) {
        names.add(kinds[kind].tag(), kind);
    }
    return names;
}

} // namespace

void APIParser::dispatch_message(XMLTree tree)
{
    message_tap(tree);
    message_ok = true;

    static const NoDestructor<AStringTable> reply_names(
        make_name_table(kinds, 0, first_report_kind));
    static const NoDestructor<AStringTable> report_names(
        make_name_table(kinds, first_report_kind, message_kind_count));

    const bool is_reply = tree.get_name() == tag<"reply">();
    if (!is_reply && !(tree.get_name() == tag<"report">())) {
        return record_failure({}, "XML Message is not a <reply> or <report> message");
    }
    AString xid;
    AString error;
    if (is_reply && !read_xid(tree, xid, &error)) {
        return record_failure({}, error);
    }

    const AStringTable& names = is_reply ? *reply_names : *report_names;
    XMLTree content;
    std::int32_t kind = 0;
    for (const auto* entry = tree.first_child(); entry != nullptr; entry = entry->next.get()) {
        const AStringTable::Entry* found = names.find(entry->value.get_name());
        if (found == nullptr) {
            continue;
        }
        if (!content.is_null) {
            return record_failure(xid, "XML Message contains multiple commands");
        }
        content = entry->value;
        kind = found->value;
    }
    if (content.is_null) {
        return record_failure(xid, "XML Message contains no commands");
    }
    tree = XMLTree();
    dispatch_kind(kind, std::move(content), xid);
}

void APIParser::dispatch_kind(std::int32_t kind, XMLTree content, const AString& xid)
{
    if (kind < 0 || kind >= message_kind_count) {
        record_failure(xid, "Internal software error");
        assert_failed("zavl3_api_parser", 331, "kind < message_kind_count");
        return;
    }
    (this->*kinds[kind].receive)(content, xid);
}

void APIParser::record_failure(const AString& xid, const AString& text)
{
    if (!message_ok) {
        return;
    }
    message_ok = false;
    error_xid = xid;
    error_text = text;
}

} // namespace ZAVL3
