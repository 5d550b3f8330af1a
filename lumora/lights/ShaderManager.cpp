#include "ShaderManager.h"

#include <sstream>

OSG_BEGIN_NAMESPACE

// Screen coordinates in [0, 1] after the division by w in main.
const char *ShaderManager::s_strSpotPointVertex =
    "varying vec4 vScreenCoord; "
    "void main(void) "
    "{ "
    "gl_Position = ftransform(); "
    "vScreenCoord = gl_Position; "
    "vScreenCoord.xy = (gl_Position.xy + gl_Position.w) * 0.5; "
    "}";

// Any quad centred on the origin becomes the whole viewport, just in front
// of the far plane.
const char *ShaderManager::s_strDirVertex =
    "varying vec4 vScreenCoord; "
    "float fZEpsilon = 0.000001; "
    "void main(void) "
    "{ "
    "gl_Position = vec4(sign(gl_Vertex.x), sign(gl_Vertex.y), 1.0 - fZEpsilon, 1.0); "
    "vScreenCoord = vec4(gl_MultiTexCoord0.xy, 1.0, 1.0); "
    "}";

// The view-space position comes from depth alone: x and y are scaled by the
// linear depth before the inverse projection, so no division by w follows.
const char *ShaderManager::s_strShaderFunctions =
    "uniform vec2 vCamNearFar;\n"
    " uniform mat4 mCamInvProj;\n"
    " float getLinearDepth(float fZDepth)\n"
    " {\n"
    " return vCamNearFar.x / (vCamNearFar.y - fZDepth * (vCamNearFar.y - vCamNearFar.x)) * vCamNearFar.y;\n"
    " }\n"
    " vec3 getViewSpacePosition(vec2 vPixelCoord, float fZDepth)\n"
    " {\n"
    " vec2 vDevice = (vPixelCoord - 0.5) * 2.0;\n"
    " float fLinearDepth = getLinearDepth(fZDepth);\n"
    " vec4 vPosition = vec4(vDevice.x * fLinearDepth, vDevice.y * fLinearDepth, fLinearDepth, 1.0);\n"
    " vPosition = mCamInvProj * vPosition;\n"
    " vPosition.z = -fLinearDepth;\n"
    " return vPosition.xyz;\n"
    " }\n";

// Chebyshev's upper bound on the lit fraction, with light bleeding cut off
// below 0.3. Shared by the three shadowing includes.
#define LUMORA_VSM_FUNCTION                                                  \
    "float getVSMFactor(vec2 vMoments, float fDepth) "                       \
    "{ "                                                                     \
    "float fLit = (fDepth <= vMoments.x) ? 1.0 : 0.0; "                      \
    "float fVariance = max(vMoments.y - vMoments.x * vMoments.x, 0.000001); " \
    "float fDelta = fDepth - vMoments.x; "                                   \
    "float fMax = fVariance / (fVariance + fDelta * fDelta); "               \
    "fLit = max(fLit, fMax); "                                               \
    "return clamp((fLit - 0.3) / (1.0 - 0.3), 0.0, 1.0); "                   \
    "} "

// Phong terms shared by the point and spot models; vL points to the light.
#define LUMORA_PHONG_TERMS                                                   \
    "vec3 vN = data.vNormal; "                                               \
    "vec3 vV = normalize(-data.vPosition); "                                 \
    "float fNdotL = max(0.0, dot(vN, vL)); "                                 \
    "vec3 vR = normalize(reflect(-vL, vN)); "                                \
    "float fRdotV = pow(max(0.0, dot(vR, vV)), max(1.0, data.fShininess)); "

const char *ShaderManager::s_strEmissiveFragmentInclude =
    "const bool bCastShadows = false; "
    "const float fShadowIntensity = 1.0; "
    "vec3 shadePixel(GeometryData data) "
    "{ "
    "return data.vEmissive.rgb; "
    "} "
    "float ComputeShadowFactor(vec4 vPosition) "
    "{ "
    "return 1.0; "
    "} ";

