#include <OpenSG/OSGGeometry.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGSceneFileHandler.h>

#include "support/Builders.h"
#include "support/LogCapture.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <sstream>
#include <string>

using namespace osg;

namespace
{

// A quad without normals: the importer's post-processing must split it and
// give it normals, whichever process ran it.
const char *s_quadObj =
    "v 0 0 0\nv 2 0 0\nv 2 1 0\nv 0 1 0\n"
    "f 1 2 3 4\n";

// Runs each test with its own directory and with OSG_ASSIMP_IMPORTER as
// the test sets it, restoring the variable afterwards.
class AssimpImporter : public ::testing::Test
{
  protected:
    void SetUp() override
    {
        const char *previous = std::getenv("OSG_ASSIMP_IMPORTER");
        _hadPrevious = previous != nullptr;
        if(_hadPrevious)
            _previous = previous;
        unsetenv("OSG_ASSIMP_IMPORTER");
    }

    void TearDown() override
    {
        if(_hadPrevious)
            setenv("OSG_ASSIMP_IMPORTER", _previous.c_str(), 1);
        else
            unsetenv("OSG_ASSIMP_IMPORTER");
    }


    // A stand-in importer: a shell script of the given body, used for the
    // next loads.
    void useImporterScript(const std::string &body)
    {
        const std::string script = dir.write("importer.sh", "#!/bin/sh\n" + body + "\n");
        ASSERT_EQ(chmod(script.c_str(), 0755), 0);
        setenv("OSG_ASSIMP_IMPORTER", script.c_str(), 1);
    }

    testsupport::TempDir dir;
    std::string          _previous;
    bool                 _hadPrevious = false;
};

// The quad, post-processed: two triangles and a normal for every vertex.
void expectTriangulatedQuadWithNormals(NodePtr root)
{
    ASSERT_NE(root, NullFC);
    addRefCP(root);
    GeometryPtr geometry = NullFC;
    for(NodePtr node = root; node != NullFC && geometry == NullFC;
        node = node->getNChildren() > 0 ? node->getChild(0) : NodePtr(NullFC))
        geometry = GeometryPtr::dcast(node->getCore());
    ASSERT_NE(geometry, NullFC);
    EXPECT_EQ(geometry->getTypes()->getValue(0), UInt32(GL_TRIANGLES));
    EXPECT_EQ(geometry->getIndices()->size(), 6u);
    ASSERT_NE(geometry->getNormals(), NullFC);
    EXPECT_EQ(geometry->getNormals()->size(), geometry->getPositions()->size());
    subRefCP(root);
}

TEST_F(AssimpImporter, FoundBesideTheLibraryWithoutAWarning)
{
    const std::string model = dir.write("quad.obj", s_quadObj);
    testsupport::LogCapture log;
    expectTriangulatedQuadWithNormals(SceneFileHandler::the().read(model.c_str()));
    EXPECT_FALSE(log.contains("osg-assimp-import")) << log.text();
}

// The program gets the model's name, the post-processing steps and this
// process as its parent; a stream's bytes come on its standard input.
TEST_F(AssimpImporter, RunsTheProgramWithTheModelAndItsParent)
{
    useImporterScript("printf '%s\\n' \"$@\" > " + dir.path("args") + "\n"
                      "exec '" OSG_ASSIMP_IMPORTER_BUILT "' \"$@\"");
    const std::string model = dir.write("quad.obj", s_quadObj);

    expectTriangulatedQuadWithNormals(SceneFileHandler::the().read(model.c_str()));
    std::istringstream args(dir.read("args"));
    std::string arg, parent;
    bool named = false;
    while(std::getline(args, arg))
    {
        named = named || arg == model;
        if(arg == "--parent")
            std::getline(args, parent);
    }
    EXPECT_TRUE(named) << dir.read("args");
    EXPECT_EQ(parent, std::to_string(getpid()));

    std::istringstream stream(s_quadObj);
    expectTriangulatedQuadWithNormals(SceneFileHandler::the().read(stream, "obj"));
    EXPECT_NE(dir.read("args").find("--hint\nobj\n-\n"), std::string::npos) << dir.read("args");
}

TEST_F(AssimpImporter, MissingProgramWarnsWhereItLookedAndLoadsInProcess)
{
    const std::string missing = dir.path("no-such-importer");
    setenv("OSG_ASSIMP_IMPORTER", missing.c_str(), 1);
    const std::string model = dir.write("quad.obj", s_quadObj);

    testsupport::LogCapture log;
    expectTriangulatedQuadWithNormals(SceneFileHandler::the().read(model.c_str()));
    EXPECT_TRUE(log.contains(missing)) << log.text();
    EXPECT_TRUE(log.contains("imported in this process")) << log.text();
}

// warning: expected in the log, or NULL for a loaded scene.
struct Outcome { const char *name; const char *script; const char *warning; };

class ImporterOutcome : public AssimpImporter,
                        public ::testing::WithParamInterface<Outcome> {};

// How the program ended becomes the warning for the model; an importer
// that cannot write the scene has it read here.
TEST_P(ImporterOutcome, IsReportedForTheModel)
{
    useImporterScript(GetParam().script);
    const std::string model = dir.write("quad.obj", s_quadObj);

    testsupport::LogCapture log;
    NodePtr root = SceneFileHandler::the().read(model.c_str());
    if(GetParam().warning == nullptr)
    {
        expectTriangulatedQuadWithNormals(root);
        return;
    }
    EXPECT_EQ(root, NullFC);
    EXPECT_TRUE(log.contains(model + ": " + GetParam().warning)) << log.text();
}

const Outcome s_outcomes[] = {
    {"Crash",        "kill -SEGV $$", "the importer crashed on it (Segmentation fault)"},
    {"Abort",        "kill -ABRT $$", "the importer crashed on it (Aborted)"},
    {"NoAnswer",     "exit 3",        "the importer ended without an answer"},
    {"Error",        "printf 'Eno such format'", "no such format"},
    {"ReadItHere",   "printf R",      nullptr},
    {"GarbledScene", "printf 'Snot a scene'", "the imported scene did not come back"},
};

INSTANTIATE_TEST_SUITE_P(, ImporterOutcome, ::testing::ValuesIn(s_outcomes),
                         [](const ::testing::TestParamInfo<Outcome> &info)
                         { return std::string(info.param.name); });

} // namespace
