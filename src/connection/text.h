#pragma once

#include "foundation/astring.h"
#include "velto/velto.h"

#include <string>

// Texts at the exported boundary: 16-bit units, whatever their type is called on the platform.

// The units up to the 0. A null pointer is reported and is the empty text.
std::u16string wide_from_units(const VeltoChar* units);
AString text_from_units(const VeltoChar* units);
// At most size - 1 units and a 0; nothing for a size of 0. A pair that does not fit whole is left
// out.
void copy_text(const AString& text, VeltoTextBuffer buffer);
void copy_text(const std::u16string& text, VeltoTextBuffer buffer);
