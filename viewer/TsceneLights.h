#pragma once

#include "Graphics/3dPort/TglLight.h"
#include "foundation/T4dDblVector.h"

class T3dPort;

/** A scene's lights: one that goes where the camera goes, and a lamp beside the model. */
class TsceneLights
{
public:
    TsceneLights();

    /** Where the lamp hangs, in scene space. */
    static T4dDblVector lampPlace() { return {-0.95, 0.62, 0.45}; }

    /** Lights what is drawn from here on; the port's model-view matrix is the camera's. */
    void turnOn(T3dPort& port);
    /** The camera's light alone. */
    static void turnOnHeadlight(T3dPort& port);
    static void turnOff(T3dPort& port);

private:
    TglLight fLamp{TglLight::kPoint};
};
