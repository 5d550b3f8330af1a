#include <Lumora/ShaderManager.h>

#include "support/GLTest.h"

#include <cstring>
#include <string>

using namespace osg;

namespace
{

std::string compileLog(GLuint object, bool program)
{
    GLint length = 0;
    program ? glGetProgramiv(object, GL_INFO_LOG_LENGTH, &length)
            : glGetShaderiv (object, GL_INFO_LOG_LENGTH, &length);
    std::string text(length > 0 ? length : 1, '\0');
    program ? glGetProgramInfoLog(object, length, NULL, &text[0])
            : glGetShaderInfoLog (object, length, NULL, &text[0]);
    return text;
}

// Compiles and links the pair; returns the failure log, or "" on success.
std::string buildProgram(const std::string &vertex, const std::string &fragment)
{
    std::string failure;
    GLuint      program = glCreateProgram();
    const std::string *texts[2] = {&vertex, &fragment};
    const GLenum       kinds[2] = {GL_VERTEX_SHADER, GL_FRAGMENT_SHADER};
    for(int i = 0; i < 2; ++i)
    {
        GLuint      shader = glCreateShader(kinds[i]);
        const char *source = texts[i]->c_str();
        glShaderSource(shader, 1, &source, NULL);
        glCompileShader(shader);
        GLint ok = 0;
        glGetShaderiv(shader, GL_COMPILE_STATUS, &ok);
        if(!ok)
            failure += (i == 0 ? "vertex: " : "fragment: ") + compileLog(shader, false);
        glAttachShader(program, shader);
        glDeleteShader(shader);
    }
    if(failure.empty())
    {
        glLinkProgram(program);
        GLint ok = 0;
        glGetProgramiv(program, GL_LINK_STATUS, &ok);
        if(!ok)
            failure = "link: " + compileLog(program, true);
    }
    glDeleteProgram(program);
    return failure;
}

bool contains(const std::string &text, const std::string &part)
{
    return text.find(part) != std::string::npos;
}

class ShaderProgramTest : public testsupport::GLTest
{
};

} // namespace

TEST(ShaderManager, VertexShaderPerLightType)
{
    ShaderManager &m = ShaderManager::getInstance();
    EXPECT_EQ(m.generateLightVertexShader(ShaderManager::DIRECTIONAL_LIGHT),
              ShaderManager::s_strDirVertex);
    EXPECT_EQ(m.generateLightVertexShader(ShaderManager::EMISSIVE_LIGHT),
              ShaderManager::s_strDirVertex);
    EXPECT_EQ(m.generateLightVertexShader(ShaderManager::SPOT_LIGHT),
              ShaderManager::s_strSpotPointVertex);
    EXPECT_EQ(m.generateLightVertexShader(ShaderManager::POINT_LIGHT),
              ShaderManager::s_strSpotPointVertex);
    EXPECT_EQ(m.generateLightVertexShader(ShaderManager::LightType(4)), "");
}

TEST(ShaderManager, StoredTextsAreSingleLinesExceptTheFunctions)
{
    const char *singleLine[] =
    {
        ShaderManager::s_strSpotPointVertex,        ShaderManager::s_strDirVertex,
        ShaderManager::s_strEmissiveFragmentInclude, ShaderManager::s_strPointFragmentInclude,
        ShaderManager::s_strSpotFragmentInclude,     ShaderManager::s_strDirFragmentInclude,
        ShaderManager::s_strLightingMain
    };
    for(const char *text : singleLine)
        EXPECT_FALSE(contains(text, "\n")) << text;

    // Lines of the shared functions are joined by a break and one blank.
    std::string functions = ShaderManager::s_strShaderFunctions;
    ASSERT_FALSE(functions.empty());
    EXPECT_EQ(functions.back(), '\n');
    for(size_t i = functions.find('\n'); i + 1 < functions.size(); i = functions.find('\n', i + 1))
        EXPECT_EQ(functions[i + 1], ' ') << "after break at " << i;
}

