#include "support/clip_rows.h"

#include "support/wire_call.h"

#include <limits>

namespace
{

constexpr double infinite = std::numeric_limits<double>::infinity();
constexpr double not_a_number = std::numeric_limits<double>::quiet_NaN();

constexpr const VeltoChar* clip = VELTO_TEXT("news_open");
constexpr const VeltoChar* vclip = VELTO_TEXT("edit 1");
constexpr const VeltoChar* awkward = VELTO_TEXT(" <\u00E9> & \U0001F3AC ");

} // namespace

WireRows clip_rows()
{
    // clang-format off
    static const WireRow rows[] = {
        {CALL(velto_create_clip1, clip, 0), {"<create_clip>", "<ClipID>news_open</ClipID>", "<TrackSet />", "</create_clip>"}},
        {CALL(velto_create_clip1, clip, 1), {"<create_clip>", "<ClipID>news_open</ClipID>", "<TrackSet>", "<TrackType>video</TrackType>", "<TrackType>timecode</TrackType>", "</TrackSet>", "</create_clip>"}},
        {CALL(velto_create_clip1, clip, 2), {"<create_clip>", "<ClipID>news_open</ClipID>", "<TrackSet>", "<TrackType>key</TrackType>", "</TrackSet>", "</create_clip>"}},
        {CALL(velto_create_clip1, clip, 4), {"<create_clip>", "<ClipID>news_open</ClipID>", "<TrackSet>", "<TrackType>audio</TrackType>", "</TrackSet>", "</create_clip>"}},
        {CALL(velto_create_clip1, clip, 6), {"<create_clip>", "<ClipID>news_open</ClipID>", "<TrackSet>", "<TrackType>key</TrackType>", "<TrackType>audio</TrackType>", "</TrackSet>", "</create_clip>"}},
        {CALL(velto_create_clip1, clip, 7), {"<create_clip>", "<ClipID>news_open</ClipID>", "<TrackSet>", "<TrackType>video</TrackType>", "<TrackType>timecode</TrackType>", "<TrackType>key</TrackType>", "<TrackType>audio</TrackType>", "</TrackSet>", "</create_clip>"}},
        {CALL(velto_create_clip1, clip, 0xFFFFFFF8), {"<create_clip>", "<ClipID>news_open</ClipID>", "<TrackSet />", "</create_clip>"}},
        {CALL(velto_create_clip1, awkward, all_ones), {"<create_clip>", "<ClipID> &lt;\u00E9&gt; &amp; \U0001F3AC </ClipID>", "<TrackSet>", "<TrackType>video</TrackType>", "<TrackType>timecode</TrackType>", "<TrackType>key</TrackType>", "<TrackType>audio</TrackType>", "</TrackSet>", "</create_clip>"}},
        {CALL(velto_create_clip1, none, 0), {"<create_clip>", "<ClipID />", "<TrackSet />", "</create_clip>"}, 1},

        {CALL(velto_create_clip2, clip, 2, 1500), {"<create_clip>", "<ClipID>news_open</ClipID>", "<TrackSet>", "<TrackType>key</TrackType>", "</TrackSet>", "<ClipLength>1500</ClipLength>", "</create_clip>"}},
        {CALL(velto_create_clip2, clip, 0, all_ones), {"<create_clip>", "<ClipID>news_open</ClipID>", "<TrackSet />", "<ClipLength>4294967295</ClipLength>", "</create_clip>"}},
        {CALL(velto_create_clip2, none, 0, 0), {"<create_clip>", "<ClipID />", "<TrackSet />", "<ClipLength>0</ClipLength>", "</create_clip>"}, 1},

        {CALL(velto_create_clip3, 2, clip, 4, 1500), {"<create_clip>", "<ClipID>news_open</ClipID>", "<TrackSet>", "<TrackType>audio</TrackType>", "</TrackSet>", "<ClipLength>1500</ClipLength>", "<Channel>C</Channel>", "</create_clip>"}},
        {CALL(velto_create_clip3, 11, clip, 1, 0), {"<create_clip>", "<ClipID>news_open</ClipID>", "<TrackSet>", "<TrackType>video</TrackType>", "<TrackType>timecode</TrackType>", "</TrackSet>", "<ClipLength>0</ClipLength>", "<Channel>L</Channel>", "</create_clip>"}},
        {CALL(velto_create_clip3, 12, none, 0, 7), {"<create_clip>", "<ClipID />", "<TrackSet />", "<ClipLength>7</ClipLength>", "<Channel>A</Channel>", "</create_clip>"}, 1},

        {CALL(velto_create_child_clip1, clip, VELTO_TEXT("parent")), {"<create_child_clip>", "<ClipID>news_open</ClipID>", "<ParentClipID>parent</ParentClipID>", "</create_child_clip>"}},
        {CALL(velto_create_child_clip1, none, none), {"<create_child_clip>", "<ClipID />", "<ParentClipID />", "</create_child_clip>"}, 2},
        {CALL(velto_create_child_clip2, clip, VELTO_TEXT("parent"), 0), {"<create_child_clip>", "<ClipID>news_open</ClipID>", "<ParentClipID>parent</ParentClipID>", "<Angle>0</Angle>", "</create_child_clip>"}},
        {CALL(velto_create_child_clip2, clip, VELTO_TEXT("parent"), 255), {"<create_child_clip>", "<ClipID>news_open</ClipID>", "<ParentClipID>parent</ParentClipID>", "<Angle>255</Angle>", "</create_child_clip>"}},
        {CALL(velto_create_child_clip2, clip, VELTO_TEXT("parent"), 256 + 3), {"<create_child_clip>", "<ClipID>news_open</ClipID>", "<ParentClipID>parent</ParentClipID>", "<Angle>3</Angle>", "</create_child_clip>"}},

        {CALL(velto_create_directory, VELTO_TEXT("rushes")), {"<create_directory>", "<DirectoryName>rushes</DirectoryName>", "</create_directory>"}},
        {CALL(velto_create_directory, VELTO_TEXT("")), {"<create_directory>", "<DirectoryName />", "</create_directory>"}},
        {CALL(velto_create_directory, none), {"<create_directory>", "<DirectoryName />", "</create_directory>"}, 1},

        {CALL(velto_delete_clip, clip), {"<delete_clip>", "<ClipID>news_open</ClipID>", "</delete_clip>"}},
        {CALL(velto_delete_clip, none), {"<delete_clip>", "<ClipID />", "</delete_clip>"}, 1},

        {CALL(velto_rename_clip, clip, awkward), {"<rename_clip>", "<FromID>news_open</FromID>", "<ToID> &lt;\u00E9&gt; &amp; \U0001F3AC </ToID>", "</rename_clip>"}},
        {CALL(velto_rename_clip, clip, clip), {"<rename_clip>", "<FromID>news_open</FromID>", "<ToID>news_open</ToID>", "</rename_clip>"}},
        {CALL(velto_rename_clip, none, none), {"<rename_clip>", "<FromID />", "<ToID />", "</rename_clip>"}, 2},
    };
    // clang-format on
    return rows;
}

