#ifndef LUMORA_BENCH_LIGHTFLOOR_H
#define LUMORA_BENCH_LIGHTFLOOR_H

#include <epoxy/gl.h>

#include <string>
#include <vector>

// The light stage in raw OpenGL, as little as the work allows: a G-buffer
// in the viewport's formats, the light shaders' position-from-depth, Phong
// and attenuation, added into an RGB16F target. Two ways: every light a
// screen-covering draw of one program, or all lights looped in one screen
// pass that reads the G-buffer once. What the library costs is measured
// against these.
class LightFloor
{
  public:
    // A point light in eye space.
    struct PointLight
    {
        float position   [3];
        float diffuse    [3];
        float specular   [3];
        float attenuation[3];
    };

    // Lights the one-pass program holds in its uniforms.
    static const int MaxOnePassLights = 256;

    LightFloor(void);
    ~LightFloor(void);

    // Needs a current context; false with a message when a shader or the
    // target fails.
    bool initialize(int width, int height, std::string &error);

    // Camera state the shaders need: near and far, and the inverse
    // projection (column-major, as glUniformMatrix4fv takes it).
    void setCamera(float nearDist, float farDist, const float invProjection[16]);

    // One frame of the light stage, waited for; milliseconds of wall time.
    // The emissive screen pass comes first in both, as in the library.
    double renderVolumes(const std::vector<PointLight> &lights);
    double renderOnePass(const std::vector<PointLight> &lights);

    // Fragments the last frame drew.
    GLuint64 getLastPixels(void) const { return lastPixels; }

    // Reads the light target back, for checking the two ways agree.
    std::vector<float> readLightBuffer(void) const;

  private:
    struct Program
    {
        GLuint id         = 0;
        GLint  nearFar    = -1;
        GLint  invProj    = -1;
        GLint  position   = -1;
        GLint  diffuse    = -1;
        GLint  specular   = -1;
        GLint  attenuation= -1;
        GLint  lights     = -1;
        GLint  count      = -1;
    };

    bool build(Program &program, const char *fragment, std::string &error);
    void beginFrame(void);
    double endFrame(void);
    void drawScreen(void);

    int      width;
    int      height;
    GLuint   gbuffer[5];
    GLuint   lightTexture;
    GLuint   framebuffer;
    GLuint   query;
    GLuint64 lastPixels;
    float    nearFar[2];
    float    invProj[16];
    Program  emissive;
    Program  volume;
    Program  onePass;
    double   frameStart;
    std::vector<float> packed;
};

#endif
