#pragma once
// Long operations ask an interruptor between steps whether they should stop.
#include "ulolib/Export.h"

class ULOLIB_API ULOInterruptor {
public:
    virtual ~ULOInterruptor();
    virtual bool IsInterrupted() const = 0;
};

// Never interrupts.
class ULOLIB_API ULONullInterruptor : public ULOInterruptor {
public:
    ~ULONullInterruptor() override;
    bool IsInterrupted() const override { return false; }
};
