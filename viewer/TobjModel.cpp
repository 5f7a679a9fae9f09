#include "TobjModel.h"

#include "TcornerNormals.h"
#include "TfaceFiller.h"
#include "foundation/Tangle.h"

#include <tiny_obj_loader.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <istream>
#include <limits>
#include <map>
#include <new>
#include <streambuf>
#include <string_view>

namespace {

using Tmesh = TobjModel::Tmesh;

constexpr double kLargestCoordinate = 1e100; // leaves room for squares and products
constexpr double kSmallestExtent = 1e-100;
constexpr std::size_t kMostDigits = 9; // of an index: what certainly fits an int
constexpr std::size_t kMostCorners = 500000000;
constexpr int kPercentRead = 75;
constexpr std::uint32_t kNoIndex = 0xFFFFFFFF;
constexpr std::size_t kLongestName = 64;
constexpr char kBlanks[] = " \t\r\f\v";

/** Held within what a float can take: a vertex that no face uses may be anywhere. */
float toFloat(double value)
{
    return static_cast<float>(std::clamp(value, -1e30, 1e30));
}

void extend(T4dDblVector& lower, T4dDblVector& upper, const T4dDblVector& p)
{
    lower = {std::min(lower.x, p.x), std::min(lower.y, p.y), std::min(lower.z, p.z)};
    upper = {std::max(upper.x, p.x), std::max(upper.y, p.y), std::max(upper.z, p.z)};
}

bool startsNumber(std::string_view token, bool fractionAllowed)
{
    const std::size_t at = !token.empty() && (token[0] == '+' || token[0] == '-') ? 1 : 0;
    if (at >= token.size())
        return false;
    const bool digit = token[at] >= '0' && token[at] <= '9';
    return digit || (fractionAllowed && token[at] == '.');
}

/** Every run of digits short enough for an int: longer ones come out of the parser as some other index. */
bool hasSmallNumbers(std::string_view token)
{
    std::size_t digits = 0;
    for (const char c : token) {
        digits = c >= '0' && c <= '9' ? digits + 1 : 0;
        if (digits > kMostDigits)
            return false;
    }
    return true;
}

/**
 * Hands the lines of a file to the parser, joined where one goes on in the next, after a check of what the parser would
 * quietly take for a zero or another number. Ends the text at the first line that is wrong.
 */
class TcheckedLines : public std::streambuf
{
public:
    TcheckedLines(std::istream& in, std::uintmax_t size, TloadProgress& progress)
        : fIn(in), fSize(std::max<std::uintmax_t>(size, 1)), fProgress(progress)
    {
    }

    /** Ends the reading. The first reason counts. */
    void fail(const std::string& reason)
    {
        if (fReason.empty())
            fReason = "line " + std::to_string(fLine) + ": " + reason;
    }
    bool hasFailed() const { return !fReason.empty(); }
    const std::string& reason() const { return fReason; }
    std::size_t line() const { return fLine; }

protected:
    int_type underflow() override
    {
        if (hasFailed() || fProgress.fCancelled || !nextLine())
            return traits_type::eof();
        check();
        if (hasFailed())
            return traits_type::eof();
        fText += '\n';
        setg(fText.data(), fText.data(), fText.data() + fText.size());
        return traits_type::to_int_type(fText[0]);
    }

private:
    bool nextLine()
    {
        fText.clear();
        bool goesOn = true;
        while (goesOn) {
            if (!std::getline(fIn, fPart))
                return !fText.empty();
            ++fLine;
            fRead += fPart.size() + 1;
            while (!fPart.empty() && fPart.back() == '\r')
                fPart.pop_back();
            goesOn = !fPart.empty() && fPart.back() == '\\';
            if (goesOn)
                fPart.back() = ' ';
            fText += fPart;
        }
        fProgress.fPercent = static_cast<int>(std::min<std::uintmax_t>(fRead * kPercentRead / fSize, kPercentRead));
        return true;
    }

