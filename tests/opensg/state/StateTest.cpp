#include <OpenSG/OSGState.h>
#include <OpenSG/OSGStateChunk.h>

#include "support/LogCapture.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace osg;

namespace osg
{

// A chunk of a three-slot class that records what the state asks of it.
OSG_FC_PTR_DECL(RecordingChunk, StateChunkPtr)

class RecordingChunk : public StateChunk
{
    OSG_FC_DECL(RecordingChunk, StateChunk)

  public:
    enum { NextFieldId = Inherited::NextFieldId };

    virtual const StateChunkClass *getClass(void) const override { return &_class; }
    static const StateChunkClass *getStaticClass(void) { return &_class; }

    virtual void activate(DrawActionBase *, UInt32 index) override
    { record("activate", index); }
    virtual void changeFrom(DrawActionBase *, StateChunk *, UInt32 index) override
    { record("changeFrom", index); }
    virtual void deactivate(DrawActionBase *, UInt32 index) override
    { record("deactivate", index); }

    static void initMethod(void) {}

    std::string              label;
    static std::vector<std::string> calls;

  protected:
    RecordingChunk(void) : Inherited() {}
    RecordingChunk(const RecordingChunk &source) : Inherited(source) {}
    virtual ~RecordingChunk(void) {}

  private:
    void record(const char *what, UInt32 index)
    {
        calls.push_back(label + " " + what + " " + std::to_string(index));
    }

    static StateChunkClass _class;
};

OSG_FC_IMPL(RecordingChunk, "StateChunk")
StateChunkClass RecordingChunk::_class("TestRecording", 3);
std::vector<std::string> RecordingChunk::calls;

} // namespace osg

namespace
{

class StateTest : public ::testing::Test
{
  protected:
    void SetUp() override
    {
        state = State::create();
        addRefCP(state);
        base = RecordingChunk::getStaticClass()->getId();
        RecordingChunk::calls.clear();
    }
    void TearDown() override
    {
        subRefCP(state);
        for(RecordingChunkPtr c : made)
            subRefCP(c);
    }

    // Chunks stay referenced by the test so their counts can be checked.
    RecordingChunkPtr chunk(const std::string &label)
    {
        RecordingChunkPtr c = RecordingChunk::create();
        addRefCP(c);
        c->label = label;
        made.push_back(c);
        return c;
    }

