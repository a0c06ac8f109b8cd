#include <velto/velto.h>

#include <stdio.h>

/* Nothing listens where it connects to: a command fails at once, and says why. */
int main(void)
{
    VeltoHandle server = velto_connect(VELTO_IPV4(127, 66, 66, 66));
    VeltoResult result = velto_cmd_play1(server, VELTO_CHANNEL_A);
    VeltoChar text[64] = {0};
    velto_get_last_error((VeltoTextBuffer){text, 64});
    velto_close(server);

    printf("%d ", (int)result);
    for (const VeltoChar* unit = text; *unit != 0; ++unit) {
        putchar((int)*unit);
    }
    putchar('\n');
    return 0;
}