    void check()
    {
        fText.resize(std::min(fText.find('#'), fText.size()));
        std::replace(fText.begin(), fText.end(), '\0', ' ');
        // The parser takes these two for part of a word.
        std::replace_if(
            fText.begin(), fText.end(), [](char c) { return c == '\f' || c == '\v'; }, ' ');
        const std::string_view text(fText);
        std::size_t at = text.find_first_not_of(kBlanks);
        if (at == std::string_view::npos)
            return;
        const auto nextToken = [&] {
            const std::size_t end = std::min(text.find_first_of(kBlanks, at), text.size());
            const std::string_view token = text.substr(at, end - at);
            at = std::min(text.find_first_not_of(kBlanks, end), text.size());
            return token;
        };
        const std::string_view keyword = nextToken();
        if (keyword == "v") {
            for (int i = 0; i < 3; ++i) {
                const std::string_view token = nextToken();
                if (token.empty())
                    return fail("a vertex with fewer than three coordinates");
                if (!startsNumber(token, true))
                    return fail("\"" + std::string(token.substr(0, 20)) + "\" is no coordinate");
            }
        } else if (keyword == "f") {
            std::size_t corners = 0;
            for (; at < text.size(); ++corners) {
                const std::string_view token = nextToken();
                if (!startsNumber(token, false))
                    return fail("\"" + std::string(token.substr(0, 20)) + "\" is no vertex index");
                if (!hasSmallNumbers(token))
                    return fail("the index in \"" + std::string(token.substr(0, 40)) + "\" is too large");
            }
            if (corners < 3)
                return fail("a face with fewer than three corners");
        }
    }

    std::istream& fIn;
    const std::uintmax_t fSize;
    TloadProgress& fProgress;
    std::uintmax_t fRead = 0;
    std::size_t fLine = 0;
    std::string fPart;
    std::string fText;
    std::string fReason;
};

/** Reads the material files that a model names. Only ordinary files: a pipe or a device could go on for ever. */
class TmaterialFiles : public tinyobj::MaterialReader
{
public:
    explicit TmaterialFiles(const std::filesystem::path& folder) : fFolder(folder) {}

    bool operator()(const std::string& name, std::vector<tinyobj::material_t>* materials,
                    std::map<std::string, int>* indices, std::string* warning, std::string* error) override
    {
        const std::filesystem::path path = fFolder / name;
        std::error_code failure;
        std::ifstream file;
        if (std::filesystem::is_regular_file(path, failure))
            file.open(path, std::ios::binary);
        if (!file.is_open())
            return false;
        tinyobj::LoadMtl(indices, materials, &file, warning, error);
        return true;
    }

private:
    const std::filesystem::path fFolder; ///< that names start from
};

/** Takes in what the parser finds. */
struct TmeshReader
{
    TcheckedLines& fLines;
    std::filesystem::path fFolder; ///< that names of files in the file start from
    Tmesh fMesh;
    std::size_t fHighest = 0; ///< index in the file's counting, which starts at 1
    std::size_t fHighestLine = 0;

    static void onVertex(void* self, double x, double y, double z, double)
    {
        static_cast<TmeshReader*>(self)->addVertex({x, y, z});
    }

    static void onNormal(void* self, double x, double y, double z)
    {
        auto& normals = static_cast<TmeshReader*>(self)->fMesh.fNormals;
        if (normals.size() < kMostCorners)
            normals.emplace_back(x, y, z);
    }

    static void onUv(void* self, double u, double v, double)
    {
        auto& uvs = static_cast<TmeshReader*>(self)->fMesh.fUvs;
        if (uvs.size() < kMostCorners)
            uvs.push_back({toFloat(u), toFloat(v)});
    }

    static void onMaterials(void* self, const tinyobj::material_t* materials, int count)
    {
        auto* reader = static_cast<TmeshReader*>(self);
        for (int i = 0; i < count && reader->fMesh.fTexture.empty(); ++i) {
            if (!materials[i].diffuse_texname.empty())
                reader->fMesh.fTexture = (reader->fFolder / materials[i].diffuse_texname).string();
        }
    }

