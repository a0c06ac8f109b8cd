/* The header is all that a user includes, and enough, in the oldest languages that it promises. */
#include <velto/velto.h>

static VeltoResult play(VeltoHandle server)
{
    return velto_cmd_loadclip1(server, VELTO_CHANNEL_A, VELTO_TEXT("news_open"));
}

VeltoResult use_header(void);
VeltoResult use_header(void)
{
    return play(velto_connect(VELTO_IPV4(127, 0, 0, 1)));
}
