#include "LightFloor.h"
#include "RawGL.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace
{

const char *s_strVertex =
    "#version 120\n"
    "attribute vec2 aCorner;\n"
    "varying vec2 vCoord;\n"
    "void main(void)\n"
    "{\n"
    "    gl_Position = vec4(aCorner, 0.0, 1.0);\n"
    "    vCoord = aCorner * 0.5 + 0.5;\n"
    "}\n";

const char *s_strEmissive =
    "#version 120\n"
    "uniform sampler2D texGBuffer3;\n"
    "varying vec2 vCoord;\n"
    "void main(void)\n"
    "{\n"
    "    gl_FragColor = texture2D(texGBuffer3, vCoord);\n"
    "}\n";

// The library's G-buffer decoding and lighting model, nothing more.
#define LUMORA_FLOOR_COMMON                                                  \
    "#version 120\n"                                                         \
    "uniform sampler2D texGBuffer0;\n"                                       \
    "uniform sampler2D texGBuffer1;\n"                                       \
    "uniform sampler2D texGBuffer2;\n"                                       \
    "uniform sampler2D texGBuffer4;\n"                                       \
    "uniform vec2 vCamNearFar;\n"                                            \
    "uniform mat4 mCamInvProj;\n"                                            \
    "varying vec2 vCoord;\n"                                                 \
    "vec3 viewPosition(float fZ)\n"                                          \
    "{\n"                                                                    \
    "    float fD = vCamNearFar.x / (vCamNearFar.y - fZ * (vCamNearFar.y - vCamNearFar.x)) * vCamNearFar.y;\n" \
    "    vec2 vDevice = (vCoord - 0.5) * 2.0;\n"                             \
    "    vec4 vP = mCamInvProj * vec4(vDevice * fD, fD, 1.0);\n"             \
    "    return vec3(vP.xy, -fD);\n"                                         \
    "}\n"                                                                    \
    "vec3 shade(vec3 vP, vec3 vN, vec3 vV, vec3 vDiff, vec3 vSpec, float fShin,\n" \
    "           vec3 vLPos, vec3 vLDiff, vec3 vLSpec, vec3 vAtt)\n"          \
    "{\n"                                                                    \
    "    vec3 vToLight = vLPos - vP;\n"                                      \
    "    float fDist = length(vToLight);\n"                                  \
    "    vec3 vL = normalize(vToLight);\n"                                   \
    "    float fNdotL = max(0.0, dot(vN, vL));\n"                            \
    "    vec3 vR = normalize(reflect(-vL, vN));\n"                           \
    "    float fRdotV = pow(max(0.0, dot(vR, vV)), fShin);\n"                \
    "    float fA = 1.0 / (vAtt.x + vAtt.y * fDist + vAtt.z * fDist * fDist);\n" \
    "    return fA * (fNdotL * vDiff * vLDiff + fRdotV * vLSpec * vSpec);\n" \
    "}\n"

#define LUMORA_FLOOR_READ                                                    \
    "    vec4 vG0 = texture2D(texGBuffer0, vCoord);\n"                       \
    "    vec4 vG1 = texture2D(texGBuffer1, vCoord);\n"                       \
    "    vec4 vG2 = texture2D(texGBuffer2, vCoord);\n"                       \
    "    vec3 vP = viewPosition(texture2D(texGBuffer4, vCoord).r);\n"        \
    "    vec3 vN = vG0.rgb * 2.0 - 1.0;\n"                                   \
    "    vec3 vV = normalize(-vP);\n"                                        \
    "    float fShin = max(1.0, pow(2.0, vG2.a * 8.0));\n"

const char *s_strVolume =
    LUMORA_FLOOR_COMMON
    "uniform vec3 vLightPosition;\n"
    "uniform vec3 vLightDiffuse;\n"
    "uniform vec3 vLightSpecular;\n"
    "uniform vec3 vAttenuation;\n"
    "void main(void)\n"
    "{\n"
    LUMORA_FLOOR_READ
    "    gl_FragColor = vec4(shade(vP, vN, vV, vG1.rgb, vG2.rgb, fShin, vLightPosition,\n"
    "                              vLightDiffuse, vLightSpecular, vAttenuation), 1.0);\n"
    "}\n";

// Three vec4 a light: position and the constant term, diffuse and the
// linear one, specular and the quadratic one.
const char *s_strOnePass =
    LUMORA_FLOOR_COMMON
    "const int MAX_LIGHTS = 256;\n"
    "uniform vec4 vLights[3 * MAX_LIGHTS];\n"
    "uniform int nLights;\n"
    "void main(void)\n"
    "{\n"
    LUMORA_FLOOR_READ
    "    vec3 vSum = vec3(0.0);\n"
    "    for(int i = 0; i < MAX_LIGHTS; ++i)\n"
    "    {\n"
    "        if(i >= nLights) break;\n"
    "        vec4 vA = vLights[3 * i];\n"
    "        vec4 vB = vLights[3 * i + 1];\n"
    "        vec4 vC = vLights[3 * i + 2];\n"
    "        vSum += shade(vP, vN, vV, vG1.rgb, vG2.rgb, fShin, vA.xyz, vB.xyz, vC.xyz,\n"
    "                      vec3(vA.w, vB.w, vC.w));\n"
    "    }\n"
    "    gl_FragColor = vec4(vSum, 1.0);\n"
    "}\n";

#undef LUMORA_FLOOR_COMMON
#undef LUMORA_FLOOR_READ

// Deterministic content, so that runs compare.
uint32_t nextRandom(uint32_t &state)
{
    state = state * 1664525u + 1013904223u;
    return state >> 8;
}

} // namespace

