#include "foundation/TxformMatrix.h"

namespace {

// An axis is taken to lie in the space of those before it when less than this part of its squared length is outside.
constexpr double kNegligible = 1e-20;

} // namespace

T4dDblMatrix TxformMatrix::unSquishMatrix(unSquishType type) const
{
    T4dDblVector axes[3]; // of correction x matrix
    T4dDblMatrix correction;
    for (int i = 0; i < 3; ++i) {
        const T4dDblVector own(fMatrix[4 * i], fMatrix[4 * i + 1], fMatrix[4 * i + 2]);
        T4dDblVector axis = own;
        double row[3] = {};
        row[i] = 1;
        if (type == kUnSquishShear) {
            // Gram-Schmidt, noting for each axis how it is made of the matrix's own ones.
            for (int k = 0; k < i; ++k) {
                const double part = axis.dot(axes[k]);
                axis -= axes[k] * part;
                for (int j = 0; j <= k; ++j)
                    row[j] -= part * correction[4 * k + j];
            }
        }
        const double length = axis.length();
        if (!(length > 0) || !(axis.lengthSquared() > kNegligible * own.lengthSquared()))
            continue;
        axes[i] = axis * (1 / length);
        for (int j = 0; j <= i; ++j)
            correction[4 * i + j] = row[j] / length;
    }
    return correction;
}
