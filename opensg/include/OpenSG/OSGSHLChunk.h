#ifndef _OSGSHLCHUNK_H_
#define _OSGSHLCHUNK_H_

#include <OpenSG/OSGShaderChunk.h>
#include <OpenSG/OSGGLEXT.h>

#include <map>
#include <string>
#include <unordered_map>
#include <vector>

namespace osg
{

OSG_FC_PTR_DECL(SHLChunk, ShaderChunkPtr)

// A GLSL program, compiled and linked at the first activate after its
// text changed. If that fails the driver's log is reported as a warning
// and, while active, the chunk binds an internal program that discards
// every fragment, so draws with it produce nothing.
class SHLChunk : public ShaderChunk
{
    OSG_FC_DECL(SHLChunk, ShaderChunk)

  public:
    enum
    {
        CgFrontEndFieldId              = Inherited::NextFieldId,
        PointSizeFieldId               = CgFrontEndFieldId             + 1,
        ProgramParameterNamesFieldId   = PointSizeFieldId              + 1,
        ProgramParameterValuesFieldId  = ProgramParameterNamesFieldId  + 1,
        GLIdFieldId                    = ProgramParameterValuesFieldId + 1,
        IgnoreGLForAspectFieldId       = GLIdFieldId                   + 1,
        UnknownParameterWarningFieldId = IgnoreGLForAspectFieldId      + 1,
        NextFieldId                    = UnknownParameterWarningFieldId + 1
    };
    OSG_FIELD_MASK(CgFrontEnd)
    OSG_FIELD_MASK(PointSize)
    OSG_FIELD_MASK(ProgramParameterNames)
    OSG_FIELD_MASK(ProgramParameterValues)
    OSG_FIELD_MASK(GLId)
    OSG_FIELD_MASK(IgnoreGLForAspect)
    OSG_FIELD_MASK(UnknownParameterWarning)

    OSG_SFIELD(SFBool,   CgFrontEnd)
    OSG_SFIELD(SFBool,   PointSize)
    OSG_MFIELD(MFGLenum, ProgramParameterNames)
    OSG_MFIELD(MFUInt32, ProgramParameterValues)
    OSG_SFIELD(SFUInt32, GLId)
    OSG_SFIELD(SFInt32,  IgnoreGLForAspect)
    OSG_SFIELD(SFBool,   UnknownParameterWarning)

  public:
    virtual const StateChunkClass *getClass(void) const override { return &_class; }
    static  UInt32                 getStaticClassId(void) { return _class.getId(); }
    static  const StateChunkClass *getStaticClass  (void) { return &_class; }

    // glProgramParameteri values (geometry shader input/output), applied
    // before linking.
    void   addProgramParameter(GLenum name, UInt32 value);
    void   subProgramParameter(GLenum name);
    void   setProgramParameter(GLenum name, UInt32 value);
    UInt32 getProgramParameter(GLenum name);

    // Called instead of uploading the value of a parameter of that name,
    // each time a program with such a parameter is activated; the program
    // is current. The OSG* uniforms (OSGWorldMatrix, OSGCameraPosition,
    // OSGActiveLightsMask, ...) come this way.
    typedef void (*parametercbfp)(PFNGLGETUNIFORMLOCATIONARBPROC getUniformLocation,
                                  DrawActionBase *action, GLuint program);
    static void addParameterCallback(const char *name, parametercbfp fp);

    virtual void activate  (DrawActionBase *action, UInt32 index = 0) override;
    virtual void changeFrom(DrawActionBase *action, StateChunk *old, UInt32 index = 0) override;
    virtual void deactivate(DrawActionBase *action, UInt32 index = 0) override;

    // Runtime extensions. getProgram() builds the program if needed in the
    // current context: 0 without program text or after a failed build,
    // which hasFailed() tells apart.
    GLuint getProgram(void);
    bool   hasFailed (void) const { return _failed; }

    // Uploads params to the program (values: the plain uniforms; callbacks:
    // the OSG* ones); used for the chunk's own parameters and by
    // SHLParameterChunk. Each parameter keeps the location it was first
    // found at, and one missing from the program warns each time, as 1.8
    // does. Needs a current context.
    void applyParameters(const MFShaderParameterPtr &params,
                         DrawActionBase *action, bool values, bool callbacks);

    // Runtime extension: supplies the callback parameters again, for a new
    // object matrix under the same state.
    void updateCallbackParameters(DrawActionBase *action);

    virtual void changed(BitVector whichField, UInt32 origin) override;
    virtual void dump(UInt32 uiIndent = 0, const BitVector bvFlags = 0) const override;

    static void initMethod(void) {}

  protected:
    SHLChunk(void);
    SHLChunk(const SHLChunk &source);
    virtual ~SHLChunk(void);

    virtual void onDestroy(void) override;

  public:
    void onCreate(const SHLChunk *source = NULL);

  private:
    static StateChunkClass _class;

    void registerGLObject(void);
    void validateGLObject(DrawActionBase *action);

    void  buildProgram  (void);
    void  releaseProgram(void);
    GLint uniformLocation(const std::string &name);

    // What applying a parameter object needs, found once per program: its
    // uniform's location and whether a callback supplies it. The name is
    // kept to notice a new parameter at a freed one's address.
    struct ParameterSlot
    {
        std::string name;
        GLint       location;
        bool        callback;
        UInt32      callbackGeneration;
    };
    ParameterSlot &parameterSlot(ShaderParameter *param);

    GLuint                       _program;
    bool                         _needsBuild;
    bool                         _failed;
    bool                         _paramsChanged;
    std::map<std::string, GLint> _locations;
    std::unordered_map<const ShaderParameter *, ParameterSlot> _slots;
    // The bytes last uploaded to each location: many materials share a
    // program, and most of their values are the same.
    std::unordered_map<GLint, std::vector<UInt8> >              _sent;
    bool                         _windowHandled;  // a window deletes the program
};

typedef RefPtr<SHLChunkPtr> SHLChunkRefPtr;

} // namespace osg

#endif
