#pragma once
// The standard electrode and sensor sets, kinds of signal and acquisition devices. The tables stand in records/, where
// the electrode's position lookups need them.

#include "megset/records/catalogues.h"
