#ifndef _OSGCHANGELIST_H_
#define _OSGCHANGELIST_H_

#include <OpenSG/OSGBaseTypes.h>

#include <utility>
#include <vector>

namespace osg
{

class ChangeList
{
  public:
    typedef std::pair<UInt32, BitVector>        ChangeEntry;
    typedef std::vector<ChangeEntry>            ChangedStore;
    typedef std::vector<UInt32>                 IdStore;
    typedef ChangedStore::const_iterator        changed_const_iterator;
    typedef IdStore::const_iterator             idstore_const_iterator;

    void addChanged  (UInt32 uiContainerId, BitVector bvWhichField);
    void addCreated  (UInt32 uiContainerId);
    void addDestroyed(UInt32 uiContainerId);
    void addAddRefd  (UInt32) {}
    void addSubRefd  (UInt32) {}

    changed_const_iterator beginChanged  (void) const { return _changed.begin();   }
    changed_const_iterator endChanged    (void) const { return _changed.end();     }
    idstore_const_iterator beginCreated  (void) const { return _created.begin();   }
    idstore_const_iterator endCreated    (void) const { return _created.end();     }
    idstore_const_iterator beginDestroyed(void) const { return _destroyed.begin(); }
    idstore_const_iterator endDestroyed  (void) const { return _destroyed.end();   }

    UInt32 sizeChanged  (void) const { return UInt32(_changed.size());   }
    UInt32 sizeCreated  (void) const { return UInt32(_created.size());   }
    UInt32 sizeDestroyed(void) const { return UInt32(_destroyed.size()); }

    void clearAll(void);
    bool merge   (ChangeList &other);
    void swap    (ChangeList &other);

    // With one aspect there is nothing to copy to; applying just forgets.
    void applyTo      (UInt32 uiAspectId);
    void apply        (void);
    void applyAndClear(void);

  private:
    ChangedStore _changed;
    IdStore      _created;
    IdStore      _destroyed;
};

} // namespace osg

#endif