    static void onObject(void* self, const char* name)
    {
        static_cast<TmeshReader*>(self)->startObject(name ? name : "");
    }

    static void onGroup(void* self, const char** names, int count)
    {
        std::string all;
        for (int i = 0; i < count && all.size() < kLongestName; ++i)
            all += (i == 0 ? "" : " ") + std::string(names[i]);
        static_cast<TmeshReader*>(self)->startObject(all);
    }

    static void onFace(void* self, tinyobj::index_t* corners, int count)
    {
        static_cast<TmeshReader*>(self)->addFace(corners, count);
    }

    void startObject(const std::string& name)
    {
        auto& objects = fMesh.fObjects;
        // Faces before the first name are an object without one; a name that no face follows gives way to the next.
        if (objects.empty() && !fMesh.fFaceEnds.empty())
            objects.push_back({std::string(), 0});
        if (!objects.empty() && objects.back().fFirstFace == fMesh.fFaceEnds.size())
            objects.pop_back();
        objects.push_back({name.substr(0, kLongestName), fMesh.fFaceEnds.size()});
    }

    void addVertex(const T4dDblVector& p)
    {
        for (const double coordinate : {p.x, p.y, p.z}) {
            if (!(std::fabs(coordinate) <= kLargestCoordinate))
                return fLines.fail("a coordinate is out of range");
        }
        if (fMesh.fPoints.size() >= kMostCorners)
            return fLines.fail("too many vertices");
        fMesh.fPoints.push_back(p);
    }

    void addFace(const tinyobj::index_t* corners, int count)
    {
        if (fMesh.fCorners.size() + static_cast<std::size_t>(count) > kMostCorners)
            return fLines.fail("too many faces");
        const auto known = static_cast<long long>(fMesh.fPoints.size());
        for (int i = 0; i < count; ++i) {
            const long long given = corners[i].vertex_index;
            const long long index = given < 0 ? known + given + 1 : given;
            if (index < 1) {
                return fLines.fail("there is no vertex " + std::to_string(given) +
                                   (given < 0 ? " counted from here" : ": they count from 1"));
            }
            // A vertex may come after its face; whether it does is seen at the end.
            if (static_cast<std::size_t>(index) > fHighest) {
                fHighest = static_cast<std::size_t>(index);
                fHighestLine = fLines.line();
            }
            fMesh.fCorners.push_back(static_cast<std::uint32_t>(index - 1));
            fMesh.fCornerNormals.push_back(optionalIndex(corners[i].normal_index, fMesh.fNormals.size()));
            fMesh.fCornerUvs.push_back(optionalIndex(corners[i].texcoord_index, fMesh.fUvs.size()));
        }
        fMesh.fFaceEnds.push_back(static_cast<std::uint32_t>(fMesh.fCorners.size()));
    }

    static std::uint32_t optionalIndex(long long given, std::size_t known)
    {
        const long long index = given < 0 ? static_cast<long long>(known) + given : given - 1;
        return index < 0 ? kNoIndex : static_cast<std::uint32_t>(index);
    }
};

bool readMesh(std::istream& file, const std::filesystem::path& folder, std::uintmax_t size, TloadProgress& progress,
              Tmesh& mesh, std::string& error)
{
    TcheckedLines lines(file, size, progress);
    TmeshReader reader{lines, folder, {}};
    TmaterialFiles materials(folder);
    tinyobj::callback_t callbacks;
    callbacks.vertex_cb = &TmeshReader::onVertex;
    callbacks.normal_cb = &TmeshReader::onNormal;
    callbacks.texcoord_cb = &TmeshReader::onUv;
    callbacks.index_cb = &TmeshReader::onFace;
    callbacks.mtllib_cb = &TmeshReader::onMaterials;
    callbacks.object_cb = &TmeshReader::onObject;
    callbacks.group_cb = &TmeshReader::onGroup;
    std::istream in(&lines);
    tinyobj::LoadObjWithCallback(in, callbacks, &reader, &materials, nullptr, nullptr);

    if (progress.fCancelled)
        error = "cancelled";
    else if (lines.hasFailed())
        error = lines.reason();
    else if (file.bad() || in.bad())
        error = "reading failed";
    else if (reader.fMesh.fFaceEnds.empty())
        error = "there are no faces in it";
    else if (reader.fHighest > reader.fMesh.fPoints.size())
        error = "line " + std::to_string(reader.fHighestLine) + ": there is no vertex " +
                std::to_string(reader.fHighest) + ", the file has " + std::to_string(reader.fMesh.fPoints.size());
    if (!error.empty())
        return false;
    mesh = std::move(reader.fMesh);
    return true;
}

} // namespace

