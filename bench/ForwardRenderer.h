#ifndef LUMORA_BENCH_FORWARDRENDERER_H
#define LUMORA_BENCH_FORWARDRENDERER_H

#include <epoxy/gl.h>

#include <OpenSG/OSGCamera.h>
#include <OpenSG/OSGLight.h>
#include <OpenSG/OSGMaterial.h>
#include <OpenSG/OSGMatrix.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGTextureChunk.h>

#include <map>
#include <string>
#include <vector>

// An OpenSG scene drawn forward in raw OpenGL, as one would without the
// deferred library: per-pixel Phong in GLSL with the library's lighting
// model, the lights that reach an object eight to a pass, further passes
// added on top where the depth is equal. The scene is flattened once into
// buffers and textures; a frame only takes the camera and the lights.
class ForwardRenderer
{
  public:
    // Lights one pass shades; an object reached by more gets more passes.
    static constexpr int MaxPassLights = 8;

    // What the last frame drew.
    struct FrameStats
    {
        int objects      = 0;  // objects in view, drawn
        int extraPasses  = 0;  // additive draws beyond each object's first
        int maxLights    = 0;  // most lights reaching one object
        int lightObjects = 0;  // light-object pairs shaded
    };

    ForwardRenderer(void);
    ~ForwardRenderer(void);

    ForwardRenderer(const ForwardRenderer &)            = delete;
    ForwardRenderer &operator=(const ForwardRenderer &) = delete;

    // Needs a current context: the program and a width x height target
    // (RGBA16F colour, 24-bit depth). False with a message on failure.
    bool initialize(int width, int height, std::string &error);

    // Flattens the opaque geometry under root into per-object buffers;
    // transparent materials are left out. Replaces what was prepared.
    void prepare(osg::NodePtr root);

    // One frame from the camera with the lights that are on, cleared to
    // black, then shown in the current draw framebuffer's lower left as a
    // viewport would show it. Waited for; milliseconds of wall time.
    double render(osg::CameraPtr camera, const std::vector<osg::LightPtr> &lights);

    // The colour target, RGBA floats, rows from the bottom.
    std::vector<float> readColour(void) const;

    int               getObjectCount(void) const { return int(objects.size()); }
    const FrameStats &getLastStats  (void) const { return stats; }

  private:
    struct Material
    {
        float  diffuse  [4] = {0.f, 0.f, 0.f, 1.f};
        float  specular [3] = {0.f, 0.f, 0.f};
        float  emissive [3] = {0.f, 0.f, 0.f};
        float  shininess    = 1.f;
        GLuint texture      = 0;
    };

    struct Object
    {
        GLuint      vao     = 0;
        GLuint      buffers[2] = {0, 0};
        GLsizei     indices = 0;
        osg::Matrix world;
        osg::Pnt3f  boundsMin;
        osg::Pnt3f  boundsMax;
        Material    material;
    };

    // A light as the shader takes it, in eye space, with its reach in world
    // space for the per-object test.
    struct EyeLight
    {
        float      position   [4];  // w = 0: direction towards the light
        float      diffuse    [3];
        float      specular   [3];
        float      attenuation[3];
        float      spot       [4];  // direction, cosine of the cut-off
        float      exponent;
        bool       bounded;
        osg::Pnt3f worldPosition;
        float      reach;
    };

    struct Uniforms
    {
        GLint modelView   = -1;
        GLint projection  = -1;
        GLint normal      = -1;
        GLint position    = -1;
        GLint diffuse     = -1;
        GLint specular    = -1;
        GLint attenuation = -1;
        GLint spot        = -1;
        GLint exponent    = -1;
        GLint count       = -1;
        GLint matDiffuse  = -1;
        GLint matSpecular = -1;
        GLint matEmissive = -1;
        GLint shininess   = -1;
        GLint useTexture  = -1;
    };

    void release      (void);
    void collect      (osg::NodePtr node, osg::MaterialPtr inherited);
    void addGeometry  (osg::NodePtr node, osg::MaterialPtr material);
    bool readMaterial (osg::MaterialPtr source, Material &result);
    GLuint uploadTexture(osg::TextureChunkPtr chunk);
    void gatherLights (const osg::Matrix &viewing, const std::vector<osg::LightPtr> &lights);
    bool visible      (const osg::Matrix &viewProjection, const Object &object) const;
    bool reaches      (const EyeLight &light, const Object &object) const;
    void drawPass     (const Object &object, const std::vector<int> &lights, size_t first,
                       bool withEmissive);

    int      width;
    int      height;
    GLuint   program;
    GLuint   framebuffer;
    GLuint   colourTexture;
    GLuint   depthBuffer;
    Uniforms uniforms;
    std::vector<Object>                      objects;
    std::map<osg::TextureChunkPtr, GLuint>   textures;
    std::vector<EyeLight>                    eyeLights;
    std::vector<std::vector<int> >           touching;
    std::vector<std::pair<float, int> >      order;
    FrameStats                               stats;
};

#endif
