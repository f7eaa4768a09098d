#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGRefPtr.h>
#include <QtTest>
#include <vector>

using namespace osg;

class tst_MFNodePtr : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void emptyListHasNothing();
    void insertedPointersStandInOrder();
    void erasedPointerLeavesTheOthersInOrder();
    void pointerOfTheListItselfCanBeInserted();
    void copyIsAListOfItsOwn();
    void listsAreEqualByTheirPointers();

private:
    std::vector<RefPtr<NodePtr>> _nodes;
};

void tst_MFNodePtr::init()
{
    _nodes.clear();
    for (int i = 0; i < 20; ++i)
        _nodes.emplace_back(Node::create());
}

void tst_MFNodePtr::emptyListHasNothing()
{
    MFNodePtr list;
    QVERIFY(list.empty());
    QCOMPARE(list.size(), std::size_t(0));
    QVERIFY(list.begin() == list.end());
    list.clear();
    QVERIFY(list.empty());
}

void tst_MFNodePtr::insertedPointersStandInOrder()
{
    MFNodePtr list;
    std::vector<NodePtr> expected;
    for (std::size_t i = 0; i < _nodes.size(); ++i) {
        const auto place = static_cast<std::ptrdiff_t>(i * 7 % (i + 1));
        list.insert(list.begin() + place, _nodes[i]);
        expected.insert(expected.begin() + place, _nodes[i]);
        QCOMPARE(list.size(), expected.size());
        QVERIFY(std::equal(list.begin(), list.end(), expected.begin()));
        QVERIFY(list.front() == expected.front());
        QVERIFY(list.back() == expected.back());
    }
}

void tst_MFNodePtr::erasedPointerLeavesTheOthersInOrder()
{
    MFNodePtr list;
    std::vector<NodePtr> expected;
    for (const RefPtr<NodePtr>& node : _nodes) {
        list.push_back(node);
        expected.push_back(node);
    }
    while (!expected.empty()) {
        const auto place = static_cast<std::ptrdiff_t>(expected.size() * 3 / 4);
        list.erase(list.begin() + place);
        expected.erase(expected.begin() + place);
        QCOMPARE(list.size(), expected.size());
        QVERIFY(std::equal(list.begin(), list.end(), expected.begin()));
    }
    list.push_back(_nodes[3]);
    list.pop_back();
    QVERIFY(list.empty());
}

void tst_MFNodePtr::pointerOfTheListItselfCanBeInserted()
{
    MFNodePtr list{_nodes[0]};
    for (int i = 0; i < 10; ++i)
        list.insert(list.begin(), list.back());
    QCOMPARE(list.size(), std::size_t(11));
    for (const NodePtr& pointer : list)
        QVERIFY(pointer == _nodes[0]);
}

void tst_MFNodePtr::copyIsAListOfItsOwn()
{
    MFNodePtr list{_nodes[0], _nodes[1], _nodes[2]};
    MFNodePtr copy = list;
    list.erase(list.begin());
    QVERIFY(copy == (MFNodePtr{_nodes[0], _nodes[1], _nodes[2]}));
    copy = MFNodePtr{_nodes[4]};
    QVERIFY(copy == MFNodePtr{_nodes[4]});
    MFNodePtr& itself = copy;
    copy = itself;
    QVERIFY(copy == MFNodePtr{_nodes[4]});
    copy = MFNodePtr();
    QVERIFY(copy.empty());
    QVERIFY(list == (MFNodePtr{_nodes[1], _nodes[2]}));
}

void tst_MFNodePtr::listsAreEqualByTheirPointers()
{
    QVERIFY(MFNodePtr() == MFNodePtr());
    QVERIFY(MFNodePtr{_nodes[0]} != MFNodePtr());
    QVERIFY(MFNodePtr{_nodes[0]} != MFNodePtr{_nodes[1]});
    QVERIFY((MFNodePtr{_nodes[0], _nodes[1]}) != (MFNodePtr{_nodes[1], _nodes[0]}));
}

QTEST_APPLESS_MAIN(tst_MFNodePtr)
#include "tst_MFNodePtr.moc"
