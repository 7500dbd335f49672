// Plain types shared by every part of the library.
#ifndef VIRELINE_TYPES_H_
#define VIRELINE_TYPES_H_

#include <cstdint>

#include <glibmm/ustring.h>

// A 32-bit unsigned number; 0xFFFFFFFF stands for "missing" in key=value getters.
typedef uint32_t U32;

// A player number: 0-3 are slots, -1 no player, -2 all players, -3 the current player.
typedef int32_t tPlayerID;

// The platform's path and string types are UTF-8 Glib strings.
typedef Glib::ustring CPath;
typedef Glib::ustring CString;

#endif  // VIRELINE_TYPES_H_