    StatePtr                       state;
    UInt32                         base = 0;
    std::vector<RecordingChunkPtr> made;
};

TEST_F(StateTest, AutoSlotReplaceFillsFreeSlotsThenReplacesTheLast)
{
    RecordingChunkPtr a = chunk("a"), b = chunk("b"), c = chunk("c"), d = chunk("d");

    EXPECT_FALSE(state->addChunk(a));
    EXPECT_FALSE(state->addChunk(b));
    EXPECT_FALSE(state->addChunk(c));
    EXPECT_FALSE(state->addChunk(d, State::AutoSlotReplace));

    EXPECT_EQ(state->getChunk(base + 0), a);
    EXPECT_EQ(state->getChunk(base + 1), b);
    EXPECT_EQ(state->getChunk(base + 2), d);
    // The replaced chunk lost the state's reference.
    EXPECT_EQ(c.getRefCount(), 1);
    EXPECT_EQ(d.getRefCount(), 2);
}

TEST_F(StateTest, AutoSlotDropsTheChunkWhenTheClassIsFull)
{
    for(const char *label : { "a", "b", "c" })
        ASSERT_FALSE(state->addChunk(chunk(label), State::AutoSlot));

    RecordingChunkPtr extra = chunk("extra");
    testsupport::LogCapture log;
    EXPECT_TRUE(state->addChunk(extra, State::AutoSlot));
    EXPECT_TRUE(log.contains("State::addChunk"));
    EXPECT_EQ(extra.getRefCount(), 1);
    for(UInt32 slot = 0; slot < 3; ++slot)
        EXPECT_NE(state->getChunk(base + slot), extra);
}

TEST_F(StateTest, ExplicitIndexReplacesThatSlotOnly)
{
    RecordingChunkPtr a = chunk("a"), b = chunk("b");

    EXPECT_FALSE(state->addChunk(a, 2));
    EXPECT_EQ(state->getChunk(base + 2), a);
    EXPECT_FALSE(state->chunkPresent(base + 0));

    EXPECT_FALSE(state->addChunk(b, 2));
    EXPECT_EQ(state->getChunk(base + 2), b);
    EXPECT_EQ(a.getRefCount(), 1);

    testsupport::LogCapture log;
    EXPECT_TRUE(state->addChunk(a, 3));
    EXPECT_TRUE(state->addChunk(a, -5));
    EXPECT_EQ(a.getRefCount(), 1);
}

TEST_F(StateTest, SubAndClearReleaseTheChunks)
{
    RecordingChunkPtr a = chunk("a"), b = chunk("b");
    state->addChunk(a);
    state->addChunk(b);

    EXPECT_TRUE(state->chunkPresent(StateChunkPtr(a)));
    EXPECT_FALSE(state->subChunk(a));
    EXPECT_EQ(a.getRefCount(), 1);
    EXPECT_EQ(state->getChunk(base + 0), NullFC);
    EXPECT_EQ(state->getChunk(base + 1), b);

    {
        testsupport::LogCapture log;
        EXPECT_TRUE(state->subChunk(a));
    }

    EXPECT_FALSE(state->subChunk(base, 1));
    EXPECT_EQ(b.getRefCount(), 1);
    EXPECT_FALSE(state->chunkPresent(StateChunkPtr(b)));

    state->addChunk(a);
    state->clearChunks();
    EXPECT_EQ(a.getRefCount(), 1);
}

TEST_F(StateTest, ActivateAndDeactivatePassTheSlotAndSkipIgnoredChunks)
{
    RecordingChunkPtr a = chunk("a"), b = chunk("b"), c = chunk("c");
    state->addChunk(a, 0);
    state->addChunk(b, 1);
    state->addChunk(c, 2);
    b->setIgnore(true);

    state->activate(NULL);
    state->deactivate(NULL);

    const std::vector<std::string> expected =
        { "a activate 0", "c activate 2", "a deactivate 0", "c deactivate 2" };
    EXPECT_EQ(RecordingChunk::calls, expected);
}

TEST_F(StateTest, ChangeFromPerSlotTreatsIgnoredChunksAsAbsent)
{
    // expected: the call on slot 0, or "" for none.
    struct Case { const char *name; bool oldHas, oldIgnored, newHas, newIgnored;
                  const char *expected; };
    const Case cases[] =
    {
        { "both present",     true,  false, true,  false, "new changeFrom 0" },
        { "only new",         false, false, true,  false, "new activate 0"   },
        { "only old",         true,  false, false, false, "old deactivate 0" },
        { "old ignored",      true,  true,  true,  false, "new activate 0"   },
        { "new ignored",      true,  false, true,  true,  "old deactivate 0" },
        { "both ignored",     true,  true,  true,  true,  ""                 },
        { "neither",          false, false, false, false, ""                 },
    };

    for(const Case &tc : cases)
    {
        SCOPED_TRACE(tc.name);
        StatePtr oldState = State::create(), newState = State::create();
        addRefCP(oldState);
        addRefCP(newState);

        if(tc.oldHas)
        {
            RecordingChunkPtr o = chunk("old");
            o->setIgnore(tc.oldIgnored);
            oldState->addChunk(o);
        }
        if(tc.newHas)
        {
            RecordingChunkPtr n = chunk("new");
            n->setIgnore(tc.newIgnored);
            newState->addChunk(n);
        }

        RecordingChunk::calls.clear();
        newState->changeFrom(NULL, getCPtr(oldState));

        const std::vector<std::string> expected =
            std::string(tc.expected).empty() ? std::vector<std::string>()
                                             : std::vector<std::string>{ tc.expected };
        EXPECT_EQ(RecordingChunk::calls, expected);

        subRefCP(oldState);
        subRefCP(newState);
    }
}

} // namespace
