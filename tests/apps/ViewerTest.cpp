#include <OpenSG/OSGImage.h>

#include "support/Builders.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <set>
#include <string>
#include <sys/wait.h>

using namespace osg;

namespace
{

// Exit status of a shell command; -1 if it did not exit normally.
int runShell(const std::string &command)
{
    const int status = std::system(command.c_str());
    return status != -1 && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

struct Picture
{
    int                width = 0, height = 0;
    std::vector<UInt8> rgb;

    Vec3f at(int i) const { return Vec3f(rgb[3 * i], rgb[3 * i + 1], rgb[3 * i + 2]); }
};

bool loadPicture(const std::string &path, Picture &picture)
{
    ImagePtr image = testsupport::held(Image::create());
    bool good = image->read(path.c_str()) && image->getDepth() == 1;
    if(good)
    {
        picture.width  = image->getWidth();
        picture.height = image->getHeight();
        const int channels = image->getPixelFormat() == Image::OSG_RGBA_PF ? 4 :
                             image->getPixelFormat() == Image::OSG_RGB_PF  ? 3 : 0;
        good = channels != 0;
        const UInt8 *data = image->getData();
        for(int i = 0; good && i < picture.width * picture.height; ++i)
            picture.rgb.insert(picture.rgb.end(), data + channels * i, data + channels * i + 3);
    }
    subRefCP(image);
    return good;
}

// Share of pixels whose colour differs by more than a little.
double changedShare(const Picture &a, const Picture &b)
{
    int changed = 0;
    const int n = a.width * a.height;
    for(int i = 0; i < n; ++i)
        changed += (a.at(i) - b.at(i)).length() > 12.f;
    return double(changed) / n;
}

class ViewerTest : public ::testing::Test
{
  protected:
    void SetUp() override
    {
        if(runShell("command -v xvfb-run >/dev/null 2>&1") != 0)
            GTEST_SKIP() << "xvfb-run is not installed";
    }

    // Runs the viewer under a virtual X server for a few frames and loads
    // its last frame.
    void shoot(const std::string &name, const std::string &script, Picture &picture)
    {
        const std::string png = dir.path(name + ".png"), log = dir.path(name + ".log");
        const std::string command = "xvfb-run -a -s '-screen 0 640x480x24' " LUMORA_VIEWER
            " --width 240 --height 160 --point-lights 4 --spot-lights 2 " + script +
            " --screenshot " + png + " >" + log + " 2>&1";
        ASSERT_EQ(runShell(command), 0) << command << "\n" << dir.read(name + ".log");
        ASSERT_TRUE(loadPicture(png, picture)) << png;
        EXPECT_EQ(picture.width,  240);
        EXPECT_EQ(picture.height, 160);
    }

    testsupport::TempDir dir;
};

TEST_F(ViewerTest, ScriptedFramesShowTheSceneAndFollowKeysAndDrags)
{
    Picture plain;
    shoot("plain", "--frames 2", plain);
    ASSERT_FALSE(HasFailure());

    // Not blank: many colours, spread over the picture.
    std::set<UInt32> colours;
    Vec3f mean(0.f, 0.f, 0.f);
    for(int i = 0; i < plain.width * plain.height; ++i)
    {
        colours.insert(UInt32(plain.rgb[3 * i]) << 16 | UInt32(plain.rgb[3 * i + 1]) << 8 |
                       plain.rgb[3 * i + 2]);
        mean += plain.at(i);
    }
    mean /= Real32(plain.width * plain.height);
    EXPECT_GT(colours.size(), 200u);
    EXPECT_GT(mean.length(), 20.f);

    // minChanged: the share of pixels that must differ from plain.
    struct Step { const char *name; const char *script; double minChanged; };
    const Step steps[] = {
        {"normals", "--frames 2 --keys v",     0.3},
        {"diffuse", "--frames 2 --keys vv",    0.3},
        {"back",    "--frames 2 --keys vV",    0.0},
        {"dragged", "--frames 2 --drag 60,0",  0.3},
        {"hdr",     "--frames 2 --keys 3",     0.3},
        // Flying starts where the trackball looked from.
        {"fly",     "--frames 2 --keys m",     0.0},
    };
    Picture normals;
    for(const Step &s : steps)
    {
        SCOPED_TRACE(s.name);
        Picture shot;
        shoot(s.name, s.script, shot);
        if(HasFailure())
            return;
        const double changed = changedShare(plain, shot);
        if(s.minChanged > 0.0)
            EXPECT_GT(changed, s.minChanged);
        else
            EXPECT_LT(changed, 0.01) << "turning the views off again shows the image";
        if(std::string(s.name) == "normals")
            normals = shot;
        if(std::string(s.name) == "diffuse")
        {
            EXPECT_GT(changedShare(normals, shot), 0.3);
        }
    }
}

// Share of pixels changed within x < maxX, y < maxY counted from the top
// left, and elsewhere (the picture's first row is its bottom one).
void changedInAndOut(const Picture &a, const Picture &b, int maxX, int maxY,
                     double &inside, double &outside)
{
    int in = 0, out = 0, nIn = 0, nOut = 0;
    for(int y = 0; y < a.height; ++y)
    {
        for(int x = 0; x < a.width; ++x)
        {
            const int  i       = y * a.width + x;
            const bool changed = (a.at(i) - b.at(i)).length() > 12.f;
            if(x < maxX && a.height - 1 - y < maxY)
                in += changed, ++nIn;
            else
                out += changed, ++nOut;
        }
    }
    inside  = double(in) / nIn;
    outside = double(out) / nOut;
}

TEST_F(ViewerTest, StatisticsKeyShowsTextInTheTopLeftCornerOnly)
{
    Picture plain, shown, hidden;
    shoot("stats-plain",  "--frames 2",           plain);
    shoot("stats-shown",  "--frames 2 --keys i",  shown);
    shoot("stats-hidden", "--frames 2 --keys ii", hidden);
    ASSERT_FALSE(HasFailure());

    // Nine lines of 12 pixels and half a line around: the block ends 120
    // pixels down; a line of 21 characters is 7.2 * 21 + 12 = 163 pixels
    // wide, times of seconds included.
    double inside = 0.0, outside = 0.0;
    changedInAndOut(plain, shown, 60, 100, inside, outside);
    EXPECT_GT(inside, 0.15);
    changedInAndOut(plain, shown, 200, 130, inside, outside);
    EXPECT_LT(outside, 0.01);
    EXPECT_LT(changedShare(plain, hidden), 0.01) << "a second press hides it again";
}

TEST(ViewerCommandLine, HelpAndBadArgumentsNeedNoDisplay)
{
    struct Case { const char *args; int status; const char *says; };
    const Case cases[] = {
        {"--help",                      0, "usage: lumora-viewer"},
        {"--frames x",                  2, "bad value 'x' for --frames"},
        {"--keys vv",                   2, "need --frames"},
        {"--frames 1 --keys vvv",       2, "do not fit"},
        {"--drag 5 --frames 1",         2, "bad value '5' for --drag"},
        {"--bogus",                     2, "unknown option '--bogus'"},
        {"/nonexistent/model.obj --frames 1", 1, "cannot open '/nonexistent/model.obj'"},
    };
    const testsupport::TempDir dir;
    for(const Case &c : cases)
    {
        SCOPED_TRACE(c.args);
        const std::string command = std::string("DISPLAY= ") + LUMORA_VIEWER + " " + c.args +
                                    " >" + dir.path("cli.log") + " 2>&1";
        EXPECT_EQ(runShell(command), c.status);
        EXPECT_NE(dir.read("cli.log").find(c.says), std::string::npos) << dir.read("cli.log");
    }
}

} // namespace
