#ifndef _LUMORA_SHADERMANAGER_H_
#define _LUMORA_SHADERMANAGER_H_

#include <OpenSG/OSGConfig.h>
#include <OpenSG/OSGBaseTypes.h>

#include <string>

OSG_BEGIN_NAMESPACE

// Assembles the GLSL 1.20 programs of the deferred lights as text: a
// G-buffer access header, shared functions, a per-kind lighting model with
// its shadow test, and one common main. It compiles nothing.
class ShaderManager
{
  public:
    // The values are passed by the lights and switched on here; keep them.
    enum LightType
    {
        DIRECTIONAL_LIGHT = 0,
        SPOT_LIGHT        = 1,
        POINT_LIGHT       = 2,
        EMISSIVE_LIGHT    = 3
    };

    static ShaderManager &getInstance(void);

    std::string generateLightVertexShader  (LightType type);
    std::string generateGBufferAccessHeader(UInt16 numGBufferTextures);
    std::string generateVSMSplitData       (UInt16 numSplits);
    // Without shadows, main skips the shadow test, which costs every pixel
    // even where the flag is off.
    std::string generateLightFragmentShader(LightType type,
                                            UInt16    numGBufferTextures,
                                            UInt16    numSplits,
                                            bool      shadows = true);

    // True for the uniforms that only the shadow test reads, which the
    // programs without shadows do not have.
    static bool isShadowUniform(const char *name);

    static const char *s_strSpotPointVertex;
    static const char *s_strDirVertex;
    static const char *s_strShaderFunctions;
    static const char *s_strEmissiveFragmentInclude;
    static const char *s_strPointFragmentInclude;
    static const char *s_strSpotFragmentInclude;
    static const char *s_strDirFragmentInclude;
    static const char *s_strLightingMain;
    static const char *s_strUnshadowedLightingMain;

  private:
    ShaderManager(void);
    ~ShaderManager(void);

    ShaderManager(const ShaderManager &) = delete;
    ShaderManager &operator =(const ShaderManager &) = delete;
};

OSG_END_NAMESPACE

#endif
