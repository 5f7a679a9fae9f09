// OBJ files with a material file beside them: "mtllib 1001" in the model names what follows the line "---".

// The parser is compiled in, so that its faults are found and its branches seen too.
#define TINYOBJLOADER_USE_DOUBLE
#define TINYOBJLOADER_IMPLEMENTATION
#include <tiny_obj_loader.h>

#include "fuzz/FuzzInput.h"

#include "TobjModel.h"

#include <cmath>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const MemoryFile model(1000);
    static const MemoryFile materials(1001);
    const std::string_view text = FuzzInput(data, size).rest();
    constexpr std::string_view kMark = "\n---\n";
    const std::size_t mark = std::min(text.find(kMark), text.size());
    model.write(text.substr(0, mark));
    materials.write(text.substr(std::min(mark + kMark.size(), text.size())));

    TloadProgress progress;
    std::string error;
    const auto loaded = TobjModel::load(model.path(), progress, error);
    FUZZ_CHECK(bool(loaded) == error.empty());
    if (!loaded)
        return 0;
    std::size_t faces = 0;
    for (const TobjModel::Tobject& object : loaded->objects()) {
        FUZZ_CHECK(object.fFaces.fBegin == faces && object.fFaces.size() > 0);
        faces = object.fFaces.fEnd;
        FUZZ_CHECK(object.fTriangles.fEnd <= loaded->triangles().size() &&
                   object.fEdges.fEnd <= loaded->edges().size());
        for (const std::uint32_t vertex : object.fVertices)
            FUZZ_CHECK(vertex < loaded->positions().size());
    }
    FUZZ_CHECK(faces == loaded->faceCount());
    for (std::size_t face = 0; face < faces; ++face) {
        FUZZ_CHECK(loaded->trianglesOf(face).fEnd <= loaded->triangles().size());
        const TobjModel::Tobject& object = loaded->objects().at(loaded->objectOf(face));
        FUZZ_CHECK(object.fFaces.fBegin <= face && face < object.fFaces.fEnd);
    }
    FUZZ_CHECK(loaded->smoothNormals().size() == loaded->triangles().size());
    for (const TobjModel::TfillVertex& corner : loaded->triangles())
        for (int i = 0; i < 3; ++i)
            FUZZ_CHECK(std::fabs(corner.fPosition[i]) < 2 && std::fabs(corner.fNormal[i]) < 2);
    for (const std::uint32_t vertex : loaded->edges())
        FUZZ_CHECK(vertex < loaded->positions().size());
    return 0;
}
