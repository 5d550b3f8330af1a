#ifndef _OSGSHADERPARAMETERCHUNK_H_
#define _OSGSHADERPARAMETERCHUNK_H_

#include <OpenSG/OSGStateChunk.h>
#include <OpenSG/OSGShaderParameter.h>
#include <OpenSG/OSGSFVecTypes.h>
#include <OpenSG/OSGSFMathTypes.h>

namespace osg
{

OSG_FC_PTR_DECL(ShaderParameterChunk, StateChunkPtr)

// Holds uniforms by name; the chunk references its parameters.
class ShaderParameterChunk : public StateChunk
{
    OSG_FC_ABSTRACT_DECL(ShaderParameterChunk, StateChunk)

  public:
    enum
    {
        ParametersFieldId = Inherited::NextFieldId,
        NextFieldId       = ParametersFieldId + 1
    };
    OSG_FIELD_MASK(Parameters)

    OSG_MFIELD(MFShaderParameterPtr, Parameters)

  public:
    // Updates the parameter of that name or appends a new one; false for
    // a NULL name or a parameter of another type.
    bool setUniformParameter(const char *name, bool             value);
    bool setUniformParameter(const char *name, Int32            value);
    bool setUniformParameter(const char *name, Real32           value);
    bool setUniformParameter(const char *name, const Vec2f     &value);
    bool setUniformParameter(const char *name, const Vec3f     &value);
    bool setUniformParameter(const char *name, const Vec4f     &value);
    bool setUniformParameter(const char *name, const Matrix    &value);
    bool setUniformParameter(const char *name, const MFInt32   &value);
    bool setUniformParameter(const char *name, const MFReal32  &value);
    bool setUniformParameter(const char *name, const MFVec2f   &value);
    bool setUniformParameter(const char *name, const MFVec3f   &value);
    bool setUniformParameter(const char *name, const MFVec4f   &value);
    bool setUniformParameter(const char *name, const MFMatrix  &value);

    // False if there is no parameter of that name and type.
    bool getUniformParameter(const char *name, bool     &value);
    bool getUniformParameter(const char *name, Int32    &value);
    bool getUniformParameter(const char *name, Real32   &value);
    bool getUniformParameter(const char *name, Vec2f    &value);
    bool getUniformParameter(const char *name, Vec3f    &value);
    bool getUniformParameter(const char *name, Vec4f    &value);
    bool getUniformParameter(const char *name, Matrix   &value);
    bool getUniformParameter(const char *name, MFInt32  &value);
    bool getUniformParameter(const char *name, MFReal32 &value);
    bool getUniformParameter(const char *name, MFVec2f  &value);
    bool getUniformParameter(const char *name, MFVec3f  &value);
    bool getUniformParameter(const char *name, MFVec4f  &value);
    bool getUniformParameter(const char *name, MFMatrix &value);

    bool subUniformParameter   (const char *name);
    bool hasUniformParameter   (const char *name);
    void clearUniformParameters(void);

    static void initMethod(void) {}

    void onCreate(const ShaderParameterChunk *source = NULL);

  protected:
    ShaderParameterChunk(void);
    ShaderParameterChunk(const ShaderParameterChunk &source);
    virtual ~ShaderParameterChunk(void);

    virtual void onDestroy(void) override;

    Int32 findParameter(const char *name) const;

    template <class ParamPtrT, class ValueT>
    bool setParameter(const char *name, const ValueT &value);
    template <class ParamPtrT, class ValueT>
    bool getParameter(const char *name, ValueT &value);
};

typedef RefPtr<ShaderParameterChunkPtr> ShaderParameterChunkRefPtr;

} // namespace osg

#endif
