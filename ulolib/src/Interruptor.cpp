#include "ulolib/Interruptor.h"

// Out of line so that the classes' type information lives in this library only.
ULOInterruptor::~ULOInterruptor() = default;
ULONullInterruptor::~ULONullInterruptor() = default;
