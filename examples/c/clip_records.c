/* Clip records: one question fetches all that the server knows of a clip; a writer changes one
   thing of it, on the server first. */
#include "example.h"

int main(int argc, char** argv)
{
    VeltoHandle server = connect_to(argc, argv);
    VeltoRecordHandle record = 0;
    VeltoChar title[128];
    uint32_t length = 0, standard = 0, trim = 0, tracks = 0, field = 0, non_drop = 0;

    CHECK(velto_open_clip_metadata(server, VELTO_TEXT("weather"), &record));
    CHECK(velto_clip_title(record, (VeltoTextBuffer){title, 128}));
    CHECK(velto_clip_length(record, &length));
    CHECK(velto_clip_video_standard(record, &standard));
    CHECK(velto_get_tracks(record, &tracks));
    CHECK(velto_clip_timecode_stripe(record, &field, &non_drop));
    print_text(title);
    printf(": %u fields, standard %u, tracks %u, timecode from field %u%s\n", (unsigned)length,
           (unsigned)standard, (unsigned)tracks, (unsigned)field,
           non_drop == VELTO_NON_DROP_FRAME ? "" : ", drop frame");

    CHECK(velto_set_clip_title(record, VELTO_TEXT("Weather, late edition")));
    CHECK(velto_set_clip_trim_start(record, 51)); /* trims are even: this is 50 */
    CHECK(velto_clip_title(record, (VeltoTextBuffer){title, 128}));
    CHECK(velto_clip_trim_start(record, &trim));
    print_text(title);
    printf(", trimmed at %u\n", (unsigned)trim);

    CHECK(velto_close_clip_metadata(record));
    velto_close(server);
    return 0;
}
