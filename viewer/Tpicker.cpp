#include "Tpicker.h"

#include "Graphics/3dPort/T3dPort.h"
#include "Graphics/3dPort/TpickBuffer.h"
#include "TviewScene.h"
#include "foundation/T4dDblPoint.h"
#include "foundation/Tpoint.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

using Titem = Tselection::Titem;

constexpr int kWordsPerRecord = 4; // with one name

} // namespace

void Tpicker::gather(const TportRect& region, Tselection::Tkind kind)
{
    fCandidates.clear();
    fVertices.clear();
    fPrimitive = kind == Tselection::kVertices ? GL_POINTS : GL_TRIANGLES;
    const TobjModel* model = fScene.model();
    if (!model || region.isEmpty() || fPort.viewport().isEmpty())
        return;
    T4dDblMatrix worldToClip;
    fPort.getTransformMatrix(worldToClip);
    const TpickVolume whole(worldToClip, fPort.viewport(), region);

    for (std::size_t i = 0; i < fScene.spheres().size(); ++i) {
        const TviewScene::Tsphere& sphere = fScene.spheres()[i];
        if (whole.missesSphere(sphere.fCentre, sphere.fRadius))
            continue;
        const TobjModel::Tobject& object = model->objects()[i];
        const TpickVolume volume = whole.movedFor(fScene.offset(i));
        if (kind == Tselection::kVertices) {
            gatherVertices(i, volume);
            continue;
        }
        const auto number = static_cast<std::uint32_t>(i);
        const auto* corners = model->triangles().data();
        std::size_t face = object.fFaces.fBegin;
        std::size_t faceEnd = model->trianglesOf(face).fEnd;
        for (std::size_t t = object.fTriangles.fBegin; t < object.fTriangles.fEnd; t += 3) {
            const float* p[3] = {corners[t].fPosition, corners[t + 1].fPosition, corners[t + 2].fPosition};
            if (volume.missesTriangle(p[0], p[1], p[2]))
                continue;
            while (t >= faceEnd)
                faceEnd = model->trianglesOf(++face).fEnd;
            const Titem item{number, kind == Tselection::kFaces ? static_cast<std::uint32_t>(face) : 0};
            if (fCandidates.empty() || !(fCandidates.back().fItem == item))
                fCandidates.push_back({item, fVertices.size(), fVertices.size()});
            fVertices.insert(fVertices.end(), p, p + 3);
            fCandidates.back().fEnd = fVertices.size();
        }
    }
}

void Tpicker::gatherVertices(std::size_t object, const TpickVolume& volume)
{
    const TobjModel& model = *fScene.model();
    for (const std::uint32_t vertex : model.objects()[object].fVertices) {
        const float* position = model.positions()[vertex].fPosition;
        if (volume.missesPoint(position))
            continue;
        fCandidates.push_back({{static_cast<std::uint32_t>(object), vertex}, fVertices.size(), fVertices.size() + 1});
        fVertices.push_back(position);
    }
}

void Tpicker::draw(const Tcandidate& candidate)
{
    const T4dDblVector& offset = fScene.offset(candidate.fItem.fObject);
    const bool moved = offset != T4dDblVector();
    if (moved) {
        fPort.pushMatrix();
        fPort.translate(offset);
    }
    fPort.setCurrentContext();
    glBegin(fPrimitive);
    for (std::size_t i = candidate.fBegin; i < candidate.fEnd; ++i)
        glVertex3fv(fVertices[i]);
    glEnd();
    if (moved)
        fPort.popMatrix();
}

template <class F> void Tpicker::select(const TportRect& region, const F& found)
{
    // Each candidate leaves one record at most. The shared buffer takes what lies in a pixel.
    const std::size_t words = fCandidates.size() * kWordsPerRecord;
    std::vector<unsigned> own(words > T3dPort::kSelectBufferSize ? words : 0);
    fPort.fSelectRect = region;
    fPort.beginSelect(own.empty() ? nullptr : own.data(), static_cast<int>(own.size()));
    fPort.pushName(0);
    for (std::size_t i = 0; i < fCandidates.size(); ++i) {
        fPort.loadName(static_cast<unsigned>(i));
        draw(fCandidates[i]);
    }
    fPort.popName();
    const int hits = fPort.endSelect();

    const TpickBuffer records = own.empty() ? TpickBuffer(T3dPort::kSelectBufferSize, T3dPort::fsSelectBuffer)
                                            : TpickBuffer(static_cast<int>(own.size()), own.data());
    found(records, hits);
}

