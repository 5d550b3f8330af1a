#include "DeferredEmissiveLight.h"

#include <OpenSG/OSGGeometry.h>
#include <OpenSG/OSGSimpleGeometry.h>

#include <Lumora/ShaderManager.h>

OSG_BEGIN_NAMESPACE

PolygonChunkPtr DeferredEmissiveLight::s_CullingOptions = NullFC;

DeferredEmissiveLight::DeferredEmissiveLight(void) :
    IDeferredLight(),
    shaderChunk   (NullFC)
{
    shaderChunk = createShaderMaterial(sharedCullingChunk(s_CullingOptions, GL_BACK));

    // No transform: the vertex shader maps the corners by their signs.
    createVolume(makePlaneGeo(1.0f, 1.0f, 1, 1), NullFC);
}

DeferredEmissiveLight::~DeferredEmissiveLight(void)
{
}

void DeferredEmissiveLight::initialize(RenderTarget &gbuffer, UInt16 numGBufferTextures)
{
    setPrograms(shaderChunk, ShaderManager::EMISSIVE_LIGHT, numGBufferTextures, 1);

    // Only the emissive texture: the other samplers share its unit 0 and
    // their values never reach the output.
    bindTexture("texGBuffer3", gbuffer.getTargetTexture(3));

    initialized = true;
}

void DeferredEmissiveLight::update(const Matrix &, const Matrix &, const Vec2f &,
                                   LightPtr, Real32)
{
}

UInt16 DeferredEmissiveLight::getNumShadowmaps(void)
{
    return 0;
}

RenderTarget *DeferredEmissiveLight::getShadowmap(UInt16)
{
    return NULL;
}

bool DeferredEmissiveLight::updateLightCamera(UInt16, FrustumVolume &, DynamicVolume &,
                                              MatrixCameraPtr)
{
    return false;
}

bool DeferredEmissiveLight::setLightCamera(UInt16, FrustumVolume &, DynamicVolume &,
                                           MatrixCameraPtr)
{
    return false;
}

OSG_END_NAMESPACE
