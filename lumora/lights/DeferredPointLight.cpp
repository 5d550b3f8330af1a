#include "DeferredPointLight.h"

#include <OpenSG/OSGGeometry.h>
#include <OpenSG/OSGImage.h>
#include <OpenSG/OSGLog.h>
#include <OpenSG/OSGMatrixUtility.h>
#include <OpenSG/OSGPointLight.h>
#include <OpenSG/OSGSimpleGeometry.h>
#include <OpenSG/OSGVolumeFunctions.h>

#include <Lumora/ShaderManager.h>

#include <vector>

OSG_BEGIN_NAMESPACE

PolygonChunkPtr     DeferredPointLight::s_CullingOptions   = NullFC;
CubeTextureChunkPtr DeferredPointLight::s_IndirectonCubeTex = NullFC;

namespace
{
// A 4x4 RGB image whose every byte is the face number.
ImagePtr createFaceImage(UInt8 face)
{
    std::vector<UInt8> data(4 * 4 * 3, face);
    ImagePtr image = Image::create();
    image->set(Image::OSG_RGB_PF, 4, 4, 1, 1, 1, 0.0, &data[0]);
    return image;
}

CubeTextureChunkPtr createIndirectionTexture(void)
{
    ImagePtr negZ = createFaceImage(0);
    ImagePtr posZ = createFaceImage(1);
    ImagePtr negY = createFaceImage(2);
    ImagePtr posY = createFaceImage(3);
    ImagePtr negX = createFaceImage(4);
    ImagePtr posX = createFaceImage(5);

    CubeTextureChunkPtr cube = CubeTextureChunk::create();
    beginEditCP(cube);
    cube->setImage         (negZ);
    cube->setPosZImage     (posZ);
    cube->setNegYImage     (negY);
    cube->setPosYImage     (posY);
    cube->setNegXImage     (negX);
    cube->setPosXImage     (posX);
    cube->setInternalFormat(GL_RGB8);
    cube->setExternalFormat(GL_RGB);
    cube->setMinFilter     (GL_NEAREST);
    cube->setMagFilter     (GL_NEAREST);
    cube->setWrapS         (GL_REPEAT);
    cube->setWrapT         (GL_REPEAT);
    endEditCP(cube);
    return cube;
}
} // namespace

DeferredPointLight::DeferredPointLight(void) :
    IDeferredLight  (),
    lightPosition   (0.0f, 0.0f, 0.0f),
    lightRange      (0.0f),
    indirectionBound(false),
    shadowMaps      (),
    shadowMapBound  {false, false, false, false, false, false},
    lightViews      (),
    lightProjections(),
    lightNearFars   (),
    shaderChunk     (NullFC),
    volumeTransform (NullFC)
{
    for(int face = 0; face < 6; ++face)
    {
        lightViews      .push_back(Matrix());
        lightProjections.push_back(Matrix());
        lightNearFars   .push_back(Vec2f(0.0f, 0.0f));
    }

    if(s_IndirectonCubeTex == NullFC)
    {
        s_IndirectonCubeTex = createIndirectionTexture();
        addRefCP(s_IndirectonCubeTex);
        holdShared(s_IndirectonCubeTex);
    }

    shaderChunk = createShaderMaterial(sharedCullingChunk(s_CullingOptions, GL_FRONT));

    volumeTransform = Transform::create();
    createVolume(makeSphereGeo(2, 1.0f), volumeTransform);
}

DeferredPointLight::~DeferredPointLight(void)
{
}

void DeferredPointLight::initialize(RenderTarget &gbuffer, UInt16 numGBufferTextures)
{
    setPrograms(shaderChunk, ShaderManager::POINT_LIGHT, numGBufferTextures, 1);
    shareProgram(shaderChunk, ShaderManager::POINT_LIGHT, numGBufferTextures, 1);

    attachGBuffer(gbuffer, numGBufferTextures);

    initialized = true;
}

