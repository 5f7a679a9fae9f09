#include "Graphics/glResources/TglContext.h"

#include <gtest/gtest.h>

#include <iterator>

TEST(GlContext, KeepsOrderOfFields)
{
    const TglContext c(2, false);
    // clang-format off
    const void* const fields[] = {
        &c.fColor, &c.fClearColor, &c.fColorIndex, &c.fHardwareIndex, &c.fBlending, &c.fLineWidth, &c.fDirtyBits,
        &c.fValidBits, &c.fIndexBufferCount, &c.fScissorX, &c.fScissorY, &c.fScissorWidth, &c.fScissorHeight,
        &c.fDepthFunc, &c.fDepthMask, &c.fColorMaskRed, &c.fColorMaskGreen, &c.fColorMaskBlue, &c.fColorMaskAlpha,
        &c.fLineStipple, &c.fIndexBuffer, &c.fIndexWriteMask, &c.fLightModelAmbient, &c.fLocalViewer, &c.fShadeModel,
        &c.fMaterialAmbient, &c.fMaterialDiffuse, &c.fMaterialSpecular, &c.fMaterialEmission, &c.fMaterialShininess,
        &c.fBlendSource, &c.fBlendDestination, &c.fTextureEnv, &c.fTextureWrap, &c.fTextureMinFilter,
        &c.fTextureMagFilter, &c.fTextureGenMode, &c.fTextureTarget, &c.fTextureUnit, &c.fCombineParam, &c.fCombine,
        &c.fSourceParam, &c.fSource, &c.fOperandParam, &c.fOperand, &c.fScaleParam, &c.fScale, &c.fBlendEquation,
        &c.fBuffer, &c.fPointSize, &c.fRedBits, &c.fGreenBits, &c.fBlueBits, &c.fAlphaBits, &c.fStencilBits};
    // clang-format on
    for (std::size_t i = 1; i < std::size(fields); ++i)
        EXPECT_LT(fields[i - 1], fields[i]) << "field " << i;
}
