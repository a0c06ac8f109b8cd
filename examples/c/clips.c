/* Clips by name: creates, renames and deletes. */
#include "example.h"

static void tell(VeltoHandle server, const VeltoChar* clip)
{
    uint32_t exists = VELTO_NO;

    CHECK(velto_clip_exists(server, clip, &exists));
    print_text(clip);
    printf(exists == VELTO_YES ? " exists\n" : " does not exist\n");
}

int main(int argc, char** argv)
{
    VeltoHandle server = connect_to(argc, argv);
    const VeltoChar* take = VELTO_TEXT("example_take");
    const VeltoChar* best = VELTO_TEXT("example_best_take");

    CHECK(velto_create_clip2(server, take, VELTO_TRACK_VIDEO | VELTO_TRACK_AUDIO, 1500));
    tell(server, take);
    CHECK(velto_rename_clip(server, take, best));
    tell(server, take);
    tell(server, best);
    CHECK(velto_delete_clip(server, best));
    tell(server, best);

    velto_close(server);
    return 0;
}
