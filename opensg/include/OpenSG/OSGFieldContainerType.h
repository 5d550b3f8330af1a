#ifndef _OSGFIELDCONTAINERTYPE_H_
#define _OSGFIELDCONTAINERTYPE_H_

#include <OpenSG/OSGDataType.h>
#include <OpenSG/OSGFieldContainerPtr.h>
#include <OpenSG/OSGFieldDescription.h>

#include <map>
#include <vector>

namespace osg
{

class NodePtr;
class NodeCore;
class Attachment;
class AttachmentContainer;
template <class BasePtrTypeT, class FieldContainerTypeT> class FCPtr;
typedef FCPtr<FieldContainerPtr, AttachmentContainer> AttachmentContainerPtr;
typedef FCPtr<AttachmentContainerPtr, NodeCore>       NodeCorePtr;
typedef FCPtr<FieldContainerPtr, Attachment>          AttachmentPtr;

class FieldContainerType;
class FieldContainer;
class Node;

// The type of a container class, reachable where the class is only declared:
// declared with each class's pointer type, defined with its type object.
FieldContainerType &osgClassTypeOf(FieldContainer      *);
FieldContainerType &osgClassTypeOf(AttachmentContainer *);
FieldContainerType &osgClassTypeOf(NodeCore            *);
FieldContainerType &osgClassTypeOf(Attachment          *);
FieldContainerType &osgClassTypeOf(Node                *);

typedef void              (*InitContainerF   )(void);
typedef FieldContainerPtr (*PrototypeCreateF )(void);

class FieldContainerType : public DataType
{
  public:
    FieldContainerType(const Char8        *szName,
                       const Char8        *szParentName      = NULL,
                       const Char8        *szGroupName       = NULL,
                       PrototypeCreateF    fPrototypeCreate  = NULL,
                       InitContainerF      fInitMethod       = NULL,
                       FieldDescription  **pDesc             = NULL,
                       UInt32              uiDescByteCounter = 0,
                       bool                bDescsAddable     = false,
                       FieldDescriptionList *pDescList       = NULL);
    virtual ~FieldContainerType(void);

    UInt16              getGroupId          (void) const { return _uiGroupId; }
    FieldContainerType *getParent           (void) const { return _pParent;   }

    FieldDescription   *getFieldDescription (UInt32 uiFieldId);
    const FieldDescription *getFieldDescription(UInt32 uiFieldId) const;
    FieldDescription   *findFieldDescription(const Char8 *szFieldName);
    const FieldDescription *findFieldDescription(const Char8 *szFieldName) const;
    UInt32              getNumFieldDescs    (void) const;
    UInt32              addDescription      (const FieldDescription &desc);

    FieldContainerPtr   getPrototype        (void) const { return _pPrototype; }
    bool                setPrototype        (FieldContainerPtr pPrototype);

    bool isInitialized(void) const { return _bInitialized; }
    bool isAbstract   (void) const { return _fPrototypeCreate == NULL; }
    bool isDerivedFrom(const TypeBase           &other) const;
    bool isDerivedFrom(const FieldContainerType &other) const;
    bool isNode       (void) const;
    bool isNodeCore   (void) const;
    bool isAttachment (void) const;

    FieldContainerPtr createFieldContainer(void) const;
    NodePtr           createNode          (void) const;
    NodeCorePtr       createNodeCore      (void) const;
    AttachmentPtr     createAttachment    (void) const;

    void dump(UInt32 uiIndent = 0, const BitVector bvFlags = 0) const;

    // Links the parent and makes the prototype; run by the factory in osgInit.
    bool initialize(void);

  private:
    FieldContainerType(const FieldContainerType &) = delete;
    FieldContainerType &operator =(const FieldContainerType &) = delete;

    UInt16                          _uiGroupId;
    bool                            _bInitialized;
    FieldContainerType             *_pParent;
    IDString                        _szGroupName;
    FieldContainerPtr               _pPrototype;
    PrototypeCreateF                _fPrototypeCreate;
    std::vector<FieldDescription *> _vDescVec;
    // Descriptions that the class's field declarations gathered; read when
    // the type is initialised, once every field type exists.
    FieldDescriptionList           *_pDescList;
};

} // namespace osg

#endif
