/* Key-value stores: one store writes to a folder of the server, another follows it. */
#include "example.h"

int main(int argc, char** argv)
{
    VeltoHandle server = connect_to(argc, argv);
    const VeltoChar* folder = VELTO_TEXT("example");
    const VeltoChar* prefix = VELTO_TEXT("rundown/");
    VeltoStoreHandle writer = 0, reader = 0;
    VeltoChar key[64], value[256];
    uint32_t kind = 0;

    CHECK(velto_open_kvstore(server, folder, prefix, VELTO_STORE_WRITE, &writer));
    CHECK(velto_open_kvstore(server, folder, prefix, VELTO_STORE_READ, &reader));
    CHECK(velto_kvstore_wait_scan(reader, 10000));

    /* A write does not wait; it is confirmed when flush returns. */
    CHECK(velto_kvstore_set(writer, VELTO_TEXT("next"), VELTO_TEXT("weather")));
    CHECK(velto_kvstore_flush(writer, 10000));
    CHECK(velto_kvstore_erase(writer, VELTO_TEXT("next")));
    CHECK(velto_kvstore_flush(writer, 10000));

    /* Each key has one change at a time, its latest. */
    while (kind != VELTO_STORE_CHANGE_ERASED) {
        CHECK(velto_kvstore_get_change(reader, 10000, &kind, (VeltoTextBuffer){key, 64},
                                       (VeltoTextBuffer){value, 256}));
        print_text(key);
        if (kind == VELTO_STORE_CHANGE_SET) {
            printf(" = ");
            print_text(value);
        } else {
            printf(" is gone");
        }
        putchar('\n');
    }

    velto_close_key_value_store(reader);
    velto_close_key_value_store(writer);
    velto_close(server);
    return 0;
}
