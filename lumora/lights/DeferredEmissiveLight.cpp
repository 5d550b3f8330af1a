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
    if(s_CullingOptions == NullFC)
    {
        s_CullingOptions = PolygonChunk::create();
        addRefCP(s_CullingOptions);
        beginEditCP(s_CullingOptions, PolygonChunk::CullFaceFieldMask);
        s_CullingOptions->setCullFace(GL_BACK);
        endEditCP(s_CullingOptions, PolygonChunk::CullFaceFieldMask);
    }

    shaderChunk = SHLChunk::create();

    parameterChunk = SHLParameterChunk::create();
    beginEditCP(parameterChunk, SHLParameterChunk::SHLChunkFieldMask);
    parameterChunk->setSHLChunk(shaderChunk);
    endEditCP(parameterChunk, SHLParameterChunk::SHLChunkFieldMask);

    buildMaterial(shaderChunk, s_CullingOptions);

    // No transform: the vertex shader maps the corners by their signs.
    GeometryPtr quad = makePlaneGeo(1.0f, 1.0f, 1, 1);
    beginEditCP(quad, Geometry::MaterialFieldMask);
    quad->setMaterial(material);
    endEditCP(quad, Geometry::MaterialFieldMask);

    volumeRoot = makeNodeFor(quad);
    addRefCP(volumeRoot);
}

DeferredEmissiveLight::~DeferredEmissiveLight(void)
{
}

void DeferredEmissiveLight::initialize(RenderTarget &gbuffer, UInt16 numGBufferTextures)
{
    ShaderManager &shaders = ShaderManager::getInstance();

    beginEditCP(shaderChunk);
    shaderChunk->setVertexProgram(
        shaders.generateLightVertexShader(ShaderManager::EMISSIVE_LIGHT));
    shaderChunk->setFragmentProgram(
        shaders.generateLightFragmentShader(ShaderManager::EMISSIVE_LIGHT,
                                            numGBufferTextures, 1));
    endEditCP(shaderChunk);

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
