#include "api/name_lists.h"

#include "connection/result.h"
#include "connection/text.h"

NameListTable& name_lists()
{
    return process_table<NameListTable>();
}

VeltoResult take_name(VeltoListHandle list, VeltoTextBuffer buffer)
{
    AString name;
    const bool is_known = name_lists().change(list, [&](NameList& names) {
        if (const AStringList::Entry first = names->pop_front()) {
            name = first->value;
        }
    });
    copy_text(name, buffer);
    return is_known ? result_ok() : result_invalid_handle();
}

void close_names(VeltoListHandle list)
{
    name_lists().remove(list);
}
