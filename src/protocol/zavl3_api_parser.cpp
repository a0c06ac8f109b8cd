#include "protocol/zavl3_api_parser.h"

namespace ZAVL3
{

template <typename Element, typename Message>
bool APIParser::read_fields(const Element& content, Message& message, const AString& xid)
{
    AString error;
    const bool good = message.read_message(content, &error);
    if (!good) {
        record_failure(xid, error);
    }
    return good;
}

template <typename Element, typename Message,
          void (APIParser::*Operation)(const AString&, const Message&)>
void APIParser::receive_reply(const Element& content, const AString& xid)
{
    Message message;
    if (read_fields(content, message, xid)) {
        (this->*Operation)(xid, message);
    }
}

template <typename Element, typename Message, void (APIParser::*Operation)(const Message&)>
void APIParser::receive_report(const Element& content, const AString& xid)
{
    Message message;
    if (read_fields(content, message, xid)) {
        (this->*Operation)(message);
    }
}

// By kind.
template <typename Element>
struct APIParser::Receivers {
    using Receive = void (APIParser::*)(const Element& content, const AString& xid);

    static constexpr Receive all[message_kind_count] = {
#define ZAVL3_RECEIVE_REPLY(name, ...)                                                             \
    &APIParser::receive_reply<Element, reply::name, &APIParser::on_reply_##name>,
#define ZAVL3_RECEIVE_REPORT(name, ...)                                                            \
    &APIParser::receive_report<Element, report::name, &APIParser::on_report_##name>,
        ZAVL3_REPLIES(ZAVL3_RECEIVE_REPLY) ZAVL3_REPORTS(ZAVL3_RECEIVE_REPORT)
#undef ZAVL3_RECEIVE_REPLY
#undef ZAVL3_RECEIVE_REPORT
    };
};

namespace
{

// Exact lookup from the tag of a message to its kind, among the replies or among the reports.
AStringTable make_name_table(std::int32_t first, std::int32_t end)
{
    static constexpr const AString& (*tags[message_kind_count])() = {
#define ZAVL3_TAG(name, ...) &tag<#name>,
        ZAVL3_REPLIES(ZAVL3_TAG) ZAVL3_REPORTS(ZAVL3_TAG)
#undef ZAVL3_TAG
    };
    AStringTable names;
    for (std::int32_t kind = first; kind < end; ++kind) {
        names.add(tags[kind](), kind);
    }
    return names;
}

} // namespace

void APIParser::dispatch_message(const XMLTree& tree)
{
    message_tap(tree);
    dispatch_element(tree);
}

void APIParser::dispatch_message(const XMLPlainElement& root)
{
    dispatch_element(root);
}

template <typename Element>
void APIParser::dispatch_element(const Element& root)
{
    message_ok = true;

    static const NoDestructor<AStringTable> reply_names(make_name_table(0, first_report_kind));
    static const NoDestructor<AStringTable> report_names(
        make_name_table(first_report_kind, message_kind_count));

    const bool is_reply = root.has_name(tag<"reply">());
    if (!is_reply && !root.has_name(tag<"report">())) {
        return record_failure({}, "XML Message is not a <reply> or <report> message");
    }
    AString error;
    if (is_reply && !read_xid(root, last_xid, &error)) {
        return record_failure({}, error);
    }
    const AString no_xid;
    const AString& xid = is_reply ? last_xid : no_xid;

    const AStringTable& names = is_reply ? *reply_names : *report_names;
    const Element* content = nullptr;
    std::int32_t kind = 0;
    const bool single = root.visit_children([&](const Element& child) {
        const AStringTable::Entry* found = names.find(child.get_name());
        if (found == nullptr) {
            return true;
        }
        kind = found->value;
        return std::exchange(content, &child) == nullptr;
    });
    if (!single) {
        return record_failure(xid, "XML Message contains multiple commands");
    }
    if (content == nullptr) {
        return record_failure(xid, "XML Message contains no commands");
    }
    dispatch_kind(kind, *content, xid);
}

template <typename Element>
void APIParser::dispatch_kind(std::int32_t kind, const Element& content, const AString& xid)
{
    if (kind < 0 || kind >= message_kind_count) {
        record_failure(xid, "Internal software error");
        assert_failed("zavl3_api_parser", 331, "kind < message_kind_count");
        return;
    }
    (this->*Receivers<Element>::all[kind])(content, xid);
}

template void APIParser::dispatch_kind(std::int32_t kind, const XMLTree& content,
                                       const AString& xid);

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
