#include <OpenSG/OSGImage.h>
#include <OpenSG/OSGRefPtr.h>
#include <OpenSG/OSGSimpleAttachments.h>

#include <QtTest>

#include <set>
#include <vector>

namespace {

class Probe;
using ProbePtr = osg::FCPtr<osg::AttachmentContainerPtr, Probe>;

// A container that tells what happens to it.
class Probe : public osg::AttachmentContainer
{
public:
    static ProbePtr create() { return ProbePtr(new Probe); }
    static osg::FieldContainerType& getClassType()
    {
        static osg::FieldContainerType type("Probe", &osg::AttachmentContainer::getClassType());
        return type;
    }
    osg::FieldContainerType& getType() const override { return getClassType(); }

    void changed(osg::BitVector whichField, osg::UInt32 origin) override
    {
        ++changes;
        lastMask = whichField;
        lastOrigin = origin;
    }

    void setNext(const ProbePtr& next) { osg::setRefdCP(_next, next); }
    const ProbePtr& next() const { return _next; }

    int changes = 0;
    osg::BitVector lastMask = 0;
    osg::UInt32 lastOrigin = 0;
    static int alive;

protected:
    Probe() { ++alive; }
    ~Probe() override
    {
        osg::clearRefCP(_next);
        --alive;
    }

private:
    ProbePtr _next;
};

int Probe::alive = 0;

} // namespace

class tst_FieldContainerPtr : public QObject
{
    Q_OBJECT

private slots:
    void init() { Probe::alive = 0; }
    void cleanup() { QCOMPARE(Probe::alive, 0); }

    void aPointerIsOneAddressWide();
    void aDefaultPointerIsNull();
    void aFreshContainerHasNoReference();
    void subRefDestroysAFreshContainerAndNullsTheVariable();
    void subRefKeepsAContainerThatIsStillReferenced();
    void subRefOfAConstPointerNullsIt();
    void nullIsAllowedEverywhere();
    void setRefdMovesTheReference();
    void setRefdWithEqualPointersChangesNothing();
    void clearRefGivesBackAndNulls();
    void aLongChainGoesWithoutDeepRecursion();
    void pointersCompareByIdentityAcrossTypes();
    void nullComesFirstInTheOrder();
    void dcastFollowsTheClass();
    void editsReachChanged();
    void minusOneMeansAllFields();
    void idsAreUnique();
    void freeHelpersAnswerLikeTheMembers();
    void refPtrHoldsOneReference();
    void refPtrComparesWithPlainPointersAndNull();
    void typesKnowTheirNamesAndAncestors();
    void namesAreSetChangedAndTakenAway();
    void attachmentsAreReferencedAndReplacedByClass();
};

void tst_FieldContainerPtr::aPointerIsOneAddressWide()
{
    QCOMPARE(sizeof(osg::FieldContainerPtr), sizeof(void*));
    QCOMPARE(sizeof(osg::AttachmentContainerPtr), sizeof(void*));
    QCOMPARE(sizeof(osg::ImagePtr), sizeof(void*));
    QVERIFY(std::is_trivially_destructible<osg::ImagePtr>::value);
}

void tst_FieldContainerPtr::aDefaultPointerIsNull()
{
    const ProbePtr p;
    QVERIFY(!p);
    QVERIFY(p == osg::NullFC);
    QVERIFY(osg::NullFC == p);
    QVERIFY(!(p != osg::NullFC));
    const ProbePtr q(osg::NullFC);
    QVERIFY(p == q);
    ProbePtr r = Probe::create();
    QVERIFY(static_cast<bool>(r));
    QVERIFY(r != osg::NullFC);
    osg::subRefCP(ProbePtr(r));
    r = osg::NullFC;
    QVERIFY(!r);
}

void tst_FieldContainerPtr::aFreshContainerHasNoReference()
{
    ProbePtr p = Probe::create();
    QCOMPARE(p.getRefCount(), 0);
    QCOMPARE(p->getRefCount(), 0);
    QCOMPARE(Probe::alive, 1);
    osg::subRefCP(p);
}

void tst_FieldContainerPtr::subRefDestroysAFreshContainerAndNullsTheVariable()
{
    ProbePtr p = Probe::create();
    osg::subRefCP(p);
    QVERIFY(p == osg::NullFC);
    QCOMPARE(Probe::alive, 0);
}

void tst_FieldContainerPtr::subRefKeepsAContainerThatIsStillReferenced()
{
    ProbePtr p = Probe::create();
    osg::addRefCP(p);
    osg::addRefCP(p);
    QCOMPARE(p.getRefCount(), 2);
    osg::subRefCP(p);
    QVERIFY(p != osg::NullFC);
    QCOMPARE(p.getRefCount(), 1);
    osg::subRefCP(p);
    QVERIFY(p == osg::NullFC);
}

void tst_FieldContainerPtr::subRefOfAConstPointerNullsIt()
{
    const ProbePtr p = Probe::create();
    osg::subRefCP(p);
    QVERIFY(!p);
}

