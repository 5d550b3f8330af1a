#include "EffectFloor.h"
#include "RawGL.h"

#include <boost/random/mersenne_twister.hpp>
#include <boost/random/uniform_on_sphere.hpp>
#include <boost/random/uniform_real_distribution.hpp>

#include <cmath>

namespace
{

// The library's default settings.
const float SSAOScale          = 0.001f;
const float SSAOAttenuation    = 0.0025f;
const float HDRExposure        = 1.64f;
const float HDRThreshold       = 1.0f;
const float HDRBloomScale      = 1.25f;
const float DoFFocalDepth      = 10.0f;
const float DoFBlurCutoff      = 0.7f;
const float CMBBlurScale       = 0.03f;

const char *s_strScreenVertex =
    "#version 120\n"
    "attribute vec2 aCorner;\n"
    "varying vec2 vCoord;\n"
    "void main(void)\n"
    "{\n"
    "    gl_Position = vec4(aCorner, 0.0, 1.0);\n"
    "    vCoord = aCorner * 0.5 + 0.5;\n"
    "}\n";

const char *s_strAA =
    "#version 120\n"
    "uniform sampler2D texDepth;\n"
    "uniform sampler2D texNormal;\n"
    "uniform sampler2D texScene;\n"
    "uniform vec2 vPixelSize;\n"
    "varying vec2 vCoord;\n"
    "vec3 normalAt(vec2 vAt)\n"
    "{\n"
    "    return normalize(texture2D(texNormal, vAt).rgb * 2.0 - 1.0);\n"
    "}\n"
    "void main(void)\n"
    "{\n"
    "    const vec2 vLines[4] = vec2[4](vec2(-1.0, 1.0), vec2(0.0, 1.0),\n"
    "                                   vec2(1.0, 1.0), vec2(1.0, 0.0));\n"
    "    float fDepth = texture2D(texDepth, vCoord).r;\n"
    "    vec3 vNormal = normalAt(vCoord);\n"
    "    float fEdges = 0.0;\n"
    "    for(int i = 0; i < 4; ++i)\n"
    "    {\n"
    "        vec2 vStep = vLines[i] * vPixelSize;\n"
    "        float a = abs(texture2D(texDepth, vCoord + vStep).r - fDepth);\n"
    "        float b = abs(fDepth - texture2D(texDepth, vCoord - vStep).r);\n"
    "        bool bDepthEdge = max(a, b) >= 10.0 * max(min(a, b), 0.00001);\n"
    "        bool bNormalEdge = abs(dot(normalAt(vCoord + vStep), vNormal) -\n"
    "                               dot(normalAt(vCoord - vStep), vNormal)) >= 1.0;\n"
    "        if(bDepthEdge || bNormalEdge)\n"
    "            fEdges += 1.0;\n"
    "    }\n"
    "    vec2 vHalf = 0.125 * fEdges * vPixelSize;\n"
    "    vec3 vSum = texture2D(texScene, vCoord + vec2(-vHalf.x,  vHalf.y)).rgb;\n"
    "    vSum += texture2D(texScene, vCoord + vec2( vHalf.x,  vHalf.y)).rgb;\n"
    "    vSum += texture2D(texScene, vCoord + vec2( vHalf.x, -vHalf.y)).rgb;\n"
    "    vSum += texture2D(texScene, vCoord + vec2(-vHalf.x, -vHalf.y)).rgb;\n"
    "    gl_FragColor = vec4(vSum * 0.25, 1.0);\n"
    "}\n";

const char *s_strSSAO =
    "#version 120\n"
    "uniform sampler2D texDepth;\n"
    "uniform sampler2D texNormal;\n"
    "uniform sampler2D texNoise;\n"
    "uniform vec2 vNoiseRepeat;\n"
    "uniform vec2 vCamNearFar;\n"
    "uniform float fScale;\n"
    "uniform float fAttenuation;\n"
    "uniform vec3 vSamples[32];\n"
    "varying vec2 vCoord;\n"
    "float linearDepth(float z)\n"
    "{\n"
    "    return vCamNearFar.x / (vCamNearFar.y - z * (vCamNearFar.y - vCamNearFar.x)) * vCamNearFar.y;\n"
    "}\n"
    "void main(void)\n"
    "{\n"
    "    vec4 vNormalTexel = texture2D(texNormal, vCoord);\n"
    "    if(vNormalTexel.a == 0.0)\n"
    "        discard;\n"
    "    float fZ = linearDepth(texture2D(texDepth, vCoord).r);\n"
    "    vec3 vNormal = normalize(vNormalTexel.xyz * 2.0 - 1.0);\n"
    "    vec3 vRandom = normalize(texture2D(texNoise, vCoord * vNoiseRepeat).xyz);\n"
    "    float fRange = vCamNearFar.y - vCamNearFar.x;\n"
    "    float fRadius = fScale * fRange * (1.0 / fZ);\n"
    "    float fBias = 0.0001 * fRange;\n"
    "    float fOcclusion = 0.0;\n"
    "    for(int i = 0; i < 32; ++i)\n"
    "    {\n"
    "        vec3 vSample = reflect(vSamples[i], vRandom) * fRadius;\n"
    "        if(dot(vSample, vNormal) < 0.0)\n"
    "            vSample = -vSample;\n"
    "        vec2 vAt = vCoord + vSample.xy;\n"
    "        vec3 vSampleNormal = normalize(texture2D(texNormal, vAt).xyz * 2.0 - 1.0);\n"
    "        if(1.0 - dot(vSampleNormal, vNormal) < 0.001)\n"
    "            continue;\n"
    "        float d = fAttenuation * ((fZ - vSample.z) - linearDepth(texture2D(texDepth, vAt).r) - fBias);\n"
    "        fOcclusion += step(0.0, d) / (1.0 + d * d);\n"
    "    }\n"
    "    gl_FragColor = vec4(1.0 - fOcclusion / 32.0);\n"
    "}\n";

// Five Gaussian taps along one axis; a tap whose normal turns away from
// the centre's takes the centre's value.
#define LUMORA_FLOOR_AO_BLUR                                                  \
    "#version 120\n"                                                          \
    "uniform sampler2D texNormal;\n"                                          \
    "uniform sampler2D texOcclusion;\n"                                       \
    "uniform vec2 vPixelSize;\n"                                              \
    "uniform float fWeights[5];\n"                                            \
    "varying vec2 vCoord;\n"                                                  \
    "float blurred(vec3 vNormal)\n"                                           \
    "{\n"                                                                     \
    "    float fCentre = texture2D(texOcclusion, vCoord).r;\n"                \
    "    float fSum = 0.0;\n"                                                 \
    "    for(int i = 0; i < 5; ++i)\n"                                        \
    "    {\n"                                                                 \
    "        vec2 vAt = vCoord + float(i - 2) * vPixelSize;\n"                \
    "        vec3 vTapNormal = normalize(texture2D(texNormal, vAt).xyz * 2.0 - 1.0);\n" \
    "        float fTap = dot(vNormal, vTapNormal) > 0.92 ? texture2D(texOcclusion, vAt).r : fCentre;\n" \
    "        fSum += fTap * fWeights[i];\n"                                   \
    "    }\n"                                                                 \
    "    return fSum;\n"                                                      \
    "}\n"

const char *s_strSSAOBlurH =
    LUMORA_FLOOR_AO_BLUR
    "void main(void)\n"
    "{\n"
    "    vec4 vNormalTexel = texture2D(texNormal, vCoord);\n"
    "    if(vNormalTexel.a == 0.0)\n"
    "        discard;\n"
    "    gl_FragColor = vec4(blurred(normalize(vNormalTexel.xyz * 2.0 - 1.0)));\n"
    "}\n";

const char *s_strSSAOBlurV =
    LUMORA_FLOOR_AO_BLUR
    "uniform sampler2D texScene;\n"
    "void main(void)\n"
    "{\n"
    "    vec4 vScene = texture2D(texScene, vCoord);\n"
    "    vec4 vNormalTexel = texture2D(texNormal, vCoord);\n"
    "    if(vNormalTexel.a != 0.0)\n"
    "        vScene *= blurred(normalize(vNormalTexel.xyz * 2.0 - 1.0));\n"
    "    gl_FragColor = vScene;\n"
    "}\n";

#undef LUMORA_FLOOR_AO_BLUR

const char *s_strDownscale =
    "#version 120\n"
    "uniform sampler2D texSource;\n"
    "uniform vec2 vPixelSize;\n"
    "varying vec2 vCoord;\n"
    "void main(void)\n"
    "{\n"
    "    vec3 vSum = vec3(0.0);\n"
    "    for(int y = 0; y < 4; ++y)\n"
    "        for(int x = 0; x < 4; ++x)\n"
    "            vSum += texture2D(texSource, vCoord + (vec2(x, y) - 1.5) * vPixelSize).rgb;\n"
    "    gl_FragColor = vec4(vSum / 16.0, 1.0);\n"
    "}\n";

#define LUMORA_FLOOR_BLUR(TAPS)                                               \
    "#version 120\n"                                                          \
    "uniform sampler2D texSource;\n"                                          \
    "uniform vec2 vPixelSize;\n"                                              \
    "uniform float fWeights[" #TAPS "];\n"                                    \
    "uniform float fBloomScale;\n"                                            \
    "varying vec2 vCoord;\n"                                                  \
    "void main(void)\n"                                                       \
    "{\n"                                                                     \
    "    vec3 vSum = vec3(0.0);\n"                                            \
    "    for(int i = 0; i < " #TAPS "; ++i)\n"                                \
    "        vSum += texture2D(texSource, vCoord + float(i - " #TAPS " / 2) * vPixelSize).rgb * fWeights[i];\n" \
    "    gl_FragColor = vec4(fBloomScale * vSum, 1.0);\n"                     \
    "}\n"

const char *s_strBlur7  = LUMORA_FLOOR_BLUR(7);
const char *s_strBlur13 = LUMORA_FLOOR_BLUR(13);

#undef LUMORA_FLOOR_BLUR

const char *s_strBright =
    "#version 120\n"
    "uniform sampler2D texSource;\n"
    "uniform float fExposure;\n"
    "uniform float fThreshold;\n"
    "varying vec2 vCoord;\n"
    "void main(void)\n"
    "{\n"
    "    vec3 vColor = texture2D(texSource, vCoord).rgb * (fExposure / 0.1001) - fThreshold;\n"
    "    vColor = max(vColor, vec3(0.0));\n"
    "    gl_FragColor = vec4(vColor / (100.0 + vColor), 1.0);\n"
    "}\n";

const char *s_strToneMap =
    "#version 120\n"
    "uniform sampler2D texBloom;\n"
    "uniform sampler2D texScene;\n"
    "uniform float fExposure;\n"
    "varying vec2 vCoord;\n"
    "void main(void)\n"
    "{\n"
    "    vec3 vScene = texture2D(texScene, vCoord).rgb;\n"
    "    vec3 vBloom = texture2D(texBloom, vCoord).rgb;\n"
    "    gl_FragColor = vec4(clamp(1.0 - exp(-fExposure * vScene) + vBloom, 0.0, 1.0), 1.0);\n"
    "}\n";

const char *s_strBluriness =
    "#version 120\n"
    "uniform sampler2D texDepth;\n"
    "uniform vec3 vBlurParams;\n"
    "uniform float fCutoff;\n"
    "varying vec2 vCoord;\n"
    "void main(void)\n"
    "{\n"
    "    float n = vBlurParams.x;\n"
    "    float f = vBlurParams.z;\n"
    "    float d = n / (f - texture2D(texDepth, vCoord).r * (f - n)) * f;\n"
    "    float b = d < vBlurParams.y ? (d - vBlurParams.y) / (vBlurParams.y - n)\n"
    "                                : clamp((d - vBlurParams.y) / (f - vBlurParams.y), 0.0, fCutoff);\n"
    "    gl_FragColor = vec4(b * 0.5 + 0.5);\n"
    "}\n";

const char *s_strDoF =
    "#version 120\n"
    "uniform sampler2D texReduced;\n"
    "uniform sampler2D texBluriness;\n"
    "uniform sampler2D texScene;\n"
    "uniform vec2 vTaps[12];\n"
    "uniform vec2 vPixelSize;\n"
    "uniform vec2 vReducedPixelSize;\n"
    "varying vec2 vCoord;\n"
    "void main(void)\n"
    "{\n"
    "    float fCentre = texture2D(texBluriness, vCoord).r;\n"
    "    float fRadius = abs(fCentre * 10.0 - 5.0);\n"
    "    vec2 vFull = vPixelSize * fRadius;\n"
    "    vec2 vLow = vReducedPixelSize * (fRadius * 0.4);\n"
    "    vec3 vSum = vec3(0.0);\n"
    "    float fWeights = 0.0;\n"
    "    for(int i = 0; i < 12; ++i)\n"
    "    {\n"
    "        vec2 vAtFull = vCoord + vTaps[i] * vFull;\n"
    "        vec2 vAtLow = vCoord + vTaps[i] * vLow;\n"
    "        float fBlurFull = texture2D(texBluriness, vAtFull).r;\n"
    "        float fBlurLow = texture2D(texBluriness, vAtLow).r;\n"
    "        float fMix = abs(fBlurFull * 2.0 - 1.0);\n"
    "        vec3 vTap = mix(texture2D(texScene, vAtFull).rgb, texture2D(texReduced, vAtLow).rgb, fMix);\n"
    "        float fBlur = mix(fBlurFull, fBlurLow, fMix);\n"
    "        float fWeight = fBlur < fCentre ? abs(fBlur * 2.0 - 1.0) : 1.0;\n"
    "        vSum += vTap * fWeight;\n"
    "        fWeights += fWeight;\n"
    "    }\n"
    "    gl_FragColor = vec4(vSum / fWeights, 1.0);\n"
    "}\n";

// Where each pixel's ray met the sphere around the camera, projected as
// the previous frame's camera saw it.
const char *s_strCMBVertex =
    "#version 120\n"
    "attribute vec2 aCorner;\n"
    "uniform mat4 mInvViewProj;\n"
    "varying vec2 vCoord;\n"
    "varying vec4 vFar;\n"
    "void main(void)\n"
    "{\n"
    "    gl_Position = vec4(aCorner, 0.0, 1.0);\n"
    "    vCoord = aCorner * 0.5 + 0.5;\n"
    "    vFar = mInvViewProj * vec4(aCorner, 1.0, 1.0);\n"
    "}\n";

const char *s_strCMB =
    "#version 120\n"
    "uniform sampler2D texScene;\n"
    "uniform mat4 mPrevViewProj;\n"
    "uniform vec3 vCamPosition;\n"
    "uniform float fSphereScale;\n"
    "uniform float fScale;\n"
    "varying vec2 vCoord;\n"
    "varying vec4 vFar;\n"
    "void main(void)\n"
    "{\n"
    "    vec3 vRay = normalize(vFar.xyz / vFar.w - vCamPosition);\n"
    "    vec4 vPrev = mPrevViewProj * vec4(vCamPosition + vRay * fSphereScale, 1.0);\n"
    "    vec2 vVelocity = ((vPrev.xy / vPrev.w) * 0.5 + 0.5 - vCoord) * fScale;\n"
    "    vec3 vSum = vec3(0.0);\n"
    "    for(int i = 0; i < 16; ++i)\n"
    "        vSum += texture2D(texScene, vCoord + vVelocity * (1.0 - float(i) * 0.125)).rgb;\n"
    "    gl_FragColor = vec4(vSum / 16.0, 1.0);\n"
    "}\n";

// Normalised Gaussian weights, sigma 2, centred on the middle tap.
std::vector<float> gaussian(int taps)
{
    std::vector<float> weights;
    float sum = 0.f;
    for(int i = 0; i < taps; ++i)
    {
        const float x = float(i) - float(taps - 1) * 0.5f;
        weights.push_back(std::exp(-x * x / 8.f));
        sum += weights.back();
    }
    for(float &w : weights)
        w /= sum;
    return weights;
}

GLint uniform(GLuint program, const char *name)
{
    return glGetUniformLocation(program, name);
}

} // namespace

