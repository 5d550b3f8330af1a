#include <OpenSG/OSGFieldContainer.h>
#include <OpenSG/OSGFieldContainerFactory.h>
#include <OpenSG/OSGAttachmentContainer.h>
#include <OpenSG/OSGBaseFunctions.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGSFSysTypes.h>
#include <OpenSG/OSGChangeList.h>
#include <OpenSG/OSGThread.h>
#include <OpenSG/OSGFBOViewport.h>
#include <OpenSG/OSGGeometry.h>
#include <OpenSG/OSGPerspectiveCamera.h>
#include <OpenSG/OSGSHLChunk.h>
#include <OpenSG/OSGSolidBackground.h>
#include <OpenSG/OSGTextureChunk.h>
#include <OpenSG/OSGTransform.h>


#include "support/Builders.h"
#include "support/LogCapture.h"

#include <gtest/gtest.h>

#include <vector>

using namespace osg;

namespace osg
{

// A container written the way applications write their own types; it
// records its life-cycle hooks.
OSG_FC_PTR_DECL(ProbeContainer, AttachmentContainerPtr)

class ProbeContainer : public AttachmentContainer
{
    OSG_FC_DECL(ProbeContainer, AttachmentContainer)

  public:
    enum
    {
        ValueFieldId = Inherited::NextFieldId,
        CountFieldId = ValueFieldId + 1,
        NextFieldId  = CountFieldId + 1
    };
    OSG_FIELD_MASK(Value)
    OSG_FIELD_MASK(Count)

    OSG_SFIELD(SFReal32, Value)
    OSG_MFIELD(MFInt32,  Count)

  public:
    static void initMethod(void) { ++initCalls; }

    virtual void changed(BitVector whichField, UInt32 origin) override
    {
        changedMasks.push_back(whichField);
        Inherited::changed(whichField, origin);
    }

    static int                    initCalls;
    static int                    destroyed;
    static SystemState            stateAtLastCreate;
    static const ProbeContainer  *lastSource;
    std::vector<BitVector>        changedMasks;

  protected:
    friend class FieldContainer;

    ProbeContainer(void) : Inherited(), _sfValue(7.0f), _mfCount() {}
    ProbeContainer(const ProbeContainer &source) :
        Inherited(source), _sfValue(source._sfValue), _mfCount(source._mfCount) {}
    virtual ~ProbeContainer(void) {}

    void onCreate(const ProbeContainer *source = NULL)
    {
        stateAtLastCreate = GlobalSystemState;
        lastSource        = source;
    }

    virtual void onDestroy(void) override
    {
        ++destroyed;
        Inherited::onDestroy();
    }
};

int                   ProbeContainer::initCalls         = 0;
int                   ProbeContainer::destroyed         = 0;
SystemState           ProbeContainer::stateAtLastCreate = Shutdown;
const ProbeContainer *ProbeContainer::lastSource        = NULL;

OSG_FC_IMPL(ProbeContainer, "AttachmentContainer")

} // namespace osg

TEST(FieldContainerType, RegistersByNameWithParentAndInitMethod)
{
    FieldContainerType *type = FieldContainerFactory::the()->findType("ProbeContainer");
    ASSERT_NE(type, nullptr);
    EXPECT_EQ(type, &ProbeContainer::getClassType());
    ASSERT_NE(type->getParent(), nullptr);
    EXPECT_EQ(type->getParent()->getName(), "AttachmentContainer");
    EXPECT_TRUE(type->isDerivedFrom(FieldContainer::getClassType()));
    EXPECT_FALSE(type->isDerivedFrom(Node::getClassType()));
    EXPECT_FALSE(type->isAbstract());
    EXPECT_TRUE(AttachmentContainer::getClassType().isAbstract());
    EXPECT_EQ(ProbeContainer::initCalls, 1);
    EXPECT_EQ(FieldContainerFactory::the()->findType("NoSuchType"), nullptr);
}

TEST(FieldContainerType, PrototypeIsMadeDuringStartup)
{
    FieldContainerPtr proto = ProbeContainer::getClassType().getPrototype();
    ASSERT_NE(proto, NullFC);
    EXPECT_EQ(GlobalSystemState, Running);

    // A fresh create() runs onCreate with the prototype as its source.
    ProbeContainerPtr fc = ProbeContainer::create();
    EXPECT_EQ(ProbeContainer::stateAtLastCreate, Running);
    EXPECT_EQ(ProbeContainer::lastSource, proto.getCPtr());
    addRefCP(fc);
    subRefCP(fc);
}

