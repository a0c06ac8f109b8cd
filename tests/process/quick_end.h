#pragma once

// Ends the process without the handlers and destructors of the program; the system's own way.
[[noreturn]] void end_quickly(int code);
