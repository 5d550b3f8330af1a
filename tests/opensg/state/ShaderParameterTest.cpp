#include <OpenSG/OSGSHLChunk.h>
#include <OpenSG/OSGSHLParameterChunk.h>
#include <OpenSG/OSGShaderParameterInt.h>

#include "support/LogCapture.h"

#include <gtest/gtest.h>

#include <sstream>

using namespace osg;

namespace
{

template <class T>
bool sameValue(const T &a, const T &b) { return a == b; }

template <class T>
bool sameValue(const MField<T> &a, const MField<T> &b)
{
    return a.getValues() == b.getValues();
}

class ShaderParameters : public ::testing::Test
{
  protected:
    void SetUp() override
    {
        shl = SHLChunk::create();
        addRefCP(shl);
    }
    void TearDown() override { subRefCP(shl); }

    // Sets a then b under one name and reads back after each.
    template <class T>
    void roundTrip(const char *name, const T &a, const T &b)
    {
        SCOPED_TRACE(name);
        T out = T();
        EXPECT_FALSE(shl->getUniformParameter(name, out));
        EXPECT_TRUE(shl->setUniformParameter(name, a));
        EXPECT_TRUE(shl->getUniformParameter(name, out));
        EXPECT_TRUE(sameValue(out, a));
        EXPECT_TRUE(shl->setUniformParameter(name, b));
        EXPECT_TRUE(shl->getUniformParameter(name, out));
        EXPECT_TRUE(sameValue(out, b));
    }

    SHLChunkPtr shl;
};

template <class MF>
MF mf(std::initializer_list<typename MF::StoredType> values)
{
    MF field;
    for(const auto &v : values)
        field.push_back(v);
    return field;
}

TEST_F(ShaderParameters, EveryTypeKeepsItsValueAndUpdatesInPlace)
{
    Matrix m1, m2;
    m1.setTranslate(1.f, 2.f, 3.f);
    m2.setScale(2.f);

    roundTrip<bool>    ("b",  true, false);
    roundTrip<Int32>   ("i",  7, -3);
    roundTrip<Real32>  ("f",  0.5f, 2.5f);
    roundTrip<Vec2f>   ("v2", Vec2f(1.f, 2.f), Vec2f(3.f, 4.f));
    roundTrip<Vec3f>   ("v3", Vec3f(1.f, 2.f, 3.f), Vec3f(4.f, 5.f, 6.f));
    roundTrip<Vec4f>   ("v4", Vec4f(1.f, 2.f, 3.f, 4.f), Vec4f(5.f, 6.f, 7.f, 8.f));
    roundTrip<Matrix>  ("m",  m1, m2);
    roundTrip<MFInt32> ("ai", mf<MFInt32>({ 1, 2 }), mf<MFInt32>({ 3 }));
    roundTrip<MFReal32>("af", mf<MFReal32>({ 1.f }), mf<MFReal32>({ 2.f, 3.f }));
    roundTrip<MFVec2f> ("a2", mf<MFVec2f>({ Vec2f(1.f, 2.f) }), mf<MFVec2f>({}));
    roundTrip<MFVec3f> ("a3", mf<MFVec3f>({ Vec3f(1.f, 2.f, 3.f) }),
                              mf<MFVec3f>({ Vec3f(), Vec3f(1.f, 1.f, 1.f) }));
    roundTrip<MFVec4f> ("a4", mf<MFVec4f>({ Vec4f(1.f, 2.f, 3.f, 4.f) }),
                              mf<MFVec4f>({ Vec4f() }));
    roundTrip<MFMatrix>("am", mf<MFMatrix>({ m1, m2 }), mf<MFMatrix>({ m2 }));

    // One parameter per name, no matter how often it was set.
    EXPECT_EQ(shl->getParameters().size(), 13u);
}

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

TEST_F(ShaderParameters, ParameterChunkReferencesItsShader)
{
    SHLParameterChunkPtr params = SHLParameterChunk::create();
    addRefCP(params);
    params->setSHLChunk(shl);
    EXPECT_EQ(shl.getRefCount(), 2);
    EXPECT_TRUE(params->setUniformParameter("fScale", 2.f));
    subRefCP(params);
    EXPECT_EQ(shl.getRefCount(), 1);
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
