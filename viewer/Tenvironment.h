#pragma once

#include "Graphics/textures/TglTextureObject.h"

class T3dPort;
class TviewCamera;

/** Surroundings that a model can reflect: a sky, a ground and two lamps, as a sphere map and as a cube map. */
class Tenvironment
{
public:
    /** Binds the sphere map, which goes where the camera goes. The caller enables GL_TEXTURE_2D. */
    void applySphereMap(T3dPort& port);
    /** Binds the cube map, which stays where it is, and loads the texture matrix; endCubeMap takes that back. */
    void applyCubeMap(T3dPort& port, const TviewCamera& camera);
    static void endCubeMap(T3dPort& port);

private:
    TglTextureObject fSphereMap;
    TglTextureObject fCubeMap;
    bool fSphereMade = false;
    bool fCubeMade = false;
};