WireRows vclip_rows()
{
    // clang-format off
    static const WireRow rows[] = {
        {CALL(velto_vclip_create, vclip, 1500), {"<vclip_create>", "<VClipID>edit 1</VClipID>", "<ClipLength>1500</ClipLength>", "</vclip_create>"}},
        {CALL(velto_vclip_create, awkward, all_ones), {"<vclip_create>", "<VClipID> &lt;\u00E9&gt; &amp; \U0001F3AC </VClipID>", "<ClipLength>4294967295</ClipLength>", "</vclip_create>"}},
        {CALL(velto_vclip_create, none, 0), {"<vclip_create>", "<VClipID />", "<ClipLength>0</ClipLength>", "</vclip_create>"}, 1},

        {CALL(velto_vclip_free, vclip), {"<vclip_free>", "<VClipID>edit 1</VClipID>", "</vclip_free>"}},
        {CALL(velto_vclip_modification_start, vclip), {"<vclip_modification_start>", "<VClipID>edit 1</VClipID>", "</vclip_modification_start>"}},
        {CALL(velto_vclip_modification_end, vclip), {"<vclip_modification_end>", "<VClipID>edit 1</VClipID>", "</vclip_modification_end>"}},

        {CALL(velto_vclip_cfg_tracks, vclip, clip, 0), {"<vclip_cfg_tracks>", "<VClipID>edit 1</VClipID>", "<ClipID>news_open</ClipID>", "<TrackSet />", "</vclip_cfg_tracks>"}},
        {CALL(velto_vclip_cfg_tracks, vclip, clip, 1), {"<vclip_cfg_tracks>", "<VClipID>edit 1</VClipID>", "<ClipID>news_open</ClipID>", "<TrackSet>", "<TrackType>video</TrackType>", "</TrackSet>", "</vclip_cfg_tracks>"}},
        {CALL(velto_vclip_cfg_tracks, none, none, 7), {"<vclip_cfg_tracks>", "<VClipID />", "<ClipID />", "<TrackSet>", "<TrackType>video</TrackType>", "<TrackType>key</TrackType>", "<TrackType>audio</TrackType>", "</TrackSet>", "</vclip_cfg_tracks>"}, 2},

        {CALL(velto_vclip_add_segment1, vclip, clip, 100, 3, 200, 300), {"<vclip_add_segment>", "<VClipID>edit 1</VClipID>", "<ClipID>news_open</ClipID>", "<ClipPosition>100</ClipPosition>", "<TrackSet>", "<TrackType>video</TrackType>", "<TrackType>key</TrackType>", "</TrackSet>", "<VClipPosition>200</VClipPosition>", "<ClipLength>300</ClipLength>", "</vclip_add_segment>"}},
        {CALL(velto_vclip_add_segment1, vclip, clip, all_ones, 0, all_ones, all_ones), {"<vclip_add_segment>", "<VClipID>edit 1</VClipID>", "<ClipID>news_open</ClipID>", "<ClipPosition>4294967295</ClipPosition>", "<TrackSet />", "<VClipPosition>4294967295</VClipPosition>", "<ClipLength>4294967295</ClipLength>", "</vclip_add_segment>"}},
        {CALL(velto_vclip_add_segment2, vclip, clip, 100, 4, 200, 300, 1.0), {"<vclip_add_segment>", "<VClipID>edit 1</VClipID>", "<ClipID>news_open</ClipID>", "<ClipPosition>100</ClipPosition>", "<TrackSet>", "<TrackType>audio</TrackType>", "</TrackSet>", "<VClipPosition>200</VClipPosition>", "<ClipLength>300</ClipLength>", "<Speed>1X</Speed>", "</vclip_add_segment>"}},
        {CALL(velto_vclip_add_segment2, vclip, clip, 0, 0, 0, 0, 300.0), {"<vclip_add_segment>", "<VClipID>edit 1</VClipID>", "<ClipID>news_open</ClipID>", "<ClipPosition>0</ClipPosition>", "<TrackSet />", "<VClipPosition>0</VClipPosition>", "<ClipLength>0</ClipLength>", "<Speed>200X</Speed>", "</vclip_add_segment>"}},
        {CALL(velto_vclip_add_segment2, vclip, clip, 0, 0, 0, 0, -infinite), {"<vclip_add_segment>", "<VClipID>edit 1</VClipID>", "<ClipID>news_open</ClipID>", "<ClipPosition>0</ClipPosition>", "<TrackSet />", "<VClipPosition>0</VClipPosition>", "<ClipLength>0</ClipLength>", "<Speed>-200X</Speed>", "</vclip_add_segment>"}},
        {CALL(velto_vclip_add_segment2, none, none, 0, 0, 0, 0, not_a_number), {"<vclip_add_segment>", "<VClipID />", "<ClipID />", "<ClipPosition>0</ClipPosition>", "<TrackSet />", "<VClipPosition>0</VClipPosition>", "<ClipLength>0</ClipLength>", "<Speed>0X</Speed>", "</vclip_add_segment>"}, 2},
        {CALL(velto_vclip_add_segment2, vclip, clip, 1, 0xFFFFFFF8, 2, 3, -0.5), {"<vclip_add_segment>", "<VClipID>edit 1</VClipID>", "<ClipID>news_open</ClipID>", "<ClipPosition>1</ClipPosition>", "<TrackSet />", "<VClipPosition>2</VClipPosition>", "<ClipLength>3</ClipLength>", "<Speed>-0.5X</Speed>", "</vclip_add_segment>"}},

        {CALL(velto_vclip_clear_segment, vclip, 2, 200, 300), {"<vclip_clear_segment>", "<VClipID>edit 1</VClipID>", "<TrackSet>", "<TrackType>key</TrackType>", "</TrackSet>", "<VClipPosition>200</VClipPosition>", "<ClipLength>300</ClipLength>", "</vclip_clear_segment>"}},
        {CALL(velto_vclip_clear_segment, vclip, 0, 0, all_ones), {"<vclip_clear_segment>", "<VClipID>edit 1</VClipID>", "<TrackSet />", "<VClipPosition>0</VClipPosition>", "<ClipLength>4294967295</ClipLength>", "</vclip_clear_segment>"}},

        {CALL(velto_vclip_ripple, vclip, 5, 200, 100), {"<vclip_ripple>", "<VClipID>edit 1</VClipID>", "<TrackSet>", "<TrackType>video</TrackType>", "<TrackType>audio</TrackType>", "</TrackSet>", "<VClipPosition>200</VClipPosition>", "<VClipDistance>100</VClipDistance>", "</vclip_ripple>"}},
        {CALL(velto_vclip_ripple, vclip, 0, 0, all_ones), {"<vclip_ripple>", "<VClipID>edit 1</VClipID>", "<TrackSet />", "<VClipPosition>0</VClipPosition>", "<VClipDistance>-1</VClipDistance>", "</vclip_ripple>"}},
        {CALL(velto_vclip_ripple, vclip, 0, 0, 0x80000000), {"<vclip_ripple>", "<VClipID>edit 1</VClipID>", "<TrackSet />", "<VClipPosition>0</VClipPosition>", "<VClipDistance>-2147483648</VClipDistance>", "</vclip_ripple>"}},
        {CALL(velto_vclip_ripple, vclip, 0, 0, 0x7FFFFFFF), {"<vclip_ripple>", "<VClipID>edit 1</VClipID>", "<TrackSet />", "<VClipPosition>0</VClipPosition>", "<VClipDistance>2147483647</VClipDistance>", "</vclip_ripple>"}},

        {CALL(velto_vclip_track_enable, vclip, 0), {"<vclip_track_enable>", "<VClipID>edit 1</VClipID>", "<TrackSet />", "</vclip_track_enable>"}},
        {CALL(velto_vclip_track_enable, vclip, all_ones), {"<vclip_track_enable>", "<VClipID>edit 1</VClipID>", "<TrackSet>", "<TrackType>video</TrackType>", "<TrackType>key</TrackType>", "<TrackType>audio</TrackType>", "</TrackSet>", "</vclip_track_enable>"}},
    };
    // clang-format on
    return rows;
}
