/* Clip metadata: free texts by key, in a clip's record. */
#include "example.h"

static void print_all(VeltoRecordHandle record)
{
    VeltoListHandle keys = 0;
    VeltoChar key[64], value[256];

    CHECK(velto_clip_open_metakeys(record, &keys));
    for (;;) {
        CHECK(velto_get_metakey(keys, (VeltoTextBuffer){key, 64}));
        if (key[0] == 0) { /* the end of the list */
            break;
        }
        CHECK(velto_clip_get_meta(record, key, (VeltoTextBuffer){value, 256}));
        printf("  ");
        print_text(key);
        printf(" = ");
        print_text(value);
        putchar('\n');
    }
    CHECK(velto_close_metakeys(keys));
}

int main(int argc, char** argv)
{
    VeltoHandle server = connect_to(argc, argv);
    VeltoRecordHandle record = 0;
    uint32_t has = VELTO_NO;

    CHECK(velto_open_clip_metadata(server, VELTO_TEXT("news_open"), &record));
    CHECK(velto_clip_set_meta(record, VELTO_TEXT("editor"), VELTO_TEXT("night desk")));
    CHECK(velto_close_clip_metadata(record));

    /* The record is a snapshot: a new one shows what the server has now. */
    CHECK(velto_open_clip_metadata(server, VELTO_TEXT("news_open"), &record));
    print_all(record);
    CHECK(velto_clip_delete_meta(record, VELTO_TEXT("editor")));
    CHECK(velto_clip_has_meta(record, VELTO_TEXT("editor"), &has));
    printf("editor is %s\n", has == VELTO_YES ? "still there" : "gone");

    CHECK(velto_close_clip_metadata(record));
    velto_close(server);
    return has == VELTO_NO ? 0 : 1;
}