std::optional<Titem> Tpicker::nearestSelected(const TportRect& region)
{
    std::optional<Titem> result;
    select(region, [&](const TpickBuffer& records, int hits) {
        unsigned depth = 0;
        unsigned count = 0;
        const unsigned* names = records.closestElem(hits, depth, count);
        if (names && names[0] < fCandidates.size())
            result = fCandidates[names[0]].fItem;
    });
    return result;
}

bool Tpicker::isDrawn(const TportRect& region, const Tcandidate& candidate, float& depth)
{
    fPort.fSelectRect = region;
    fPort.depthTest(true);
    fPort.depthMask(true);
    fPort.depthFunc(T3dPort::kDepthLequal);
    fPort.beginRasterizationSelect();
    draw(candidate);
    return fPort.endRasterizationSelect(&depth);
}

std::optional<Titem> Tpicker::nearestRasterized(const TportRect& region)
{
    std::optional<Titem> result;
    float least = std::numeric_limits<float>::max();
    for (const Tcandidate& candidate : fCandidates) {
        float depth = 0;
        if (isDrawn(region, candidate, depth) && depth < least) {
            least = depth;
            result = candidate.fItem;
        }
    }
    return result;
}

std::vector<Titem> Tpicker::allRasterized(const TportRect& region)
{
    std::vector<Titem> result;
    for (const Tcandidate& candidate : fCandidates) {
        float depth = 0;
        if (isDrawn(region, candidate, depth))
            result.push_back(candidate.fItem);
    }
    return result;
}

std::optional<Titem> Tpicker::nearest(const Tpoint& pixel, Tselection::Tkind kind)
{
    return nearest(TportRect(pixel.x, pixel.y, static_cast<short>(pixel.x + 1), static_cast<short>(pixel.y + 1)), kind);
}

std::optional<Titem> Tpicker::nearest(const TportRect& region, Tselection::Tkind kind)
{
    gather(region, kind);
    if (fCandidates.empty())
        return std::nullopt;
    return fWay == kSelection ? nearestSelected(region) : nearestRasterized(region);
}

std::optional<Titem> Tpicker::nearestVertex(const Tpoint& pixel, int reach)
{
    const std::optional<Titem> face = nearest(pixel, Tselection::kFaces);
    const TportRect region(static_cast<short>(pixel.x - reach), static_cast<short>(pixel.y - reach),
                           static_cast<short>(pixel.x + reach + 1), static_cast<short>(pixel.y + reach + 1));
    const std::vector<Titem> near = within(region, Tselection::kVertices);

    std::optional<Titem> result;
    double least = reach + 0.5;
    const TobjModel& model = *fScene.model();
    for (const Titem& item : near) {
        if (face) {
            const TobjModel::Trange range = model.cornersOf(face->fElement);
            const auto* corners = model.corners().data();
            const bool ofFace = item.fObject == face->fObject && std::find(corners + range.fBegin, corners + range.fEnd,
                                                                           item.fElement) != corners + range.fEnd;
            if (!ofFace)
                continue;
        }
        const float* p = model.positions()[item.fElement].fPosition;
        T4dDblPoint at;
        fPort.worldToPort(T4dDblPoint(p[0], p[1], p[2]) + fScene.offset(item.fObject), at);
        const double distance = std::hypot(at.x - pixel.x - 0.5, at.y - pixel.y - 0.5);
        if (distance <= least) {
            least = distance;
            result = item;
        }
    }
    return result;
}

std::vector<Titem> Tpicker::within(const TportRect& region, Tselection::Tkind kind)
{
    gather(region, kind);
    if (fCandidates.empty())
        return {};
    if (fWay == kRasterization && kind == Tselection::kObjects)
        return allRasterized(region);
    std::vector<Titem> result;
    select(region, [&](const TpickBuffer& records, int hits) {
        unsigned depth = 0;
        unsigned count = 0;
        unsigned* names = nullptr;
        for (int i = 0; i < hits && (names = records.nextElem(names, depth, count)); ++i) {
            if (count > 0 && names[0] < fCandidates.size())
                result.push_back(fCandidates[names[0]].fItem);
        }
    });
    return result;
}
