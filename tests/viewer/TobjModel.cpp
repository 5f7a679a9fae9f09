#include "TobjModel.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cmath>
#include <fstream>

namespace {

class TobjModelFile : public ::testing::Test
{
protected:
    std::string path(const char* name) const { return fFolder.filePath(QString::fromLatin1(name)).toStdString(); }

    std::shared_ptr<const TobjModel> load(const std::string& text)
    {
        std::ofstream(path("model.obj"), std::ios::binary) << text;
        return TobjModel::load(path("model.obj"), fProgress, fError);
    }

    QTemporaryDir fFolder;
    TloadProgress fProgress;
    std::string fError;
};

const std::string kSquare = "v 0 0 0\nv 2 0 0\nv 2 2 0\nv 0 2 0\n";

/** The area of the triangles in the file's units. */
double filledArea(const TobjModel& model)
{
    double area = 0;
    const auto& corners = model.triangles();
    const auto at = [&](std::size_t i) {
        const float* p = corners[i].fPosition;
        return T4dDblVector(p[0], p[1], p[2]);
    };
    for (std::size_t i = 0; i + 2 < corners.size(); i += 3)
        area += (at(i + 1) - at(i)).cross(at(i + 2) - at(i)).length() / 2;
    return area / (model.scale() * model.scale());
}

} // namespace

TEST_F(TobjModelFile, FacesFillAndEdgesCountOnce)
{
    std::string manyCorners;
    std::string manyCornersFace = "f";
    for (int i = 0; i < 300; ++i) {
        const double a = 2 * 3.14159265358979323846 * i / 300;
        manyCorners += "v " + std::to_string(std::cos(a)) + " " + std::to_string(std::sin(a)) + " 0\n";
        manyCornersFace += " " + std::to_string(i + 1);
    }
    const struct
    {
        const char* what;
        std::string text;
        std::size_t faces;
        std::size_t triangles;
        std::size_t edges;
        double area;
    } cases[] = {
        {"triangle", kSquare + "f 1 2 3\n", 1, 1, 3, 2},
        {"quad", kSquare + "f 1 2 3 4", 1, 2, 4, 4},
        {"two triangles share an edge", kSquare + "f 1 2 3\nf 3 1 4\n", 2, 2, 5, 4},
        {"negative indices", kSquare + "f -4 -3 -2 -1\n", 1, 2, 4, 4},
        {"texture and normal indices", kSquare + "vt 0 0\nvn 0 0 1\nf 1/1/1 2//1 3/1 4\n", 1, 2, 4, 4},
        {"carriage returns, comments, tabs", "# a\r\n" + kSquare + "\tf\t1 2 3 4 # f 9 9 9\r\n", 1, 2, 4, 4},
        {"a face that goes on in the next line", kSquare + "f 1 2 \\\n3 4\n", 1, 2, 4, 4},
        {"vertices after the face", "f 1 2 3 4\n" + kSquare, 1, 2, 4, 4},
        {"colours behind the coordinates", "v 0 0 0 1 0 0\nv 2 0 0 1 0 0\nv 0 2 0 1 0 0\nf 1 2 3\n", 1, 1, 3, 2},
        {"concave quad", "v 0 0 0\nv 2 0 0\nv 0.5 0.5 0\nv 0 2 0\nf 2 3 4 1\n", 1, 2, 4, 1},
        {"concave hexagon", "v 0 0 0\nv 4 0 0\nv 4 1 0\nv 1 1 0\nv 1 4 0\nv 0 4 0\nf 1 2 3 4 5 6\n", 1, 4, 6, 7},
        {"more corners than a byte counts", manyCorners + manyCornersFace, 1, 298, 300, 3.1413629},
        {"face without area", kSquare + "f 1 2 2\nf 1 2 3\n", 2, 1, 3, 2},
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(each.what);
        const auto model = load(each.text);
        ASSERT_TRUE(model) << fError;
        EXPECT_EQ(model->faceCount(), each.faces);
        EXPECT_EQ(model->triangles().size(), 3 * each.triangles);
        EXPECT_EQ(model->edges().size(), 2 * each.edges);
        EXPECT_NEAR(filledArea(*model), each.area, 1e-4);
        EXPECT_EQ(fProgress.fPercent, 100);
    }
}