const char *EffectFloor::getName(Effect effect)
{
    static const char *names[EffectCount] = {"AA", "SSAO", "HDR", "DoF", "CMB"};
    return names[effect];
}

EffectFloor::EffectFloor(void) :
    width(0), height(0), scene(0), normals(0), depths(0), noise(0),
    programs{}, pixelSize{}, bloomScale{}, lastResult(0)
{
}

EffectFloor::~EffectFloor(void)
{
    GLuint textures[] = {scene, normals, depths, noise};
    glDeleteTextures(4, textures);
    for(Target *t : {&output, &pingPong, &occlusion, &occlusionBlur, &bluriness,
                     &reduced[0], &reduced[1], &reduced[2], &reduced[3]})
    {
        glDeleteTextures(1, &t->texture);
        glDeleteFramebuffers(1, &t->framebuffer);
    }
    for(GLuint program : programs)
        glDeleteProgram(program);
}

bool EffectFloor::makeTarget(Target &target, int w, int h, GLenum internal, GLenum format,
                             GLenum type, std::string &error)
{
    target.width  = w;
    target.height = h;
    glGenTextures(1, &target.texture);
    glBindTexture(GL_TEXTURE_2D, target.texture);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP);
    glTexImage2D(GL_TEXTURE_2D, 0, internal, w, h, 0, format, type, NULL);
    glBindTexture(GL_TEXTURE_2D, 0);
    if(internal != GL_RGB16F && internal != GL_LUMINANCE8)
        return true;

    glGenFramebuffers(1, &target.framebuffer);
    glBindFramebuffer(GL_FRAMEBUFFER, target.framebuffer);
    glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D,
                           target.texture, 0);
    const bool complete =
        glCheckFramebufferStatus(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE;
    glBindFramebuffer(GL_FRAMEBUFFER, 0);
    if(!complete)
        error = "a target of " + std::to_string(w) + "x" + std::to_string(h) +
                " is incomplete";
    return complete;
}

