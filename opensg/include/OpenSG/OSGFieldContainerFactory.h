#ifndef _OSGFIELDCONTAINERFACTORY_H_
#define _OSGFIELDCONTAINERFACTORY_H_

#include <OpenSG/OSGFieldContainerType.h>

#include <map>
#include <vector>

namespace osg
{

typedef std::vector<FieldContainerPtr> FieldContainerStore;

class FieldContainerFactory
{
  public:
    typedef std::map<UInt32, FieldContainerType *> TypeIdMap;
    typedef TypeIdMap::iterator                    TypeMapIterator;

    static FieldContainerFactory *the(void);

    FieldContainerType *findType     (UInt32 uiTypeId) const;
    FieldContainerType *findType     (const Char8 *szName) const;
    UInt32              getNumTypes  (void) const;
    TypeMapIterator     beginTypes   (void);
    TypeMapIterator     endTypes     (void);

    UInt16       findGroupId  (const Char8 *szName) const;
    const Char8 *findGroupName(UInt16 uiGroupId) const;
    UInt16       getNumGroups (void) const;

    FieldContainerPtr getContainer        (UInt32 uiFieldContainerId) const;
    FieldContainerPtr createFieldContainer(const Char8 *name) const;
    NodePtr           createNode          (const Char8 *name) const;
    NodeCorePtr       createNodeCore      (const Char8 *name) const;
    AttachmentPtr     createAttachment    (const Char8 *name) const;

    const FieldContainerStore *getFieldContainerStore(void) const { return &_containerStore; }

    // Bookkeeping used by the container machinery.
    UInt32 registerType         (FieldContainerType *pType);
    UInt16 registerGroup        (const Char8 *szName);
    UInt32 registerFieldContainer(const FieldContainerPtr &pFieldContainer);
    bool   unregisterFieldContainer(const FieldContainerPtr &pFieldContainer);
    bool   isInitialized        (void) const { return _bInitialized; }

    // Links every registered type and makes the prototypes (run by osgInit).
    static bool initializeFactory(void);

  private:
    FieldContainerFactory(void);

    bool                       _bInitialized;
    TypeIdMap                  _typeIdMap;
    std::vector<std::string>   _groupNames;
    FieldContainerStore        _containerStore;
};

} // namespace osg

#endif