TEST_F(TobjModelFile, SmoothNormalsKeepCreasesAndTakeUsableNormalsFromTheFile)
{
    const std::string box = "v -1 -1 -1\nv 1 -1 -1\nv 1 1 -1\nv -1 1 -1\nv -1 -1 1\nv 1 -1 1\nv 1 1 1\nv -1 1 1\n"
                            "f 1 4 3 2\nf 5 6 7 8\nf 1 2 6 5\nf 3 4 8 7\nf 1 5 8 4\nf 2 3 7 6\n";
    // Two squares that meet at an angle whose tangent is the height; the second square is three times as large.
    const auto roof = [](const char* height) {
        return "v 0 0 0\nv 1 0 0\nv 1 0 1\nv 0 0 1\nv 4 " + std::string(height) + " 0\nv 4 " + height +
               " 1\nf 1 4 3 2\nf 2 3 6 5\n";
    };
    const auto given = [](const char* normals, const char* face) { return kSquare + normals + face; };
    const T4dDblVector up(0, 0, 1);
    const T4dDblVector aside(0.6, 0, 0.8);
    enum Texpected { kOfFace, kBetween, kUp, kAside };
    const struct
    {
        const char* what;
        std::string text;
        Texpected expected;
    } cases[] = {
        {"the faces of a cube", box, kOfFace},
        {"a roof flatter than the crease angle", roof("2.5"), kBetween},
        {"a roof steeper than it", roof("3.5"), kOfFace},
        {"normals of the file", given("vn 3 0 4\n", "f 1//1 2//1 3//1 4//1\n"), kAside},
        {"counted from the end", given("vn 0 0 1\nvn 3 0 4\n", "f 1//-1 2//-1 3//-1 4//-1\n"), kAside},
        {"of the other side", given("vn -3 0 -4\n", "f 1//1 2//1 3//1 4//1\n"), kAside},
        {"after the face", kSquare + "f 1//1 2//1 3//1 4//1\nvn 3 0 4\n", kAside},
        {"without length", given("vn 0 0 0\n", "f 1//1 2//1 3//1 4//1\n"), kUp},
        {"no numbers", given("vn nan inf x\n", "f 1//1 2//1 3//1 4//1\n"), kUp},
        {"too large to square", given("vn 1e300 0 1e300\n", "f 1//1 2//1 3//1 4//1\n"), kUp},
        {"an index of none", given("vn 3 0 4\n", "f 1//2 2//-2 3//0 4//99999\n"), kUp},
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(each.what);
        const auto model = load(each.text);
        ASSERT_TRUE(model) << fError;
        ASSERT_EQ(model->smoothNormals().size(), model->triangles().size());
        double farthest = 0;
        bool anyTurned = false;
        for (std::size_t i = 0; i < model->triangles().size(); ++i) {
            const auto vector = [](const float* v) { return T4dDblVector(v[0], v[1], v[2]); };
            const T4dDblVector normal = vector(model->smoothNormals()[i].fNormal);
            const T4dDblVector face = vector(model->triangles()[i].fNormal);
            EXPECT_NEAR(normal.length(), 1, 1e-6);
            anyTurned = anyTurned || (normal - face).length() > 0.1;
            const T4dDblVector expected = each.expected == kUp ? up : each.expected == kAside ? aside : face;
            if (each.expected != kBetween)
                farthest = std::max(farthest, (normal - expected).length());
        }
        EXPECT_LT(farthest, 1e-6);
        EXPECT_EQ(anyTurned, each.expected == kBetween || each.expected == kAside);
    }
}

TEST_F(TobjModelFile, NamesBeginObjects)
{
    const auto model =
        load(kSquare + "vt 0.25 0.5\nf 1 2 3\ng default\no first  part\ng\ng left arm\nf 1/1 2/-1 3/9\nf 1 3 4\n"
                       "o last\nf 3 4 1 2\ng none\n");
    ASSERT_TRUE(model) << fError;
    const struct
    {
        const char* name;
        std::size_t faces, triangles, edges;
    } expected[] = {{"", 1, 1, 3}, {"left arm", 2, 2, 5}, {"last", 1, 2, 4}};
    ASSERT_EQ(model->objects().size(), std::size(expected));
    for (std::size_t i = 0; i < std::size(expected); ++i) {
        const TobjModel::Tobject& object = model->objects()[i];
        EXPECT_EQ(object.fName, expected[i].name);
        EXPECT_EQ(object.fFaces.size(), expected[i].faces);
        EXPECT_EQ(object.fTriangles.size(), 3 * expected[i].triangles);
        EXPECT_EQ(object.fEdges.size(), 2 * expected[i].edges);
        EXPECT_EQ(model->objectOf(object.fFaces.fBegin), i);
        EXPECT_EQ(model->objectOf(object.fFaces.fEnd - 1), i);
    }
    const std::size_t corner = model->cornersOf(1).fBegin;
    EXPECT_EQ(model->uvs()[corner].fU, 0.25f);
    EXPECT_EQ(model->uvs()[corner + 1].fV, 0.5f);
    EXPECT_TRUE(std::isnan(model->uvs()[corner + 2].fU));
}

TEST_F(TobjModelFile, BrokenFilesGiveAReason)
{
    const struct
    {
        const char* what;
        std::string text;
        const char* reason;
    } cases[] = {
        {"empty", "", "no faces"},
        {"only vertices", kSquare, "no faces"},
        {"not a model",
         std::string("\x7f"
                     "ELF\0\0f\xff",
                     9),
         "no faces"},
        {"index 0", kSquare + "f 0 1 2\n", "line 5: there is no vertex 0"},
        {"index too large", kSquare + "f 1 2 5\n", "line 5: there is no vertex 5, the file has 4"},
        {"index too negative", kSquare + "f -1 -2 -5\n", "there is no vertex -5 counted from here"},
        {"index that is 1 in 32 bits", kSquare + "f 2 3 4294967297\n", "too large"},
        {"huge texture index", kSquare + "f 1/4294967297 2/1 3/1\n", "too large"},
        {"truncated face", kSquare + "f 1 2", "fewer than three corners"},
        {"words for indices", kSquare + "f a b c\n", "\"a\" is no vertex index"},
        {"truncated vertex", "v 0 0\nf 1 1 1\n", "line 1: a vertex with fewer than three coordinates"},
        {"NaN", "v 0 nan 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n", "\"nan\" is no coordinate"},
        {"beyond all numbers", "v 1e999 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n", "out of range"},
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(each.what);
        EXPECT_FALSE(load(each.text));
        EXPECT_NE(fError.find(each.reason), std::string::npos) << fError;
    }
    EXPECT_FALSE(TobjModel::load(path("nowhere.obj"), fProgress, fError));
    EXPECT_EQ(fError, "No such file or directory");
    EXPECT_FALSE(TobjModel::load(fFolder.path().toStdString(), fProgress, fError));
    EXPECT_EQ(fError, "it is a directory");
    EXPECT_FALSE(TobjModel::load("/dev/zero", fProgress, fError));
    EXPECT_EQ(fError, "it is not an ordinary file");
    EXPECT_FALSE(TobjModel::load("", fProgress, fError));
}
