/* Generated from interface/ by tools/interface/generate.py; change the description instead. */
/*
 * VeltoAPI64. Client of a broadcast video server: opens connections and drives channels.
 *
 * What holds for every function:
 *
 * 1. Handles. velto_connect gives a VeltoHandle: opaque, never 0, good in every thread of the
 *    process until velto_close. Clip records and lists of names have handles of their own, numbered
 *    with the same counter, which outlive their connection. A closed number is not given out again
 *    until the 32-bit counter has wrapped. An unknown or closed handle does no harm: functions that
 *    return a VeltoResult give VELTO_RESULT_INVALID_HANDLE, the others say what they do.
 *
 * 2. Buffers. All memory is the caller's. Nothing is allocated for the caller or has to be freed,
 *    and no pointer is kept after the call has returned. Pointers are not checked: a null input
 *    text counts as an empty text, but a null output pointer is a crash unless the function allows
 *    it.
 *
 * 3. Texts. Texts are UTF-16 in units of VeltoChar, ending in a 0 unit; VELTO_TEXT("news_open")
 *    makes such a literal on every system. Texts come out through a VeltoTextBuffer passed by
 *    value; its size counts 16-bit units, the terminator included. At most size - 1 units and a 0
 *    unit are written; a longer text is cut, never inside a surrogate pair, and the length it
 *    needed cannot be learnt. With size 0 nothing is written.
 *
 * 4. Results. A VeltoResult is one of VeltoResultCode. VELTO_RESULT_FAILED stands for everything
 *    the server refuses and for a missing link; the last-error text tells which. New codes are only
 *    appended.
 *
 * 5. Last error. Each call that returns a VeltoResult leaves a text for the calling thread, "OK"
 *    after a success, which velto_get_last_error copies; only velto_get_notification leaves the one
 *    before in place when it succeeds. The text belongs to the thread, not to the connection:
 *    threads that share a handle each see their own. Each code but VELTO_RESULT_FAILED has one
 *    text, named with the code. Functions that return no VeltoResult leave the text as it was. Some
 *    functions leave "OK" when they fail, and say so: look at the result first.
 *
 * 6. Threads. Any function may be called from any thread at any time, also on one handle from
 *    several threads at once: their commands do not wait for each other, apart from the moment of
 *    writing. The library never calls into the application. velto_close is safe while other threads
 *    are in calls on the handle; these calls finish as if it were open.
 *
 * 7. Blocked calls. There is no time limit but where a function tells of one. A call that waits for
 *    the server returns when the reply arrives or the link is lost, whichever is first, and fails
 *    at once while the link is down. A server that keeps the link up and never answers blocks the
 *    caller for ever; velto_close on another thread does not end such a call. The library restores
 *    a lost link by itself and repeats no command.
 *
 * 8. Arguments. Numbers are not checked: what an argument does outside its range stands with it,
 *    one without a range is sent unchanged, and whether a clip, a channel or a position exists is
 *    for the server to say. Positions, distances and durations count fields of video. Where a
 *    function has numbered variants the fullest is described; the lesser ones send fewer fields and
 *    leave the rest to the server.
 *
 * 9. Commands. A command asks the server to do something. VELTO_RESULT_OK means that the server has
 *    accepted it, not that its effect is there yet. VELTO_RESULT_OK: accepted. VELTO_RESULT_FAILED:
 *    refused (text: the server's message), or the link is down or was lost (text "Failing all
 *    outstanding commands"). VELTO_RESULT_INVALID_HANDLE: the handle is unknown. It waits for the
 *    reply (rule 7), unless velto_synchronous has chosen VELTO_COMMANDS_DO_NOT_WAIT; then it
 *    succeeds once it is written, and what becomes of it is never reported.
 *
 * 10. Questions. A question brings data back from the server, which is asked on every call.
 *     VELTO_RESULT_OK: answered. VELTO_RESULT_FAILED: refused, or the link is down or was lost
 *     (text "OK"). VELTO_RESULT_INVALID_HANDLE: the handle is unknown. So only the result tells of
 *     a failure, not the text. The output is written on success only. It waits for the reply
 *     (rule 7), whatever velto_synchronous has chosen.
 *
 * 11. Getters. A getter gives what the server has last reported of a channel. The reports come by
 *     themselves once they have been asked for, so that a channel may be read at any rate without
 *     traffic; see velto_get_notification for following one without polling. VELTO_RESULT_OK:
 *     given. VELTO_RESULT_FAILED: the channel is not tracked (text "OK"), or refused, or the link
 *     is down or was lost at the first call (text "OK"), or no report came in time (text "OK").
 *     VELTO_RESULT_INVALID_HANDLE: the handle is unknown. So only the result tells of a failure,
 *     not the text; the next call tries again. What the server has left out of a channel's
 *     information is given as 0. Only the first VELTO_TRACKED_CHANNELS channels can be read, though
 *     the others can be driven. An output may be null only where that is said. The output is
 *     written on success only. The first call for a kind of report on a channel asks the server for
 *     it, whatever velto_synchronous has chosen, and waits for the reply (rule 7) and then for the
 *     first report, 5 to 6 seconds at most and keeping a processor busy. Of one kind are clip
 *     length, repeat, angle, EE and pre-cues; status, clip, position and speed are one each. Once a
 *     call has succeeded, later ones never wait: they give the last value, however old, also while
 *     the link is down.
 *
 * 12. Clip records. velto_open_clip_metadata fetches all that the server knows of a clip into a
 *     record, which the readers give without traffic, also when the connection has been closed. The
 *     record is a snapshot: only the writers change it, each on the server first and then in this
 *     record. What others change shows in a record that is opened later;
 *     velto_track_change_changed_clip tells of it. VELTO_RESULT_OK: given.
 *     VELTO_RESULT_INVALID_HANDLE: the record is unknown. What the server has left out of the
 *     record is given as 0 or the empty text. The output is written on success only. Does not
 *     block.
 *
 * 13. Writers of clip records. A writer changes one thing of the clip on the server; when that has
 *     succeeded the record says so too. Whether the clip may be written to is for the server to
 *     say. VELTO_RESULT_OK: changed. VELTO_RESULT_FAILED: refused (text: the server's message), or
 *     the link is down or was lost (text "Failing all outstanding commands").
 *     VELTO_RESULT_INVALID_HANDLE: the record or its connection has been closed, during the call
 *     too. After a failure the record is as it was. It waits for the reply (rule 7), unless
 *     velto_synchronous has chosen VELTO_COMMANDS_DO_NOT_WAIT; then the record changes at once, and
 *     what becomes of the command is never reported.
 *
 * 14. Lists of names. A list of names is a snapshot of what the server has. Its names are taken one
 *     by one, in the order of the server, until the empty text comes. The list belongs to no
 *     connection and to no kind: any of the functions that take names or free lists serves all
 *     lists, the keys of velto_clip_open_metakeys too. VELTO_RESULT_OK: also when there are none.
 *     VELTO_RESULT_FAILED: refused (text: the server's message), or the link is down or was lost
 *     (text "Failing all outstanding commands"). VELTO_RESULT_INVALID_HANDLE: the handle is
 *     unknown. With a null output no list is made. The output is written on success only. It waits
 *     for all names (rule 7), whatever velto_synchronous has chosen.
 *
 * 15. Changes. Once changes are tracked the connection collects the names of what has been created,
 *     changed or deleted, from whichever client, and goes on over a lost link by itself; only what
 *     happens while the link is down is not seen. The application takes the names one by one, in
 *     the order of their characters and not of events, until the empty text comes. Each name stands
 *     for what has become of it since it was last taken: what was changed after it was created is
 *     only added, what was deleted only deleted. Names are kept until they are taken.
 *     VELTO_RESULT_OK: tracked. VELTO_RESULT_FAILED: refused, or the link is down or was lost at
 *     the first call (text "OK"). VELTO_RESULT_INVALID_HANDLE: the handle is unknown. So only the
 *     result tells of a failure, not the text; the next call tries again. The output is written on
 *     success only. The first call for clips or for directories asks the server for their changes,
 *     whatever velto_synchronous has chosen, and waits for the reply (rule 7); once that has
 *     succeeded later calls do not block.
 *
 * 16. Writes to a store. A write waits inside the store until the server has confirmed it. A thread
 *     of the store sends one at a time, all that set before all that erase, otherwise in no order;
 *     one that fails, refused or without a link, is tried again every 200 ms for as long as the
 *     store is open, and those behind it wait. velto_kvstore_flush tells when all have arrived. Of
 *     several writes to one key only the latest counts. With VELTO_COMMANDS_DO_NOT_WAIT on the
 *     connection a write counts as confirmed once it is sent, and one that is refused is lost
 *     without a word. VELTO_RESULT_OK: taken. VELTO_RESULT_INVALID_HANDLE: the handle is unknown.
 *     VELTO_RESULT_READ_ONLY: the store was opened with VELTO_STORE_READ. It does not block,
 *     whatever the link is doing.
 */

#ifndef VELTO_VELTO_H
#define VELTO_VELTO_H

#include <stddef.h>
#include <stdint.h>
#if !defined(__cplusplus) && !defined(_WIN32)
#include <uchar.h>
#endif