bool EffectFloor::buildPrograms(std::string &error)
{
    const struct { Program id; const char *vertex; const char *fragment; } texts[] = {
        {AAProgram,        s_strScreenVertex, s_strAA},
        {SSAOProgram,      s_strScreenVertex, s_strSSAO},
        {SSAOBlurHProgram, s_strScreenVertex, s_strSSAOBlurH},
        {SSAOBlurVProgram, s_strScreenVertex, s_strSSAOBlurV},
        {DownscaleProgram, s_strScreenVertex, s_strDownscale},
        {Blur7Program,     s_strScreenVertex, s_strBlur7},
        {Blur13Program,    s_strScreenVertex, s_strBlur13},
        {BrightProgram,    s_strScreenVertex, s_strBright},
        {ToneMapProgram,   s_strScreenVertex, s_strToneMap},
        {BlurinessProgram, s_strScreenVertex, s_strBluriness},
        {DoFProgram,       s_strScreenVertex, s_strDoF},
        {CMBProgram,       s_strCMBVertex,    s_strCMB},
    };
    for(const auto &text : texts)
    {
        GLuint program = rawgl::buildProgram(text.vertex, text.fragment, {"aCorner"}, error);
        if(program == 0)
        {
            error = "program " + std::to_string(int(text.id)) + ": " + error;
            return false;
        }
        programs[text.id]   = program;
        pixelSize[text.id]  = uniform(program, "vPixelSize");
        bloomScale[text.id] = uniform(program, "fBloomScale");
        glUseProgram(program);
        // Samplers take units in the order the passes bind them.
        const char *samplers[] = {"texDepth", "texNormal", "texScene"};
        if(text.id == AAProgram || text.id == SSAOProgram)
            for(int unit = 0; unit < 3; ++unit)
                glUniform1i(uniform(program, samplers[unit]), unit);
        glUniform1i(uniform(program, "texNoise"),     2);
        glUniform1i(uniform(program, "texOcclusion"), 1);
        glUniform1i(uniform(program, "texBloom"),     0);
        glUniform1i(uniform(program, "texReduced"),   0);
        glUniform1i(uniform(program, "texBluriness"), 1);
        if(text.id == SSAOBlurHProgram || text.id == SSAOBlurVProgram)
        {
            glUniform1i(uniform(program, "texNormal"), 0);
            glUniform1i(uniform(program, "texScene"),  2);
        }
        else if(text.id == ToneMapProgram)
            glUniform1i(uniform(program, "texScene"), 1);
        else if(text.id == DoFProgram)
            glUniform1i(uniform(program, "texScene"), 2);
        else if(text.id == CMBProgram || text.id == BlurinessProgram)
            glUniform1i(uniform(program, text.id == CMBProgram ? "texScene" : "texDepth"), 0);
    }

    glUseProgram(programs[SSAOProgram]);
    glUniform2f(uniform(programs[SSAOProgram], "vNoiseRepeat"),
                float(width) * 0.25f, float(height) * 0.25f);
    glUniform1f(uniform(programs[SSAOProgram], "fScale"),       SSAOScale);
    glUniform1f(uniform(programs[SSAOProgram], "fAttenuation"), SSAOAttenuation);

    const std::vector<float> weights5 = gaussian(5);
    for(Program p : {SSAOBlurHProgram, SSAOBlurVProgram})
    {
        glUseProgram(programs[p]);
        glUniform1fv(uniform(programs[p], "fWeights"), 5, weights5.data());
        glUniform2f(pixelSize[p], p == SSAOBlurHProgram ? 1.f / float(width) : 0.f,
                    p == SSAOBlurVProgram ? 1.f / float(height) : 0.f);
    }
    const std::vector<float> weights7 = gaussian(7), weights13 = gaussian(13);
    glUseProgram(programs[Blur7Program]);
    glUniform1fv(uniform(programs[Blur7Program], "fWeights"), 7, weights7.data());
    glUseProgram(programs[Blur13Program]);
    glUniform1fv(uniform(programs[Blur13Program], "fWeights"), 13, weights13.data());

    glUseProgram(programs[BrightProgram]);
    glUniform1f(uniform(programs[BrightProgram], "fExposure"),  HDRExposure);
    glUniform1f(uniform(programs[BrightProgram], "fThreshold"), HDRThreshold);
    glUseProgram(programs[ToneMapProgram]);
    glUniform1f(uniform(programs[ToneMapProgram], "fExposure"), HDRExposure);

    glUseProgram(programs[BlurinessProgram]);
    glUniform1f(uniform(programs[BlurinessProgram], "fCutoff"), DoFBlurCutoff);
    static const float taps[24] = {
        -0.326212f, -0.40581f,  -0.840144f, -0.07358f,  -0.695914f,  0.457137f,
        -0.203345f,  0.620716f,  0.96234f,  -0.194983f,  0.473434f, -0.480026f,
         0.519456f,  0.767022f,  0.185461f, -0.893124f,  0.507431f,  0.064425f,
         0.89642f,   0.412458f, -0.32194f,  -0.932615f, -0.791559f, -0.59771f};
    glUseProgram(programs[DoFProgram]);
    glUniform2fv(uniform(programs[DoFProgram], "vTaps"), 12, taps);
    glUniform2f(pixelSize[DoFProgram], 1.f / float(width), 1.f / float(height));
    glUniform2f(uniform(programs[DoFProgram], "vReducedPixelSize"),
                1.f / float(reduced[0].width), 1.f / float(reduced[0].height));

    glUseProgram(programs[CMBProgram]);
    glUniform1f(uniform(programs[CMBProgram], "fScale"), CMBBlurScale);
    glUseProgram(0);
    return true;
}

