#ifndef _OSGTRANSFORM_H_
#define _OSGTRANSFORM_H_

#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGSFMathTypes.h>

namespace osg
{

OSG_FC_PTR_DECL(Transform, GroupPtr)

class Transform : public Group
{
    OSG_FC_DECL(Transform, Group)

  public:
    enum
    {
        MatrixFieldId = Inherited::NextFieldId,
        NextFieldId   = MatrixFieldId + 1
    };
    OSG_FIELD_MASK(Matrix)

    OSG_SFIELD(SFMatrix, Matrix)

  public:
    virtual void accumulateMatrix(Matrix &result) override;

    virtual void changed(BitVector whichField, UInt32 origin) override;

    static void initMethod(void);

  protected:
    Transform(void);
    Transform(const Transform &source);
    virtual ~Transform(void);

    virtual void adjustVolume(Volume &volume) override;

    Action::ResultE renderEnter(Action *action);
    Action::ResultE renderLeave(Action *action);
};

typedef RefPtr<TransformPtr>    TransformRefPtr;
typedef CoredNodePtr<Transform> TransformNodePtr;

} // namespace osg

#endif
