#ifndef _OSGRENDERACTIONBASE_H_
#define _OSGRENDERACTIONBASE_H_

#include <OpenSG/OSGDrawActionBase.h>

namespace osg
{

class RenderActionBase : public DrawActionBase
{
  public:
    virtual ~RenderActionBase(void) {}

  protected:
    RenderActionBase(void) : DrawActionBase() {}
    RenderActionBase(const RenderActionBase &source) : DrawActionBase(source) {}
};

} // namespace osg

#endif
