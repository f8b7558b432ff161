#pragma once

// The X library's header has a field called like a keyword of C++.
#define explicit explicit_
#include <xcb/xkb.h>
#undef explicit
