#include "TsceneLights.h"

#include "Graphics/3dPort/T3dPort.h"

namespace {

constexpr TportColor kHeadlightColour{0.90f, 0.91f, 0.94f};
constexpr TportColor kLampColour{0.52f, 0.44f, 0.28f};
constexpr short kHeadlight = 0;
constexpr short kLamp = 1;

} // namespace

TsceneLights::TsceneLights()
{
    fLamp.fColor = kLampColour;
}

void TsceneLights::turnOn(T3dPort& port)
{
    turnOnHeadlight(port);
    port.setCurrentContext();
    const T4dDblVector at = lampPlace();
    T4dDblMatrix place;
    place[12] = at.x;
    place[13] = at.y;
    place[14] = at.z;
    fLamp.setLight(kLamp, place);
}

void TsceneLights::turnOnHeadlight(T3dPort& port)
{
    port.setGlobalAmbient(kCwhite);
    // Nobody can be sure which way round a file's faces are.
    port.setTwoSidedLighting(true);
    port.setLightingModel();
    port.disableAllLights();
    port.setLightColor(kHeadlightColour);
    port.matrixMode(GL_MODELVIEW);
    port.pushLoadMatrix(T4dDblMatrix());
    port.setDefaultLight(kHeadlight, {0.28, 0.42, 0.86});
    port.popMatrix();
}

void TsceneLights::turnOff(T3dPort& port)
{
    port.disableAllLights();
    port.disableLighting();
}
