#include "connection/result.h"

#include "connection/last_error.h"
#include "foundation/no_destructor.h"

namespace
{

// Records one of the texts that never change.
template <VeltoResult Code>
VeltoResult result_with_fixed_text(const char* text)
{
    static const NoDestructor<AString> fixed_text(text);
    return result_with_code(Code, *fixed_text);
}

} // namespace

VeltoResult result_with_code(VeltoResult code, const AString& text)
{
    set_last_error_text(text);
    return code;
}

VeltoResult result_failed(const AString& text)
{
    return result_with_code(VELTO_RESULT_FAILED, text);
}

VeltoResult result_ok()
{
    return result_with_fixed_text<VELTO_RESULT_OK>("OK");
}

VeltoResult result_invalid_handle()
{
    return result_with_fixed_text<VELTO_RESULT_INVALID_HANDLE>("Invalid handle");
}

VeltoResult result_read_only()
{
    return result_with_fixed_text<VELTO_RESULT_READ_ONLY>("Read only");
}

VeltoResult result_timeout()
{
    return result_with_fixed_text<VELTO_RESULT_TIMEOUT>("Timeout");
}

VeltoResult result_invalid_argument()
{
    return result_with_fixed_text<VELTO_RESULT_INVALID_ARGUMENT>("Invalid argument");
}

VeltoResult result_write_only()
{
    return result_with_fixed_text<VELTO_RESULT_WRITE_ONLY>("Write only");
}
