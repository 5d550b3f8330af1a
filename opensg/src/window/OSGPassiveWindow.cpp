#include <OpenSG/OSGPassiveWindow.h>
#include <OpenSG/OSGLog.h>

namespace osg
{

OSG_FC_IMPL(PassiveWindow, "Window")

void PassiveWindow::init(void)
{
    setupGL();
}

void PassiveWindow::activate(void)
{
}

void PassiveWindow::deactivate(void)
{
}

void PassiveWindow::swap(void)
{
}

void PassiveWindow::dump(UInt32, const BitVector) const
{
    SLOG << "PassiveWindow " << getWidth() << "x" << getHeight() << std::endl;
}

} // namespace osg
