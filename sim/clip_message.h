#pragma once

#include <string>

#include <pugixml.hpp>

#include "sim/clip_record.h"
#include "sim/message.h"
#include "sim/standards.h"

namespace veltosim
{

// Adds the whole record as ClipInfo. What every clip has, and the record leaves out, is filled in.
void add_clip_info(const pugi::xml_node& parent, const Clip& clip, const Standard& standard);

// What `change`, the fields of a ClipAttrChange, makes of the clip: what is sent, and nothing else.
// Throws a Refusal for what does not fit the clip, or is more than a message about it can hold.
Clip changed_clip(const Clip& clip, const Fields& change, const Standard& standard);

// Throws a Refusal if the record does not fit into a message.
void check_message_size(const Clip& clip, const Standard& standard);

// Whether the change is one of the content, and not only of what is said about it.
bool changes_content(const Fields& change);
bool changes_meta(const Fields& change);

} // namespace veltosim
