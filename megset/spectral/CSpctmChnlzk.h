#pragma once
// The spectrum of one channel for one spectral class, and arithmetic between channels. This is the class that is made.

#include "megset/spectral/CSpctmChnl09File.h"

namespace megset {

/// A channel's spectrum of one class, planes of T x F values, with arithmetic; this is the class that is made.
class CSpctmChnlzk : public CSpctmChnl09File
{
public:
    /// Adds the planes that the other one has, in the order R, I, M, A. A plane that is missing here is made with
    /// bCreate, which takes over the other's T and F and ends planes of another shape. 0 for null, for an empty other,
    /// for a missing plane without bCreate, for another shape, and without memory; planes before that one have been
    /// added then. The backup stays.
    int addSpctmChnlzk(CSpctmChnlzk* pOther, bool bCreate);
    /// 1 with R, I and M (and A).
    int has3Data() const;
    int has4Data() const;
    /// Combines the planes that both A and B have, element by element, and copies the result to the backup: A - B (0),
    /// A + B (1), A * B (2), 0.0 for other operations. A shape other than A's ends what this object holds, backup
    /// included; planes that are missing are made with bCreate. 0 for null, for empty operands or operands of different
    /// shape, for a missing plane without bCreate, and without memory; no plane is combined then.
    int operateSpctmChnlAB2C(CSpctmChnlzk* pA, CSpctmChnlzk* pB, bool bCreate, int nOperation);
    /// Takes over T and F, and no plane: planes of another shape are ended. 0 for null.
    int setParameters(const CSpctmChnlzk* pOther);

private:
    bool hasShapeOf(const CSpctmChnlzk& other) const;
    bool takeShapeAndMake(const CSpctmChnlzk& other, int nDataType);
    bool hasPlanesUpTo(int nDataType) const;
    void combine(const CSpctmChnlzk& a, const CSpctmChnlzk& b, int nDataType, int nOperation);
};

} // namespace megset
