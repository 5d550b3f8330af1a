#include <OpenSG/OSGBackground.h>

namespace osg
{

OSG_FC_ABSTRACT_IMPL(Background, "AttachmentContainer")

} // namespace osg