void tst_FieldContainerPtr::nullIsAllowedEverywhere()
{
    ProbePtr p;
    osg::addRefCP(p);
    osg::subRefCP(p);
    osg::clearRefCP(p);
    osg::setRefdCP(p, osg::NullFC);
    osg::beginEditCP(p);
    osg::endEditCP(p);
    osg::changedCP(p);
    osg::endEditNotChangedCP(p);
    QCOMPARE(p.getRefCount(), 0);
    QCOMPARE(p.getFieldContainerId(), 0u);
    QVERIFY(!ProbePtr::dcast(p));
    QCOMPARE(osg::getName(p), static_cast<const char*>(nullptr));
    osg::setName(p, "nobody");
}

void tst_FieldContainerPtr::setRefdMovesTheReference()
{
    ProbePtr first = Probe::create();
    ProbePtr second = Probe::create();
    osg::addRefCP(second);
    ProbePtr held;
    osg::setRefdCP(held, first);
    QCOMPARE(first.getRefCount(), 1);
    osg::setRefdCP(held, second);
    QVERIFY(held == second);
    QCOMPARE(second.getRefCount(), 2);
    QCOMPARE(Probe::alive, 1);
    osg::clearRefCP(held);
    osg::subRefCP(second);
}

void tst_FieldContainerPtr::setRefdWithEqualPointersChangesNothing()
{
    ProbePtr held;
    osg::setRefdCP(held, Probe::create());
    osg::setRefdCP(held, ProbePtr(held));
    QCOMPARE(held.getRefCount(), 1);
    osg::clearRefCP(held);
}

void tst_FieldContainerPtr::clearRefGivesBackAndNulls()
{
    ProbePtr p = Probe::create();
    osg::addRefCP(p);
    osg::addRefCP(p);
    ProbePtr other = p;
    osg::clearRefCP(p);
    QVERIFY(!p);
    QCOMPARE(other.getRefCount(), 1);
    osg::clearRefCP(other);
}

void tst_FieldContainerPtr::aLongChainGoesWithoutDeepRecursion()
{
    ProbePtr head;
    for (int i = 0; i < 200000; ++i) {
        ProbePtr link = Probe::create();
        link->setNext(head);
        head = link;
    }
    QCOMPARE(Probe::alive, 200000);
    osg::subRefCP(head);
    QCOMPARE(Probe::alive, 0);
}

void tst_FieldContainerPtr::pointersCompareByIdentityAcrossTypes()
{
    ProbePtr p = Probe::create();
    ProbePtr q = Probe::create();
    const osg::FieldContainerPtr base = p;
    const osg::AttachmentContainerPtr middle = p;
    QVERIFY(base == p);
    QVERIFY(middle == base);
    QVERIFY(p != q);
    QVERIFY((p < q) != (q < p));
    QCOMPARE(ProbePtr(p.getCPtr()).getFieldContainerId(), p.getFieldContainerId());
    QVERIFY(ProbePtr(*p) == p);
    osg::subRefCP(p);
    osg::subRefCP(q);
}

void tst_FieldContainerPtr::nullComesFirstInTheOrder()
{
    ProbePtr p = Probe::create();
    QVERIFY(!(p < osg::NullFC));
    QVERIFY(osg::NullFC < p);
    const std::set<osg::FieldContainerPtr> ordered{p, osg::NullFC, p};
    QCOMPARE(ordered.size(), std::size_t(2));
    QVERIFY(*ordered.begin() == osg::NullFC);
    osg::subRefCP(p);
}

void tst_FieldContainerPtr::dcastFollowsTheClass()
{
    ProbePtr p = Probe::create();
    const osg::FieldContainerPtr base = p;
    QVERIFY(ProbePtr::dcast(base) == p);
    QVERIFY(osg::AttachmentContainerPtr::dcast(base) == p);
    QVERIFY(osg::ImagePtr::dcast(base) == osg::NullFC);
    QVERIFY(osg::dynamic_pointer_cast<ProbePtr>(base) == p);
    osg::subRefCP(p);
}

void tst_FieldContainerPtr::editsReachChanged()
{
    ProbePtr p = Probe::create();
    osg::beginEditCP(p, 12);
    QCOMPARE(p->changes, 0);
    osg::endEditCP(p, 12, osg::ChangedOrigin::Child);
    QCOMPARE(p->changes, 1);
    QCOMPARE(p->lastMask, osg::BitVector(12));
    QCOMPARE(p->lastOrigin, 4u);
    osg::changedCP(p);
    QCOMPARE(p->changes, 2);
    QCOMPARE(p->lastMask, osg::FieldBits::AllFields);
    QCOMPARE(p->lastOrigin, osg::ChangedOrigin::External);
    osg::endEditNotChangedCP(p);
    QCOMPARE(p->changes, 2);
    osg::subRefCP(p);
}

void tst_FieldContainerPtr::minusOneMeansAllFields()
{
    ProbePtr p = Probe::create();
    osg::beginEditCP(p, -1, 1);
    osg::endEditCP(p, -1, 1);
    QCOMPARE(p->lastMask, ~osg::BitVector(0));
    QCOMPARE(p->lastOrigin, 1u);
    osg::subRefCP(p);
}

