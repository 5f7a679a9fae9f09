#pragma once

/** Switches of the whole program. */
class TbatchGlobals
{
public:
    static bool fUseNonAffineXformCalculations; ///< model-view products in full, not as affine ones
    static bool fMultithreaded;                 ///< other threads than the first may use the libraries
};
