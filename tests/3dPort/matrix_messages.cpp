// What a port built with LIRN_DEBUG_Q3DPORT_MATRICES says about its matrices.

#include "support/HostProbes.h"
#include "support/PortWindow.h"

#include "Graphics/3dPort/T3dPort.h"
#include "foundation/T4dDblVector.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>

namespace {

class MatrixMessages : public testing::Test
{
protected:
    void SetUp() override
    {
        // The traces of the first paint are not looked at.
        const StdoutCapture out;
        const StderrCapture dumps;
        ASSERT_TRUE(fWindow.show());
        port().setCurrentContext();
    }

    T3dPort& port() { return fWindow.port(); }

    /** Checks the lines on standard output, and the number of matrices dumped, four lines each. */
    void expectSaid(const std::string& wanted, int dumps, const std::function<void()>& run)
    {
        std::string said;
        std::string dumped;
        {
            const StdoutCapture out;
            const StderrCapture err;
            run();
            said = out.text();
            dumped = err.text();
        }
        EXPECT_EQ(wanted, said);
        EXPECT_EQ(4 * dumps, std::count(dumped.begin(), dumped.end(), '\n')) << dumped;
    }

    ScopedEnv fDebug{"LIRN_DEBUG_Q3DPORT_MATRICES", ""};
    PortWindow<> fWindow{40, 30};
};

} // namespace

TEST_F(MatrixMessages, OfOperationsOnEitherStack)
{
    const T4dDblMatrix m;
    const struct
    {
        std::function<void(T3dPort&)> run;
        const char* projection;
        int dumps;
    } cases[] = {
        {[&](T3dPort& p) { p.loadMatrix(m); }, "Load projection matrix:\n", 1},
        {[&](T3dPort& p) { p.multMatrix(m); }, "Mult projection matrix:\n", 1},
        {[](T3dPort& p) { p.unSquishMatrix(TxformMatrix::kUnSquishShear); }, "Mult projection matrix:\n", 1},
        {[](T3dPort& p) { p.loadIdentity(); }, "Load identity projection matrix\n", 0},
        {[&](T3dPort& p) { p.pushLoadMatrix(m); }, "Push + load identity projection matrix\n", 1},
        {[&](T3dPort& p) { p.stackMultMatrix(m); }, "Stack multi projection matrix\n", 1},
        {[&](T3dPort& p) { p.pushMultMatrix(m); }, "Push multi projection matrix\n", 1},
        {[](T3dPort& p) { p.scale(1, 2.5, -3); }, "Scale projection matrix 1,2.5,-3 matrix\n", 1},
        {[](T3dPort& p) { p.translate(1e-7, 2, 1234567); }, "Translate projection matrix 1e-07,2,1.23457e+06 matrix\n",
         1},
        {[](T3dPort& p) { p.rotate(1, 2, 3); }, "Rotate projection matrix\n", 1},
        {[](T3dPort& p) { p.popMatrix(2); }, "", 0},
        {[&](T3dPort& p) { p.stackMultMatrix(m); }, "", 0}, // the stack is down to one by now
    };
    for (const auto& c : cases) {
        port().matrixMode(GL_PROJECTION);
        std::string said = c.projection;
        expectSaid(said, c.dumps, [&] { c.run(port()); });
        port().matrixMode(GL_MODELVIEW);
        if (!said.empty())
            said.replace(said.find("projection"), 10, "modelView");
        expectSaid(said, c.dumps, [&] { c.run(port()); });
        port().matrixMode(GL_TEXTURE);
        expectSaid("", 0, [&] { c.run(port()); });
    }
}

TEST_F(MatrixMessages, OfProjectionsAndCameras)
{
    expectSaid("Load projection matrix\n", 1, [&] { port().loadProjectionMatrix(T4dDblMatrix()); });
    expectSaid("perspective projection matrix\n", 1, [&] { port().perspective(45, 1, 1, 2); });
    expectSaid("ortho projection matrix\n", 1, [&] { port().ortho(0, 1, 0, 1, 1, 2); });
    expectSaid("polarView modelView matrix\n", 1, [&] { port().polarView(1, 2, 3, 4); });
    expectSaid("lookAt modelView matrix\n", 1, [&] { port().lookAt({1, 2, 3}, {0, 0, 0}, 0); });
    expectSaid("push ortho 2D...{ \n"
               "ortho projection matrix\n"
               "Translate projection matrix 0.375,0.375,0 matrix\n"
               "Push + load identity modelView matrix\n",
               3, [&] { port().pushOrtho2D(); });
    expectSaid("} ... pop ortho 2D\n", 0, [&] { port().popOrtho2D(); });
    expectSaid("Load hardware projection matrices....START\n"
               "Load hardware project matrix for selection.\n"
               "Load hardware projection matrices....END\n"
               "Load hardware modelview matrix\n",
               1, [&] { port().setCurrentContext(); });
    expectSaid("", 0, [&] { port().setCurrentContext(); });
}