#ifdef __cplusplus
extern "C" {
#endif

/** One UTF-16 unit of a text. */
#ifdef _WIN32
typedef wchar_t VeltoChar;
#define VELTO_TEXT_UNITS(literal) L##literal
#define VELTO_EXPORTED __declspec(dllexport)
#define VELTO_IMPORTED __declspec(dllimport)
#else
typedef char16_t VeltoChar;
#define VELTO_TEXT_UNITS(literal) u##literal
#define VELTO_EXPORTED __attribute__((visibility("default")))
#define VELTO_IMPORTED VELTO_EXPORTED
#endif
/** A text of VeltoChar units from a literal: VELTO_TEXT("news_open"). */
#define VELTO_TEXT(literal) VELTO_TEXT_UNITS(literal)

/* VELTO_BUILDING_LIBRARY is for the library itself, VELTO_STATIC for what links its objects. */
#if defined(VELTO_STATIC)
#define VELTO_API
#elif defined(VELTO_BUILDING_LIBRARY)
#define VELTO_API VELTO_EXPORTED
#else
#define VELTO_API VELTO_IMPORTED
#endif

/** An open connection; never 0. */
typedef uint32_t VeltoHandle;

/** An open clip record; never 0. */
typedef uint32_t VeltoRecordHandle;

/** An open list of names; never 0. */
typedef uint32_t VeltoListHandle;

/** A VeltoResultCode. */
typedef int32_t VeltoResult;

/** An open key-value store; never 0. Numbered apart from connections. */
typedef uint32_t VeltoStoreHandle;

/** Where a text is to be written; passed by value. See rule 3. */
typedef struct VeltoTextBuffer {
    VeltoChar* text; /**< The caller's memory. */
    uint32_t size;   /**< Its capacity in units, the terminating 0 included. */
} VeltoTextBuffer;

/** Values of a VeltoResult. */
enum VeltoResultCode {
    VELTO_RESULT_OK = 0,               /**< "OK": success. */
    VELTO_RESULT_UNUSED_1 = 1,         /**< Never returned. */
    VELTO_RESULT_FAILED = 2,           /**< Refused, or no link; the text tells which. */
    VELTO_RESULT_INVALID_HANDLE = 3,   /**< "Invalid handle": unknown or closed handle. */
    VELTO_RESULT_READ_ONLY = 4,        /**< "Read only": write to a store opened for reading. */
    VELTO_RESULT_TIMEOUT = 5,          /**< "Timeout": a wait with a limit ran out. */
    VELTO_RESULT_INVALID_ARGUMENT = 6, /**< "Invalid argument": bad argument to open a store. */
    VELTO_RESULT_WRITE_ONLY = 7,       /**< "Write only": read from a store opened for writing. */
};

/** State of a connection's link. */
enum VeltoLink {
    VELTO_LINK_DOWN = 0, /**< No link; commands fail at once. */
    VELTO_LINK_UP = 1,   /**< Commands reach the server. */
};

/** Whether commands wait for their replies; see velto_synchronous. */
enum VeltoWaiting {
    VELTO_COMMANDS_WAIT = 0,        /**< The state after velto_connect. */
    VELTO_COMMANDS_DO_NOT_WAIT = 1, /**< Commands return once they are written. */
};

/** A channel of the server. */
enum VeltoChannel {
    VELTO_CHANNEL_A = 0,  /**< Channel A. */
    VELTO_CHANNEL_B = 1,  /**< Channel B. */
    VELTO_CHANNEL_C = 2,  /**< Channel C. */
    VELTO_CHANNEL_D = 3,  /**< Channel D. */
    VELTO_CHANNEL_E = 4,  /**< Channel E. */
    VELTO_CHANNEL_F = 5,  /**< Channel F. */
    VELTO_CHANNEL_G = 6,  /**< Channel G. */
    VELTO_CHANNEL_H = 7,  /**< Channel H, the last that is tracked, or in a mask. */
    VELTO_CHANNEL_I = 8,  /**< Channel I. */
    VELTO_CHANNEL_J = 9,  /**< Channel J. */
    VELTO_CHANNEL_K = 10, /**< Channel K. */
    VELTO_CHANNEL_L = 11, /**< Channel L. */
};

/** Video standard of the server, as velto_video_standard gives it. */
enum VeltoVideoStandard {
    VELTO_VIDEO_STANDARD_1080_60I = 0,    /**< 1080 lines, 60 Hz, interlaced; any other too. */
    VELTO_VIDEO_STANDARD_1080_59_94I = 1, /**< 1080 lines, 59.94 Hz, interlaced. */
    VELTO_VIDEO_STANDARD_1080_50I = 2,    /**< 1080 lines, 50 Hz, interlaced. */
    VELTO_VIDEO_STANDARD_1080_48I = 3,    /**< 1080 lines, 48 Hz, interlaced. */
    VELTO_VIDEO_STANDARD_1080_47_95I = 4, /**< 1080 lines, 47.95 Hz, interlaced. */
    VELTO_VIDEO_STANDARD_720_60P = 5,     /**< 720 lines, 60 Hz, progressive. */
    VELTO_VIDEO_STANDARD_720_59_94P = 6,  /**< 720 lines, 59.94 Hz, progressive. */
    VELTO_VIDEO_STANDARD_720_50P = 7,     /**< 720 lines, 50 Hz, progressive. */
    VELTO_VIDEO_STANDARD_625_50I = 8,     /**< 625 lines, 50 Hz, interlaced. */
    VELTO_VIDEO_STANDARD_525_59_94I = 9,  /**< 525 lines, 59.94 Hz, interlaced. */
};

/** Field rate of the server in hertz, as velto_video_frequency gives it. */
enum VeltoVideoFrequency {
    VELTO_VIDEO_FREQUENCY_60 = 0,    /**< 60 Hz; also any not listed. */
    VELTO_VIDEO_FREQUENCY_59_94 = 1, /**< 59.94 Hz. */
    VELTO_VIDEO_FREQUENCY_50 = 2,    /**< 50 Hz. */
    VELTO_VIDEO_FREQUENCY_48 = 3,    /**< 48 Hz. */
    VELTO_VIDEO_FREQUENCY_47_95 = 4, /**< 47.95 Hz. */
};

/** Lines and scan of the server, as velto_video_resolution gives them. */
enum VeltoVideoResolution {
    VELTO_VIDEO_RESOLUTION_1080I = 0, /**< 1080 lines, interlaced; also any not listed. */
    VELTO_VIDEO_RESOLUTION_720P = 1,  /**< 720 lines, progressive. */
    VELTO_VIDEO_RESOLUTION_625I = 2,  /**< 625 lines, interlaced. */
    VELTO_VIDEO_RESOLUTION_525I = 3,  /**< 525 lines, interlaced. */
};

/** What a channel does, as velto_channel_status gives it. */
enum VeltoChannelStatus {
    VELTO_CHANNEL_STATUS_NONE = 0,    /**< No channel; also time delay, and all not listed. */
    VELTO_CHANNEL_STATUS_STOPPED = 1, /**< Stopped, idle or on a test pattern. */
    VELTO_CHANNEL_STATUS_CUEING = 2,  /**< Getting ready. */
    VELTO_CHANNEL_STATUS_PLAY = 3,    /**< At any speed. */
    VELTO_CHANNEL_STATUS_RECORD = 4,  /**< Recording or inserting. */
};

/** Whether a list is on a channel. */
enum VeltoListLoaded {
    VELTO_LIST_NOT_LOADED = 0, /**< None. */
    VELTO_LIST_LOADED = 1,     /**< One is. */
};

/** What of a channel has changed, as velto_get_notification gives it. */
enum VeltoNotice {
    VELTO_NOTICE_NONE = 0,          /**< Nothing, in the time given. */
    VELTO_NOTICE_CLIP = 1,          /**< velto_channel_clip. */
    VELTO_NOTICE_INFORMATION_2 = 2, /**< With 4, 6, 8 and 9. */
    VELTO_NOTICE_POSITION = 3,      /**< velto_channel_position. */
    VELTO_NOTICE_INFORMATION_4 = 4, /**< As 2. */
    VELTO_NOTICE_STATUS = 5,        /**< velto_channel_status. */
    VELTO_NOTICE_INFORMATION_6 = 6, /**< As 2. */
    VELTO_NOTICE_SPEED = 7,         /**< velto_channel_speed. */
    VELTO_NOTICE_INFORMATION_8 = 8, /**< As 2. */
    VELTO_NOTICE_INFORMATION_9 = 9, /**< As 2. */
};

/** How a channel is asked to carry a command out. */
enum VeltoLatency {
    VELTO_LATENCY_NORMAL = 0,  /**< As the server does by itself. */
    VELTO_LATENCY_MINIMUM = 1, /**< As fast as it can. */
};

/** How a clip repeats. */
enum VeltoRepeat {
    VELTO_REPEAT_OFF = 0,          /**< Once. */
    VELTO_REPEAT_LOOP = 1,         /**< Over and over. */
    VELTO_REPEAT_LOOP_TO = 2,      /**< The loop of the clip, from its beginning. */
    VELTO_REPEAT_PING_PONG = 3,    /**< Forwards and backwards. */
    VELTO_REPEAT_PING_PONG_TO = 4, /**< The same with the loop of the clip. */
};

/** Whether something is so. */
enum VeltoAnswer {
    VELTO_NO = 0,  /**< It is not. */
    VELTO_YES = 1, /**< It is. */
};

/** Tracks of a clip. */
enum VeltoTrackBits {
    VELTO_TRACK_NONE = 0,  /**< No track. */
    VELTO_TRACK_VIDEO = 1, /**< The picture. */
    VELTO_TRACK_KEY = 2,   /**< The key signal. */
    VELTO_TRACK_AUDIO = 4, /**< The sound. */
    VELTO_TRACK_ALL = 7,   /**< All three. */
};

/** How the pictures of a clip are played at other than normal speed. */
enum VeltoPlayback {
    VELTO_PLAYBACK_FIELD = 0, /**< Also automatic, and all not listed. */
    VELTO_PLAYBACK_F12 = 1,   /**< Both fields of a frame. */
};

/** Where the timecode of a clip comes from. */
enum VeltoTimecodeSource {
    VELTO_TIMECODE_ZERO_BASED = 0,      /**< Counted from 0. */
    VELTO_TIMECODE_STRIPED = 1,         /**< velto_set_clip_timecode_stripe. */
    VELTO_TIMECODE_RECORDED = 2,        /**< Recorded with the clip. */
    VELTO_TIMECODE_RECORDED_STRIPE = 3, /**< Counted from the first recorded. */
};

/** Whether a timecode leaves out numbers to keep up with the clock. */
enum VeltoDropFrame {
    VELTO_DROP_FRAME = 0,     /**< It leaves numbers out. */
    VELTO_NON_DROP_FRAME = 1, /**< It counts every frame. */
};

/** What makes a pre-cued clip follow the present one. */
enum VeltoPrecueCondition {
    VELTO_PRECUE_EXPLICIT_SWITCH = 0, /**< velto_precue_activate1. */
    VELTO_PRECUE_PREVIOUS_STOPS = 1,  /**< When that stops. */
    VELTO_PRECUE_IMMEDIATE = 2,       /**< At once. */
    VELTO_PRECUE_END_OF_CLIP = 3,     /**< When that has come to its end. */
};

/** How one picture gives way to the next. */
enum VeltoTransition {
    VELTO_TRANSITION_CUT = 0,      /**< At once. */
    VELTO_TRANSITION_DISSOLVE = 1, /**< Over a duration. */
};

/** Which speed what is taken starts with. */
enum VeltoFollow {
    VELTO_FOLLOW_NONE = 0,   /**< Its own. */
    VELTO_FOLLOW_SMART = 1,  /**< As the server sees fit. */
    VELTO_FOLLOW_ONE_X = 2,  /**< Normal play. */
    VELTO_FOLLOW_FOLLOW = 3, /**< That of what was on before. */
};

/** Tracks to be edited or monitored. */
enum VeltoEditBits {
    VELTO_EDIT_NONE = 0,  /**< No track. */
    VELTO_EDIT_VIDEO = 1, /**< The picture. */
    VELTO_EDIT_KEY = 2,   /**< The key signal. */
    VELTO_EDIT_AUDIO = 4, /**< All audio tracks. */
    VELTO_EDIT_ALL = 7,   /**< All of them. */
};

/** Who chooses between input and playback on a channel's output. */
enum VeltoMonitor {
    VELTO_MONITOR_AUTOMATIC = 0, /**< The server. */
    VELTO_MONITOR_MANUAL = 1,    /**< The application. */
};

/** What a key-value store is opened for. */
enum VeltoStoreMode {
    VELTO_STORE_READ = 1,       /**< To follow the changes. */
    VELTO_STORE_READ_WRITE = 2, /**< Both. */
    VELTO_STORE_WRITE = 3,      /**< To set and erase. */
};

/** What has become of a key. */
enum VeltoStoreChange {
    VELTO_STORE_CHANGE_SET = 1,    /**< It has this value now. */
    VELTO_STORE_CHANGE_ERASED = 2, /**< It is gone. */
};

/** The address a.b.c.d in the form that velto_connect takes. */
#define VELTO_IPV4(a, b, c, d)                                                                     \
    (UINT32_C(0x1000000) * (a) + UINT32_C(0x10000) * (b) + UINT32_C(0x100) * (c) + (d))

/** The bit of a channel in a channel mask, VELTO_CHANNEL_A to VELTO_CHANNEL_H. */
#define VELTO_CHANNEL_BIT(channel) (UINT32_C(1) << (channel))

/** The channels that can be read, VELTO_CHANNEL_A to VELTO_CHANNEL_H. */
#define VELTO_TRACKED_CHANNELS 8

/** Normal forward play. */
#define VELTO_SPEED_NORMAL 1.0

/** Speeds are held between this and its negative. */
#define VELTO_SPEED_LIMIT 200.0

/* ---- Connection ------------------------------------------------------------------------------ */

/**
 * Opens a connection to a server, which the library keeps up from then on until velto_close.
 * Each call makes a connection of its own, also to the same server. The TCP port is 8913. While the
 * link is down a connection attempt is made every 100 ms, for ever; see velto_connected. Does not
 * wait for the link. Leaves the last-error text as it was.
 *
 * @param address  IPv4 address in host byte order, as VELTO_IPV4 makes it.
 * @return The new handle, never 0. A server that cannot be reached is no error.
 */
VELTO_API VeltoHandle velto_connect(uint32_t address);

/**
 * Waits until the link is up.
 * With an unknown handle, or one that another thread closes meanwhile, it never returns. Where that
 * can happen, poll velto_connected instead. Looks once a millisecond, without a time limit. Leaves
 * the last-error text as it was.
 *
 * @param handle  Connection.
 * @return VELTO_LINK_UP.
 */
VELTO_API uint32_t velto_wait_until_connected(VeltoHandle handle);

/**
 * Tells whether the link is up now.
 * Does not block. Leaves the last-error text as it was.
 *
 * @param handle  Connection.
 * @return VELTO_LINK_UP or VELTO_LINK_DOWN; the latter also for an unknown handle.
 */
VELTO_API uint32_t velto_connected(VeltoHandle handle);

/**
 * Chooses whether commands on a connection wait for their replies.
 * Mind the sense: velto_synchronous(handle, 1) means do NOT wait. The name and the number are kept
 * for the programs that rely on them; the constants say what is meant. The choice holds for all
 * threads and for commands only: functions that bring data back wait in any case. Call velto_sync
 * before velto_close when commands were not waited for. An unknown handle is ignored. Does not
 * block. Leaves the last-error text as it was.
 *
 * @param handle  Connection.
 * @param value   What commands do, a VeltoWaiting; any number but 0 means not to wait.
 */
VELTO_API void velto_synchronous(VeltoHandle handle, uint32_t value);

/**
 * Waits until no command of the connection is outstanding, from whichever thread it came.
 * It tells nothing about how the commands ended. With an unknown handle it returns at once. Looks
 * once a millisecond, without a time limit; the loss of the link ends all commands and so the wait.
 * Leaves the last-error text as it was.
 *
 * @param handle  Connection.
 */
VELTO_API void velto_sync(VeltoHandle handle);

/**
 * Copies the calling thread's last-error text (rule 5).
 * Does not block. Leaves the last-error text as it was.
 *
 * @param[out] buffer  Receives the text; empty on a thread that has left none yet.
 */
VELTO_API void velto_get_last_error(VeltoTextBuffer buffer);

/**
 * Closes a connection; the handle is unknown from then on.
 * An unknown handle is ignored, so that closing twice does no harm. Calls of other threads on the
 * handle finish normally, and the last of them takes the connection down in its place. Waits for
 * the connection's own thread to end: up to about a second, or as long as a connection attempt
 * under way takes. All calls of other threads that look a handle up wait meanwhile. Leaves the
 * last-error text as it was.
 *
 * @param handle  Connection.
 */
VELTO_API void velto_close(VeltoHandle handle);

/* ---- Server ---------------------------------------------------------------------------------- */

/**
 * Asks the server for its name.
 *
 * @param handle     Connection.
 * @param[out] name  Receives the name.
 * @return 0, 2 or 3 of VeltoResultCode, as any question (rule 10).
 */
VELTO_API VeltoResult velto_server_name(VeltoHandle handle, VeltoTextBuffer name);

/**
 * Asks the server for its video standard.
 *
 * @param handle         Connection.
 * @param[out] standard  Receives the standard, a VeltoVideoStandard; a standard without a number
 *     here gives 0.
 * @return 0, 2 or 3 of VeltoResultCode, as any question (rule 10).
 */
VELTO_API VeltoResult velto_video_standard(VeltoHandle handle, uint32_t* standard);

/**
 * Asks the server for its field rate.
 *
 * @param handle          Connection.
 * @param[out] frequency  Receives the rate, a VeltoVideoFrequency; a rate without a number here
 *     gives 0.
 * @return 0, 2 or 3 of VeltoResultCode, as any question (rule 10).
 */
VELTO_API VeltoResult velto_video_frequency(VeltoHandle handle, uint32_t* frequency);

/**
 * Asks the server for its lines and scan.
 *
 * @param handle           Connection.
 * @param[out] resolution  Receives the resolution, a VeltoVideoResolution; a resolution without a
 *     number here, 4K say, gives 0.
 * @return 0, 2 or 3 of VeltoResultCode, as any question (rule 10).
 */
VELTO_API VeltoResult velto_video_resolution(VeltoHandle handle, uint32_t* resolution);

/**
 * Asks the server for its disk space.
 *
 * @param handle           Connection.
 * @param[out] total       Receives the size, in bytes.
 * @param[out] available   Receives what is free, in bytes.
 * @param[out] field_size  Receives the size of a field of video, in bytes.
 * @return 0, 2 or 3 of VeltoResultCode, as any question (rule 10).
 */
VELTO_API VeltoResult velto_disk_usage1(VeltoHandle handle, uint64_t* total, uint64_t* available,
                                        uint32_t* field_size);

/**
 * Asks the server how much video its disks hold.
 * Both are whole frames, so even, but for 4294967295, to which a larger number is cut. It waits for
 * the reply (rule 7), whatever velto_synchronous has chosen. The outputs are written on success
 * only.
 *
 * @param handle          Connection.
 * @param[out] total      Receives the size, in fields.
 * @param[out] available  Receives what is free, in fields.
 * @return VELTO_RESULT_OK: answered. VELTO_RESULT_FAILED: refused, or the link is down or was lost
 *     (text "OK"), or the server gives a field the size 0 (text "Internal software error").
 *     VELTO_RESULT_INVALID_HANDLE: the handle is unknown.
 */
VELTO_API VeltoResult velto_disk_usage2(VeltoHandle handle, uint32_t* total, uint32_t* available);

/* ---- Channel state --------------------------------------------------------------------------- */

/**
 * Gives what a channel does.
 *
 * @param handle       Connection.
 * @param channel      Channel, a VeltoChannel; any but A to H fails.
 * @param[out] status  Receives the state, a VeltoChannelStatus.
 * @return 0, 2 or 3 of VeltoResultCode, as any getter (rule 11).
 */
VELTO_API VeltoResult velto_channel_status(VeltoHandle handle, uint32_t channel, uint32_t* status);

/**
 * Gives the clip that is loaded on a channel.
 *
 * @param handle     Connection.
 * @param channel    Channel, a VeltoChannel; any but A to H fails.
 * @param[out] clip  Receives its name.
 * @return 0, 2 or 3 of VeltoResultCode, as any getter (rule 11).
 */
VELTO_API VeltoResult velto_channel_clip(VeltoHandle handle, uint32_t channel,
                                         VeltoTextBuffer clip);

/**
 * Gives the length of the clip on a channel.
 *
 * @param handle       Connection.
 * @param channel      Channel, a VeltoChannel; any but A to H fails.
 * @param[out] length  Receives the length, in fields.
 * @return 0, 2 or 3 of VeltoResultCode, as any getter (rule 11).
 */
VELTO_API VeltoResult velto_channel_clip_length(VeltoHandle handle, uint32_t channel,
                                                uint32_t* length);

/**
 * Gives the position of a channel in its clip.
 *
 * @param handle         Connection.
 * @param channel        Channel, a VeltoChannel; any but A to H fails.
 * @param[out] position  Receives the position, in fields.
 * @return 0, 2 or 3 of VeltoResultCode, as any getter (rule 11).
 */
VELTO_API VeltoResult velto_channel_position(VeltoHandle handle, uint32_t channel,
                                             uint32_t* position);

/**
 * Gives the speed of a channel; a negative one is backwards.
 *
 * @param handle      Connection.
 * @param channel     Channel, a VeltoChannel; any but A to H fails.
 * @param[out] speed  Receives it, in times normal play.
 * @return 0, 2 or 3 of VeltoResultCode, as any getter (rule 11).
 */
VELTO_API VeltoResult velto_channel_speed(VeltoHandle handle, uint32_t channel, double* speed);

/**
 * Gives how the clip on a channel repeats.
 *
 * @param handle       Connection.
 * @param channel      Channel, a VeltoChannel; any but A to H fails.
 * @param[out] repeat  Receives the repeat mode, a VeltoRepeat; 0 if none of these.
 * @return 0, 2 or 3 of VeltoResultCode, as any getter (rule 11).
 */
VELTO_API VeltoResult velto_channel_repeat(VeltoHandle handle, uint32_t channel, uint32_t* repeat);

/**
 * Gives the camera angle that a channel shows, and how many its clip has.
 * Either output may be null.
 *
 * @param handle      Connection.
 * @param channel     Channel, a VeltoChannel; any but A to H fails.
 * @param[out] angle  Receives the angle.
 * @param[out] count  Receives the number; 1 if the server has left it out.
 * @return 0, 2 or 3 of VeltoResultCode, as any getter (rule 11).
 */
VELTO_API VeltoResult velto_channel_angle(VeltoHandle handle, uint32_t channel, uint32_t* angle,
                                          uint32_t* count);

/**
 * Gives which tracks of a channel monitor their input, and who chooses that.
 * Either output may be null.
 *
 * @param handle       Connection.
 * @param channel      Channel, a VeltoChannel; any but A to H fails.
 * @param[out] bits    Receives them, VeltoEditBits combined.
 * @param[out] manual  Receives who, a VeltoMonitor.
 * @return 0, 2 or 3 of VeltoResultCode, as any getter (rule 11).
 */
VELTO_API VeltoResult velto_channel_ee(VeltoHandle handle, uint32_t channel, uint32_t* bits,
                                       uint32_t* manual);

/**
 * Gives how many clips are pre-cued on a channel.
 *
 * @param handle      Connection.
 * @param channel     Channel, a VeltoChannel; any but A to H fails.
 * @param[out] count  Receives the number.
 * @return 0, 2 or 3 of VeltoResultCode, as any getter (rule 11).
 */
VELTO_API VeltoResult velto_channel_precue_count(VeltoHandle handle, uint32_t channel,
                                                 uint32_t* count);

/**
 * Would give the number of elements of the list on a channel, but always fails.
 * The output may be null. Asks the server on every call and waits for the reply (rule 7), and then
 * in vain for a report: 5 to 6 seconds, keeping a processor busy. A channel that is not tracked, a
 * refusal and a link that is down end it sooner. The output is never written.
 *
 * @param handle      Connection.
 * @param channel     Channel, a VeltoChannel; any but A to H fails.
 * @param[out] count  Would receive the number.
 * @return VELTO_RESULT_FAILED: always, with a known handle (text "OK").
 *     VELTO_RESULT_INVALID_HANDLE: the handle is unknown.
 */
VELTO_API VeltoResult velto_playlist_count(VeltoHandle handle, uint32_t channel, uint32_t* count);

/**
 * Would give whether a list is on a channel, but always fails.
 * The output may be null. Asks the server on every call and waits for the reply (rule 7), and then
 * in vain for a report: 5 to 6 seconds, keeping a processor busy. A channel that is not tracked, a
 * refusal and a link that is down end it sooner. The output is never written.
 *
 * @param handle       Connection.
 * @param channel      Channel, a VeltoChannel; any but A to H fails.
 * @param[out] loaded  Would receive whether there is one, a VeltoListLoaded.
 * @return VELTO_RESULT_FAILED: always, with a known handle (text "OK").
 *     VELTO_RESULT_INVALID_HANDLE: the handle is unknown.
 */
VELTO_API VeltoResult velto_playlist_status(VeltoHandle handle, uint32_t channel, uint32_t* loaded);

/* ---- Notices --------------------------------------------------------------------------------- */

/**
 * Takes the oldest notice that something of some channel has changed, or waits for one.
 * Either output may be null; the notice is taken all the same. A notice carries no value: read it
 * with the getter. The server reports only what a getter has asked for, so call each getter once on
 * each channel to be followed; their first reports are the first notices. Kinds 2, 4, 6, 8 and 9
 * rise together, in this order, with every report of a channel's information (clip length, repeat,
 * angle, EE, pre-cues), and mean the same. Each kind is pending at most once on each channel,
 * however fast it changes, and keeps its place. The queue belongs to the connection and outlasts
 * the loss of the link, of which it does not tell, nor of lists. Each notice goes to one caller
 * only. On success the last-error text stays as it was. Waits timeout_ms at most; velto_close on
 * another thread does not end the wait. With an unknown handle the outputs are not written.
 *
 * @param handle        Connection.
 * @param timeout_ms    The longest wait, in milliseconds; 0 only looks, and no number means for
 *     ever.
 * @param[out] kind     Receives what has changed, a VeltoNotice.
 * @param[out] channel  Receives which, a VeltoChannel; 0 without a notice.
 * @return VELTO_RESULT_OK: whether or not there was a notice. VELTO_RESULT_INVALID_HANDLE: the
 *     handle is unknown.
 */
VELTO_API VeltoResult velto_get_notification(VeltoHandle handle, uint32_t timeout_ms,
                                             uint32_t* kind, uint32_t* channel);

/* ---- Play and stop --------------------------------------------------------------------------- */

/**
 * Plays what is loaded on a channel.
 * Names the normal layer, which the lesser variants leave to the server.
 *
 * @param handle       Connection.
 * @param channel      Channel, a VeltoChannel; any other number addresses channel A.
 * @param speed        Speed, in times normal forward play: -200.0 to 200.0, in steps of 1/65536 cut
 *     towards 0; negative is backwards; held at the limits, NaN is sent as 0.
 * @param min_latency  Response, a VeltoLatency; any number but VELTO_LATENCY_MINIMUM is normal.
 * @return 0, 2 or 3 of VeltoResultCode, as any command (rule 9).
 */
VELTO_API VeltoResult velto_cmd_play3(VeltoHandle handle, uint32_t channel, double speed,
                                      uint32_t min_latency);

/** velto_cmd_play3 without min_latency. */
VELTO_API VeltoResult velto_cmd_play2(VeltoHandle handle, uint32_t channel, double speed);

/** velto_cmd_play3 without speed and min_latency. */
VELTO_API VeltoResult velto_cmd_play1(VeltoHandle handle, uint32_t channel);

/**
 * Stops a channel.
 * Names the normal layer, which velto_cmd_stop1 leaves to the server.
 *
 * @param handle       Connection.
 * @param channel      Channel, a VeltoChannel; any other number addresses channel A.
 * @param min_latency  Response, a VeltoLatency; any number but VELTO_LATENCY_MINIMUM is normal.
 * @return 0, 2 or 3 of VeltoResultCode, as any command (rule 9).
 */
VELTO_API VeltoResult velto_cmd_stop2(VeltoHandle handle, uint32_t channel, uint32_t min_latency);

/** velto_cmd_stop2 without min_latency. */
VELTO_API VeltoResult velto_cmd_stop1(VeltoHandle handle, uint32_t channel);

/**
 * Plays several channels together.
 *
 * @param handle       Connection.
 * @param mask         Channels: VELTO_CHANNEL_BIT of each, A to H; bits 8 and up are ignored; 0 is
 *     sent as a gang of none.
 * @param speed        Speed, in times normal forward play: -200.0 to 200.0, in steps of 1/65536 cut
 *     towards 0; negative is backwards; held at the limits, NaN is sent as 0.
 * @param min_latency  Response, a VeltoLatency; any number but VELTO_LATENCY_MINIMUM is normal.
 * @return 0, 2 or 3 of VeltoResultCode, as any command (rule 9).
 */
VELTO_API VeltoResult velto_cmd_gang_play3(VeltoHandle handle, uint32_t mask, double speed,
                                           uint32_t min_latency);

/** velto_cmd_gang_play3 without min_latency. */
VELTO_API VeltoResult velto_cmd_gang_play2(VeltoHandle handle, uint32_t mask, double speed);

/** velto_cmd_gang_play3 without speed and min_latency. */
VELTO_API VeltoResult velto_cmd_gang_play1(VeltoHandle handle, uint32_t mask);

/**
 * Stops several channels together.
 *
 * @param handle       Connection.
 * @param mask         Channels: VELTO_CHANNEL_BIT of each, A to H; bits 8 and up are ignored; 0 is
 *     sent as a gang of none.
 * @param min_latency  Response, a VeltoLatency; any number but VELTO_LATENCY_MINIMUM is normal.
 * @return 0, 2 or 3 of VeltoResultCode, as any command (rule 9).
 */
VELTO_API VeltoResult velto_cmd_gang_stop2(VeltoHandle handle, uint32_t mask, uint32_t min_latency);

/** velto_cmd_gang_stop2 without min_latency. */
VELTO_API VeltoResult velto_cmd_gang_stop1(VeltoHandle handle, uint32_t mask);

/* ---- Seek ------------------------------------------------------------------------------------ */

/**
 * Moves a channel to a position.
 *
 * @param handle       Connection.
 * @param channel      Channel, a VeltoChannel; any other number addresses channel A.
 * @param position     Position in the clip, in fields.
 * @param min_latency  Response, a VeltoLatency; any number but VELTO_LATENCY_MINIMUM is normal.
 * @return 0, 2 or 3 of VeltoResultCode, as any command (rule 9).
 */
VELTO_API VeltoResult velto_goto2(VeltoHandle handle, uint32_t channel, uint32_t position,
                                  uint32_t min_latency);

/** velto_goto2 without min_latency. */
VELTO_API VeltoResult velto_goto1(VeltoHandle handle, uint32_t channel, uint32_t position);

/**
 * Moves several channels to one position together.
 *
 * @param handle       Connection.
 * @param mask         Channels: VELTO_CHANNEL_BIT of each, A to H; bits 8 and up are ignored; 0 is
 *     sent as a gang of none.
 * @param position     Position in the clip, in fields.
 * @param min_latency  Response, a VeltoLatency; any number but VELTO_LATENCY_MINIMUM is normal.
 * @return 0, 2 or 3 of VeltoResultCode, as any command (rule 9).
 */
VELTO_API VeltoResult velto_gang_goto2(VeltoHandle handle, uint32_t mask, uint32_t position,
                                       uint32_t min_latency);

/** velto_gang_goto2 without min_latency. */
VELTO_API VeltoResult velto_gang_goto1(VeltoHandle handle, uint32_t mask, uint32_t position);

/**
 * Moves a channel by a distance.
 * Names the normal layer, which velto_jog1 leaves to the server.
 *
 * @param handle       Connection.
 * @param channel      Channel, a VeltoChannel; any other number addresses channel A.
 * @param distance     How far, in fields: the 32 bits of a signed number, (uint32_t)-25 being 25
 *     fields back.
 * @param min_latency  Response, a VeltoLatency; any number but VELTO_LATENCY_MINIMUM is normal.
 * @return 0, 2 or 3 of VeltoResultCode, as any command (rule 9).
 */
VELTO_API VeltoResult velto_jog2(VeltoHandle handle, uint32_t channel, uint32_t distance,
                                 uint32_t min_latency);

/** velto_jog2 without min_latency. */
VELTO_API VeltoResult velto_jog1(VeltoHandle handle, uint32_t channel, uint32_t distance);

/**
 * Moves several channels by one distance together.
 *
 * @param handle       Connection.
 * @param mask         Channels: VELTO_CHANNEL_BIT of each, A to H; bits 8 and up are ignored; 0 is
 *     sent as a gang of none.
 * @param distance     How far, in fields: the 32 bits of a signed number, (uint32_t)-25 being 25
 *     fields back.
 * @param min_latency  Response, a VeltoLatency; any number but VELTO_LATENCY_MINIMUM is normal.
 * @return 0, 2 or 3 of VeltoResultCode, as any command (rule 9).
 */
VELTO_API VeltoResult velto_gang_jog2(VeltoHandle handle, uint32_t mask, uint32_t distance,
                                      uint32_t min_latency);

/** velto_gang_jog2 without min_latency. */
VELTO_API VeltoResult velto_gang_jog1(VeltoHandle handle, uint32_t mask, uint32_t distance);

/* ---- Load ------------------------------------------------------------------------------------ */

/**
 * Loads a clip on a channel with its repeat mode and positions.
 * Mind the order: loop_in comes before position.
 *
 * @param handle         Connection.
 * @param channel        Channel, a VeltoChannel; any other number addresses channel A.
 * @param clip           Name of the clip.
 * @param repeat         Repeat mode, a VeltoRepeat; any other number counts as VELTO_REPEAT_OFF.
 * @param goto_position  Position to cue the clip at, in fields.
 * @param loop_in        Where the loop begins, in fields.
 * @param position       Clip position of the load, in fields.
 * @return 0, 2 or 3 of VeltoResultCode, as any command (rule 9).
 */
VELTO_API VeltoResult velto_cmd_loadclip4(VeltoHandle handle, uint32_t channel,
                                          const VeltoChar* clip, uint32_t repeat,
                                          uint32_t goto_position, uint32_t loop_in,
                                          uint32_t position);

/** velto_cmd_loadclip4 without loop_in and position. */
VELTO_API VeltoResult velto_cmd_loadclip3(VeltoHandle handle, uint32_t channel,
                                          const VeltoChar* clip, uint32_t repeat,
                                          uint32_t goto_position);

/** velto_cmd_loadclip4 without goto_position, loop_in and position. */
VELTO_API VeltoResult velto_cmd_loadclip2(VeltoHandle handle, uint32_t channel,
                                          const VeltoChar* clip, uint32_t repeat);

/** velto_cmd_loadclip4 without repeat, goto_position, loop_in and position. */
VELTO_API VeltoResult velto_cmd_loadclip1(VeltoHandle handle, uint32_t channel,
                                          const VeltoChar* clip);

/**
 * Loads one camera angle of a clip on a channel.
 *
 * @param handle         Connection.
 * @param channel        Channel, a VeltoChannel; any other number addresses channel A.
 * @param clip           Name of the clip.
 * @param angle          Camera angle: 0 to 255; of a larger number the low 8 bits count.
 * @param goto_position  Position to cue the clip at, in fields.
 * @param position       Clip position of the load, in fields.
 * @return 0, 2 or 3 of VeltoResultCode, as any command (rule 9).
 */
VELTO_API VeltoResult velto_cmd_loadclip7(VeltoHandle handle, uint32_t channel,
                                          const VeltoChar* clip, uint32_t angle,
                                          uint32_t goto_position, uint32_t position);

/** velto_cmd_loadclip7 without position. */
VELTO_API VeltoResult velto_cmd_loadclip6(VeltoHandle handle, uint32_t channel,
                                          const VeltoChar* clip, uint32_t angle,
                                          uint32_t goto_position);

/** velto_cmd_loadclip7 without goto_position and position. */
VELTO_API VeltoResult velto_cmd_loadclip5(VeltoHandle handle, uint32_t channel,
                                          const VeltoChar* clip, uint32_t angle);

/**
 * Loads a virtual clip on a channel.
 *
 * @param handle         Connection.
 * @param channel        Channel, a VeltoChannel; any other number addresses channel A.
 * @param clip           Name of the virtual clip.
 * @param repeat         Repeat mode, a VeltoRepeat; any other number counts as VELTO_REPEAT_OFF.
 * @param goto_position  Position to cue the clip at, in fields.
 * @return 0, 2 or 3 of VeltoResultCode, as any command (rule 9).
 */
VELTO_API VeltoResult velto_cmd_load_vclip3(VeltoHandle handle, uint32_t channel,
                                            const VeltoChar* clip, uint32_t repeat,
                                            uint32_t goto_position);

/** velto_cmd_load_vclip3 without goto_position. */
VELTO_API VeltoResult velto_cmd_load_vclip2(VeltoHandle handle, uint32_t channel,
                                            const VeltoChar* clip, uint32_t repeat);

/** velto_cmd_load_vclip3 without repeat and goto_position. */
VELTO_API VeltoResult velto_cmd_load_vclip1(VeltoHandle handle, uint32_t channel,
                                            const VeltoChar* clip);

/**
 * Loads a play list on a channel; the list play-out functions then run it.
 *
 * @param handle   Connection.
 * @param channel  Channel, a VeltoChannel; any other number addresses channel A.
 * @param list     Name of the list.
 * @return 0, 2 or 3 of VeltoResultCode, as any command (rule 9).
 */
VELTO_API VeltoResult velto_cmd_loadlist1(VeltoHandle handle, uint32_t channel,
                                          const VeltoChar* list);

/**
 * Takes what is loaded off a channel.
 *
 * @param handle   Connection.
 * @param channel  Channel, a VeltoChannel; any other number addresses channel A.
 * @return 0, 2 or 3 of VeltoResultCode, as any command (rule 9).
 */
VELTO_API VeltoResult velto_unload_channel(VeltoHandle handle, uint32_t channel);

/* ---- Pre-cue --------------------------------------------------------------------------------- */

/**
 * Prepares the clip that is to follow the one now playing on a channel.
 * Always switches the clip's repeat off, whatever the clip itself says; the lesser variants do not
 * touch it. Mind the order: loop_in comes before length.
 *
 * @param handle         Connection.
 * @param channel        Channel, a VeltoChannel; any other number addresses channel A.
 * @param clip           Name of the clip.
 * @param condition      When it follows, a VeltoPrecueCondition; any other number counts as
 *     VELTO_PRECUE_EXPLICIT_SWITCH.
 * @param goto_position  Position to cue the clip at, in fields.
 * @param loop_in        Where the loop begins, in fields.
 * @param length         How much of the clip is used, in fields.
 * @return 0, 2 or 3 of VeltoResultCode, as any command (rule 9).
 */
VELTO_API VeltoResult velto_precue4(VeltoHandle handle, uint32_t channel, const VeltoChar* clip,
                                    uint32_t condition, uint32_t goto_position, uint32_t loop_in,
                                    uint32_t length);

/** velto_precue4 without loop_in. */
VELTO_API VeltoResult velto_precue3(VeltoHandle handle, uint32_t channel, const VeltoChar* clip,
                                    uint32_t condition, uint32_t goto_position, uint32_t length);

/** velto_precue4 without loop_in and length. */
VELTO_API VeltoResult velto_precue2(VeltoHandle handle, uint32_t channel, const VeltoChar* clip,
                                    uint32_t condition, uint32_t goto_position);

/** velto_precue4 without goto_position, loop_in and length. */
VELTO_API VeltoResult velto_precue1(VeltoHandle handle, uint32_t channel, const VeltoChar* clip,
                                    uint32_t condition);

/**
 * Switches a channel to its pre-cued clip.
 *
 * @param handle   Connection.
 * @param channel  Channel, a VeltoChannel; any other number addresses channel A.
 * @return 0, 2 or 3 of VeltoResultCode, as any command (rule 9).
 */
VELTO_API VeltoResult velto_precue_activate1(VeltoHandle handle, uint32_t channel);

/**
 * Switches several channels to their pre-cued clips together.
 *
 * @param handle  Connection.
 * @param mask    Channels: VELTO_CHANNEL_BIT of each, A to H; bits 8 and up are ignored; 0 is sent
 *     as a gang of none.
 * @return 0, 2 or 3 of VeltoResultCode, as any command (rule 9).
 */
VELTO_API VeltoResult velto_gang_precue_activate1(VeltoHandle handle, uint32_t mask);

/**
 * Drops what is pre-cued on a channel.
 *
 * @param handle   Connection.
 * @param channel  Channel, a VeltoChannel; any other number addresses channel A.
 * @return 0, 2 or 3 of VeltoResultCode, as any command (rule 9).
 */
VELTO_API VeltoResult velto_precue_clear1(VeltoHandle handle, uint32_t channel);

/* ---- Live and take --------------------------------------------------------------------------- */

/**
 * Takes a channel live, on a clip and a camera angle of it.
 * Always asks for minimum latency, as the lesser variants do.
 *
 * @param handle   Connection.
 * @param channel  Channel, a VeltoChannel; any other number addresses channel A.
 * @param clip     Name of the clip.
 * @param angle    Camera angle: 0 to 255; of a larger number the low 8 bits count.
 * @return 0, 2 or 3 of VeltoResultCode, as any command (rule 9).
 */
VELTO_API VeltoResult velto_go_live4(VeltoHandle handle, uint32_t channel, const VeltoChar* clip,
                                     uint32_t angle);

/** velto_go_live4 without angle. */
VELTO_API VeltoResult velto_go_live3(VeltoHandle handle, uint32_t channel, const VeltoChar* clip);

/** velto_go_live4 without clip. */
VELTO_API VeltoResult velto_go_live2(VeltoHandle handle, uint32_t channel, uint32_t angle);

/** velto_go_live4 without clip and angle. */
VELTO_API VeltoResult velto_go_live1(VeltoHandle handle, uint32_t channel);

/**
 * Takes on a channel, with a transition.
 *
 * @param handle      Connection.
 * @param channel     Channel, a VeltoChannel; any other number addresses channel A.
 * @param transition  Transition, a VeltoTransition; any other number counts as
 *     VELTO_TRANSITION_CUT.
 * @param duration    Duration of the transition, in fields.
 * @param follow      Speed afterwards, a VeltoFollow; any other number counts as VELTO_FOLLOW_NONE.
 * @return 0, 2 or 3 of VeltoResultCode, as any command (rule 9).
 */
VELTO_API VeltoResult velto_take2(VeltoHandle handle, uint32_t channel, uint32_t transition,
                                  uint32_t duration, uint32_t follow);

/** velto_take2 without follow. */
VELTO_API VeltoResult velto_take1(VeltoHandle handle, uint32_t channel, uint32_t transition,
                                  uint32_t duration);

/**
 * Changes the camera angle of what a channel plays.
 *
 * @param handle   Connection.
 * @param channel  Channel, a VeltoChannel; any other number addresses channel A.
 * @param angle    Camera angle: 0 to 255; of a larger number the low 8 bits count.
 * @return 0, 2 or 3 of VeltoResultCode, as any command (rule 9).
 */
VELTO_API VeltoResult velto_angle1(VeltoHandle handle, uint32_t channel, uint32_t angle);

/* ---- Edit and monitor ------------------------------------------------------------------------ */

/**
 * Chooses the tracks of a channel that are in insert edit.
 *
 * @param handle   Connection.
 * @param channel  Channel, a VeltoChannel; any other number addresses channel A.
 * @param bits     Tracks to be on, the others going off, VeltoEditBits combined; bits 3 and up are
 *     ignored.
 * @return 0, 2 or 3 of VeltoResultCode, as any command (rule 9).
 */
VELTO_API VeltoResult velto_edit1(VeltoHandle handle, uint32_t channel, uint32_t bits);

/** velto_edit1 with bits VELTO_EDIT_ALL. */
VELTO_API VeltoResult velto_edit_all_on(VeltoHandle handle, uint32_t channel);

/** velto_edit1 with bits VELTO_EDIT_NONE. */
VELTO_API VeltoResult velto_edit_all_off(VeltoHandle handle, uint32_t channel);

/**
 * Chooses the tracks of several channels that are in insert edit.
 *
 * @param handle  Connection.
 * @param mask    Channels: VELTO_CHANNEL_BIT of each, A to H; bits 8 and up are ignored; 0 is sent
 *     as a gang of none.
 * @param bits    Tracks to be on, the others going off, VeltoEditBits combined; bits 3 and up are
 *     ignored.
 * @return 0, 2 or 3 of VeltoResultCode, as any command (rule 9).
 */
VELTO_API VeltoResult velto_gang_edit1(VeltoHandle handle, uint32_t mask, uint32_t bits);

/** velto_gang_edit1 with bits VELTO_EDIT_ALL. */
VELTO_API VeltoResult velto_gang_edit_all_on(VeltoHandle handle, uint32_t mask);

/** velto_gang_edit1 with bits VELTO_EDIT_NONE. */
VELTO_API VeltoResult velto_gang_edit_all_off(VeltoHandle handle, uint32_t mask);

/**
 * Chooses the tracks of a channel that show the input, and who switches them.
 *
 * @param handle   Connection.
 * @param channel  Channel, a VeltoChannel; any other number addresses channel A.
 * @param bits     Tracks to be on, the others going off, VeltoEditBits combined; bits 3 and up are
 *     ignored.
 * @param manual   Who chooses, a VeltoMonitor; any number but 1 is automatic, also 2.
 * @return 0, 2 or 3 of VeltoResultCode, as any command (rule 9).
 */
VELTO_API VeltoResult velto_ee1(VeltoHandle handle, uint32_t channel, uint32_t bits,
                                uint32_t manual);

/** velto_ee1 with bits VELTO_EDIT_ALL and manual VELTO_MONITOR_AUTOMATIC. */
VELTO_API VeltoResult velto_ee_all_on(VeltoHandle handle, uint32_t channel);

/** velto_ee1 with bits VELTO_EDIT_NONE and manual VELTO_MONITOR_AUTOMATIC. */
VELTO_API VeltoResult velto_ee_all_off(VeltoHandle handle, uint32_t channel);

/**
 * Chooses the tracks of several channels that show the input, and who switches them.
 *
 * @param handle  Connection.
 * @param mask    Channels: VELTO_CHANNEL_BIT of each, A to H; bits 8 and up are ignored; 0 is sent
 *     as a gang of none.
 * @param bits    Tracks to be on, the others going off, VeltoEditBits combined; bits 3 and up are
 *     ignored.
 * @param manual  Who chooses, a VeltoMonitor; any number but 1 is automatic, also 2.
 * @return 0, 2 or 3 of VeltoResultCode, as any command (rule 9).
 */
VELTO_API VeltoResult velto_gang_ee1(VeltoHandle handle, uint32_t mask, uint32_t bits,
                                     uint32_t manual);

/** velto_gang_ee1 with bits VELTO_EDIT_ALL and manual VELTO_MONITOR_AUTOMATIC. */
VELTO_API VeltoResult velto_gang_ee_all_on(VeltoHandle handle, uint32_t mask);

/** velto_gang_ee1 with bits VELTO_EDIT_NONE and manual VELTO_MONITOR_AUTOMATIC. */
VELTO_API VeltoResult velto_gang_ee_all_off(VeltoHandle handle, uint32_t mask);

/* ---- Loop and out point ---------------------------------------------------------------------- */

/**
 * Sets how what is loaded on a channel repeats.
 *
 * @param handle   Connection.
 * @param channel  Channel, a VeltoChannel; any other number addresses channel A.
 * @param repeat   Repeat mode, a VeltoRepeat; any other number counts as VELTO_REPEAT_OFF.
 * @return 0, 2 or 3 of VeltoResultCode, as any command (rule 9).
 */
VELTO_API VeltoResult velto_set_repeat(VeltoHandle handle, uint32_t channel, uint32_t repeat);

/** The same as velto_set_repeat under another name. Neither is the older form of the other. */
VELTO_API VeltoResult velto_set_channel_repeat(VeltoHandle handle, uint32_t channel,
                                               uint32_t repeat);

/**
 * Sets the position at which a channel stops.
 *
 * @param handle    Connection.
 * @param channel   Channel, a VeltoChannel; any other number addresses channel A.
 * @param position  Out point, in fields.
 * @return 0, 2 or 3 of VeltoResultCode, as any command (rule 9).
 */
VELTO_API VeltoResult velto_set_out1(VeltoHandle handle, uint32_t channel, uint32_t position);

/**
 * Removes the out point of a channel.
 *
 * @param handle   Connection.
 * @param channel  Channel, a VeltoChannel; any other number addresses channel A.
 * @return 0, 2 or 3 of VeltoResultCode, as any command (rule 9).
 */
VELTO_API VeltoResult velto_clear_out(VeltoHandle handle, uint32_t channel);

/* ---- List play-out --------------------------------------------------------------------------- */

/**
 * Cues an element of the loaded list at once, without running it.
 *
 * @param handle   Connection.
 * @param channel  Channel, a VeltoChannel; any other number addresses channel A.
 * @param index    Element of the loaded list: 0 to 65535, 0 being the first; of a larger number the
 *     low 16 bits count.
 * @return 0, 2 or 3 of VeltoResultCode, as any command (rule 9).
 */
VELTO_API VeltoResult velto_cmd_playlist_cue_now(VeltoHandle handle, uint32_t channel,
                                                 uint32_t index);

/** velto_cmd_playlist_cue_now with index 0. */
VELTO_API VeltoResult velto_cmd_playlist_cue_list(VeltoHandle handle, uint32_t channel);

/**
 * Queues an element of the loaded list behind the present one, to be cued.
 *
 * @param handle   Connection.
 * @param channel  Channel, a VeltoChannel; any other number addresses channel A.
 * @param index    Element of the loaded list: 0 to 65535, 0 being the first; of a larger number the
 *     low 16 bits count.
 * @return 0, 2 or 3 of VeltoResultCode, as any command (rule 9).
 */
VELTO_API VeltoResult velto_cmd_playlist_cue_next(VeltoHandle handle, uint32_t channel,
                                                  uint32_t index);

/**
 * Runs an element of the loaded list at once.
 *
 * @param handle   Connection.
 * @param channel  Channel, a VeltoChannel; any other number addresses channel A.
 * @param index    Element of the loaded list: 0 to 65535, 0 being the first; of a larger number the
 *     low 16 bits count.
 * @return 0, 2 or 3 of VeltoResultCode, as any command (rule 9).
 */
VELTO_API VeltoResult velto_cmd_playlist_play_now(VeltoHandle handle, uint32_t channel,
                                                  uint32_t index);

/**
 * Queues an element of the loaded list behind the present one, to be run.
 *
 * @param handle   Connection.
 * @param channel  Channel, a VeltoChannel; any other number addresses channel A.
 * @param index    Element of the loaded list: 0 to 65535, 0 being the first; of a larger number the
 *     low 16 bits count.
 * @return 0, 2 or 3 of VeltoResultCode, as any command (rule 9).
 */
VELTO_API VeltoResult velto_cmd_playlist_play_next(VeltoHandle handle, uint32_t channel,
                                                   uint32_t index);

/* ---- Clips on the server --------------------------------------------------------------------- */

/**
 * Asks whether there is a clip of a name.
 * The output may be null. It waits for the reply (rule 7), whatever velto_synchronous has chosen.
 * On any failure, an unknown handle included, the output is VELTO_NO.
 *
 * @param handle       Connection.
 * @param clip         Name of the clip.
 * @param[out] exists  Receives whether, a VeltoAnswer.
 * @return VELTO_RESULT_OK: answered. VELTO_RESULT_FAILED: refused (text: the server's message), or
 *     the link is down or was lost (text "Failing all outstanding commands").
 *     VELTO_RESULT_INVALID_HANDLE: the handle is unknown.
 */
VELTO_API VeltoResult velto_clip_exists(VeltoHandle handle, const VeltoChar* clip,
                                        uint32_t* exists);

/** velto_create_clip3 without channel and length. */
VELTO_API VeltoResult velto_create_clip1(VeltoHandle handle, const VeltoChar* clip,
                                         uint32_t tracks);

/** velto_create_clip3 without channel. */
VELTO_API VeltoResult velto_create_clip2(VeltoHandle handle, const VeltoChar* clip, uint32_t tracks,
                                         uint32_t length);

/**
 * Creates a clip that is ready to be recorded.
 * A video track is created with its timecode track.
 *
 * @param handle   Connection.
 * @param channel  Channel, a VeltoChannel; any other number addresses channel A.
 * @param clip     Name of the clip.
 * @param tracks   Tracks, VeltoTrackBits combined; other bits are ignored.
 * @param length   Length, in fields.
 * @return 0, 2 or 3 of VeltoResultCode, as any command (rule 9).
 */
VELTO_API VeltoResult velto_create_clip3(VeltoHandle handle, uint32_t channel,
                                         const VeltoChar* clip, uint32_t tracks, uint32_t length);

/** velto_create_child_clip2 without angle. */
VELTO_API VeltoResult velto_create_child_clip1(VeltoHandle handle, const VeltoChar* clip,
                                               const VeltoChar* parent);

/**
 * Creates a clip that is one more angle of another clip.
 *
 * @param handle  Connection.
 * @param clip    Name of the clip.
 * @param parent  Name of the clip that it becomes an angle of.
 * @param angle   Camera angle: 0 to 255; of a larger number the low 8 bits count.
 * @return 0, 2 or 3 of VeltoResultCode, as any command (rule 9).
 */
VELTO_API VeltoResult velto_create_child_clip2(VeltoHandle handle, const VeltoChar* clip,
                                               const VeltoChar* parent, uint32_t angle);

/**
 * Creates a directory for clips.
 *
 * @param handle     Connection.
 * @param directory  Name of the directory.
 * @return 0, 2 or 3 of VeltoResultCode, as any command (rule 9).
 */
VELTO_API VeltoResult velto_create_directory(VeltoHandle handle, const VeltoChar* directory);

/**
 * Deletes a clip.
 *
 * @param handle  Connection.
 * @param clip    Name of the clip.
 * @return 0, 2 or 3 of VeltoResultCode, as any command (rule 9).
 */
VELTO_API VeltoResult velto_delete_clip(VeltoHandle handle, const VeltoChar* clip);

/**
 * Gives a clip another name.
 *
 * @param handle  Connection.
 * @param from    Name that it has.
 * @param to      Name that it gets.
 * @return 0, 2 or 3 of VeltoResultCode, as any command (rule 9).
 */
VELTO_API VeltoResult velto_rename_clip(VeltoHandle handle, const VeltoChar* from,
                                        const VeltoChar* to);

/**
 * Would protect a clip from changes, but always fails.
 * The name is not looked at. Does not block; nothing is sent.
 *
 * @param handle  Connection.
 * @param clip    Name of the clip.
 * @return VELTO_RESULT_FAILED: always, with a known handle (text "Not implemented").
 *     VELTO_RESULT_INVALID_HANDLE: the handle is unknown.
 */
VELTO_API VeltoResult velto_set_readonly(VeltoHandle handle, const VeltoChar* clip);

/**
 * Would let a clip be changed again, but always fails.
 * The name is not looked at. Does not block; nothing is sent.
 *
 * @param handle  Connection.
 * @param clip    Name of the clip.
 * @return VELTO_RESULT_FAILED: always, with a known handle (text "Not implemented").
 *     VELTO_RESULT_INVALID_HANDLE: the handle is unknown.
 */
VELTO_API VeltoResult velto_unset_readonly(VeltoHandle handle, const VeltoChar* clip);

/* ---- Clip records ---------------------------------------------------------------------------- */

/**
 * Fetches the record of a clip.
 * With a null output no record is made. Close it with velto_close_clip_metadata. It waits for the
 * reply (rule 7), whatever velto_synchronous has chosen. The output is written on success only.
 *
 * @param handle       Connection.
 * @param clip         Name of the clip.
 * @param[out] record  Receives the handle of the record.
 * @return VELTO_RESULT_OK: answered. VELTO_RESULT_FAILED: refused (text: the server's message), or
 *     the link is down or was lost (text "Failing all outstanding commands").
 *     VELTO_RESULT_INVALID_HANDLE: the handle is unknown.
 */
VELTO_API VeltoResult velto_open_clip_metadata(VeltoHandle handle, const VeltoChar* clip,
                                               VeltoRecordHandle* record);

/**
 * Frees a clip record.
 * Does not block.
 *
 * @param record  Clip record.
 * @return VELTO_RESULT_OK: always, whether or not the record is known.
 */
VELTO_API VeltoResult velto_close_clip_metadata(VeltoRecordHandle record);

/**
 * Gives the title of the clip.
 *
 * @param record      Clip record.
 * @param[out] title  Receives it.
 * @return 0 or 3 of VeltoResultCode, as any reader (rule 12).
 */
VELTO_API VeltoResult velto_clip_title(VeltoRecordHandle record, VeltoTextBuffer title);

/**
 * Gives who has made the clip.
 *
 * @param record        Clip record.
 * @param[out] creator  Receives it.
 * @return 0 or 3 of VeltoResultCode, as any reader (rule 12).
 */
VELTO_API VeltoResult velto_clip_creator(VeltoRecordHandle record, VeltoTextBuffer creator);

/**
 * Gives the project of the clip.
 *
 * @param record        Clip record.
 * @param[out] project  Receives it.
 * @return 0 or 3 of VeltoResultCode, as any reader (rule 12).
 */
VELTO_API VeltoResult velto_clip_project(VeltoRecordHandle record, VeltoTextBuffer project);

/**
 * Gives the unique id of the clip.
 *
 * @param record     Clip record.
 * @param[out] uuid  Receives it.
 * @return 0 or 3 of VeltoResultCode, as any reader (rule 12).
 */
VELTO_API VeltoResult velto_clip_uuid(VeltoRecordHandle record, VeltoTextBuffer uuid);

/**
 * Gives the unique id of the clip that this one is an angle of.
 *
 * @param record            Clip record.
 * @param[out] parent_uuid  Receives it.
 * @return 0 or 3 of VeltoResultCode, as any reader (rule 12).
 */
VELTO_API VeltoResult velto_clip_parent_uuid(VeltoRecordHandle record, VeltoTextBuffer parent_uuid);

/**
 * Gives the length of the clip.
 *
 * @param record       Clip record.
 * @param[out] length  Receives the length, in fields.
 * @return 0 or 3 of VeltoResultCode, as any reader (rule 12).
 */
VELTO_API VeltoResult velto_clip_length(VeltoRecordHandle record, uint32_t* length);

/**
 * Gives where the loop of the clip begins.
 *
 * @param record         Clip record.
 * @param[out] position  Receives the position, in fields.
 * @return 0 or 3 of VeltoResultCode, as any reader (rule 12).
 */
VELTO_API VeltoResult velto_clip_loop_in_point(VeltoRecordHandle record, uint32_t* position);

/**
 * Gives where the loop of the clip ends.
 *
 * @param record         Clip record.
 * @param[out] position  Receives the position, in fields.
 * @return 0 or 3 of VeltoResultCode, as any reader (rule 12).
 */
VELTO_API VeltoResult velto_clip_loop_out_point(VeltoRecordHandle record, uint32_t* position);

/**
 * Gives where the clip is trimmed to begin.
 *
 * @param record         Clip record.
 * @param[out] position  Receives the position, in fields.
 * @return 0 or 3 of VeltoResultCode, as any reader (rule 12).
 */
VELTO_API VeltoResult velto_clip_trim_start(VeltoRecordHandle record, uint32_t* position);

/**
 * Gives where the clip is trimmed to end.
 *
 * @param record         Clip record.
 * @param[out] position  Receives the position, in fields.
 * @return 0 or 3 of VeltoResultCode, as any reader (rule 12).
 */
VELTO_API VeltoResult velto_clip_trim_end(VeltoRecordHandle record, uint32_t* position);

/**
 * Gives how the clip is played at other than normal speed.
 *
 * @param record         Clip record.
 * @param[out] playback  Receives it, a VeltoPlayback; 0 if none of these.
 * @return 0 or 3 of VeltoResultCode, as any reader (rule 12).
 */
VELTO_API VeltoResult velto_clip_playback(VeltoRecordHandle record, uint32_t* playback);

/**
 * Gives how the clip repeats.
 *
 * @param record       Clip record.
 * @param[out] repeat  Receives the repeat mode, a VeltoRepeat; 0 if none of these.
 * @return 0 or 3 of VeltoResultCode, as any reader (rule 12).
 */
VELTO_API VeltoResult velto_clip_repeat(VeltoRecordHandle record, uint32_t* repeat);

/**
 * Gives the video standard of the clip.
 *
 * @param record         Clip record.
 * @param[out] standard  Receives the standard, a VeltoVideoStandard; a standard without a number
 *     here gives 0.
 * @return 0 or 3 of VeltoResultCode, as any reader (rule 12).
 */
VELTO_API VeltoResult velto_clip_video_standard(VeltoRecordHandle record, uint32_t* standard);

/**
 * Gives where the timecode of the clip comes from.
 *
 * @param record       Clip record.
 * @param[out] source  Receives the source, a VeltoTimecodeSource; 0 if none of these.
 * @return 0 or 3 of VeltoResultCode, as any reader (rule 12).
 */
VELTO_API VeltoResult velto_clip_timecode_source(VeltoRecordHandle record, uint32_t* source);

/**
 * Gives whether the clip is protected from changes.
 * That its metadata or its content alone is protected does not count.
 *
 * @param record          Clip record.
 * @param[out] read_only  Receives whether, a VeltoAnswer.
 * @return 0 or 3 of VeltoResultCode, as any reader (rule 12).
 */
VELTO_API VeltoResult velto_clip_is_readonly(VeltoRecordHandle record, uint32_t* read_only);

/**
 * Gives when the content of the clip was last changed.
 *
 * @param record      Clip record.
 * @param[out] stamp  Receives it, in as the server counts time.
 * @return 0 or 3 of VeltoResultCode, as any reader (rule 12).
 */
VELTO_API VeltoResult velto_clip_content_last_edited(VeltoRecordHandle record, uint64_t* stamp);

/**
 * Gives when the record of the clip was last changed.
 *
 * @param record      Clip record.
 * @param[out] stamp  Receives it, in as the server counts time.
 * @return 0 or 3 of VeltoResultCode, as any reader (rule 12).
 */
VELTO_API VeltoResult velto_clip_metadata_last_edited(VeltoRecordHandle record, uint64_t* stamp);

/**
 * Gives when the clip was last loaded.
 *
 * @param record      Clip record.
 * @param[out] stamp  Receives it, in as the server counts time.
 * @return 0 or 3 of VeltoResultCode, as any reader (rule 12).
 */
VELTO_API VeltoResult velto_clip_last_loaded(VeltoRecordHandle record, uint64_t* stamp);

/**
 * Gives when the clip was last unloaded.
 *
 * @param record      Clip record.
 * @param[out] stamp  Receives it, in as the server counts time.
 * @return 0 or 3 of VeltoResultCode, as any reader (rule 12).
 */
VELTO_API VeltoResult velto_clip_last_unloaded(VeltoRecordHandle record, uint64_t* stamp);

/**
 * Gives when the clip was last played.
 *
 * @param record      Clip record.
 * @param[out] stamp  Receives it, in as the server counts time.
 * @return 0 or 3 of VeltoResultCode, as any reader (rule 12).
 */
VELTO_API VeltoResult velto_clip_last_played(VeltoRecordHandle record, uint64_t* stamp);

/**
 * Gives which tracks the clip has.
 *
 * @param record       Clip record.
 * @param[out] tracks  Receives them, VeltoTrackBits combined; tracks of other kinds are left out.
 * @return 0 or 3 of VeltoResultCode, as any reader (rule 12).
 */
VELTO_API VeltoResult velto_get_tracks(VeltoRecordHandle record, uint32_t* tracks);

/**
 * Gives the timecode that was recorded with the first field.
 * Only clips of the 59.94 Hz standards can drop; the others always give VELTO_NON_DROP_FRAME.
 *
 * @param record             Clip record.
 * @param[out] field_number  Receives the timecode, in fields since 0:00.
 * @param[out] non_drop      Receives how it counts, a VeltoDropFrame.
 * @return 0 or 3 of VeltoResultCode, as any reader (rule 12).
 */
VELTO_API VeltoResult velto_clip_recorded_timecode0(VeltoRecordHandle record,
                                                    uint32_t* field_number, uint32_t* non_drop);

/**
 * Gives the timecode of the first field, by the timecode source of the clip.
 * Only clips of the 59.94 Hz standards can drop; the others always give VELTO_NON_DROP_FRAME. A
 * zero-based clip gives 0.
 *
 * @param record             Clip record.
 * @param[out] field_number  Receives the timecode, in fields since 0:00.
 * @param[out] non_drop      Receives how it counts, a VeltoDropFrame.
 * @return 0 or 3 of VeltoResultCode, as any reader (rule 12).
 */
VELTO_API VeltoResult velto_clip_timecode_stripe(VeltoRecordHandle record, uint32_t* field_number,
                                                 uint32_t* non_drop);

/**
 * Changes the title of the clip.
 *
 * @param record  Clip record.
 * @param title   The new one.
 * @return 0, 2 or 3 of VeltoResultCode, as any writer (rule 13).
 */
VELTO_API VeltoResult velto_set_clip_title(VeltoRecordHandle record, const VeltoChar* title);

/**
 * Changes the creator of the clip.
 *
 * @param record   Clip record.
 * @param creator  The new one.
 * @return 0, 2 or 3 of VeltoResultCode, as any writer (rule 13).
 */
VELTO_API VeltoResult velto_set_clip_creator(VeltoRecordHandle record, const VeltoChar* creator);

/**
 * Changes the project of the clip.
 *
 * @param record   Clip record.
 * @param project  The new one.
 * @return 0, 2 or 3 of VeltoResultCode, as any writer (rule 13).
 */
VELTO_API VeltoResult velto_set_clip_project(VeltoRecordHandle record, const VeltoChar* project);

/**
 * Sets where the loop of the clip begins.
 *
 * @param record    Clip record.
 * @param position  Position in the clip, in fields.
 * @return 0, 2 or 3 of VeltoResultCode, as any writer (rule 13).
 */
VELTO_API VeltoResult velto_set_clip_loop_in_point(VeltoRecordHandle record, uint32_t position);

/**
 * Sets where the loop of the clip ends.
 *
 * @param record    Clip record.
 * @param position  Position in the clip, in fields.
 * @return 0, 2 or 3 of VeltoResultCode, as any writer (rule 13).
 */
VELTO_API VeltoResult velto_set_clip_loop_out_point(VeltoRecordHandle record, uint32_t position);

/**
 * Trims the beginning of the clip.
 *
 * @param record    Clip record.
 * @param position  Position in the clip, in fields: even numbers; an odd number counts as the even
 *     one below it.
 * @return 0, 2 or 3 of VeltoResultCode, as any writer (rule 13).
 */
VELTO_API VeltoResult velto_set_clip_trim_start(VeltoRecordHandle record, uint32_t position);

/**
 * Trims the end of the clip.
 *
 * @param record    Clip record.
 * @param position  Position in the clip, in fields: even numbers; an odd number counts as the even
 *     one below it.
 * @return 0, 2 or 3 of VeltoResultCode, as any writer (rule 13).
 */
VELTO_API VeltoResult velto_set_clip_trim_end(VeltoRecordHandle record, uint32_t position);

/**
 * Sets how the clip is played at other than normal speed.
 *
 * @param record    Clip record.
 * @param playback  Playback, a VeltoPlayback; any other number counts as VELTO_PLAYBACK_FIELD.
 * @return 0, 2 or 3 of VeltoResultCode, as any writer (rule 13).
 */
VELTO_API VeltoResult velto_set_clip_playback(VeltoRecordHandle record, uint32_t playback);

/**
 * Sets how the clip repeats.
 *
 * @param record  Clip record.
 * @param repeat  Repeat mode, a VeltoRepeat; any other number counts as VELTO_REPEAT_OFF.
 * @return 0, 2 or 3 of VeltoResultCode, as any writer (rule 13).
 */
VELTO_API VeltoResult velto_set_clip_repeat(VeltoRecordHandle record, uint32_t repeat);

/**
 * Sets where the timecode of the clip comes from.
 *
 * @param record  Clip record.
 * @param source  Source, a VeltoTimecodeSource; any other number counts as
 *     VELTO_TIMECODE_ZERO_BASED.
 * @return 0, 2 or 3 of VeltoResultCode, as any writer (rule 13).
 */
VELTO_API VeltoResult velto_set_clip_timecode_source(VeltoRecordHandle record, uint32_t source);

/**
 * Gives the clip a timecode of its own, and makes that its timecode source.
 * The number is a signed one on the wire: 4294967295 is the field before 0:00. A record whose own
 * timecode was not valid goes on giving 0; a record that is opened later gives the new one.
 *
 * @param record        Clip record.
 * @param field_number  Timecode, in fields since 0:00.
 * @param non_drop      How it counts, a VeltoDropFrame; any other number counts as
 *     VELTO_DROP_FRAME.
 * @return 0, 2 or 3 of VeltoResultCode, as any writer (rule 13).
 */
VELTO_API VeltoResult velto_set_clip_timecode_stripe(VeltoRecordHandle record,
                                                     uint32_t field_number, uint32_t non_drop);

/* ---- Lists and changes ----------------------------------------------------------------------- */

/**
 * Makes a list of the clips on the server.
 *
 * @param handle     Connection.
 * @param[out] list  Receives the handle of the list.
 * @return 0, 2 or 3 of VeltoResultCode, as any listing (rule 14).
 */
VELTO_API VeltoResult velto_open_clip_list(VeltoHandle handle, VeltoListHandle* list);

/**
 * Takes the next name from a list.
 * A name is taken even if the buffer is too small for it. Does not block. At the end of the list,
 * and with an unknown list, the output is the empty text.
 *
 * @param list       List of names.
 * @param[out] name  Receives the name.
 * @return VELTO_RESULT_OK: also at the end of the list. VELTO_RESULT_INVALID_HANDLE: the list is
 *     unknown.
 */
VELTO_API VeltoResult velto_get_clip_name(VeltoListHandle list, VeltoTextBuffer name);

/**
 * Frees a list; an unknown one is ignored.
 * Does not block. Leaves the last-error text as it was.
 *
 * @param list  List of names.
 */
VELTO_API void velto_close_clip_list(VeltoListHandle list);

/**
 * Makes a list of the directories on the server.
 *
 * @param handle     Connection.
 * @param[out] list  Receives the handle of the list.
 * @return 0, 2 or 3 of VeltoResultCode, as any listing (rule 14).
 */
VELTO_API VeltoResult velto_open_directory_list(VeltoHandle handle, VeltoListHandle* list);

/** The same as velto_get_clip_name under another name. */
VELTO_API VeltoResult velto_get_directory_name(VeltoListHandle list, VeltoTextBuffer name);

/** The same as velto_close_clip_list under another name. */
VELTO_API void velto_close_directory_list(VeltoListHandle list);

/**
 * Makes a list of the playlists on the server.
 *
 * @param handle     Connection.
 * @param[out] list  Receives the handle of the list.
 * @return 0, 2 or 3 of VeltoResultCode, as any listing (rule 14).
 */
VELTO_API VeltoResult velto_open_playlist_list(VeltoHandle handle, VeltoListHandle* list);

/** The same as velto_get_clip_name under another name. */
VELTO_API VeltoResult velto_get_playlist_name(VeltoListHandle list, VeltoTextBuffer name);

/** The same as velto_close_clip_list under another name. */
VELTO_API void velto_close_playlist_list(VeltoListHandle list);

/**
 * Begins to track the changes of clips.
 *
 * @param handle  Connection.
 * @return 0, 2 or 3 of VeltoResultCode, as any tracker (rule 15).
 */
VELTO_API VeltoResult velto_track_clip_changes(VeltoHandle handle);

/**
 * Begins to track the changes of directories.
 *
 * @param handle  Connection.
 * @return 0, 2 or 3 of VeltoResultCode, as any tracker (rule 15).
 */
VELTO_API VeltoResult velto_track_directory_changes(VeltoHandle handle);

/**
 * Takes the name of a clip that was created.
 *
 * @param handle     Connection.
 * @param[out] name  Receives the name.
 * @return 0, 2 or 3 of VeltoResultCode, as any tracker (rule 15).
 */
VELTO_API VeltoResult velto_track_change_added_clip(VeltoHandle handle, VeltoTextBuffer name);

/**
 * Takes the name of a clip that was changed.
 *
 * @param handle     Connection.
 * @param[out] name  Receives the name.
 * @return 0, 2 or 3 of VeltoResultCode, as any tracker (rule 15).
 */
VELTO_API VeltoResult velto_track_change_changed_clip(VeltoHandle handle, VeltoTextBuffer name);

/**
 * Takes the name of a clip that was deleted.
 *
 * @param handle     Connection.
 * @param[out] name  Receives the name.
 * @return 0, 2 or 3 of VeltoResultCode, as any tracker (rule 15).
 */
VELTO_API VeltoResult velto_track_change_deleted_clip(VeltoHandle handle, VeltoTextBuffer name);

/**
 * Takes the name of a directory that was created.
 *
 * @param handle     Connection.
 * @param[out] name  Receives the name.
 * @return 0, 2 or 3 of VeltoResultCode, as any tracker (rule 15).
 */
VELTO_API VeltoResult velto_track_change_added_directory(VeltoHandle handle, VeltoTextBuffer name);

/**
 * Takes the name of a directory that was deleted.
 *
 * @param handle     Connection.
 * @param[out] name  Receives the name.
 * @return 0, 2 or 3 of VeltoResultCode, as any tracker (rule 15).
 */
VELTO_API VeltoResult velto_track_change_deleted_directory(VeltoHandle handle,
                                                           VeltoTextBuffer name);

/* ---- Clip metadata --------------------------------------------------------------------------- */

/**
 * Gives the text of a key.
 * velto_clip_has_meta tells a missing key from an empty text. Does not block. For a missing key,
 * and with an unknown record, the output is the empty text.
 *
 * @param record      Clip record.
 * @param key         Key; upper and lower case differ.
 * @param[out] value  Receives the text.
 * @return VELTO_RESULT_OK: whether or not the clip has the key. VELTO_RESULT_INVALID_HANDLE: the
 *     record is unknown.
 */
VELTO_API VeltoResult velto_clip_get_meta(VeltoRecordHandle record, const VeltoChar* key,
                                          VeltoTextBuffer value);

/**
 * Gives whether the clip has a key.
 * The output may be null. Does not block. With an unknown record the output is VELTO_NO.
 *
 * @param record    Clip record.
 * @param key       Key; upper and lower case differ.
 * @param[out] has  Receives whether, a VeltoAnswer.
 * @return VELTO_RESULT_OK: given. VELTO_RESULT_INVALID_HANDLE: the record is unknown.
 */
VELTO_API VeltoResult velto_clip_has_meta(VeltoRecordHandle record, const VeltoChar* key,
                                          uint32_t* has);

/**
 * Sets the text of a key.
 * Where the server had sent no metadata with the record the new key shows only in a record that is
 * opened later.
 *
 * @param record  Clip record.
 * @param key     Key; upper and lower case differ.
 * @param value   The new text.
 * @return 0, 2 or 3 of VeltoResultCode, as any writer (rule 13).
 */
VELTO_API VeltoResult velto_clip_set_meta(VeltoRecordHandle record, const VeltoChar* key,
                                          const VeltoChar* value);

/**
 * Removes a key.
 * The server is asked also for a key that the record has not.
 *
 * @param record  Clip record.
 * @param key     Key; upper and lower case differ.
 * @return 0, 2 or 3 of VeltoResultCode, as any writer (rule 13).
 */
VELTO_API VeltoResult velto_clip_delete_meta(VeltoRecordHandle record, const VeltoChar* key);

/**
 * Makes a list of the keys of the clip.
 * With a null output no list is made. Close it with velto_close_metakeys. A later change of the
 * record does not show in the list. Does not block. The output is written on success only.
 *
 * @param record     Clip record.
 * @param[out] list  Receives the handle of the list.
 * @return VELTO_RESULT_OK: also for a clip without keys. VELTO_RESULT_INVALID_HANDLE: the record is
 *     unknown.
 */
VELTO_API VeltoResult velto_clip_open_metakeys(VeltoRecordHandle record, VeltoListHandle* list);

/** The same as velto_get_clip_name under another name. */
VELTO_API VeltoResult velto_get_metakey(VeltoListHandle list, VeltoTextBuffer name);

/**
 * Frees a list of keys, or any list of names.
 * Does not block.
 *
 * @param list  List of names.
 * @return VELTO_RESULT_OK: always, whether or not the list is known.
 */
VELTO_API VeltoResult velto_close_metakeys(VeltoListHandle list);

/* ---- Virtual clips --------------------------------------------------------------------------- */

/**
 * Creates an empty virtual clip.
 *
 * @param handle  Connection.
 * @param vclip   Name of the virtual clip.
 * @param length  Length, in fields.
 * @return 0, 2 or 3 of VeltoResultCode, as any command (rule 9).
 */
VELTO_API VeltoResult velto_vclip_create(VeltoHandle handle, const VeltoChar* vclip,
                                         uint32_t length);

/**
 * Deletes a virtual clip.
 *
 * @param handle  Connection.
 * @param vclip   Name of the virtual clip.
 * @return 0, 2 or 3 of VeltoResultCode, as any command (rule 9).
 */
VELTO_API VeltoResult velto_vclip_free(VeltoHandle handle, const VeltoChar* vclip);

/**
 * Begins a modification of a virtual clip.
 *
 * @param handle  Connection.
 * @param vclip   Name of the virtual clip.
 * @return 0, 2 or 3 of VeltoResultCode, as any command (rule 9).
 */
VELTO_API VeltoResult velto_vclip_modification_start(VeltoHandle handle, const VeltoChar* vclip);

/**
 * Ends the modification of a virtual clip, which takes effect.
 *
 * @param handle  Connection.
 * @param vclip   Name of the virtual clip.
 * @return 0, 2 or 3 of VeltoResultCode, as any command (rule 9).
 */
VELTO_API VeltoResult velto_vclip_modification_end(VeltoHandle handle, const VeltoChar* vclip);

/**
 * Gives a virtual clip tracks like those of a clip.
 *
 * @param handle  Connection.
 * @param vclip   Name of the virtual clip.
 * @param clip    Name of the clip.
 * @param tracks  Tracks, VeltoTrackBits combined; other bits are ignored.
 * @return 0, 2 or 3 of VeltoResultCode, as any command (rule 9).
 */
VELTO_API VeltoResult velto_vclip_cfg_tracks(VeltoHandle handle, const VeltoChar* vclip,
                                             const VeltoChar* clip, uint32_t tracks);

/** velto_vclip_add_segment2 without speed. */
VELTO_API VeltoResult velto_vclip_add_segment1(VeltoHandle handle, const VeltoChar* vclip,
                                               const VeltoChar* clip, uint32_t position,
                                               uint32_t tracks, uint32_t vclip_position,
                                               uint32_t length);

/**
 * Places a segment of a clip in a virtual clip.
 *
 * @param handle          Connection.
 * @param vclip           Name of the virtual clip.
 * @param clip            Name of the clip.
 * @param position        Position in the clip, in fields.
 * @param tracks          Tracks, VeltoTrackBits combined; other bits are ignored.
 * @param vclip_position  Position in the virtual clip, in fields.
 * @param length          Length, in fields.
 * @param speed           Speed that the segment plays at, in times normal forward play: -200.0 to
 *     200.0, in steps of 1/65536 cut towards 0; negative is backwards; held at the limits, NaN is
 *     sent as 0.
 * @return 0, 2 or 3 of VeltoResultCode, as any command (rule 9).
 */
VELTO_API VeltoResult velto_vclip_add_segment2(VeltoHandle handle, const VeltoChar* vclip,
                                               const VeltoChar* clip, uint32_t position,
                                               uint32_t tracks, uint32_t vclip_position,
                                               uint32_t length, double speed);

/**
 * Empties a stretch of a virtual clip.
 *
 * @param handle          Connection.
 * @param vclip           Name of the virtual clip.
 * @param tracks          Tracks, VeltoTrackBits combined; other bits are ignored.
 * @param vclip_position  Position in the virtual clip, in fields.
 * @param length          Length, in fields.
 * @return 0, 2 or 3 of VeltoResultCode, as any command (rule 9).
 */
VELTO_API VeltoResult velto_vclip_clear_segment(VeltoHandle handle, const VeltoChar* vclip,
                                                uint32_t tracks, uint32_t vclip_position,
                                                uint32_t length);

/**
 * Moves what stands from a position on in a virtual clip.
 *
 * @param handle          Connection.
 * @param vclip           Name of the virtual clip.
 * @param tracks          Tracks, VeltoTrackBits combined; other bits are ignored.
 * @param vclip_position  Position in the virtual clip, in fields.
 * @param distance        How far, in fields: the 32 bits of a signed number, (uint32_t)-25 being 25
 *     fields back.
 * @return 0, 2 or 3 of VeltoResultCode, as any command (rule 9).
 */
VELTO_API VeltoResult velto_vclip_ripple(VeltoHandle handle, const VeltoChar* vclip,
                                         uint32_t tracks, uint32_t vclip_position,
                                         uint32_t distance);

/**
 * Enables these tracks of a virtual clip and no others.
 *
 * @param handle  Connection.
 * @param vclip   Name of the virtual clip.
 * @param tracks  Tracks, VeltoTrackBits combined; other bits are ignored.
 * @return 0, 2 or 3 of VeltoResultCode, as any command (rule 9).
 */
VELTO_API VeltoResult velto_vclip_track_enable(VeltoHandle handle, const VeltoChar* vclip,
                                               uint32_t tracks);

/* ---- Key-value stores ------------------------------------------------------------------------ */

/**
 * Opens a key-value store: the keys of one metadata database that begin with a prefix.
 * A store that reads is given all that the database holds, and every change from then on, by
 * velto_kvstore_get_change. One that writes sends what velto_kvstore_set and velto_kvstore_erase
 * give it. It survives every loss of the link: what changed meanwhile is delivered once the link is
 * back, along with all else that the database holds. Only what was erased meanwhile goes unnoticed.
 * The store keeps the connection up: velto_close takes the handle of the connection away, and
 * closing its last store the connection itself. Does not wait for the server, nor for the link. The
 * output is written on success only.
 *
 * @param handle      Connection.
 * @param folder      The server's name for the database.
 * @param prefix      Beginning of the keys that belong to the store; an empty one takes all.
 * @param mode        What it is opened for, a VeltoStoreMode; any other number is refused.
 * @param[out] store  Receives the handle of the store.
 * @return VELTO_RESULT_OK: opened. VELTO_RESULT_INVALID_HANDLE: the handle is unknown.
 *     VELTO_RESULT_INVALID_ARGUMENT: the mode is none of VeltoStoreMode.
 */
VELTO_API VeltoResult velto_open_kvstore(VeltoHandle handle, const VeltoChar* folder,
                                         const VeltoChar* prefix, uint32_t mode,
                                         VeltoStoreHandle* store);

/**
 * Waits until all that the database held has reached the stores that read it.
 * A scan begins with every store that is opened for reading on the folder, and anew when the link
 * is back. One that fails does not end the wait; a later one can. A store that only writes waits
 * for the scans of those that read its folder. Waits timeout_ms at most;
 * velto_close_key_value_store on another thread does not end the wait.
 *
 * @param store       Store.
 * @param timeout_ms  The longest wait, in milliseconds; 0 only looks, and no number means for ever.
 * @return VELTO_RESULT_OK: no scan is under way, and the last one has succeeded.
 *     VELTO_RESULT_INVALID_HANDLE: the handle is unknown. VELTO_RESULT_TIMEOUT: that did not come
 *     in time.
 */
VELTO_API VeltoResult velto_kvstore_wait_scan(VeltoStoreHandle store, uint32_t timeout_ms);

/**
 * Takes the oldest change of some key, or waits for one.
 * A key has one change at a time, its latest, at the place of the first that was not taken yet. So
 * a reader that falls behind needs no more memory than the keys do, and misses only what has been
 * overtaken. A value can come again unchanged: after a loss of the link, and when another store is
 * opened on the folder. What a store has written itself comes like everything else. The key that
 * equals the prefix never comes. A change whose texts do not fit, size 0 included, is taken all the
 * same. Waits timeout_ms at most; velto_close_key_value_store on another thread does not end the
 * wait. The outputs are written on success only.
 *
 * @param store       Store.
 * @param timeout_ms  The longest wait, in milliseconds; 0 only looks, and no number means for ever.
 * @param[out] kind   Receives what has become of the key, a VeltoStoreChange.
 * @param[out] key    Receives it, without the store's prefix.
 * @param[out] value  Receives the value; empty when the key is gone.
 * @return VELTO_RESULT_OK: a change was taken. VELTO_RESULT_INVALID_HANDLE: the handle is unknown.
 *     VELTO_RESULT_TIMEOUT: none came in time. VELTO_RESULT_WRITE_ONLY: the store was opened with
 *     VELTO_STORE_WRITE.
 */
VELTO_API VeltoResult velto_kvstore_get_change(VeltoStoreHandle store, uint32_t timeout_ms,
                                               uint32_t* kind, VeltoTextBuffer key,
                                               VeltoTextBuffer value);

/**
 * Gives a key a value.
 *
 * @param store  Store.
 * @param key    Key, without the store's prefix.
 * @param value  Its value.
 * @return 0, 3 or 4 of VeltoResultCode, as any write (rule 16).
 */
VELTO_API VeltoResult velto_kvstore_set(VeltoStoreHandle store, const VeltoChar* key,
                                        const VeltoChar* value);

/**
 * Erases a key, whether or not there is one.
 *
 * @param store  Store.
 * @param key    Key, without the store's prefix.
 * @return 0, 3 or 4 of VeltoResultCode, as any write (rule 16).
 */
VELTO_API VeltoResult velto_kvstore_erase(VeltoStoreHandle store, const VeltoChar* key);

/**
 * Waits until the server has confirmed all writes of the store.
 * A store with nothing to write is flushed at once, whatever the link is doing. Waits timeout_ms at
 * most.
 *
 * @param store       Store.
 * @param timeout_ms  The longest wait, in milliseconds; 0 only looks, and no number means for ever.
 * @return VELTO_RESULT_OK: nothing is left to write. VELTO_RESULT_INVALID_HANDLE: the handle is
 *     unknown. VELTO_RESULT_READ_ONLY: the store was opened with VELTO_STORE_READ.
 *     VELTO_RESULT_TIMEOUT: that did not come in time.
 */
VELTO_API VeltoResult velto_kvstore_flush(VeltoStoreHandle store, uint32_t timeout_ms);

/**
 * Closes a store; the handle is unknown from then on.
 * An unknown handle is ignored, so that closing twice does no harm. Changes that were not taken are
 * dropped, and so are writes that the server has not confirmed within two seconds. Calls of other
 * threads on the store finish normally. Waits two seconds at most for what is to be written, and
 * then for the command that is under way, which a server that never answers can hold up for ever.
 * Closing the last store of a connection that was closed before takes what velto_close takes.
 * Leaves the last-error text as it was.
 *
 * @param store  Store.
 */
VELTO_API void velto_close_key_value_store(VeltoStoreHandle store);

#ifdef __cplusplus
}
#endif

#endif
