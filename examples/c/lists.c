/* Lists and changes: what is on the server, and what is created and deleted there. */
#include "example.h"

/* Takes the names of a list one by one, until the empty text comes, and frees it. */
static void print_list(const char* title, VeltoListHandle list)
{
    VeltoChar name[128];

    printf("%s:", title);
    for (;;) {
        CHECK(velto_get_clip_name(list, (VeltoTextBuffer){name, 128}));
        if (name[0] == 0) {
            break;
        }
        putchar(' ');
        print_text(name);
    }
    putchar('\n');
    velto_close_clip_list(list);
}

typedef VeltoResult (*TakeChange)(VeltoHandle handle, VeltoTextBuffer name);

/* Reports come on their own time: looks until there is one. */
static void print_change(VeltoHandle server, const char* what, TakeChange take)
{
    VeltoChar name[128] = {0};

    while (name[0] == 0) {
        CHECK(take(server, (VeltoTextBuffer){name, 128}));
    }
    printf("%s ", what);
    print_text(name);
    putchar('\n');
}

int main(int argc, char** argv)
{
    VeltoHandle server = connect_to(argc, argv);
    VeltoListHandle list = 0;

    CHECK(velto_open_directory_list(server, &list));
    print_list("directories", list);
    CHECK(velto_open_clip_list(server, &list));
    print_list("clips", list);
    CHECK(velto_open_playlist_list(server, &list));
    print_list("playlists", list);

    CHECK(velto_track_clip_changes(server));
    CHECK(velto_create_clip1(server, VELTO_TEXT("example_new"), VELTO_TRACK_VIDEO));
    print_change(server, "added", velto_track_change_added_clip);
    CHECK(velto_delete_clip(server, VELTO_TEXT("example_new")));
    print_change(server, "deleted", velto_track_change_deleted_clip);

    velto_close(server);
    return 0;
}