bool EffectFloor::initialize(int w, int h, std::string &error)
{
    width  = w;
    height = h;
    const int rw = w / 4 > 0 ? w / 4 : 1, rh = h / 4 > 0 ? h / 4 : 1;

    Target in[3];
    bool ok = makeTarget(in[0], w, h, GL_RGB16F, GL_RGB, GL_FLOAT, error) &&
              makeTarget(in[1], w, h, GL_RGB10_A2, GL_RGBA, GL_UNSIGNED_INT_2_10_10_10_REV,
                         error) &&
              makeTarget(in[2], w, h, GL_DEPTH_COMPONENT32, GL_DEPTH_COMPONENT, GL_FLOAT,
                         error) &&
              makeTarget(output,        w, h, GL_RGB16F, GL_RGB, GL_FLOAT, error) &&
              makeTarget(pingPong,      w, h, GL_RGB16F, GL_RGB, GL_FLOAT, error) &&
              makeTarget(occlusion,     w, h, GL_LUMINANCE8, GL_LUMINANCE, GL_UNSIGNED_BYTE,
                         error) &&
              makeTarget(occlusionBlur, w, h, GL_LUMINANCE8, GL_LUMINANCE, GL_UNSIGNED_BYTE,
                         error) &&
              makeTarget(bluriness,     w, h, GL_LUMINANCE8, GL_LUMINANCE, GL_UNSIGNED_BYTE,
                         error);
    for(Target &t : reduced)
        ok = ok && makeTarget(t, rw, rh, GL_RGB16F, GL_RGB, GL_FLOAT, error);
    scene   = in[0].texture;
    normals = in[1].texture;
    depths  = in[2].texture;
    if(!ok)
        return false;
    for(GLuint t : {normals, depths})
    {
        glBindTexture(GL_TEXTURE_2D, t);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
    }

    // The same noise and sample kernel as the library: one default-seeded
    // Mersenne Twister, sixteen unit vectors, then 32 scaled ones.
    boost::random::mt19937                          generator;
    boost::random::uniform_on_sphere<float>         onSphere(3);
    boost::random::uniform_real_distribution<float> length(0.0f, 1.0f);
    std::vector<float> noiseTexels, samples;
    for(int i = 0; i < 16; ++i)
    {
        const std::vector<float> v = onSphere(generator);
        noiseTexels.insert(noiseTexels.end(), v.begin(), v.end());
    }
    for(int i = 0; i < 32; ++i)
    {
        const std::vector<float> v = onSphere(generator);
        const float              u = length(generator);
        for(float c : v)
            samples.push_back(c * u);
    }
    glGenTextures(1, &noise);
    glBindTexture(GL_TEXTURE_2D, noise);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_REPEAT);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_REPEAT);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGB32F, 4, 4, 0, GL_RGB, GL_FLOAT, noiseTexels.data());
    glBindTexture(GL_TEXTURE_2D, 0);

    if(!buildPrograms(error))
        return false;
    glUseProgram(programs[SSAOProgram]);
    glUniform3fv(uniform(programs[SSAOProgram], "vSamples"), 32, samples.data());
    glUseProgram(0);
    setCamera(Camera());
    return true;
}

