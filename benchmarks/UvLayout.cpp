#include "UvLayout.h"

#include <GL/gl.h>

UvLayout::UvLayout(int side) : fCorners(unsigned(4 * side * side))
{
    const auto place = [side](int i) { return float(2 * i) / float(side) - 1; };
    for (int row = 0; row < side; ++row)
        for (int column = 0; column < side; ++column)
            for (const auto& [dx, dy] : {T2Float{0, 0}, {1, 0}, {1, 1}, {0, 1}})
                fCorners.append({place(column + int(dx)), place(row + int(dy))});
    for (unsigned i = 0; i < fCorners.length(); ++i)
        fIndices.append(i);
    fCache.setPointsPerPolygon(TuvCache::kQuads);
    fCache.setPoints(fCorners);
    fCache.setIndices(fIndices);
}

void UvLayout::drawRaw() const
{
    glPolygonMode(GL_FRONT_AND_BACK, GL_LINE);
    glColor3f(1, 1, 1);
    glBegin(GL_QUADS);
    for (const T2Float& corner : fCorners)
        glVertex2fv(&corner.x);
    glEnd();
    glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
}