const char *ShaderManager::s_strPointFragmentInclude =
    "uniform vec3 vLightPosition; "
    "uniform vec3 vLightDiffuse; "
    "uniform vec3 vLightSpecular; "
    "uniform vec3 vAttenuation; "
    "uniform bool bCastShadows; "
    "uniform float fShadowIntensity; "
    "uniform samplerCube texCubeIndirection; "
    "uniform sampler2D texShadowMapNegZ; "
    "uniform sampler2D texShadowMapPosZ; "
    "uniform sampler2D texShadowMapNegY; "
    "uniform sampler2D texShadowMapPosY; "
    "uniform sampler2D texShadowMapNegX; "
    "uniform sampler2D texShadowMapPosX; "
    "uniform mat4 mCamInvView; "
    "uniform mat4 mLightView[6]; "
    "uniform mat4 mLightProj[6]; "
    "uniform vec2 vLightNearFar[6]; "
    LUMORA_VSM_FUNCTION
    "vec3 shadePixel(GeometryData data) "
    "{ "
    "vec3 vToLight = vLightPosition - data.vPosition; "
    "float fDist = length(vToLight); "
    "vec3 vL = normalize(vToLight); "
    LUMORA_PHONG_TERMS
    "float fAttenuation = 1.0 / (vAttenuation.x + vAttenuation.y * fDist + vAttenuation.z * fDist * fDist); "
    "return fAttenuation * (fNdotL * data.vDiffuse.rgb * vLightDiffuse + fRdotV * vLightSpecular * data.vSpecular); "
    "} "
    "float ComputeShadowFactor(vec4 vPosition) "
    "{ "
    "vec4 vWorld = mCamInvView * vPosition; "
    "vec4 vLightWorld = mCamInvView * vec4(vLightPosition, 1.0); "
    "vec3 vDirection = vWorld.xyz - vLightWorld.xyz; "
    "int nFace = int(textureCube(texCubeIndirection, vDirection).r * 256.0); "
    "vec4 vLightSpace = mLightView[nFace] * vWorld; "
    "float fDepth = (-vLightSpace.z - vLightNearFar[nFace].x) / (vLightNearFar[nFace].y - vLightNearFar[nFace].x); "
    "vec4 vProjected = mLightProj[nFace] * vLightSpace; "
    "vec2 vCoords = vProjected.xy / vProjected.w * 0.5 + 0.5; "
    "vec2 vMoments = vec2(0.0); "
    "if(nFace == 0) vMoments = texture2D(texShadowMapNegZ, vCoords).rg; "
    "else if(nFace == 1) vMoments = texture2D(texShadowMapPosZ, vCoords).rg; "
    "else if(nFace == 2) vMoments = texture2D(texShadowMapNegY, vCoords).rg; "
    "else if(nFace == 3) vMoments = texture2D(texShadowMapPosY, vCoords).rg; "
    "else if(nFace == 4) vMoments = texture2D(texShadowMapNegX, vCoords).rg; "
    "else if(nFace == 5) vMoments = texture2D(texShadowMapPosX, vCoords).rg; "
    "return getVSMFactor(vMoments, fDepth); "
    "} ";

const char *ShaderManager::s_strSpotFragmentInclude =
    "uniform vec3 vLightPosition; "
    "uniform vec3 vLightDirection; "
    "uniform float vLightCutoff; "
    "uniform float vLightExponent; "
    "uniform vec3 vLightDiffuse; "
    "uniform vec3 vLightSpecular; "
    "uniform vec3 vAttenuation; "
    "uniform bool bCastShadows; "
    "uniform float fShadowIntensity; "
    "uniform sampler2D texShadowMap; "
    "uniform mat4 mLightView; "
    "uniform mat4 mLightProj; "
    "uniform vec2 vLightNearFar; "
    LUMORA_VSM_FUNCTION
    "vec3 shadePixel(GeometryData data) "
    "{ "
    "vec3 vToLight = vLightPosition - data.vPosition; "
    "float fDist = length(vToLight); "
    "vec3 vL = normalize(vToLight); "
    "float fSpot = dot(vLightDirection, -vL); "
    "if(fSpot <= vLightCutoff) return vec3(0.0); "
    LUMORA_PHONG_TERMS
    "float fAttenuation = 1.0 / (vAttenuation.x + vAttenuation.y * fDist + vAttenuation.z * fDist * fDist); "
    "return fAttenuation * pow(fSpot, vLightExponent) * (fNdotL * data.vDiffuse.rgb * vLightDiffuse + fRdotV * vLightSpecular * data.vSpecular); "
    "} "
    "float ComputeShadowFactor(vec4 vPosition) "
    "{ "
    "vec4 vLightSpace = mLightView * vPosition; "
    "float fDepth = (-vLightSpace.z - vLightNearFar.x) / (vLightNearFar.y - vLightNearFar.x); "
    "vec4 vProjected = mLightProj * vLightSpace; "
    "vec2 vCoords = vProjected.xy / vProjected.w * 0.5 + 0.5; "
    "return getVSMFactor(texture2D(texShadowMap, vCoords).rg, fDepth); "
    "} ";