std::shared_ptr<const TobjModel> TobjModel::load(const std::string& path, TloadProgress& progress, std::string& error)
{
    error.clear();
    try {
        namespace fs = std::filesystem;
        std::error_code failure;
        const fs::file_status status = fs::status(path, failure);
        if (fs::exists(status) && !fs::is_regular_file(status)) {
            error = fs::is_directory(status) ? "it is a directory" : "it is not an ordinary file";
            return nullptr;
        }
        errno = 0;
        std::ifstream file(path, std::ios::binary);
        if (!file) {
            error = errno ? std::strerror(errno) : "it can't be read";
            return nullptr;
        }
        const std::uintmax_t size = fs::file_size(path, failure);
        Tmesh mesh;
        if (!readMesh(file, fs::path(path).parent_path(), failure ? 0 : size, progress, mesh, error))
            return nullptr;
        auto model = std::make_shared<const TobjModel>(mesh);
        progress.fPercent = 100;
        return model;
    } catch (const std::bad_alloc&) {
        error = "there is not enough memory for it";
    } catch (const std::exception&) {
        error = "it can't be read";
    }
    return nullptr;
}

std::shared_ptr<const TobjModel> TobjModel::torusKnot()
{
    constexpr std::uint32_t kAlong = 288;
    constexpr std::uint32_t kAround = 20;
    constexpr double kTube = 0.52;
    constexpr double kHeight = 2.1;

    const auto spine = [](double t) {
        const double r = 2 + 0.85 * std::cos(3 * t);
        return T4dDblVector(r * std::cos(2 * t), kHeight + 1.45 * std::sin(3 * t), r * std::sin(2 * t));
    };
    Tmesh mesh;
    mesh.fObjects.push_back({"knot", 0});
    for (std::uint32_t j = 0; j <= kAround; ++j) {
        for (std::uint32_t i = 0; i <= kAlong; ++i)
            mesh.fUvs.push_back({float(i) / kAlong, float(j) / kAround});
    }
    const auto uvAt = [](std::uint32_t i, std::uint32_t j) { return j * (kAlong + 1) + i; };
    for (std::uint32_t i = 0; i < kAlong; ++i) {
        const double t = 2 * Tangle::kPi * i / kAlong;
        const T4dDblVector at = spine(t);
        const T4dDblVector tangent = (spine(t + 1e-4) - spine(t - 1e-4)).normalised();
        const T4dDblVector side = tangent.cross({at.x, at.y - kHeight, at.z}).normalised();
        const T4dDblVector out = side.cross(tangent);
        for (std::uint32_t j = 0; j < kAround; ++j) {
            const double u = 2 * Tangle::kPi * j / kAround;
            mesh.fPoints.push_back(at + out * (kTube * std::cos(u)) + side * (kTube * std::sin(u)));
            const std::uint32_t nextI = (i + 1) % kAlong;
            const std::uint32_t nextJ = (j + 1) % kAround;
            for (const std::uint32_t corner :
                 {i * kAround + j, i * kAround + nextJ, nextI * kAround + nextJ, nextI * kAround + j})
                mesh.fCorners.push_back(corner);
            for (const std::uint32_t uv : {uvAt(i, j), uvAt(i, j + 1), uvAt(i + 1, j + 1), uvAt(i + 1, j)})
                mesh.fCornerUvs.push_back(uv);
            mesh.fFaceEnds.push_back(static_cast<std::uint32_t>(mesh.fCorners.size()));
        }
    }
    return std::make_shared<const TobjModel>(mesh);
}

