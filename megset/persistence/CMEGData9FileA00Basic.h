#pragma once
// Folder, names and trial files of a dataset.

#include "megset/display/CMEGData8Show.h"

namespace megset {

class CMEGData9FileA00Basic : public CMEGData8Show
{
};

} // namespace megset
