#include <OpenSG/OSGSHLChunk.h>
#include <OpenSG/OSGShaderParameterInt.h>

#include "support/LogCapture.h"

#include <gtest/gtest.h>

#include <sstream>

using namespace osg;

namespace
{

class ShaderParameters : public ::testing::Test
{
  protected:
    void SetUp() override
    {
        shl = SHLChunk::create();
        addRefCP(shl);
    }
    void TearDown() override { subRefCP(shl); }

    SHLChunkPtr shl;
};

TEST_F(ShaderParameters, TypeMismatchIsRefusedAndKeepsTheValue)
{
    ASSERT_TRUE(shl->setUniformParameter("texDiffuse", Int32(2)));

    testsupport::LogCapture log;
    EXPECT_FALSE(shl->setUniformParameter("texDiffuse", 1.5f));
    EXPECT_TRUE(log.contains("texDiffuse"));

    Real32 f = 0.f;
    EXPECT_FALSE(shl->getUniformParameter("texDiffuse", f));
    Int32 i = 0;
    EXPECT_TRUE(shl->getUniformParameter("texDiffuse", i));
    EXPECT_EQ(i, 2);
    EXPECT_EQ(shl->getParameters().size(), 1u);
}

TEST_F(ShaderParameters, NullNameIsRefused)
{
    testsupport::LogCapture log;
    EXPECT_FALSE(shl->setUniformParameter(NULL, true));
    EXPECT_FALSE(shl->hasUniformParameter(NULL));
    EXPECT_TRUE(shl->getParameters().empty());
}

TEST_F(ShaderParameters, SubAndClearRemoveAndRelease)
{
    shl->setUniformParameter("a", 1.f);
    shl->setUniformParameter("b", Int32(1));
    ShaderParameterPtr b = shl->getParameters(1);
    addRefCP(b);
    EXPECT_EQ(b.getRefCount(), 2);

    EXPECT_TRUE(shl->hasUniformParameter("a"));
    EXPECT_TRUE(shl->subUniformParameter("a"));
    EXPECT_FALSE(shl->hasUniformParameter("a"));
    EXPECT_FALSE(shl->subUniformParameter("a"));

    shl->clearUniformParameters();
    EXPECT_FALSE(shl->hasUniformParameter("b"));
    EXPECT_EQ(b.getRefCount(), 1);
    EXPECT_EQ(b->getName(), "b");
    EXPECT_EQ(ShaderParameterIntPtr::dcast(b)->getValue(), 1);
    subRefCP(b);
}

TEST_F(ShaderParameters, ProgramsAreReadFromStreams)
{
    std::istringstream vertex("void main() { gl_Position = ftransform(); }\n");
    std::istringstream fragment("void main() { gl_FragColor = vec4(1.0); }\n");
    EXPECT_TRUE(shl->readVertexProgram(vertex));
    EXPECT_TRUE(shl->readFragmentProgram(fragment));
    EXPECT_EQ(shl->getVertexProgram(), vertex.str());
    EXPECT_EQ(shl->getFragmentProgram(), fragment.str());

    testsupport::LogCapture log;
    EXPECT_FALSE(shl->readVertexProgram("/nonexistent/shader.vert"));
    EXPECT_EQ(shl->getVertexProgram(), vertex.str());
}

} // namespace