TobjModel::TobjModel(const Tmesh& mesh) : fCorners(mesh.fCorners), fFaceEnds(mesh.fFaceEnds)
{
    fTexturePath = mesh.fTexture;
    measure(mesh);
    takeUvs(mesh);
    buildTriangles(mesh);
    buildObjects(mesh);
}

std::size_t TobjModel::objectOf(std::size_t face) const
{
    const auto after =
        std::upper_bound(fObjects.begin(), fObjects.end(), face,
                         [](std::size_t wanted, const auto& object) { return wanted < object.fFaces.fEnd; });
    return std::min<std::size_t>(static_cast<std::size_t>(after - fObjects.begin()), fObjects.size() - 1);
}

TobjModel::Trange TobjModel::trianglesOf(std::size_t face) const
{
    return {face == 0 ? 0 : fFaceTriangleEnds[face - 1], fFaceTriangleEnds[face]};
}

TobjModel::Trange TobjModel::cornersOf(std::size_t face) const
{
    return {face == 0 ? 0 : fFaceEnds[face - 1], fFaceEnds[face]};
}

void TobjModel::measure(const Tmesh& mesh)
{
    // Vertices that no face uses often are rests far away, and would make the model small.
    bool first = true;
    for (const std::uint32_t corner : mesh.fCorners) {
        const T4dDblVector& p = mesh.fPoints[corner];
        if (first)
            fLower = fUpper = p;
        first = false;
        extend(fLower, fUpper, p);
    }
    fCentre = (fLower + fUpper) * 0.5;
    const double radius = (fUpper - fLower).length() / 2;
    fScale = radius > kSmallestExtent ? 1 / radius : 1;

    fPositions.reserve(mesh.fPoints.size());
    for (const T4dDblVector& p : mesh.fPoints) {
        const T4dDblVector s = (p - fCentre) * fScale;
        fPositions.push_back({{toFloat(s.x), toFloat(s.y), toFloat(s.z)}});
    }
}

void TobjModel::buildTriangles(const Tmesh& mesh)
{
    std::vector<T4dDblVector> polygon;
    const auto takePolygon = [&](std::size_t from, std::size_t to) {
        polygon.clear();
        for (std::size_t corner = from; corner < to; ++corner)
            polygon.push_back((mesh.fPoints[mesh.fCorners[corner]] - fCentre) * fScale);
    };
    std::vector<T4dDblVector> areas;
    areas.reserve(mesh.fFaceEnds.size());
    std::size_t start = 0;
    for (const std::uint32_t end : mesh.fFaceEnds) {
        takePolygon(start, end);
        areas.push_back(TfaceFiller::areaNormal(polygon));
        start = end;
    }

    const std::vector<T4dDblVector> smooth = cornerNormals(mesh, areas);
    TfaceFiller filler;
    std::vector<std::uint32_t> indices;
    start = 0;
    for (std::size_t face = 0; face < areas.size(); ++face) {
        const std::size_t end = mesh.fFaceEnds[face];
        const double length = areas[face].length();
        if (length > 0) {
            const T4dDblVector n = areas[face] * (1 / length);
            takePolygon(start, end);
            indices.clear();
            filler.fill(polygon, indices);
            for (const std::uint32_t i : indices) {
                const T4dDblVector& p = polygon[i];
                const T4dDblVector& s = start + i < end ? smooth[start + i] : n;
                fTriangles.push_back(
                    {{toFloat(n.x), toFloat(n.y), toFloat(n.z)}, {toFloat(p.x), toFloat(p.y), toFloat(p.z)}});
                fSmoothNormals.push_back({{toFloat(s.x), toFloat(s.y), toFloat(s.z)}});
                if (!fUvs.empty()) {
                    const Tuv uv = start + i < end ? fUvs[start + i] : Tuv{0, 0};
                    fTriangleUvs.push_back(std::isnan(uv.fU) ? Tuv{0, 0} : uv);
                }
            }
        }
        fFaceTriangleEnds.push_back(fTriangles.size());
        start = end;
    }
}

