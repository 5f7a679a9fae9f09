// A shape of one's own, made of the port's, and a command of one's own.

#include "Sample.h"

#include "Graphics/3dPort/T3dPort.h"
#include "Graphics/glResources/TglDisplayList.h"
#include "commandEngine/TcommandEngine.h"
#include "commandEngine/TmetaCommandActionRegistration.h"
#include "foundation/T4dDblPoint.h"

#include <cmath>

namespace {

/** An arrow from the origin to (0, 0, 1). */
void arrow(T3dPort& port)
{
    static auto* const list = new TglDisplayList; // as long as the process: it belongs to all contexts
    if (!list->isCompiled()) {
        port.newList(*list, T3dPort::kCompile);
        glBegin(GL_TRIANGLES);
        for (int i = 0; i < 16; ++i)
            for (const auto& [radius, z] : {std::pair(0.2, 0.55), std::pair(0.07, 0.0)}) {
                const double a = i * 3.14159265358979 / 8;
                const double b = a + 3.14159265358979 / 8;
                glNormal3d(std::cos(a), std::sin(a), 0.3);
                glVertex3d(radius * std::cos(a), radius * std::sin(a), z);
                glNormal3d(std::cos(b), std::sin(b), 0.3);
                glVertex3d(radius * std::cos(b), radius * std::sin(b), z);
                glNormal3d(std::cos(a), std::sin(a), 0.3);
                glVertex3d(0, 0, z + (z > 0 ? 0.4 : 0.9));
            }
        glEnd();
        port.endList();
    }
    port.setCurrentContext(); // loads what of the matrices OpenGL does not have yet
    list->call();
}

void arrow(T3dPort& port, const T4dDblPoint& from, const T4dDblVector& by)
{
    port.pushMatrix();
    port.align(T4dDblVector(0.3, 0.2, 1), by, from);
    const double length = by.length();
    port.scale(length, length, length);
    arrow(port);
    port.popMatrix();
}

class TgreetCmd : public TiceBaseCmd
{
public:
    using TiceBaseCmd::TiceBaseCmd;

    bool appendSyntax() override { return flags().addFlag("-n", "-name", Tsyntax::kString); }
    int doEditFlags() override
    {
        setResult(Tstring("Hello ") + args().string("-n"));
        return 1;
    }
};

static TmetaCommandActionRegistration<TgreetCmd> gGreetCmd("greet");

void draw(T3dPort& port)
{
    port.clearColor(TportColor(0.17f, 0.19f, 0.21f));
    port.clear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    port.perspective(22, double(port.portRect().width()) / port.portRect().height(), 1, 60);
    port.polarView(22.5, 8, 40, 0);
    port.depthTest(true);
    port.shadeModel(T3dPort::kShadeSmooth);
    port.setLightingModel();
    port.setDefaultLight(0, T4dDblVector(-1, -2, 2));
    for (int i = -6; i <= 6; ++i) {
        for (int j = -3; j <= 3; ++j) {
            const T4dDblPoint at(1.05 * i, 1.05 * j, 0);
            const double r = std::hypot(at.x, at.y);
            const T4dDblVector flow(-at.y + 0.4, at.x + 0.2, 1.6 - 0.35 * r);
            const float k = static_cast<float>(std::min(1.0, r / 6));
            port.setDiffuseColor(TportColor(0.92f - 0.6f * k, 0.58f, 0.20f + 0.62f * k));
            arrow(port, at, flow.normalised() * 0.95);
        }
    }
    port.disableLighting();
}

const Sample sample("extending", [] {
    const TcommandOutcome outcome = TcommandEngine::execute("greet -name \"you\"");
    Sample::expect(outcome.ok, "the command runs");
    return Sample::drawing(QSize(480, 260), 3, draw);
});

} // namespace
