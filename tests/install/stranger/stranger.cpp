#include <velto/velto.h>

#include <iostream>
#include <string>

// Nothing listens where it connects to: a command fails at once, and says why.
int main()
{
    const VeltoHandle server = velto_connect(VELTO_IPV4(127, 66, 66, 66));
    const VeltoResult result = velto_cmd_play1(server, VELTO_CHANNEL_A);
    VeltoChar text[64] = {};
    velto_get_last_error({text, 64});
    velto_close(server);

    std::cout << result << ' ';
    for (const VeltoChar unit : std::basic_string<VeltoChar>(text)) {
        std::cout << static_cast<char>(unit);
    }
    std::cout << '\n';
}