void DeferredPointLight::update(const Matrix &viewing,
                                const Matrix &projection,
                                const Vec2f  &camNearFar,
                                LightPtr      light,
                                Real32        globalShadowIntensity)
{
    // Exact type: a SpotLight is a PointLight too, but not ours.
    if(light == NullFC || light->getType() != PointLight::getClassType())
    {
        SWARNING << "DeferredPointLight::update - Wrong osg light type for update!"
                 << std::endl;
        return;
    }

    showVolume(light->getOn());

    PointLightPtr pointLight = PointLightPtr::dcast(light);
    lightPosition = pointLight->getPosition();
    if(light->getBeacon() != NullFC)
    {
        Matrix toWorld = light->getBeacon()->getToWorld();
        toWorld.multFullMatrixPnt(lightPosition);
    }

    const Color4f &diffuse  = light->getDiffuse();
    const Color4f &specular = light->getSpecular();
    Vec3f attenuation(light->getConstantAttenuation(),
                      light->getLinearAttenuation(),
                      light->getQuadraticAttenuation());

    updateShadowFlags(light, globalShadowIntensity);
    lightRange = maxLightDistance(attenuation[1], attenuation[2]);

    Pnt3f eyePosition;
    viewing.multFullMatrixPnt(lightPosition, eyePosition);

    if(joinBatch(light->getOn()))
    {
        batchRecord.position    = Vec3f(eyePosition);
        batchRecord.radius      = 1.1f * lightRange;
        batchRecord.diffuse     = Vec3f(diffuse[0], diffuse[1], diffuse[2]);
        batchRecord.specular    = Vec3f(specular[0], specular[1], specular[2]);
        batchRecord.attenuation = attenuation;
        batchRecord.cosCutoff   = -2.0f;
        return;
    }
    selectProgram();

    Matrix invProjection, invViewing;
    projection.inverse(invProjection);
    viewing.inverse(invViewing);

    setUniform("vCamNearFar",      camNearFar);
    setUniform("mCamInvProj",      invProjection);
    setUniform("mCamInvView",      invViewing);
    setUniform("fShadowIntensity", shadowIntensity);
    setUniform("vLightPosition",   Vec3f(eyePosition));
    setUniform("vAttenuation",     attenuation);
    setUniform("vLightDiffuse",
                                        Vec3f(diffuse[0], diffuse[1], diffuse[2]));
    setUniform("vLightSpecular",
                                        Vec3f(specular[0], specular[1], specular[2]));

    if(!indirectionBound)
    {
        bindTexture("texCubeIndirection", s_IndirectonCubeTex);
        indirectionBound = true;
    }

    static const char *strCubeTexNames[6] =
    {
        "texShadowMapNegZ", "texShadowMapPosZ",
        "texShadowMapNegY", "texShadowMapPosY",
        "texShadowMapNegX", "texShadowMapPosX"
    };

    for(int face = 0; face < 6; ++face)
    {
        if(shadowMapBound[face] || !shadowMaps[face].isInitialized())
            continue;
        bindTexture(strCubeTexNames[face], shadowMaps[face].getTargetTexture(0));
        shadowMapBound[face] = true;
    }

    Matrix volume, scale;
    volume.setTranslate(lightPosition[0], lightPosition[1], lightPosition[2]);
    scale.setScale(1.1f * lightRange);
    volume.mult(scale);

    beginEditCP(volumeTransform, Transform::MatrixFieldMask);
    volumeTransform->setMatrix(volume);
    endEditCP(volumeTransform, Transform::MatrixFieldMask);
}

UInt16 DeferredPointLight::getNumShadowmaps(void)
{
    return 6;
}

RenderTarget *DeferredPointLight::getShadowmap(UInt16 index)
{
    return index < 6 ? &shadowMaps[index] : NULL;
}

bool DeferredPointLight::updateLightCamera(UInt16           index,
                                           FrustumVolume   &cameraFrustum,
                                           DynamicVolume   &sceneVolume,
                                           MatrixCameraPtr  lightCamera)
{
    static const Vec3f vLightDirLUT[6] =
    {
        Vec3f(0, 0, -1), Vec3f(0, 0, 1),
        Vec3f(0, -1, 0), Vec3f(0, 1, 0),
        Vec3f(-1, 0, 0), Vec3f(1, 0, 0)
    };
    static const Vec3f vLightUpLUT[6] =
    {
        Vec3f(0, 1, 0), Vec3f(0, 1, 0),
        Vec3f(0, 0, -1), Vec3f(0, 0, 1),
        Vec3f(0, 1, 0), Vec3f(0, 1, 0)
    };

    if(index >= 6)
        return false;

    const Vec3f &direction = vLightDirLUT[index];
    const Vec3f &up        = vLightUpLUT [index];

    Matrix lookAt;
    MatrixLookAt(lookAt, lightPosition, lightPosition + direction, up);
    lookAt.inverse(lightViews[index]);

    DynamicVolume lightSpaceScene = sceneVolume;
    lightSpaceScene.transform(lightViews[index]);
    Pnt3f sceneMin, sceneMax;
    lightSpaceScene.getBounds(sceneMin, sceneMax);

    Real32 nearDist = osgMax(0.01f, -sceneMax[2]);
    Real32 farDist  = osgMin(-sceneMin[2], lightRange);
    if(farDist <= 0.0f)
    {
        lightNearFars[index].setValues(nearDist, farDist);
        return false;
    }
    nearDist = -sceneMax[2];
    farDist  = -sceneMin[2];
    padDepthRange(nearDist, farDist, 0.01f, lightRange);
    lightNearFars[index].setValues(nearDist, farDist);

    BoxVolume faceBox = getFrustumAABB(Vec3f(lightPosition), direction, up,
                                       nearDist, farDist, 1.5707964f, 1.0f);
    if(!intersect(cameraFrustum, faceBox) || !sceneVolume.intersect(faceBox))
        return false;

    MatrixPerspective(lightProjections[index], 0.7853982f, 1.0f, nearDist, farDist);

    setLightCamera(lightCamera, lightViews[index], lightProjections[index], nearDist, farDist);

    setUniform("bCastShadows",  castShadows);
    setUniform("vLightNearFar", lightNearFars);
    setUniform("mLightView",    lightViews);
    setUniform("mLightProj",    lightProjections);

    return true;
}

OSG_END_NAMESPACE