void tst_FieldContainerPtr::idsAreUnique()
{
    ProbePtr p = Probe::create();
    ProbePtr q = Probe::create();
    QVERIFY(p.getFieldContainerId() != 0);
    QVERIFY(p.getFieldContainerId() != q.getFieldContainerId());
    osg::subRefCP(p);
    osg::subRefCP(q);
}

void tst_FieldContainerPtr::freeHelpersAnswerLikeTheMembers()
{
    ProbePtr p = Probe::create();
    osg::addRef(p);
    QCOMPARE(osg::getRefCount(p), 1);
    QCOMPARE(osg::getContainerId(p), p.getFieldContainerId());
    QCOMPARE(osg::getCPtr(p), p.getCPtr());
    osg::subRef(p);
    QVERIFY(!p);
}

void tst_FieldContainerPtr::refPtrHoldsOneReference()
{
    osg::RefPtr<ProbePtr> held = Probe::create();
    QCOMPARE(held.get().getRefCount(), 1);
    {
        const osg::RefPtr<ProbePtr> copy = held;
        QCOMPARE(held->getRefCount(), 2);
    }
    QCOMPARE(held->getRefCount(), 1);
    osg::RefPtr<ProbePtr> moved = std::move(held);
    QCOMPARE(moved->getRefCount(), 1);
    QVERIFY(!held);
    moved = Probe::create();
    QCOMPARE(Probe::alive, 1);
    const ProbePtr plain = moved;
    QVERIFY(plain == moved.get());
    moved = osg::NullFC;
    QCOMPARE(Probe::alive, 0);
}

void tst_FieldContainerPtr::refPtrComparesWithPlainPointersAndNull()
{
    osg::RefPtr<ProbePtr> held;
    QVERIFY(held == osg::NullFC);
    held = Probe::create();
    const osg::RefPtr<ProbePtr> other = held;
    QVERIFY(held == other);
    QVERIFY(held == held.get());
    QVERIFY(held.get() == other);
    QVERIFY(held != osg::NullFC);
    QVERIFY(!(held < other));
}

void tst_FieldContainerPtr::typesKnowTheirNamesAndAncestors()
{
    ProbePtr p = Probe::create();
    osg::ImagePtr image = osg::Image::create();
    QCOMPARE(p->getType().getCName(), "Probe");
    QCOMPARE(image->getType().getName().str(), "Image");
    QCOMPARE(image->getTypeName(), "Image");
    QVERIFY(image->getType() == osg::Image::getClassType());
    QVERIFY(image->getType().isDerivedFrom(osg::AttachmentContainer::getClassType()));
    QVERIFY(image->getType().isDerivedFrom(osg::FieldContainer::getClassType()));
    QVERIFY(image->getType().isDerivedFrom(image->getType()));
    QVERIFY(!image->getType().isDerivedFrom(Probe::getClassType()));
    QVERIFY(!osg::FieldContainer::getClassType().isDerivedFrom(image->getType()));
    QVERIFY(p->getType().getId() != image->getTypeId());
    QVERIFY(p->getType() != image->getType());
    osg::subRefCP(p);
    osg::subRefCP(image);
}

void tst_FieldContainerPtr::namesAreSetChangedAndTakenAway()
{
    ProbePtr p = Probe::create();
    QCOMPARE(osg::getName(p), static_cast<const char*>(nullptr));
    osg::setName(p, "first");
    QCOMPARE(osg::getName(p), "first");
    osg::setName(p, std::string("second"));
    QCOMPARE(osg::getName(p), "second");
    osg::setName(p, "");
    QCOMPARE(osg::getName(p), "");
    osg::setName(p, static_cast<const char*>(nullptr));
    QCOMPARE(osg::getName(p), static_cast<const char*>(nullptr));
    osg::subRefCP(p);
}

void tst_FieldContainerPtr::attachmentsAreReferencedAndReplacedByClass()
{
    ProbePtr p = Probe::create();
    osg::NamePtr first = osg::Name::create();
    osg::NamePtr second = osg::Name::create();
    osg::addRefCP(first);
    p->addAttachment(first);
    QCOMPARE(first.getRefCount(), 2);
    p->addAttachment(second);
    QCOMPARE(first.getRefCount(), 1);
    QCOMPARE(second.getRefCount(), 1);
    QVERIFY(p->findAttachment(osg::Name::getClassType()) == second);
    p->subAttachment(first);
    QVERIFY(p->findAttachment(osg::Name::getClassType()) == second);
    p->subAttachment(second);
    QVERIFY(p->findAttachment(osg::Name::getClassType()) == osg::NullFC);
    p->addAttachment(osg::NullFC);
    osg::subRefCP(first);
    osg::subRefCP(p);
}

QTEST_APPLESS_MAIN(tst_FieldContainerPtr)
#include "tst_FieldContainerPtr.moc"
