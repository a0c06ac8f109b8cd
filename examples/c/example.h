/* What the C examples share: an address from the command line, and results told on the output. */
#ifndef EXAMPLE_H
#define EXAMPLE_H

#include <velto/velto.h>

#include <stdio.h>
#include <stdlib.h>

/* Prints a text as far as it is ASCII. */
static inline void print_text(const VeltoChar* text)
{
    for (; *text != 0; ++text) {
        putchar(*text < 0x80 ? (int)*text : '?');
    }
}

/* Ends the program, with the text of the failure, unless the call before has succeeded. */
static inline void check(VeltoResult result, const char* what)
{
    VeltoChar text[256];

    if (result == VELTO_RESULT_OK) {
        return;
    }
    velto_get_last_error((VeltoTextBuffer){text, 256});
    printf("%s failed with %d: ", what, (int)result);
    print_text(text);
    putchar('\n');
    exit(1);
}

#define CHECK(call) check(call, #call)

/* Connects to the server whose address is the first argument, 127.0.0.1 without one. */
static inline VeltoHandle connect_to(int argc, char** argv)
{
    unsigned a = 127, b = 0, c = 0, d = 1;
    VeltoHandle server;

    if (argc > 1 && sscanf(argv[1], "%3u.%3u.%3u.%3u", &a, &b, &c, &d) != 4) {
        fprintf(stderr, "usage: %s [ADDRESS]\n", argv[0]);
        exit(2);
    }
    server = velto_connect(VELTO_IPV4(a, b, c, d));
    velto_wait_until_connected(server);
    return server;
}

#endif
