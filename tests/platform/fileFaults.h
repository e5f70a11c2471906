#pragma once
// What files tell when they fail.

#include "megset/platform/CFileException.h"

namespace megset {

/// The cause of the file exception that `act` raises, `none` without one.
template <class Act>
int fileFaultCause(Act act)
{
    try {
        act();
    } catch (const CFileException& exception) {
        return exception.m_cause;
    }
    return CFileException::none;
}

} // namespace megset
