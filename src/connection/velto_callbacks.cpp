#include "connection/velto_callbacks.h"

#include "connection/velto.h"

namespace
{
const AString& ok_text()
{
    static const NoDestructor<AString> text("OK");
    return *text;
}
} // namespace

CBBaseObject::CBBaseObject(const ARef<VeltoConnObject>& owner, Waiting waiting)
    : connection(owner), result_text(ok_text())
{
    if (waiting == Waiting::waits) {
        done_semaphore = std::make_unique<BSem>(false);
    }
    atomic_increment(connection->outstanding_callbacks);
}

void CBBaseObject::error_delegate(AString text, ZAVL3::ErrorCode)
{
    result_code = VELTO_RESULT_FAILED;
    result_text = text;
    finish_callback();
}

void CBBaseObject::finish_callback()
{
    atomic_decrement(connection->outstanding_callbacks);
    connection.clear();
    if (done_semaphore != nullptr) {
        done_semaphore->signal();
    }
    drop_share();
}

void CBBaseObject::drop_share()
{
    if (atomic_decrement(reference_count) == 0) {
        delete this;
    }
}