void EffectFloor::copyInputs(GLuint sceneSource, GLuint normalSource, GLuint depthSource)
{
    const GLuint sources[3] = {sceneSource, normalSource, depthSource};
    const GLuint copies [3] = {scene, normals, depths};
    for(int i = 0; i < 3; ++i)
        glCopyImageSubData(sources[i], GL_TEXTURE_2D, 0, 0, 0, 0,
                           copies[i],  GL_TEXTURE_2D, 0, 0, 0, 0, width, height, 1);
}

void EffectFloor::setCamera(const Camera &camera)
{
    const float nearFar[2] = {camera.nearDist, camera.farDist};
    glUseProgram(programs[SSAOProgram]);
    glUniform2fv(uniform(programs[SSAOProgram], "vCamNearFar"), 1, nearFar);
    glUseProgram(programs[BlurinessProgram]);
    glUniform3f(uniform(programs[BlurinessProgram], "vBlurParams"),
                camera.nearDist, DoFFocalDepth, camera.farDist);
    const GLuint cmb = programs[CMBProgram];
    glUseProgram(cmb);
    glUniformMatrix4fv(uniform(cmb, "mInvViewProj"),  1, GL_FALSE, camera.invViewProj);
    glUniformMatrix4fv(uniform(cmb, "mPrevViewProj"), 1, GL_FALSE, camera.prevViewProj);
    glUniform3fv(uniform(cmb, "vCamPosition"), 1, camera.position);
    glUniform1f(uniform(cmb, "fSphereScale"), (camera.nearDist + camera.farDist) * 0.5f);
    glUseProgram(0);
}