TEST(FieldContainer, CreateCopiesThePrototypesFieldValues)
{
    ProbeContainerPtr proto =
        ProbeContainerPtr::dcast(ProbeContainer::getClassType().getPrototype());
    testsupport::editCP(proto, ProbeContainer::ValueFieldMask, [&] { proto->setValue(3.5f); });

    ProbeContainerPtr fc = ProbeContainer::create();
    EXPECT_FLOAT_EQ(fc->getValue(), 3.5f);
    EXPECT_NE(fc, proto);

    proto->setValue(7.0f);
    addRefCP(fc);
    subRefCP(fc);
}

TEST(FieldContainer, FactoryCreatesByTypeName)
{
    FieldContainerPtr fc = FieldContainerFactory::the()->createFieldContainer("ProbeContainer");
    ASSERT_NE(fc, NullFC);
    EXPECT_STREQ(fc->getTypeName(), "ProbeContainer");
    EXPECT_EQ(FieldContainerFactory::the()->getContainer(fc.getFieldContainerId()), fc);
    EXPECT_EQ(FieldContainerFactory::the()->createFieldContainer("NoSuchType"), NullFC);
    EXPECT_EQ(FieldContainerFactory::the()->createNode("ProbeContainer"), NullFC);
    addRefCP(fc);
    subRefCP(fc);
}

TEST(FieldContainer, LastReleaseDestroysOnce)
{
    int before = ProbeContainer::destroyed;

    ProbeContainerPtr fc = ProbeContainer::create();
    UInt32 id = fc.getFieldContainerId();
    EXPECT_EQ(fc.getRefCount(), 0);

    addRefCP(fc);
    addRefCP(fc);
    EXPECT_EQ(fc.getRefCount(), 2);
    subRefCP(fc);
    EXPECT_EQ(ProbeContainer::destroyed, before);
    subRefCP(fc);
    EXPECT_EQ(ProbeContainer::destroyed, before + 1);
    EXPECT_EQ(FieldContainerFactory::the()->getContainer(id), NullFC);

    // NullFC is ignored by every reference operation.
    addRefCP(NullFC);
    subRefCP(NullFC);
    EXPECT_EQ(ProbeContainer::destroyed, before + 1);
}

TEST(FieldContainer, SetRefdKeepsTheNewAndReleasesTheOld)
{
    int before = ProbeContainer::destroyed;
    ProbeContainerPtr a = ProbeContainer::create();
    ProbeContainerPtr b = ProbeContainer::create();

    FieldContainerPtr holder;
    setRefdCP(holder, a);
    EXPECT_EQ(a.getRefCount(), 1);
    setRefdCP(holder, b);
    EXPECT_EQ(ProbeContainer::destroyed, before + 1);
    EXPECT_EQ(b.getRefCount(), 1);
    clearRefCP(holder);
    EXPECT_EQ(holder, NullFC);
    EXPECT_EQ(ProbeContainer::destroyed, before + 2);
}

TEST(FieldContainer, EndEditReportsTheEditedMask)
{
    ProbeContainerPtr fc = ProbeContainer::create();
    addRefCP(fc);

    testsupport::editCP(fc, ProbeContainer::CountFieldMask, [&] { fc->getCount().push_back(4); });
    {
        CPEdit(fc, ProbeContainer::ValueFieldMask);
        fc->setValue(1.0f);
    }
    endEditNotChangedCP(fc, ProbeContainer::ValueFieldMask);

    ASSERT_EQ(fc->changedMasks.size(), 2u);
    EXPECT_EQ(fc->changedMasks[0], ProbeContainer::CountFieldMask);
    EXPECT_EQ(fc->changedMasks[1], ProbeContainer::ValueFieldMask);
    EXPECT_EQ(fc->getCount(0), 4);
    subRefCP(fc);
}

TEST(FieldContainerType, PrototypeOfATypeRegisteredLateIsMadeAsInStartup)
{
    ASSERT_EQ(GlobalSystemState, Running);
    ProbeContainer::stateAtLastCreate = Running;

    // As a library loaded after osgInit registers its types.
    static FieldContainerType lateType("LateProbeContainer", "AttachmentContainer", NULL,
        []() { return FieldContainerPtr(ProbeContainer::createEmpty()); }, NULL);

    EXPECT_NE(lateType.getPrototype(), NullFC);
    EXPECT_EQ(ProbeContainer::stateAtLastCreate, Startup);
    EXPECT_EQ(GlobalSystemState, Running);
}

