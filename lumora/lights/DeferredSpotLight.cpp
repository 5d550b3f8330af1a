#include "DeferredSpotLight.h"

#include <OpenSG/OSGGeometry.h>
#include <OpenSG/OSGLog.h>
#include <OpenSG/OSGMatrixUtility.h>
#include <OpenSG/OSGQuaternion.h>
#include <OpenSG/OSGSimpleGeometry.h>
#include <OpenSG/OSGSpotLight.h>
#include <OpenSG/OSGVolumeFunctions.h>

#include <Lumora/ShaderManager.h>

#include <cmath>

OSG_BEGIN_NAMESPACE

PolygonChunkPtr DeferredSpotLight::s_CullingOptions = NullFC;

DeferredSpotLight::DeferredSpotLight(void) :
    IDeferredLight   (),
    lightDirection   (0.0f, 0.0f, 0.0f),
    lightPosition    (0.0f, 0.0f, 0.0f),
    cutOffDegrees    (0.0f),
    lightRange       (0.0f),
    shaderChunk      (NullFC),
    shadowMapAttached(false),
    shadowMap        (),
    lightView        (),
    lightProjection  (),
    lightNearFar     (0.0f, 0.0f),
    camInvView       (),
    volumeTransform  (NullFC)
{
    shaderChunk = createShaderMaterial(sharedCullingChunk(s_CullingOptions, GL_FRONT));

    volumeTransform = Transform::create();
    createVolume(makeConeGeo(1.0f, 1.0f, 16, true, true), volumeTransform);
}

DeferredSpotLight::~DeferredSpotLight(void)
{
}

void DeferredSpotLight::initialize(RenderTarget &gbuffer, UInt16 numGBufferTextures)
{
    setPrograms(shaderChunk, ShaderManager::SPOT_LIGHT, numGBufferTextures, 1);
    shareProgram(shaderChunk, ShaderManager::SPOT_LIGHT, numGBufferTextures, 1);

    attachGBuffer(gbuffer, numGBufferTextures);

    initialized = true;
}

void DeferredSpotLight::update(const Matrix &viewing,
                               const Matrix &projection,
                               const Vec2f  &camNearFar,
                               LightPtr      light,
                               Real32        globalShadowIntensity)
{
    if(light == NullFC || light->getType() != SpotLight::getClassType())
    {
        SWARNING << "DeferredSpotLight::update - Wrong osg light type for update!"
                 << std::endl;
        return;
    }

    // A light that is off is not drawn but stays current.
    showVolume(light->getOn());

    SpotLightPtr spot = SpotLightPtr::dcast(light);
    lightPosition  = Vec3f(spot->getPosition());
    lightDirection = spot->getDirection();
    cutOffDegrees  = spot->getSpotCutOff() / 6.2831855f * 360.0f;

    const Color4f &diffuse  = spot->getDiffuse();
    const Color4f &specular = spot->getSpecular();
    Vec3f attenuation(spot->getConstantAttenuation(),
                      spot->getLinearAttenuation(),
                      spot->getQuadraticAttenuation());

    if(spot->getBeacon() != NullFC)
    {
        Matrix toWorld = spot->getBeacon()->getToWorld();
        Pnt3f  position(lightPosition);
        toWorld.multFullMatrixPnt(position);
        lightPosition = Vec3f(position);
        toWorld.multMatrixVec(lightDirection);
    }

    lightRange = maxLightDistance(attenuation[1], attenuation[2]);

    Pnt3f eyePosition;
    viewing.multFullMatrixPnt(Pnt3f(lightPosition), eyePosition);
    Vec3f eyeDirection;
    viewing.multMatrixVec(lightDirection, eyeDirection);
    eyeDirection = normalizedOrAsIs(eyeDirection);

    updateShadowFlags(light, globalShadowIntensity);
    const Real32 cosCutoff = std::cos(cutOffDegrees / 360.0f * 2.0f * 3.1415927f);
    if(joinBatch(light->getOn()))
    {
        batchRecord.position    = Vec3f(eyePosition);
        batchRecord.radius      = 1.1f * lightRange;
        batchRecord.diffuse     = Vec3f(diffuse[0], diffuse[1], diffuse[2]);
        batchRecord.specular    = Vec3f(specular[0], specular[1], specular[2]);
        batchRecord.attenuation = attenuation;
        batchRecord.cosCutoff   = cosCutoff;
        batchRecord.exponent    = spot->getSpotExponent();
        batchRecord.direction   = eyeDirection;
        return;
    }
    selectProgram();

    viewing.inverse(camInvView);
    Matrix invProjection;
    projection.inverse(invProjection);

    setUniform("vCamNearFar",      camNearFar);
    setUniform("mCamInvProj",      invProjection);
    setUniform("fShadowIntensity", shadowIntensity);
    setUniform("vLightPosition",   Vec3f(eyePosition));
    setUniform("vLightDirection",  eyeDirection);
    setUniform("vLightCutoff",     cosCutoff);
    setUniform("vLightExponent",   spot->getSpotExponent());
    setUniform("vAttenuation",     attenuation);
    setUniform("vLightDiffuse",
                                        Vec3f(diffuse[0], diffuse[1], diffuse[2]));
    setUniform("vLightSpecular",
                                        Vec3f(specular[0], specular[1], specular[2]));

    if(!shadowMapAttached && shadowMap.isInitialized())
    {
        bindTexture("texShadowMap", shadowMap.getTargetTexture(0));
        shadowMapAttached = true;
    }

    Matrix cone = getConeTransform(lightPosition, lightDirection, lightRange, cutOffDegrees);
    beginEditCP(volumeTransform, Transform::MatrixFieldMask);
    volumeTransform->setMatrix(cone);
    endEditCP(volumeTransform, Transform::MatrixFieldMask);
}

