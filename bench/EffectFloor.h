#ifndef LUMORA_BENCH_EFFECTFLOOR_H
#define LUMORA_BENCH_EFFECTFLOOR_H

#include <epoxy/gl.h>

#include <string>
#include <vector>

// The five post effects in raw OpenGL, as little as the work allows: the
// library's passes, target formats and sizes, sample counts and equations
// at its default settings, each pass one program drawn over a screen quad
// into a framebuffer of its own. The inputs are copies of a frame's lit
// image, normals and depths; what the library's effects cost is measured
// against these.
class EffectFloor
{
  public:
    enum Effect { AA, SSAO, HDR, DoF, CMB, EffectCount };

    static const char *getName(Effect effect);

    // What the camera gives the depth of field, the occlusion and the
    // motion blur; matrices column-major, as glUniformMatrix4fv takes them.
    struct Camera
    {
        float nearDist = 0.1f;
        float farDist  = 100.0f;
        float position    [3]  = {0.f, 0.f, 0.f};
        float invViewProj [16] = {1.f, 0.f, 0.f, 0.f, 0.f, 1.f, 0.f, 0.f,
                                  0.f, 0.f, 1.f, 0.f, 0.f, 0.f, 0.f, 1.f};
        float prevViewProj[16] = {1.f, 0.f, 0.f, 0.f, 0.f, 1.f, 0.f, 0.f,
                                  0.f, 0.f, 1.f, 0.f, 0.f, 0.f, 0.f, 1.f};
    };

    EffectFloor(void);
    ~EffectFloor(void);

    // Needs a current context; false with a message when a program or a
    // target fails.
    bool initialize(int width, int height, std::string &error);

    // Copies the inputs from textures of this size and the viewport's
    // formats: RGB16F lit image, RGB10_A2 normals, DEPTH_COMPONENT32 depths.
    void copyInputs(GLuint scene, GLuint normals, GLuint depths);

    void setCamera(const Camera &camera);

    // One effect on the inputs, waited for; milliseconds of wall time.
    double render(Effect effect);

    // The last effect's result as RGBA floats, rows from the bottom.
    std::vector<float> readResult(void) const;

  private:
    enum Program
    {
        AAProgram, SSAOProgram, SSAOBlurHProgram, SSAOBlurVProgram,
        DownscaleProgram, Blur7Program, Blur13Program, BrightProgram, ToneMapProgram,
        BlurinessProgram, DoFProgram, CMBProgram, ProgramCount
    };

    // A texture and the framebuffer that draws into it.
    struct Target
    {
        GLuint texture     = 0;
        GLuint framebuffer = 0;
        int    width       = 0;
        int    height      = 0;
    };

    bool buildPrograms(std::string &error);
    bool makeTarget(Target &target, int w, int h, GLenum internal, GLenum format,
                    GLenum type, std::string &error);
    void bind(int unit, GLuint texture);
    void pass(const Target &target, Program program);
    void blur(const Target &source, const Target &between, const Target &result,
              Program program, float scale);
    void downscale(GLuint source, const Target &result);

    void renderAA  (void);
    void renderSSAO(void);
    void renderHDR (void);
    void renderDoF (void);
    void renderCMB (void);

    int     width;
    int     height;
    GLuint  scene;
    GLuint  normals;
    GLuint  depths;
    GLuint  noise;
    Target  output;
    Target  pingPong;
    Target  occlusion;
    Target  occlusionBlur;
    Target  bluriness;
    Target  reduced[4];
    GLuint  programs[ProgramCount];
    GLint   pixelSize[ProgramCount];
    GLint   bloomScale[ProgramCount];
    GLuint  lastResult;
};

#endif