// Needs NUM_SPLITS and sampleShadowMap from the split data before it.
const char *ShaderManager::s_strDirFragmentInclude =
    "uniform vec3 vLightDirection; "
    "uniform vec3 vLightDiffuse; "
    "uniform vec3 vLightSpecular; "
    "uniform bool bCastShadows; "
    "uniform float fShadowIntensity; "
    "uniform mat4 mLightView; "
    "uniform mat4 mLightProj[NUM_SPLITS]; "
    "uniform vec2 vLightNearFar[NUM_SPLITS]; "
    "uniform float fSplitDistances[NUM_SPLITS]; "
    LUMORA_VSM_FUNCTION
    "vec3 shadePixel(GeometryData data) "
    "{ "
    "vec3 vL = vLightDirection; "
    LUMORA_PHONG_TERMS
    "return fNdotL * data.vDiffuse.rgb * vLightDiffuse + fRdotV * vLightSpecular * data.vSpecular; "
    "} "
    "float ComputeShadowFactor(vec4 vPosition) "
    "{ "
    "float fFactor = 1.0; "
    "for(int nSplit = 0; nSplit < NUM_SPLITS; ++nSplit) "
    "{ "
    "if(-vPosition.z <= fSplitDistances[nSplit]) "
    "{ "
    "vec4 vLightSpace = mLightView * vPosition; "
    "float fDepth = (-vLightSpace.z - vLightNearFar[nSplit].x) / (vLightNearFar[nSplit].y - vLightNearFar[nSplit].x); "
    "vec4 vProjected = mLightProj[nSplit] * vLightSpace; "
    "vec2 vCoords = vProjected.xy / vProjected.w * 0.5 + 0.5; "
    "fFactor = getVSMFactor(sampleShadowMap(nSplit, vCoords), fDepth); "
    "break; "
    "} "
    "} "
    "return fFactor; "
    "} ";

#undef LUMORA_VSM_FUNCTION
#undef LUMORA_PHONG_TERMS

const char *ShaderManager::s_strLightingMain =
    "varying vec4 vScreenCoord; "
    "void main(void) "
    "{ "
    "vec2 vCoord = vScreenCoord.xy / vScreenCoord.w; "
    "GeometryData data = getGeometryData(vCoord); "
    "float fShadowFactor = 1.0; "
    "if(bCastShadows) "
    "fShadowFactor = clamp(ComputeShadowFactor(vec4(data.vPosition, 1.0)), fShadowIntensity, 1.0); "
    "gl_FragColor = vec4(shadePixel(data) * fShadowFactor, 1.0); "
    "}";

const char *ShaderManager::s_strUnshadowedLightingMain =
    "varying vec4 vScreenCoord; "
    "void main(void) "
    "{ "
    "vec2 vCoord = vScreenCoord.xy / vScreenCoord.w; "
    "GeometryData data = getGeometryData(vCoord); "
    "gl_FragColor = vec4(shadePixel(data), 1.0); "
    "}";

bool ShaderManager::isShadowUniform(const char *name)
{
    static const char *const names[] =
    {
        "bCastShadows", "fShadowIntensity", "mCamInvView", "texCubeIndirection",
        "mLightView", "mLightProj", "vLightNearFar", "fSplitDistances"
    };
    const std::string text(name != NULL ? name : "");
    if(text.compare(0, 12, "texShadowMap") == 0)
        return true;
    for(const char *shadowName : names)
    {
        if(text == shadowName)
            return true;
    }
    return false;
}