void EffectFloor::bind(int unit, GLuint texture)
{
    glActiveTexture(GL_TEXTURE0 + unit);
    glBindTexture(GL_TEXTURE_2D, texture);
}

void EffectFloor::pass(const Target &target, Program program)
{
    glBindFramebuffer(GL_FRAMEBUFFER, target.framebuffer);
    glViewport(0, 0, target.width, target.height);
    glUseProgram(programs[program]);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
}

// Along x into between, then along y into result, at the source's texel size.
void EffectFloor::blur(const Target &source, const Target &between, const Target &result,
                       Program program, float scale)
{
    glUseProgram(programs[program]);
    glUniform1f(bloomScale[program], scale);
    glUniform2f(pixelSize[program], 1.f / float(source.width), 0.f);
    bind(0, source.texture);
    pass(between, program);
    glUniform2f(pixelSize[program], 0.f, 1.f / float(source.height));
    bind(0, between.texture);
    pass(result, program);
}

void EffectFloor::downscale(GLuint source, const Target &result)
{
    glUseProgram(programs[DownscaleProgram]);
    glUniform2f(pixelSize[DownscaleProgram], 1.f / float(width), 1.f / float(height));
    bind(0, source);
    pass(result, DownscaleProgram);
}

void EffectFloor::renderAA(void)
{
    glUseProgram(programs[AAProgram]);
    glUniform2f(pixelSize[AAProgram], 1.f / float(width), 1.f / float(height));
    bind(0, depths);
    bind(1, normals);
    bind(2, scene);
    pass(output, AAProgram);
    lastResult = output.texture;
}

