#pragma once

#include "connection/name_list.h"
#include "foundation/afunctionext.h"
#include "foundation/bsem.h"
#include "protocol/zavl3_api.h"
#include "velto/velto.h"

#include <memory>

class VeltoConnObject;

// What a member waits for: shared between the member and the delegates that finish it, either of
// which may hold the last share.
class CBBaseObject
{
public:
    enum class Waiting { waits, does_not_wait };

    // Made with one share, that of the delegates.
    CBBaseObject(const ARef<VeltoConnObject>& owner, Waiting waiting);
    CBBaseObject(const CBBaseObject&) = delete;
    CBBaseObject& operator=(const CBBaseObject&) = delete;
    virtual ~CBBaseObject() = default;

    // The server's code is ignored: its text alone tells failures apart.
    void error_delegate(AString text, ZAVL3::ErrorCode code);
    // What every delegate does last. It drops all that it can before it wakes the member.
    void finish_callback();

    void add_share() { atomic_increment(reference_count); }
    void drop_share();

    ARef<VeltoConnObject> connection;     // until completion
    std::unique_ptr<BSem> done_semaphore; // null: nobody waits
    VeltoResult result_code = VELTO_RESULT_OK;
    AString result_text;
    std::atomic<std::uint32_t> reference_count{1};
};

// For commands that are answered with a plain ok.
class CBOkObject : public CBBaseObject
{
public:
    using CBBaseObject::CBBaseObject;

    void ok_delegate() { finish_callback(); }
};

// For commands that are answered with one reply of data, which it takes in.
template <typename Reply, typename Delegate = typename Reply::Delegate>
class CBReplyObject;

template <typename Reply, typename... Values>
class CBReplyObject<Reply, AFunction<Values...>> : public CBBaseObject
{
public:
    using CBBaseObject::CBBaseObject;

    void reply_delegate(Values... values)
    {
        reply.assign(std::move(values)...);
        finish_callback();
    }

    Reply reply;
};

using CBServerNameObject = CBReplyObject<ZAVL3::reply::computername>;
using CBVideoStandardObject = CBReplyObject<ZAVL3::reply::video_standard>;
using CBClipExistsObject = CBReplyObject<ZAVL3::reply::clipexists>;
using CBClipInfoObject = CBReplyObject<ZAVL3::reply::clipinfo>;
using CBDiskSpaceObject = CBReplyObject<ZAVL3::reply::disk_usage>;

// For commands that are answered with names, one a reply, and then an ok.
template <typename Command>
class CBNamesObject : public CBOkObject
{
public:
    using CBOkObject::CBOkObject;

    void name_delegate(AString name) { names.append(name); }

    NameListBuilder names; // for the worker, until completion
};

using CBClipIdsObject = CBNamesObject<ZAVL3::command::download_clipids>;
using CBDirectoryNamesObject = CBNamesObject<ZAVL3::command::download_directory_names>;
using CBPlaylistIdsObject = CBNamesObject<ZAVL3::command::download_listids>;

// A member's share of a completion object.
template <typename Callback>
class CBHolder
{
public:
    CBHolder(const ARef<VeltoConnObject>& connection, CBBaseObject::Waiting waiting)
        : callback(new Callback(connection, waiting))
    {
        callback->add_share();
    }
    CBHolder(const CBHolder&) = delete;
    CBHolder& operator=(const CBHolder&) = delete;
    ~CBHolder() { callback->drop_share(); }

    Callback* operator->() const { return callback; }

    // A delegate bound to the completion object, for `issue`.
    template <auto Member>
    auto delegate() const
    {
        return bind<Member>(static_cast<Callback*>(callback));
    }

    // Waits for the completion, if anybody does, without a limit. What a command comes to that
    // nobody waits for is not looked at again.
    VeltoResult outcome() const;

private:
    Callback* callback;
};
