#include <OpenSG/OSGForeground.h>

namespace osg
{

OSG_FC_ABSTRACT_IMPL(Foreground, "AttachmentContainer")

} // namespace osg