// Occlusion, then its blur along x, then along y multiplied into the scene;
// pixels without geometry keep the cleared value.
void EffectFloor::renderSSAO(void)
{
    bind(0, depths);
    bind(1, normals);
    bind(2, noise);
    glBindFramebuffer(GL_FRAMEBUFFER, occlusion.framebuffer);
    glClear(GL_COLOR_BUFFER_BIT);
    pass(occlusion, SSAOProgram);

    bind(0, normals);
    bind(1, occlusion.texture);
    glBindFramebuffer(GL_FRAMEBUFFER, occlusionBlur.framebuffer);
    glClear(GL_COLOR_BUFFER_BIT);
    pass(occlusionBlur, SSAOBlurHProgram);

    bind(1, occlusionBlur.texture);
    bind(2, scene);
    pass(output, SSAOBlurVProgram);
    lastResult = output.texture;
}

void EffectFloor::renderHDR(void)
{
    downscale(scene, reduced[0]);
    bind(0, reduced[0].texture);
    pass(reduced[1], BrightProgram);
    blur(reduced[1], reduced[2], reduced[3], Blur13Program, HDRBloomScale);
    blur(reduced[3], reduced[1], reduced[2], Blur13Program, HDRBloomScale);
    bind(0, reduced[2].texture);
    bind(1, scene);
    pass(output, ToneMapProgram);
    lastResult = output.texture;
}