LightFloor::LightFloor(void) :
    width(0), height(0), gbuffer{0, 0, 0, 0, 0}, lightTexture(0), framebuffer(0),
    query(0), lastPixels(0), nearFar{0.1f, 100.0f}, invProj{}, frameStart(0.0)
{
}

LightFloor::~LightFloor(void)
{
    glDeleteTextures(5, gbuffer);
    glDeleteTextures(1, &lightTexture);
    glDeleteFramebuffers(1, &framebuffer);
    glDeleteQueries(1, &query);
    glDeleteProgram(emissive.id);
    glDeleteProgram(volume.id);
    glDeleteProgram(onePass.id);
}

bool LightFloor::build(Program &program, const char *fragment, std::string &error)
{
    program.id = rawgl::buildProgram(s_strVertex, fragment, {"aCorner"}, error);
    if(program.id == 0)
        return false;

    glUseProgram(program.id);
    const char *samplers[] = {"texGBuffer0", "texGBuffer1", "texGBuffer2",
                              "texGBuffer3", "texGBuffer4"};
    for(int i = 0; i < 5; ++i)
        glUniform1i(glGetUniformLocation(program.id, samplers[i]), i);
    program.nearFar     = glGetUniformLocation(program.id, "vCamNearFar");
    program.invProj     = glGetUniformLocation(program.id, "mCamInvProj");
    program.position    = glGetUniformLocation(program.id, "vLightPosition");
    program.diffuse     = glGetUniformLocation(program.id, "vLightDiffuse");
    program.specular    = glGetUniformLocation(program.id, "vLightSpecular");
    program.attenuation = glGetUniformLocation(program.id, "vAttenuation");
    program.lights      = glGetUniformLocation(program.id, "vLights");
    program.count       = glGetUniformLocation(program.id, "nLights");
    glUseProgram(0);
    return true;
}

bool LightFloor::initialize(int w, int h, std::string &error)
{
    width  = w;
    height = h;

    // Normals mostly towards the viewer, varied materials, depths spread
    // over the far half of the range where a perspective scene's are.
    const size_t n = size_t(w) * size_t(h);
    std::vector<uint32_t> normals(n);
    std::vector<uint8_t>  colours[3];
    std::vector<float>    depths(n);
    for(auto &c : colours)
        c.resize(4 * n);
    uint32_t state = 12345u;
    for(size_t i = 0; i < n; ++i)
    {
        uint32_t x = 256 + nextRandom(state) % 512, y = 256 + nextRandom(state) % 512;
        uint32_t z = 768 + nextRandom(state) % 255;
        normals[i] = x | (y << 10) | (z << 20) | (3u << 30);
        for(auto &c : colours)
            for(int k = 0; k < 4; ++k)
                c[4 * i + k] = uint8_t(nextRandom(state));
        depths[i] = 0.95f + 0.0499f * float(nextRandom(state) % 1000) / 1000.0f;
    }

    glGenTextures(5, gbuffer);
    const GLenum internal[5] = {GL_RGB10_A2, GL_RGBA8, GL_RGBA8, GL_RGBA8,
                                GL_DEPTH_COMPONENT32};
    for(int i = 0; i < 5; ++i)
    {
        glActiveTexture(GL_TEXTURE0 + i);
        glBindTexture(GL_TEXTURE_2D, gbuffer[i]);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
        if(i == 0)
            glTexImage2D(GL_TEXTURE_2D, 0, internal[i], w, h, 0, GL_RGBA,
                         GL_UNSIGNED_INT_2_10_10_10_REV, normals.data());
        else if(i == 4)
            glTexImage2D(GL_TEXTURE_2D, 0, internal[i], w, h, 0, GL_DEPTH_COMPONENT,
                         GL_FLOAT, depths.data());
        else
            glTexImage2D(GL_TEXTURE_2D, 0, internal[i], w, h, 0, GL_RGBA,
                         GL_UNSIGNED_BYTE, colours[i - 1].data());
    }
    glActiveTexture(GL_TEXTURE0);

    glGenTextures(1, &lightTexture);
    glBindTexture(GL_TEXTURE_2D, lightTexture);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGB16F, w, h, 0, GL_RGB, GL_FLOAT, NULL);
    glBindTexture(GL_TEXTURE_2D, 0);
    glGenFramebuffers(1, &framebuffer);
    glBindFramebuffer(GL_FRAMEBUFFER, framebuffer);
    glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D,
                           lightTexture, 0);
    const bool complete =
        glCheckFramebufferStatus(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE;
    glBindFramebuffer(GL_FRAMEBUFFER, 0);
    if(!complete)
    {
        error = "the RGB16F light target is incomplete";
        return false;
    }
    glGenQueries(1, &query);
    packed.resize(3 * 4 * MaxOnePassLights);

    return build(emissive, s_strEmissive, error) && build(volume, s_strVolume, error) &&
           build(onePass, s_strOnePass, error);
}