TEST(ChangeList, KeepsEveryEntryUntilCleared)
{
    ChangeList *list = Thread::getCurrentChangeList();
    list->clearAll();

    // More than any fixed cap a list might have; ids alternate so that no
    // two neighbouring entries merge.
    const UInt32 count = 70000;
    for(UInt32 i = 0; i < count; ++i)
    {
        list->addChanged(1 + (i & 1), BitVector(1) << (i % 8));
        list->addCreated(i + 1);
        list->addDestroyed(i + 1);
    }
    EXPECT_EQ(list->sizeChanged(),   count);
    EXPECT_EQ(list->sizeCreated(),   count);
    EXPECT_EQ(list->sizeDestroyed(), count);
    EXPECT_EQ(*list->beginCreated(), 1u);
    EXPECT_EQ(*(list->endDestroyed() - 1), count);

    list->clearAll();
    EXPECT_EQ(list->sizeChanged(), 0u);
}

struct DescribedType { const FieldContainerType &type; UInt32 nextFieldId; };

// Every field a class declares, its parents' included, has a description,
// numbered and masked by its id.
TEST(FieldReflection, EveryDeclaredFieldIsDescribed)
{
    const DescribedType types[] = {
        { Node::getClassType(),               Node::NextFieldId               },
        { SolidBackground::getClassType(),    SolidBackground::NextFieldId    },
        { Transform::getClassType(),          Transform::NextFieldId          },
        { Geometry::getClassType(),           Geometry::NextFieldId           },
        { TextureChunk::getClassType(),       TextureChunk::NextFieldId       },
        { FBOViewport::getClassType(),        FBOViewport::NextFieldId        },
        { PerspectiveCamera::getClassType(),  PerspectiveCamera::NextFieldId  },
        { SHLChunk::getClassType(),           SHLChunk::NextFieldId           },
        { ProbeContainer::getClassType(),     ProbeContainer::NextFieldId     },
    };
    for(const DescribedType &t : types)
    {
        SCOPED_TRACE(t.type.getName());
        EXPECT_EQ(t.type.getNumFieldDescs(), t.nextFieldId - 1);
    }

    // Described fields of every concrete type reach the container's own field.
    FieldContainerFactory *factory = FieldContainerFactory::the();
    UInt32 checked = 0;
    for(auto it = factory->beginTypes(); it != factory->endTypes(); ++it)
    {
        FieldContainerType *type  = it->second;
        FieldContainerPtr   proto = type->getPrototype();
        if(proto == NullFC)
            continue;
        SCOPED_TRACE(type->getName());
        for(UInt32 id = 1; id <= type->getNumFieldDescs(); ++id)
        {
            const FieldDescription *desc = type->getFieldDescription(id);
            ASSERT_NE(desc, nullptr) << "field id " << id;
            EXPECT_EQ(desc->getFieldId(), id);
            EXPECT_EQ(desc->getFieldMask(), BitVector(1) << id) << desc->getName();
            EXPECT_EQ(type->findFieldDescription(desc->getCName()), desc);
            Field *field = proto->getField(id);
            ASSERT_NE(field, nullptr) << desc->getName();
            EXPECT_EQ(&field->getType(), &desc->getFieldType()) << desc->getName();
            EXPECT_EQ(proto->getField(desc->getCName()), field) << desc->getName();
            ++checked;
        }
    }
    EXPECT_GT(checked, 100u);
}

// Loaders and tools find fields by these names, as 1.8 registers them.
TEST(FieldTypes, PointerFieldTypesAreRegisteredWithFieldParent)
{
    const FieldType &single = SFGroupPtr::getClassType();
    EXPECT_EQ(single.getName(), "SFGroupPtr");
    EXPECT_EQ(single.getContentType().getName(), "GroupPtr");
    EXPECT_EQ(single.getContentType().getParentName(), "NodeCorePtr");
    EXPECT_EQ(std::string(MFNodePtr::getClassType().getCName()), "MFNodePtr");
    EXPECT_EQ(SFBool::getClassType().getName(), "SFBool");
    EXPECT_EQ(SFTime::getClassType().getName(), "SFTime");
}

TEST(Log, WarningsAreCapturedAndLevelsFilter)
{
    testsupport::LogCapture capture(LOG_WARNING);
    SWARNING << "Probe::op: bad " << 42 << std::endl;
    SNOTICE  << "hidden notice" << std::endl;
    FWARNING(("value %d\n", 7));
    PLOG << "plain" << std::endl;

    EXPECT_TRUE(capture.contains("Probe::op: bad 42"));
    EXPECT_TRUE(capture.contains("value 7"));
    EXPECT_TRUE(capture.contains("plain"));
    EXPECT_FALSE(capture.contains("hidden notice"));
}