void TobjModel::buildObjects(const Tmesh& mesh)
{
    const auto addObject = [&](const std::string& name, std::size_t begin, std::size_t end) {
        if (begin >= end)
            return;
        Tobject object;
        object.fName = name;
        object.fFaces = {begin, end};
        object.fTriangles = {trianglesOf(begin).fBegin, trianglesOf(end - 1).fEnd};
        object.fVertices.assign(fCorners.begin() + static_cast<std::ptrdiff_t>(cornersOf(begin).fBegin),
                                fCorners.begin() + static_cast<std::ptrdiff_t>(cornersOf(end - 1).fEnd));
        std::sort(object.fVertices.begin(), object.fVertices.end());
        object.fVertices.erase(std::unique(object.fVertices.begin(), object.fVertices.end()), object.fVertices.end());
        bool first = true;
        for (const std::uint32_t vertex : object.fVertices) {
            const float* p = fPositions[vertex].fPosition;
            if (first)
                object.fLower = object.fUpper = {p[0], p[1], p[2]};
            first = false;
            extend(object.fLower, object.fUpper, {p[0], p[1], p[2]});
        }
        buildEdges(object);
        fObjects.push_back(std::move(object));
    };
    const std::size_t firstNamed = mesh.fObjects.empty() ? faceCount() : mesh.fObjects[0].fFirstFace;
    addObject(std::string(), 0, firstNamed);
    for (std::size_t i = 0; i < mesh.fObjects.size(); ++i) {
        const bool last = i + 1 == mesh.fObjects.size();
        addObject(mesh.fObjects[i].fName, mesh.fObjects[i].fFirstFace,
                  last ? faceCount() : mesh.fObjects[i + 1].fFirstFace);
    }
    fEdges.shrink_to_fit();
}

void TobjModel::takeUvs(const Tmesh& mesh)
{
    if (mesh.fUvs.empty() || mesh.fCornerUvs.size() != fCorners.size())
        return;
    constexpr float kNone = std::numeric_limits<float>::quiet_NaN();
    fUvs.reserve(fCorners.size());
    bool any = false;
    for (const std::uint32_t index : mesh.fCornerUvs) {
        any = any || index < mesh.fUvs.size();
        fUvs.push_back(index < mesh.fUvs.size() ? mesh.fUvs[index] : Tuv{kNone, kNone});
    }
    if (!any)
        fUvs.clear();
}

void TobjModel::buildEdges(Tobject& object)
{
    std::vector<std::uint64_t> keys;
    for (std::size_t face = object.fFaces.fBegin; face < object.fFaces.fEnd; ++face) {
        const Trange corners = cornersOf(face);
        for (std::size_t corner = corners.fBegin; corner < corners.fEnd; ++corner) {
            const std::uint64_t a = fCorners[corner];
            const std::uint64_t b = fCorners[corner + 1 < corners.fEnd ? corner + 1 : corners.fBegin];
            if (a != b)
                keys.push_back(std::min(a, b) << 32 | std::max(a, b));
        }
    }
    std::sort(keys.begin(), keys.end());
    keys.erase(std::unique(keys.begin(), keys.end()), keys.end());
    object.fEdges.fBegin = fEdges.size();
    for (const std::uint64_t key : keys) {
        fEdges.push_back(static_cast<std::uint32_t>(key >> 32));
        fEdges.push_back(static_cast<std::uint32_t>(key));
    }
    object.fEdges.fEnd = fEdges.size();
}
