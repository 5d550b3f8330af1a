#ifndef _OSGTHREAD_H_
#define _OSGTHREAD_H_

#include <OpenSG/OSGBaseTypes.h>

namespace osg
{

class ChangeList;

// The runtime keeps one aspect: every thread sees aspect 0.
class Thread
{
  public:
    static UInt32      getAspect           (void) { return 0; }
    static ChangeList *getCurrentChangeList(void);
};

class ThreadManager
{
  public:
    static UInt32 getNumAspects(void) { return 1; }
};

} // namespace osg

#endif
