#include "TmodelLists.h"

#include "Graphics/3dPort/T3dPort.h"

void TmodelLists::reset(T3dPort& port, const TobjModel* model)
{
    port.setCurrentContext();
    for (unsigned& first : fFirst) {
        if (first)
            glDeleteLists(first, static_cast<GLsizei>(fCount));
        first = 0;
    }
    fModel = model;
    fCount = model ? model->objects().size() : 0;
}

void TmodelLists::draw(Tway way, std::size_t object)
{
    if (object >= fCount)
        return;
    if (!fFirst[way])
        fFirst[way] = makeLists(way);
    if (fFirst[way])
        glCallList(fFirst[way] + static_cast<unsigned>(object));
}

unsigned TmodelLists::makeLists(Tway way) const
{
    const unsigned first = glGenLists(static_cast<GLsizei>(fCount));
    if (!first)
        return 0;
    glPushClientAttrib(GL_CLIENT_VERTEX_ARRAY_BIT);
    if (way == kEdges)
        glInterleavedArrays(GL_V3F, 0, fModel->positions().data());
    else
        glInterleavedArrays(GL_N3F_V3F, 0, fModel->triangles().data());
    if (way != kEdges && !fModel->triangleUvs().empty()) {
        glEnableClientState(GL_TEXTURE_COORD_ARRAY);
        glTexCoordPointer(2, GL_FLOAT, 0, fModel->triangleUvs().data());
    }
    if (way == kSmooth)
        glNormalPointer(GL_FLOAT, 0, fModel->smoothNormals().data());
    for (std::size_t i = 0; i < fCount; ++i) {
        const TobjModel::Tobject& object = fModel->objects()[i];
        const TobjModel::Trange& range = way == kEdges ? object.fEdges : object.fTriangles;
        glNewList(first + static_cast<unsigned>(i), GL_COMPILE);
        if (way == kEdges) {
            glDrawElements(GL_LINES, static_cast<GLsizei>(range.size()), GL_UNSIGNED_INT,
                           fModel->edges().data() + range.fBegin);
        } else {
            glDrawArrays(GL_TRIANGLES, static_cast<GLint>(range.fBegin), static_cast<GLsizei>(range.size()));
        }
        glEndList();
    }
    glPopClientAttrib();
    return first;
}