ShaderManager &ShaderManager::getInstance(void)
{
    static ShaderManager instance;
    return instance;
}

ShaderManager::ShaderManager(void)
{
}

ShaderManager::~ShaderManager(void)
{
}

std::string ShaderManager::generateLightVertexShader(LightType type)
{
    switch(type)
    {
        case DIRECTIONAL_LIGHT:
        case EMISSIVE_LIGHT:
            return s_strDirVertex;
        case SPOT_LIGHT:
        case POINT_LIGHT:
            return s_strSpotPointVertex;
    }
    return std::string();
}

std::string ShaderManager::generateGBufferAccessHeader(UInt16 numGBufferTextures)
{
    std::ostringstream s;

    s << "#version 120\n";
    for(UInt16 i = 0; i < numGBufferTextures; ++i)
        s << "uniform sampler2D texGBuffer" << i << ";\n";
    s << "\n";

    s << s_strShaderFunctions << "\n";

    s << "struct GeometryData\n"
      << "{\n"
      << "\tvec3 vPosition;\n"
      << "\tvec3 vNormal;\n"
      << "\tvec4 vEmissive;\n"
      << "\tvec4 vDiffuse;\n"
      << "\tvec3 vSpecular;\n"
      << "\tfloat fShininess;\n"
      << "};\n\n";

    s << "GeometryData getGeometryData(vec2 vScreenCoord)\n"
      << "{\n";
    for(int i = 0; i < 4; ++i)
        s << "\t\tvec4 vGBuffer" << i << "\t= texture2D(texGBuffer" << i << ", vScreenCoord);\n";
    s << "\t\tfloat fZDepth\t= texture2D(texGBuffer4, vScreenCoord).r;\n"
      << "\n\n"
      << "\tGeometryData result;\n"
      << "\tresult.vPosition = getViewSpacePosition(vScreenCoord, fZDepth);\n"
      << "\tresult.vNormal\t= vGBuffer0.rgb * 2.0 - 1.0;\n"
      << "\tresult.vEmissive = vGBuffer3;\n"
      << "\tresult.vDiffuse\t= vGBuffer1;\n"
      << "\tresult.vSpecular\t= vGBuffer2.rgb;\n"
      << "\tresult.fShininess = pow(2.0, vGBuffer2.a * 8.0);\n"
      << "\treturn result;\n"
      << "}\n\n";

    return s.str();
}

std::string ShaderManager::generateVSMSplitData(UInt16 numSplits)
{
    std::ostringstream s;

    s << "const int NUM_SPLITS = " << numSplits << ";\n";
    for(UInt16 i = 0; i < numSplits; ++i)
        s << "uniform sampler2D texShadowMap" << i << ";\n";

    s << "\nvec2 sampleShadowMap(int nSplit, vec2 vTexCoords)\n"
      << "{\n"
      << "\tvec2 vMoments = vec2(0.0);\n";
    for(UInt16 i = 0; i < numSplits; ++i)
    {
        s << "\t" << (i == 0 ? "if" : "else if") << "(nSplit == " << i << ")\n"
          << "\t\t" << "vMoments = texture2D(texShadowMap" << i << ", vTexCoords).rg;\n";
    }
    s << "\treturn vMoments;\n"
      << "}\n\n";

    return s.str();
}

std::string ShaderManager::generateLightFragmentShader(LightType type,
                                                       UInt16    numGBufferTextures,
                                                       UInt16    numSplits,
                                                       bool      shadows)
{
    std::string text = generateGBufferAccessHeader(numGBufferTextures);

    switch(type)
    {
        case DIRECTIONAL_LIGHT:
            text += generateVSMSplitData(numSplits);
            text += s_strDirFragmentInclude;
            break;
        case SPOT_LIGHT:
            text += s_strSpotFragmentInclude;
            break;
        case POINT_LIGHT:
            text += s_strPointFragmentInclude;
            break;
        case EMISSIVE_LIGHT:
            text += s_strEmissiveFragmentInclude;
            break;
    }

    text += shadows ? s_strLightingMain : s_strUnshadowedLightingMain;
    return text;
}

OSG_END_NAMESPACE
