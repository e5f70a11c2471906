#pragma once
// Every record, one include per line, sorted.

#include "megset/records/catalogues.h"
#include "megset/records/electric/CEEGelectrode.h"
#include "megset/records/electric/CMisceSnsr.h"
#include "megset/records/electric/CStimTrig.h"
#include "megset/records/magnetic/CBscMagSns.h"
#include "megset/records/magnetic/CMEGSensor.h"
#include "megset/records/magnetic/CMegGrdBsc.h"
#include "megset/records/sensors/CGeomzk.h"