void EffectFloor::renderDoF(void)
{
    bind(0, depths);
    pass(bluriness, BlurinessProgram);
    downscale(scene, reduced[0]);
    blur(reduced[0], reduced[1], reduced[2], Blur7Program, 1.f);
    bind(0, reduced[2].texture);
    bind(1, bluriness.texture);
    bind(2, scene);
    pass(output, DoFProgram);
    lastResult = output.texture;
}

// Three times, ping-ponging, as the library does.
void EffectFloor::renderCMB(void)
{
    bind(0, scene);
    pass(output, CMBProgram);
    bind(0, output.texture);
    pass(pingPong, CMBProgram);
    bind(0, pingPong.texture);
    pass(output, CMBProgram);
    lastResult = output.texture;
}

double EffectFloor::render(Effect effect)
{
    static const float corners[8] = {-1.f, -1.f, 1.f, -1.f, -1.f, 1.f, 1.f, 1.f};
    glFinish();
    const double start = rawgl::nowMilliseconds();
    glDisable(GL_DEPTH_TEST);
    glDisable(GL_CULL_FACE);
    glDisable(GL_BLEND);
    glClearColor(0.f, 0.f, 0.f, 1.f);
    glBindBuffer(GL_ARRAY_BUFFER, 0);
    glEnableVertexAttribArray(0);
    glVertexAttribPointer(0, 2, GL_FLOAT, GL_FALSE, 0, corners);
    switch(effect)
    {
        case AA:   renderAA  (); break;
        case SSAO: renderSSAO(); break;
        case HDR:  renderHDR (); break;
        case DoF:  renderDoF (); break;
        default:   renderCMB (); break;
    }
    glFinish();
    const double ms = rawgl::nowMilliseconds() - start;
    for(int unit = 2; unit >= 0; --unit)
        bind(unit, 0);
    glUseProgram(0);
    glDisableVertexAttribArray(0);
    glBindFramebuffer(GL_FRAMEBUFFER, 0);
    return ms;
}

std::vector<float> EffectFloor::readResult(void) const
{
    std::vector<float> texels(std::size_t(width) * height * 4, 0.f);
    glBindTexture(GL_TEXTURE_2D, lastResult);
    glPixelStorei(GL_PACK_ALIGNMENT, 4);
    glGetTexImage(GL_TEXTURE_2D, 0, GL_RGBA, GL_FLOAT, texels.data());
    glBindTexture(GL_TEXTURE_2D, 0);
    return texels;
}
