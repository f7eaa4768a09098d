#include "QorNodeItem.h"
#include "QorScenegraphItemDelegate.h"
#include "QorScenegraphModel.h"
#include "TinyTree.h"
#include <QtGui/QPainter>
#include <QtTest>
#include <QtWidgets/QTreeView>

using namespace Orvane;
using namespace Orvane::Qt4;

namespace {

/// Notes the font of each painted text.
class Delegate : public QorScenegraphItemDelegate
{
public:
    Delegate()
        : QorScenegraphItemDelegate(nullptr)
    {
    }
    mutable QStringList painted;

protected:
    void drawDisplay(QPainter*, const QStyleOptionViewItem& option, const QRect&,
                     const QString& text) const override
    {
        painted << (option.font.style() == QFont::StyleItalic ? QLatin1Char('/') + text : text);
    }
};

class Model : public QorScenegraphModel
{
public:
    explicit Model(Node* rootNode)
        : QorScenegraphModel(rootNode, nullptr)
    {
    }
    QModelIndex emptyIndex() const { return createIndex(0, 0, nullptr); }
};

} // namespace

class tst_QorScenegraphItemDelegate : public QObject
{
    Q_OBJECT

private slots:
    void rowsOfRunningNodesArePainted();
    void sharedNodesAreItalicInEveryColumn();
    void nodesThatDoNotRunStayBlank_data();
    void nodesThatDoNotRunStayBlank();
    void placeholdersStayBlank();
    void rowsOfDeadNodesStayBlank();
    void blankMeansNoPixel();
    void nothingIsEverEdited();

private:
    QStringList paint(const QModelIndex& index)
    {
        QImage image(200, 20, QImage::Format_RGB32);
        QPainter painter(&image);
        QStyleOptionViewItem option;
        option.rect = image.rect();
        const Delegate delegate;
        delegate.paint(&painter, option, index);
        return delegate.painted;
    }
};

void tst_QorScenegraphItemDelegate::rowsOfRunningNodesArePainted()
{
    const TinyTree tree;
    const Model model(&tree.root());
    QCOMPARE(paint(model.index(0, 0)), QStringList{QStringLiteral("Scene")});
    QCOMPARE(paint(model.index(0, 1)), QStringList{QStringLiteral("root")});
}

void tst_QorScenegraphItemDelegate::sharedNodesAreItalicInEveryColumn()
{
    const TinyTree tree;
    Node& shared = TinyTree::add(tree.root(), "Group", "shared");
    TinyTree::add(tree.root(), "Group", "single");
    const Model model(&tree.root());
    model.rootItem()->updateCache(false);
    const QModelIndex root = model.index(0, 0);
    QCOMPARE(paint(model.index(0, 1, root)), QStringList{QStringLiteral("shared")});
    Tiny::link(&tree.root(), "single", &shared);
    QCOMPARE(paint(model.index(0, 0, root)), QStringList{QStringLiteral("/Group")});
    QCOMPARE(paint(model.index(0, 1, root)), QStringList{QStringLiteral("/shared")});
    QCOMPARE(paint(model.index(1, 1, root)), QStringList{QStringLiteral("single")});
}

void tst_QorScenegraphItemDelegate::nodesThatDoNotRunStayBlank_data()
{
    QTest::addColumn<int>("state");
    for (const int state : {CREATED_NS, LOADED_NS, SETUP_NS, DYING_NS})
        QTest::newRow(QByteArray::number(state).constData()) << state;
}

void tst_QorScenegraphItemDelegate::nodesThatDoNotRunStayBlank()
{
    QFETCH(int, state);
    const TinyTree tree;
    const Model model(&tree.root());
    Tiny::setState(&tree.root(), static_cast<NodeState>(state));
    QVERIFY(paint(model.index(0, 0)).isEmpty());
}

void tst_QorScenegraphItemDelegate::placeholdersStayBlank()
{
    const TinyTree tree;
    TinyTree::add(tree.root(), "Group");
    const Model model(&tree.root());
    const QModelIndex placeholder = model.index(0, 0, model.index(0, 0));
    const std::unique_ptr<QorNodeItem> item(static_cast<QorNodeItem*>(placeholder.internalPointer()));
    QVERIFY(paint(placeholder).isEmpty());
    QVERIFY(paint(model.emptyIndex()).isEmpty());
    QVERIFY(paint(QModelIndex()).isEmpty());
}

void tst_QorScenegraphItemDelegate::rowsOfDeadNodesStayBlank()
{
    TinyTree tree;
    const Model model(&tree.root());
    const QModelIndex root = model.index(0, 0);
    tree.end();
    QVERIFY(paint(root).isEmpty());
}

void tst_QorScenegraphItemDelegate::blankMeansNoPixel()
{
    const TinyTree tree;
    const Model model(&tree.root());
    const QorScenegraphItemDelegate delegate(nullptr);
    QStyleOptionViewItem option;
    option.rect = QRect(0, 0, 200, 20);
    option.state = QStyle::State_Enabled | QStyle::State_Selected | QStyle::State_HasFocus;
    const auto picture = [&] {
        QImage image(200, 20, QImage::Format_RGB32);
        image.fill(Qt::cyan);
        QPainter painter(&image);
        delegate.paint(&painter, option, model.index(0, 0));
        return image;
    };
    QImage blank(200, 20, QImage::Format_RGB32);
    blank.fill(Qt::cyan);
    QVERIFY(picture() != blank);
    Tiny::setState(&tree.root(), LOADED_NS);
    QCOMPARE(picture(), blank);
}

void tst_QorScenegraphItemDelegate::nothingIsEverEdited()
{
    const TinyTree tree;
    Model model(&tree.root());
    QTreeView view;
    QObject owner;
    auto* delegate = new QorScenegraphItemDelegate(&owner);
    QCOMPARE(delegate->parent(), &owner);
    view.setModel(&model);
    view.setItemDelegate(delegate);
    QVERIFY(!delegate->createEditor(&view, QStyleOptionViewItem(), model.index(0, 1)));
    QWidget editor;
    delegate->setEditorData(&editor, model.index(0, 1));
    delegate->setModelData(&editor, &model, model.index(0, 1));
    QCOMPARE(model.index(0, 1).data().toString(), QStringLiteral("root"));
    view.setEditTriggers(QAbstractItemView::AllEditTriggers);
    view.edit(model.index(0, 1));
    QVERIFY(view.viewport()->children().isEmpty());
    QCOMPARE(QorScenegraphItemDelegate::staticMetaObject.methodCount(),
             QItemDelegate::staticMetaObject.methodCount());
}

QTEST_MAIN(tst_QorScenegraphItemDelegate)
#include "tst_QorScenegraphItemDelegate.moc"
