#pragma once

#include "protocol/zavl3_record.h"

// The elements of the protocol. Each is described once, here: the simple ones by the type of their
// text, the composite ones by their fields. Readers, writers, messages and commands follow.
namespace ZAVL3
{

#define ZAVL3_ELEMENT(name, ...)                                                                   \
    template <>                                                                                    \
    struct ElementCodec<name> {                                                                    \
        using type = __VA_ARGS__;                                                                  \
    };

// Enumerations whose element bears their own name.
#define ZAVL3_WORD_ELEMENT(E, ...) ZAVL3_ELEMENT(#E, Word<E>)
ZAVL3_ENUMERATIONS(ZAVL3_WORD_ELEMENT)
#undef ZAVL3_WORD_ELEMENT

ZAVL3_ELEMENT("PreviewChannel", Word<Channel>)
ZAVL3_ELEMENT("ProgramChannel", Word<Channel>)

#define ZAVL3_TEXTS(TEXT)                                                                          \
    TEXT("AlertName")                                                                              \
    TEXT("AlertNameDescription")                                                                   \
    TEXT("AlertValueDescription")                                                                  \
    TEXT("ChaseID")                                                                                \
    TEXT("ClipFileType")                                                                           \
    TEXT("ClipID")                                                                                 \
    TEXT("ClipUUID")                                                                               \
    TEXT("CompressionASymbol")                                                                     \
    TEXT("CompressionKSymbol")                                                                     \
    TEXT("CompressionVSymbol")                                                                     \
    TEXT("ComputerName")                                                                           \
    TEXT("ConfigurationItemBootValue")                                                             \
    TEXT("ConfigurationItemEffectiveValue")                                                        \
    TEXT("ConfigurationItemName")                                                                  \
    TEXT("ConfigurationItemSavedValue")                                                            \
    TEXT("ConfigurationItemValue")                                                                 \
    TEXT("Creator")                                                                                \
    TEXT("DirectoryName")                                                                          \
    TEXT("ErrorMessage")                                                                           \
    TEXT("FromID")                                                                                 \
    TEXT("ID8")                                                                                    \
    TEXT("Key")                                                                                    \
    TEXT("ListID")                                                                                 \
    TEXT("MeltLabel")                                                                              \
    TEXT("MetadataDatabase")                                                                       \
    TEXT("MetadataPrefix")                                                                         \
    TEXT("ParentClipID")                                                                           \
    TEXT("ParentUUID")                                                                             \
    TEXT("Project")                                                                                \
    TEXT("SVNPath")                                                                                \
    TEXT("SVNVersion")                                                                             \
    TEXT("Title")                                                                                  \
    TEXT("ToID")                                                                                   \
    TEXT("VClipID")                                                                                \
    TEXT("Value")

#define ZAVL3_TEXT_ELEMENT(name) ZAVL3_ELEMENT(name, Text)
ZAVL3_TEXTS(ZAVL3_TEXT_ELEMENT)
#undef ZAVL3_TEXT_ELEMENT

#define ZAVL3_NUMBERS(NUMBER)                                                                      \
    NUMBER("Angle", U8)                                                                            \
    NUMBER("AngleCount", U8)                                                                       \
    NUMBER("AudioTrackCount", U8)                                                                  \
    NUMBER("AutoEE", Bool)                                                                         \
    NUMBER("AvailableDiskSpace", U64)                                                              \
    NUMBER("ChaseIndex", U16)                                                                      \
    NUMBER("ClipLength", U32)                                                                      \
    NUMBER("ClipLengthUntrimmed", U32)                                                             \
    NUMBER("ClipPosition", U32)                                                                    \
    NUMBER("ClipStartOffset", U32)                                                                 \
    NUMBER("CompressionAFrameBased", Bool)                                                         \
    NUMBER("CompressionBitrate", U32)                                                              \
    NUMBER("CompressionCSize", U32)                                                                \
    NUMBER("CompressionKFrameBased", Bool)                                                         \
    NUMBER("CompressionKSize", U32)                                                                \
    NUMBER("CompressionVFrameBased", Bool)                                                         \
    NUMBER("CompressionYSize", U32)                                                                \
    NUMBER("ContentEditStamp", U64)                                                                \
    NUMBER("Exists", Bool)                                                                         \
    NUMBER("FieldNumber", I32)                                                                     \
    NUMBER("FieldSize", U32)                                                                       \
    NUMBER("GotoPosition", U32)                                                                    \
    NUMBER("ISOCount", U32)                                                                        \
    NUMBER("JogDistance", I32)                                                                     \
    NUMBER("Level", U32)                                                                           \
    NUMBER("ListIndex", U16)                                                                       \
    NUMBER("LoadedStamp", U64)                                                                     \
    NUMBER("LoopIn", U32)                                                                          \
    NUMBER("LoopOut", U32)                                                                         \
    NUMBER("MeltClientID", U32)                                                                    \
    NUMBER("MeltElementID", U32)                                                                   \
    NUMBER("MeltInPoint", U32)                                                                     \
    NUMBER("MeltListID", U32)                                                                      \
    NUMBER("MeltOutPoint", U32)                                                                    \
    NUMBER("MetaEditStamp", U64)                                                                   \
    NUMBER("NaturalSpeed", Fixed)                                                                  \
    NUMBER("PlayedStamp", U64)                                                                     \
    NUMBER("PrecueCount", U32)                                                                     \
    NUMBER("ReadOnly", Bool)                                                                       \
    NUMBER("ReadOnlyContent", Bool)                                                                \
    NUMBER("ReadOnlyMeta", Bool)                                                                   \
    NUMBER("SSMSpeed", U32)                                                                        \
    NUMBER("SonyEditMask", U16)                                                                    \
    NUMBER("Speed", Fixed)                                                                         \
    NUMBER("StealSwapped", Bool)                                                                   \
    NUMBER("TcStartTrigger", U32)                                                                  \
    NUMBER("Temperature10", U32)                                                                   \
    NUMBER("TimeDelay", U32)                                                                       \
    NUMBER("TotalDiskSpace", U64)                                                                  \
    NUMBER("TransitionDuration", U32)                                                              \
    NUMBER("TransitionInProgress", Bool)                                                           \
    NUMBER("TrimEnd", U32)                                                                         \
    NUMBER("TrimStart", U32)                                                                       \
    NUMBER("UnloadedStamp", U64)                                                                   \
    NUMBER("VClipDistance", I32)                                                                   \
    NUMBER("VClipPosition", U32)                                                                   \
    NUMBER("Valid", Bool)

ZAVL3_NUMBERS(ZAVL3_ELEMENT)

#define ZAVL3_PRESENCES(PRESENCE)                                                                  \
    PRESENCE("BlackOnCue")                                                                         \
    PRESENCE("ConfigurationItemRequiresReboot")                                                    \
    PRESENCE("MeltFlagInhibitElementNumbering")                                                    \
    PRESENCE("MeltFlagInhibitListNumbering")                                                       \
    PRESENCE("MeltFlagInhibitPortNumbering")                                                       \
    PRESENCE("MeltFlagInhibitTimecodeNumbering")                                                   \
    PRESENCE("MeltFlagInhibitUserInteraction")                                                     \
    PRESENCE("MinLatency")

#define ZAVL3_PRESENCE_ELEMENT(name) ZAVL3_ELEMENT(name, Presence)
ZAVL3_PRESENCES(ZAVL3_PRESENCE_ELEMENT)
#undef ZAVL3_PRESENCE_ELEMENT

// A composite is a structure with the fields as told, and an element of the same name.
#define ZAVL3_COMPOSITE(C, ...)                                                                    \
    struct C : Record<__VA_ARGS__> {                                                               \
    };                                                                                             \
    ZAVL3_ELEMENT(#C, Composite<C>)

ZAVL3_ELEMENT("ChannelSet", Vector<ChannelSet, "Channel", Word<Channel>>)
ZAVL3_ELEMENT("TrackSet", Vector<TrackSet, "TrackType", Word<TrackType>>)

ZAVL3_COMPOSITE(Alert, "AlertingPriority", "AlertingLevel", "AlertName", "AlertNameDescription",
                "AlertValueDescription")

ZAVL3_COMPOSITE(Metadata, "Key", "Value")
ZAVL3_ELEMENT("KeyList", List<"Key", Text>)
ZAVL3_ELEMENT("LevelList", List<"Level", U32>)
ZAVL3_ELEMENT("MetadataList", List<"Metadata", Composite<Metadata>>)

ZAVL3_COMPOSITE(Timecode, "Valid", "VideoStandard?", "FieldNumber?", "DropFrameFlag?")
ZAVL3_ELEMENT("DisplayTimecode", Composite<Timecode>)
ZAVL3_ELEMENT("InputTimecode", Composite<Timecode>)
ZAVL3_ELEMENT("StripeTimecode", Composite<Timecode>)
ZAVL3_COMPOSITE(Frame0Timecode, "FieldNumber?", "DropFrameFlag?")

ZAVL3_COMPOSITE(Transition, "TransitionType", "TransitionDuration?")
ZAVL3_COMPOSITE(EEStatus, "SonyEditMask", "AutoEE")
ZAVL3_COMPOSITE(DiskSpaceChange, "TotalDiskSpace", "AvailableDiskSpace")

ZAVL3_COMPOSITE(ContentID, "ClipID?", "VClipID?")
ZAVL3_COMPOSITE(ListElement, "ContentID", "GotoPosition?", "ClipPosition?", "Speed?", "Angle?",
                "ListElementAtStart?", "ListElementAtEnd?", "Transition?")
ZAVL3_COMPOSITE(ChaseElement, "ContentID", "GotoPosition?", "ClipPosition?", "Speed?", "Angle?",
                "ChaseElementAtEnd?", "ClipStartOffset?", "TcStartTrigger?")
ZAVL3_COMPOSITE(ListPlaybackIndex, "ListIndex?")
ZAVL3_COMPOSITE(ChasePlaybackIndex, "ChaseIndex?")

ZAVL3_COMPOSITE(ChannelInformation, "ClipID", "ClipLength?", "Interp?", "Loop?", "LoopIn?",
                "LoopOut?", "Playback?", "AngleCount?", "Angle?", "AudioTrackCount?", "EEStatus?",
                "ProgramChannel?", "PreviewChannel?", "PrecueCount?", "StealStatus?",
                "TransitionInProgress?", "NaturalSpeed?")

ZAVL3_COMPOSITE(TrackInfo, "TrackType", "TrimStart?")
using TrackInfoVector = BoundedVector<TrackInfo, 17>;
ZAVL3_ELEMENT("TrackInfoVector", Vector<TrackInfoVector, "TrackInfo", Composite<TrackInfo>>)
ZAVL3_COMPOSITE(TrackAttr, "TrackType?", "TrimStart?")
using TrackAttrVector = BoundedVector<TrackAttr, 12>;
ZAVL3_ELEMENT("TrackAttrVector", Vector<TrackAttrVector, "TrackAttr", Composite<TrackAttr>>)

ZAVL3_COMPOSITE(ClipInfo, "ClipID", "VideoStandard", "TrackInfoVector", "Title", "Creator",
                "Project", "Playback", "Interp", "Loop", "LoopOut", "LoopIn", "ClipLength",
                "TimecodeSource", "StripeTimecode", "ReadOnly", "ID8?", "ReadOnlyMeta?",
                "ReadOnlyContent?", "MetadataList?", "SpecialClipType?", "ISOCount?", "SSMSpeed?",
                "CompressionBitrate?", "Frame0Timecode?", "TrimStart?", "TrimEnd?",
                "ClipLengthUntrimmed?", "CompressionType?", "ClipUUID?", "ParentUUID?", "Angle?",
                "LoadedStamp?", "UnloadedStamp?", "PlayedStamp?", "MetaEditStamp?",
                "ContentEditStamp?", "ClipFileType?")

// LoopOut before LoopIn is wanted: servers take the fields in this order.
ZAVL3_COMPOSITE(ClipAttrChange, "ID8?", "Title?", "Creator?", "Project?", "Playback?", "Interp?",
                "Loop?", "LoopOut?", "LoopIn?", "TimecodeSource?", "StripeTimecode?",
                "MetadataList?", "KeyList?", "TrimStart?", "TrimEnd?", "TrackAttrVector?",
                "Frame0Timecode?")

ZAVL3_COMPOSITE(CompressionInfo, "CompressionYSize", "CompressionCSize", "CompressionKSize",
                "AudioTrackCount", "CompressionVSymbol", "CompressionKSymbol", "CompressionASymbol",
                "CompressionVFrameBased?", "CompressionKFrameBased?", "CompressionAFrameBased?")

using ConfigurationItemAllowedValues = BoundedVector<AString, 64>;
ZAVL3_ELEMENT("ConfigurationItemAllowedValues",
              Vector<ConfigurationItemAllowedValues, "ConfigurationItemValue", Text>)
ZAVL3_COMPOSITE(ConfigurationItem, "ConfigurationItemName", "ConfigurationItemAccess",
                "ConfigurationItemEffectiveValue", "ConfigurationItemBootValue",
                "ConfigurationItemSavedValue", "ConfigurationItemAllowedValues",
                "ConfigurationItemRequiresReboot")
ZAVL3_ELEMENT("ConfigurationChange", List<"ConfigurationItem", Composite<ConfigurationItem>>)

ZAVL3_COMPOSITE(MeltFlags, "MeltClientID", "MeltFlagInhibitPortNumbering",
                "MeltFlagInhibitListNumbering", "MeltFlagInhibitElementNumbering",
                "MeltFlagInhibitUserInteraction", "MeltFlagInhibitTimecodeNumbering")
ZAVL3_COMPOSITE(MeltItem, "MeltClientID", "MeltListID", "MeltElementID", "ClipID", "MeltInPoint",
                "MeltOutPoint", "Angle?", "Speed?", "MeltLabel?")

} // namespace ZAVL3