UInt16 DeferredSpotLight::getNumShadowmaps(void)
{
    return 1;
}

RenderTarget *DeferredSpotLight::getShadowmap(UInt16)
{
    return &shadowMap;
}

Matrix DeferredSpotLight::getConeTransform(const Vec3f &position,
                                           const Vec3f &direction,
                                           Real32       length,
                                           Real32       angleDegrees)
{
    Real32 radius = std::tan(angleDegrees / 360.0f * 2.0f * 3.1415927f) * length * 1.1f;
    Vec3f  d      = normalizedOrAsIs(direction);

    // Rotation that turns the unit cone's axis (0, -1, 0) into d.
    Vec3f  c(d[2], 0.0f, -d[0]);
    Matrix rotation;
    if(std::fabs(c[0]) <= 1e-6f && std::fabs(c[1]) <= 1e-6f && std::fabs(c[2]) <= 1e-6f)
    {
        // Along Y there is no axis to turn about. Straight up, turn half a
        // circle about X: a mirror would reverse the cone's winding, and
        // with front faces culled a camera inside it would see nothing.
        if(d[1] > 0.0f)
            rotation.setScale(1.0f, -1.0f, -1.0f);
    }
    else
    {
        Real32 theta   = std::acos(-d[1]);
        Real32 cLength = c.length();
        if(cLength > 1e-6f)
        {
            Vec3f      axis = c * (std::sin(-theta / 2.0f) / cLength);
            Quaternion q;
            q.setValueAsQuat(axis[0], axis[1], axis[2], std::cos(-theta / 2.0f));
            rotation.setTransform(q);
        }
    }

    Matrix scale, toApex, toPosition;
    scale     .setScale    (radius, length, radius);
    toApex    .setTranslate(0.0f, -0.5f, 0.0f);
    toPosition.setTranslate(position);

    Matrix result = toPosition;
    result.mult(rotation);
    result.mult(scale);
    result.mult(toApex);
    return result;
}

bool DeferredSpotLight::updateLightCamera(UInt16,
                                          FrustumVolume   &cameraFrustum,
                                          DynamicVolume   &sceneVolume,
                                          MatrixCameraPtr  lightCamera)
{
    Vec3f d = normalizedOrAsIs(lightDirection);

    // Any vector perpendicular to d; the second form degenerates near
    // +-(1, 1, 1) / sqrt(3).
    Vec3f up;
    Real64 mixed = Real64(d[0]) * d[1] + Real64(d[1]) * d[2] + Real64(d[0]) * d[2];
    if(mixed > 0.99)
        up.setValues(d[1] * d[2], -d[0] * d[2], 0.0f);
    else
        up.setValues(d[2] * d[2] - d[0] * d[1],
                     d[0] * d[0] - d[1] * d[2],
                     d[1] * d[1] - d[0] * d[2]);
    up = normalizedOrAsIs(up);

    Matrix lookAt;
    MatrixLookAt(lookAt, Pnt3f(lightPosition), Pnt3f(lightPosition + d), up);
    lookAt.inverse(lightView);

    DynamicVolume lightSpaceScene = sceneVolume;
    lightSpaceScene.transform(lightView);
    Pnt3f sceneMin, sceneMax;
    lightSpaceScene.getBounds(sceneMin, sceneMax);

    lightNearFar.setValues(osgMax(0.01f, -sceneMax[2]), osgMin(-sceneMin[2], lightRange));
    if(lightNearFar[1] <= 0.0f)
        return false;
    lightNearFar.setValues(-sceneMax[2], -sceneMin[2]);
    padDepthRange(lightNearFar[0], lightNearFar[1], 0.01f, lightRange);

    Real32 fov = Real32(2.0 * cutOffDegrees / 360.0 * 2.0 * 3.1415926535);
    BoxVolume lightBox = getFrustumAABB(lightPosition, d, up,
                                        lightNearFar[0], lightNearFar[1], fov, 1.0f);
    if(!intersect(cameraFrustum, lightBox) || !sceneVolume.intersect(lightBox))
        return false;

    MatrixPerspective(lightProjection, cutOffDegrees / 360.0f * 2.0f * 3.1415927f, 1.0f,
                      lightNearFar[0], lightNearFar[1]);

    setLightCamera(lightCamera, lightView, lightProjection, lightNearFar[0], lightNearFar[1]);

    // From now on it maps the viewer's eye space into the light's.
    lightView.mult(camInvView);

    setUniform("bCastShadows",  castShadows);
    setUniform("vLightNearFar", lightNearFar);
    setUniform("mLightView",    lightView);
    setUniform("mLightProj",    lightProjection);

    return true;
}

OSG_END_NAMESPACE
