#include "support/Builders.h"
#include "support/GLTest.h"
#include "support/PixelProbe.h"
#include "support/SceneSetup.h"

#include <OpenSG/OSGDrawable.h>
#include <OpenSG/OSGPassiveWindow.h>
#include <OpenSG/OSGRenderAction.h>
#include <OpenSG/OSGSimpleGeometry.h>
#include <OpenSG/OSGSimpleSceneManager.h>
#include <OpenSG/OSGSimpleStatisticsForeground.h>
#include <OpenSG/OSGStatCollector.h>

#include <memory>

using namespace osg;
using testsupport::readPixelRGBA8;
using testsupport::RGBA8;
using testsupport::SceneSetup;

namespace
{

using StatisticsTest = testsupport::GLTest;

struct FormatCase { StatElemDesc<StatTimeElem> *desc; const char *value, *format, *expected; };

StatElemDesc<StatTimeElem> s_testTime("statisticsTestTime", "a time for the format test");

TEST(StatElemFormat, TimesPrintAsMillisecondsOrRates)
{
    const FormatCase cases[] = {
        {&s_testTime, "0.25", "%ms",            "250.00 ms"},
        {&s_testTime, "0.25", "FPS: %r.1f",     "FPS: 4.0"},
        {&s_testTime, "0.25", "%.3f s",         "0.250 s"},
    };
    StatCollector collector;
    for(const FormatCase &c : cases)
    {
        const Char8 *text = c.value;
        ASSERT_TRUE(collector.getElem(*c.desc)->getFromString(text));
        std::string out;
        collector.getElem(*c.desc)->putToString(out, c.format);
        EXPECT_EQ(out, c.expected) << c.format;
    }

    StatIntElem *tris = collector.getElem(Drawable::statNTriangles);
    tris->set(42);
    std::string out;
    tris->putToString(out, "Triangles drawn %d");
    EXPECT_EQ(out, "Triangles drawn 42");
}

// Size 20 makes the font unit 2 pixels. The block's top left is the
// viewport's; the text starts half a line (10 px) in, a glyph 1.5 units
// below the line's top. '-' is row 3 of the glyph, columns 0 to 4: 10 x 2
// pixels at x 10..19, from the top 10 + 3 + 3 * 2 = 19 down to 21.
TEST_F(StatisticsTest, TextIsDrawnWhereTheLayoutPutsItAndNowhereElse)
{
    const int size = 128;
    SceneSetup setup(size, size);

    SimpleStatisticsForegroundPtr fg = SimpleStatisticsForeground::create();
    beginEditCP(fg);
    fg->setSize(20.f);
    fg->setColor(Color4f(1.f, 1.f, 1.f, 1.f));
    fg->setShadowColor(Color4f(0.f, 0.f, 0.f, 0.f));
    fg->addText("-");
    endEditCP(fg);
    testsupport::editCP(setup.viewport, Viewport::ForegroundsFieldMask,
                        [&] { setup.viewport->addForeground(fg); });
    setup.render();

    int lit = 0;
    for(int y = 0; y < size; ++y)
    {
        for(int x = 0; x < size; ++x)
        {
            const bool inGlyph = x >= 10 && x < 20 && y >= size - 21 && y < size - 19;
            const RGBA8 c = readPixelRGBA8(x, y);
            lit += c.r != 0;
            ASSERT_EQ(c, inGlyph ? (RGBA8{255, 255, 255, 255}) : (RGBA8{0, 0, 0, 255}))
                << x << ", " << y;
        }
    }
    EXPECT_EQ(lit, 20);
}

TEST_F(StatisticsTest, SceneManagerShowsStatisticsOverItsViewport)
{
    PassiveWindowPtr window = PassiveWindow::create();
    addRefCP(window);
    window->resize(64, 64);
    window->init();
    std::unique_ptr<SimpleSceneManager> manager(new SimpleSceneManager);
    manager->setWindow(window);
    manager->setRoot(makeBox(1.f, 1.f, 1.f, 1, 1, 1));
    manager->showAll();

    ViewportPtr port  = window->getPort(0);
    const size_t before = port->getForegrounds().size();
    manager->setStatistics(true);
    ASSERT_EQ(port->getForegrounds().size(), before + 1);
    SimpleStatisticsForegroundPtr fg =
        SimpleStatisticsForegroundPtr::dcast(port->getForegrounds().back());
    ASSERT_NE(fg, NullFC);
    // Twice: the counts start again each frame.
    manager->redraw();
    manager->redraw();
    EXPECT_EQ(fg->getCollector().getElem(Drawable::statNTriangles.getID())->getValue(), 12.0);
    EXPECT_EQ(fg->getCollector().getElem(RenderAction::statNGeometries.getID())->getValue(), 1.0);

    manager->setStatistics(false);
    EXPECT_EQ(port->getForegrounds().size(), before);
    // Off, the action no longer counts into the foreground's collector.
    fg->editCollector().getElem(Drawable::statNTriangles)->set(-1);
    manager->redraw();
    EXPECT_EQ(fg->getCollector().getElem(Drawable::statNTriangles.getID())->getValue(), -1.0);

    manager.reset();
    subRefCP(window);
}

} // namespace
