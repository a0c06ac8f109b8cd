#pragma once

#include "connection/handle_table.h"
#include "connection/name_list.h"

// The lists of names behind list handles, whatever they name: one reader and one closer serve all.
using NameListTable = HandleTable<NameList>;
NameListTable& name_lists();

// Takes the first name, whether it fits or not; the empty text at the end, which is no failure, and
// for an unknown handle, which is one.
VeltoResult take_name(VeltoListHandle list, VeltoTextBuffer buffer);
void close_names(VeltoListHandle list);