void LightFloor::setCamera(float nearDist, float farDist, const float invProjection[16])
{
    nearFar[0] = nearDist;
    nearFar[1] = farDist;
    std::memcpy(invProj, invProjection, sizeof(invProj));
    for(Program *p : {&volume, &onePass})
    {
        glUseProgram(p->id);
        glUniform2fv(p->nearFar, 1, nearFar);
        glUniformMatrix4fv(p->invProj, 1, GL_FALSE, invProj);
    }
    glUseProgram(0);
}

void LightFloor::drawScreen(void)
{
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
}

void LightFloor::beginFrame(void)
{
    static const float corners[8] = {-1.f, -1.f, 1.f, -1.f, -1.f, 1.f, 1.f, 1.f};
    glFinish();
    frameStart = rawgl::nowMilliseconds();
    glBindFramebuffer(GL_FRAMEBUFFER, framebuffer);
    glViewport(0, 0, width, height);
    glDisable(GL_DEPTH_TEST);
    glDisable(GL_CULL_FACE);
    glClearColor(0.f, 0.f, 0.f, 0.f);
    glClear(GL_COLOR_BUFFER_BIT);
    glEnable(GL_BLEND);
    glBlendFunc(GL_ONE, GL_ONE);
    for(int i = 0; i < 5; ++i)
    {
        glActiveTexture(GL_TEXTURE0 + i);
        glBindTexture(GL_TEXTURE_2D, gbuffer[i]);
    }
    glActiveTexture(GL_TEXTURE0);
    glBindBuffer(GL_ARRAY_BUFFER, 0);
    glEnableVertexAttribArray(0);
    glVertexAttribPointer(0, 2, GL_FLOAT, GL_FALSE, 0, corners);
    glBeginQuery(GL_SAMPLES_PASSED, query);
    glUseProgram(emissive.id);
    drawScreen();
}

double LightFloor::endFrame(void)
{
    glEndQuery(GL_SAMPLES_PASSED);
    glFinish();
    const double ms = rawgl::nowMilliseconds() - frameStart;
    glGetQueryObjectui64v(query, GL_QUERY_RESULT, &lastPixels);
    glUseProgram(0);
    glDisableVertexAttribArray(0);
    glDisable(GL_BLEND);
    glBindFramebuffer(GL_FRAMEBUFFER, 0);
    return ms;
}

double LightFloor::renderVolumes(const std::vector<PointLight> &lights)
{
    beginFrame();
    glUseProgram(volume.id);
    for(const PointLight &light : lights)
    {
        glUniform3fv(volume.position,    1, light.position);
        glUniform3fv(volume.diffuse,     1, light.diffuse);
        glUniform3fv(volume.specular,    1, light.specular);
        glUniform3fv(volume.attenuation, 1, light.attenuation);
        drawScreen();
    }
    return endFrame();
}

double LightFloor::renderOnePass(const std::vector<PointLight> &lights)
{
    beginFrame();
    glUseProgram(onePass.id);
    // Beyond the uniform array's size, further screen passes of its size.
    for(size_t first = 0; first < lights.size(); first += MaxOnePassLights)
    {
        const size_t count = std::min(lights.size() - first, size_t(MaxOnePassLights));
        for(size_t i = 0; i < count; ++i)
        {
            const PointLight &l = lights[first + i];
            float *v = &packed[12 * i];
            for(int k = 0; k < 3; ++k)
            {
                v[k]     = l.position[k];
                v[4 + k] = l.diffuse[k];
                v[8 + k] = l.specular[k];
            }
            v[3]  = l.attenuation[0];
            v[7]  = l.attenuation[1];
            v[11] = l.attenuation[2];
        }
        glUniform4fv(onePass.lights, GLsizei(3 * count), packed.data());
        glUniform1i(onePass.count, GLint(count));
        drawScreen();
    }
    return endFrame();
}

std::vector<float> LightFloor::readLightBuffer(void) const
{
    std::vector<float> pixels(size_t(width) * size_t(height) * 3);
    glBindFramebuffer(GL_FRAMEBUFFER, framebuffer);
    glReadPixels(0, 0, width, height, GL_RGB, GL_FLOAT, pixels.data());
    glBindFramebuffer(GL_FRAMEBUFFER, 0);
    return pixels;
}
