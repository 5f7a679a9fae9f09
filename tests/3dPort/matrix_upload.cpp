// When, and in which order, matrices reach OpenGL.

#include "3dPort/Calls.h"
#include "support/T3dPortProbe.h"

#include "Graphics/3dPort/T3dPort.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

namespace {

using Calls = std::vector<std::string>;

const char kToProjection[] = "glMatrixMode(GL_PROJECTION)";
const char kToModelView[] = "glMatrixMode(GL_MODELVIEW)";

/** A diagonal matrix, and how the recorder writes it. */
T4dDblMatrix diagonal(int x)
{
    T4dDblMatrix m;
    m[0] = x;
    return m;
}

std::string call(const char* function, int x)
{
    return std::string(function) + "([" + std::to_string(x) + " 0 0 0 0 1 0 0 0 0 1 0 0 0 0 1])";
}

std::string load(int x)
{
    return call("glLoadMatrixd", x);
}

class MatrixUpload : public ShownPort
{
protected:
    void loadProjection(int x) { port().loadProjectionMatrix(diagonal(x)); }

    Calls drawn(const std::function<void()>& change = [] {})
    {
        GlRecorder recorder;
        recorder.start();
        change();
        EXPECT_THAT(recorder.calls(), testing::IsEmpty()) << "nothing is sent before something is drawn";
        port().setCurrentContext();
        recorder.stop();
        return recorder.calls();
    }
};

} // namespace

TEST_F(MatrixUpload, OncePerChangeWhateverHappensInBetween)
{
    EXPECT_EQ(Calls(), drawn());
    EXPECT_EQ(Calls({load(2)}), drawn([&] { port().loadMatrix(diagonal(2)); }));
    EXPECT_EQ(Calls(), drawn());
    EXPECT_EQ(Calls({kToProjection, load(3), kToModelView}), drawn([&] { loadProjection(3); }));
    EXPECT_EQ(Calls(), drawn([&] { port().pushMatrix(); }));
    EXPECT_EQ(Calls({load(2)}), drawn([&] { port().popMatrix(); }));
    EXPECT_EQ(Calls({kToProjection, load(7), kToModelView, load(6)}), drawn([&] {
                  for (int i = 0; i < 5; ++i) {
                      port().pushLoadMatrix(diagonal(2 + i));
                      loadProjection(3 + i);
                  }
              }));
    EXPECT_EQ(Calls(), drawn());
    EXPECT_EQ(TstringArray(), port().stateDifferences());
}

TEST_F(MatrixUpload, AnOverrideWaitsForAChangeOfTheProjection)
{
    EXPECT_EQ(Calls(), drawn([&] { port().beginProjMatrixOverride(diagonal(9)); }));
    EXPECT_EQ(Calls({load(2)}), drawn([&] { port().loadMatrix(diagonal(2)); }));
    EXPECT_EQ(Calls({kToProjection, load(9), kToModelView}), drawn([&] { loadProjection(3); }));
    EXPECT_EQ(Calls(), drawn([&] { port().endProjMatrixOverride(); }));

    const TstringArray stale = port().stateDifferences();
    ASSERT_EQ(1u, stale.length()) << "the override is still loaded, and nothing but the audit tells";
    EXPECT_THAT(stale[0].toStdString(), testing::StartsWith("projection matrix: recorded [3 0 "));
    EXPECT_EQ(Calls({kToProjection, load(4), kToModelView}), drawn([&] { loadProjection(4); }));
    EXPECT_EQ(TstringArray(), port().stateDifferences());
}

TEST_F(MatrixUpload, PickingPutsItsMatrixInFront)
{
    for (const T3dPort::TportFlags picking : {T3dPort::kPortGLSelect, T3dPort::kPortRasterSelect}) {
        T3dPortProbe::setFlag(port(), picking, true);
        T3dPortProbe::setSelectMatrix(port(), diagonal(5));
        const Calls wanted = {kToProjection, load(5), call("glMultMatrixd", 3), kToModelView};
        EXPECT_EQ(wanted, drawn([&] { loadProjection(3); }));
        port().beginProjMatrixOverride(diagonal(9));
        const Calls overridden = {kToProjection, load(5), call("glMultMatrixd", 9), kToModelView};
        EXPECT_EQ(overridden, drawn([&] { loadProjection(3); }));
        port().endProjMatrixOverride();
        T3dPortProbe::setFlag(port(), picking, false);
        EXPECT_EQ(Calls({kToProjection, load(3), kToModelView}), drawn([&] { loadProjection(3); }));
    }
}