TEST(ShaderManager, GBufferHeaderIsAssembledCharacterForCharacter)
{
    const std::string expected =
        std::string("#version 120\n"
                    "uniform sampler2D texGBuffer0;\n"
                    "uniform sampler2D texGBuffer1;\n"
                    "\n") +
        ShaderManager::s_strShaderFunctions + "\n" +
        "struct GeometryData\n{\n\tvec3 vPosition;\n\tvec3 vNormal;\n\tvec4 vEmissive;\n"
        "\tvec4 vDiffuse;\n\tvec3 vSpecular;\n\tfloat fShininess;\n};\n\n"
        "GeometryData getGeometryData(vec2 vScreenCoord)\n{\n"
        "\t\tvec4 vGBuffer0\t= texture2D(texGBuffer0, vScreenCoord);\n"
        "\t\tvec4 vGBuffer1\t= texture2D(texGBuffer1, vScreenCoord);\n"
        "\t\tvec4 vGBuffer2\t= texture2D(texGBuffer2, vScreenCoord);\n"
        "\t\tvec4 vGBuffer3\t= texture2D(texGBuffer3, vScreenCoord);\n"
        "\t\tfloat fZDepth\t= texture2D(texGBuffer4, vScreenCoord).r;\n"
        "\n\n"
        "\tGeometryData result;\n"
        "\tresult.vPosition = getViewSpacePosition(vScreenCoord, fZDepth);\n"
        "\tresult.vNormal\t= vGBuffer0.rgb * 2.0 - 1.0;\n"
        "\tresult.vEmissive = vGBuffer3;\n"
        "\tresult.vDiffuse\t= vGBuffer1;\n"
        "\tresult.vSpecular\t= vGBuffer2.rgb;\n"
        "\tresult.fShininess = pow(2.0, vGBuffer2.a * 8.0);\n"
        "\treturn result;\n"
        "}\n\n";
    EXPECT_EQ(ShaderManager::getInstance().generateGBufferAccessHeader(2), expected);

    // Without samplers the header still carries the structure and accessor.
    std::string empty = ShaderManager::getInstance().generateGBufferAccessHeader(0);
    EXPECT_EQ(empty.compare(0, 14, "#version 120\n\n"), 0);
    EXPECT_TRUE(contains(empty, "GeometryData getGeometryData(vec2 vScreenCoord)\n"));

    std::string five = ShaderManager::getInstance().generateGBufferAccessHeader(5);
    const std::string fivePrefix = "#version 120\n"
                                   "uniform sampler2D texGBuffer0;\n"
                                   "uniform sampler2D texGBuffer1;\n"
                                   "uniform sampler2D texGBuffer2;\n"
                                   "uniform sampler2D texGBuffer3;\n"
                                   "uniform sampler2D texGBuffer4;\n"
                                   "\n";
    EXPECT_EQ(five.substr(0, fivePrefix.size()), fivePrefix);
    EXPECT_EQ(five.substr(fivePrefix.size(), std::strlen(ShaderManager::s_strShaderFunctions)),
              ShaderManager::s_strShaderFunctions);
}

TEST(ShaderManager, SplitDataDeclaresOneSamplerAndBranchPerSplit)
{
    ShaderManager &m = ShaderManager::getInstance();
    EXPECT_EQ(m.generateVSMSplitData(3),
              "const int NUM_SPLITS = 3;\n"
              "uniform sampler2D texShadowMap0;\n"
              "uniform sampler2D texShadowMap1;\n"
              "uniform sampler2D texShadowMap2;\n"
              "\nvec2 sampleShadowMap(int nSplit, vec2 vTexCoords)\n"
              "{\n"
              "\tvec2 vMoments = vec2(0.0);\n"
              "\tif(nSplit == 0)\n\t\tvMoments = texture2D(texShadowMap0, vTexCoords).rg;\n"
              "\telse if(nSplit == 1)\n\t\tvMoments = texture2D(texShadowMap1, vTexCoords).rg;\n"
              "\telse if(nSplit == 2)\n\t\tvMoments = texture2D(texShadowMap2, vTexCoords).rg;\n"
              "\treturn vMoments;\n"
              "}\n\n");
    EXPECT_EQ(m.generateVSMSplitData(0),
              "const int NUM_SPLITS = 0;\n"
              "\nvec2 sampleShadowMap(int nSplit, vec2 vTexCoords)\n"
              "{\n\tvec2 vMoments = vec2(0.0);\n\treturn vMoments;\n}\n\n");
}

TEST(ShaderManager, FragmentShaderOrdersHeaderSplitsIncludeAndMain)
{
    ShaderManager &m      = ShaderManager::getInstance();
    std::string    header = m.generateGBufferAccessHeader(5);

    struct Case
    {
        ShaderManager::LightType type;
        const char              *include;
        bool                     splits;
    };
    const Case cases[] =
    {
        {ShaderManager::DIRECTIONAL_LIGHT, ShaderManager::s_strDirFragmentInclude,      true },
        {ShaderManager::SPOT_LIGHT,        ShaderManager::s_strSpotFragmentInclude,     false},
        {ShaderManager::POINT_LIGHT,       ShaderManager::s_strPointFragmentInclude,    false},
        {ShaderManager::EMISSIVE_LIGHT,    ShaderManager::s_strEmissiveFragmentInclude, false},
    };
    for(const Case &c : cases)
    {
        std::string expected = header + (c.splits ? m.generateVSMSplitData(3) : "") +
                               c.include + ShaderManager::s_strLightingMain;
        EXPECT_EQ(m.generateLightFragmentShader(c.type, 5, 3), expected) << c.type;
    }

    // An unknown type gets header and main only.
    EXPECT_EQ(m.generateLightFragmentShader(ShaderManager::LightType(7), 5, 1),
              header + ShaderManager::s_strLightingMain);
}

TEST_F(ShaderProgramTest, EveryLightProgramCompilesAndLinks)
{
    ShaderManager &m = ShaderManager::getInstance();
    const ShaderManager::LightType types[] =
    {
        ShaderManager::DIRECTIONAL_LIGHT, ShaderManager::SPOT_LIGHT,
        ShaderManager::POINT_LIGHT,       ShaderManager::EMISSIVE_LIGHT
    };
    for(ShaderManager::LightType type : types)
    {
        UInt16 splits = type == ShaderManager::DIRECTIONAL_LIGHT ? 3 : 1;
        EXPECT_EQ(buildProgram(m.generateLightVertexShader(type),
                               m.generateLightFragmentShader(type, 5, splits)), "")
            << "light type " << type;
    }
}

TEST_F(ShaderProgramTest, TooFewGBufferSamplersDoNotCompile)
{
    expectGLErrors();
    ShaderManager &m = ShaderManager::getInstance();
    EXPECT_NE(buildProgram(m.generateLightVertexShader(ShaderManager::POINT_LIGHT),
                           m.generateLightFragmentShader(ShaderManager::POINT_LIGHT, 3, 1)),
              "");
}
