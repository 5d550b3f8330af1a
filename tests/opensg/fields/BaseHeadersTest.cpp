// Every generated-base header of the runtime, as programs include them.
#include <OpenSG/OSGBackgroundBase.h>
#include <OpenSG/OSGBlendChunkBase.h>
#include <OpenSG/OSGCameraBase.h>
#include <OpenSG/OSGChunkMaterialBase.h>
#include <OpenSG/OSGCubeTextureChunkBase.h>
#include <OpenSG/OSGDepthChunkBase.h>
#include <OpenSG/OSGDirectionalLightBase.h>
#include <OpenSG/OSGDrawableBase.h>
#include <OpenSG/OSGFBOViewportBase.h>
#include <OpenSG/OSGForegroundBase.h>
#include <OpenSG/OSGGLUTWindowBase.h>
#include <OpenSG/OSGGeometryBase.h>
#include <OpenSG/OSGGroupBase.h>
#include <OpenSG/OSGImageBase.h>
#include <OpenSG/OSGLightBase.h>
#include <OpenSG/OSGMaterialBase.h>
#include <OpenSG/OSGMaterialChunkBase.h>
#include <OpenSG/OSGMaterialDrawableBase.h>
#include <OpenSG/OSGMaterialGroupBase.h>
#include <OpenSG/OSGMatrixCameraBase.h>
#include <OpenSG/OSGOrthographicCameraBase.h>
#include <OpenSG/OSGPassiveWindowBase.h>
#include <OpenSG/OSGPerspectiveCameraBase.h>
#include <OpenSG/OSGPointLightBase.h>
#include <OpenSG/OSGPolygonChunkBase.h>
#include <OpenSG/OSGPolygonForegroundBase.h>
#include <OpenSG/OSGSHLChunkBase.h>
#include <OpenSG/OSGSHLParameterChunkBase.h>
#include <OpenSG/OSGShaderChunkBase.h>
#include <OpenSG/OSGShaderParameterBase.h>
#include <OpenSG/OSGShaderParameterBoolBase.h>
#include <OpenSG/OSGShaderParameterChunkBase.h>
#include <OpenSG/OSGShaderParameterIntBase.h>
#include <OpenSG/OSGShaderParameterMIntBase.h>
#include <OpenSG/OSGShaderParameterMMatrixBase.h>
#include <OpenSG/OSGShaderParameterMRealBase.h>
#include <OpenSG/OSGShaderParameterMVec2fBase.h>
#include <OpenSG/OSGShaderParameterMVec3fBase.h>
#include <OpenSG/OSGShaderParameterMVec4fBase.h>
#include <OpenSG/OSGShaderParameterMatrixBase.h>
#include <OpenSG/OSGShaderParameterRealBase.h>
#include <OpenSG/OSGShaderParameterVec2fBase.h>
#include <OpenSG/OSGShaderParameterVec3fBase.h>
#include <OpenSG/OSGShaderParameterVec4fBase.h>
#include <OpenSG/OSGSimpleMaterialBase.h>
#include <OpenSG/OSGSimpleTexturedMaterialBase.h>
#include <OpenSG/OSGSolidBackgroundBase.h>
#include <OpenSG/OSGSpotLightBase.h>
#include <OpenSG/OSGStateBase.h>
#include <OpenSG/OSGStateChunkBase.h>
#include <OpenSG/OSGSwitchBase.h>
#include <OpenSG/OSGTextureChunkBase.h>
#include <OpenSG/OSGTransformBase.h>
#include <OpenSG/OSGViewportBase.h>
#include <OpenSG/OSGWindowBase.h>

#include <gtest/gtest.h>

#include <type_traits>

using namespace osg;

TEST(BaseHeaders, BaseClassesCarryTheFieldMasksAndCreate)
{
    EXPECT_TRUE((std::is_base_of<SolidBackgroundBase, SolidBackground>::value));
    EXPECT_EQ(SolidBackgroundBase::ColorFieldMask,  SolidBackground::ColorFieldMask);
    EXPECT_EQ(GeometryBase::PositionsFieldMask,     BitVector(1) << 6);
    EXPECT_EQ(FBOViewportBase::ZOffsetFieldMask,    BitVector(1) << 29);
    EXPECT_EQ(SpotLightBase::SpotCutOffFieldMask,   BitVector(1) << 16);
    EXPECT_EQ(&TransformBase::getClassType(),       &Transform::getClassType());

    TransformPtr transform = TransformBase::create();
    ASSERT_NE(transform, NullFC);
    addRefCP(transform);
    EXPECT_EQ(transform->getType(), TransformBase::getClassType());
    subRefCP(transform);
}
