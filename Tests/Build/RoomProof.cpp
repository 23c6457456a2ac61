#include "Text.h" // a header of its own room, which is there

#include "ChildProcess.h" // one of a room above, which must not be
