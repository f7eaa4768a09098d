// The box of node types: what a line of text chooses, and why a type may not stand at a place.
#include "AddNodeDialog.h"
#include "Author.h"
#include <Orvane/NodeLink.h>
#include <Orvane/NodeType.h>
#include <QAbstractItemModel>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QListView>

class tst_AddNode : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup() { _dialog.reset(); }
    void cleanupTestCase() { _author.reset(); }

    void namesAloneAreChosen_data();
    void namesAloneAreChosen();
    void whatMayNotStandHereSaysWhy_data();
    void whatMayNotStandHereSaysWhy();
    void enterOnNothingAddsNothing();
    void theArrowsPassWhatMayNotStandHere();
    void withoutTheSwitchPlacesAboveCount();
    void aBadNameKeepsTheBoxOpen();

private:
    void open(const char* selected)
    {
        _dialog = std::make_unique<AddNodeDialog>(
            wayTo(*_author->find(selected)), [](const QString&) { return QString(); }, nullptr);
    }
    static std::vector<Orvane::Node*> wayTo(Orvane::Node& node)
    {
        std::list<Orvane::NodeLink*> links;
        Orvane::NodePath(&node).nodeLinks(links);
        std::vector<Orvane::Node*> way{&node};
        for (const Orvane::NodeLink* const link : links)
            way.insert(way.begin(), link->parent());
        return way;
    }
    void type(const QString& text) const
    {
        search()->clear();
        QTest::keyClicks(search(), text);
    }
    QLineEdit* search() const { return _dialog->findChild<QLineEdit*>(QStringLiteral("search")); }
    QString description() const { return _dialog->findChild<QLabel*>(QStringLiteral("description"))->text(); }
    /// The row of a type; not valid when it is not shown.
    QModelIndex row(const QString& type) const
    {
        const auto* const list = _dialog->findChild<QListView*>(QStringLiteral("types"));
        for (int i = 0; i < list->model()->rowCount(); ++i)
            if (list->model()->index(i, 0).data(Qt::UserRole).toString() == type)
                return list->model()->index(i, 0);
        return {};
    }

    std::unique_ptr<Author> _author;
    std::unique_ptr<AddNodeDialog> _dialog;
};

void tst_AddNode::initTestCase()
{
    _author = std::make_unique<Author>();
    QVERIFY(_author->open(QStringLiteral("scene.x3d"),
                          "<X3D version='4.0' profile='Full'><Scene><Group DEF='G'><Shape DEF='S'>"
                          "<Appearance DEF='A'/><Box DEF='B'/></Shape></Group></Scene></X3D>"));
}

void tst_AddNode::init()
{
    open("G");
}

void tst_AddNode::namesAloneAreChosen_data()
{
    QTest::addColumn<QByteArray>("below");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("chosen");
    const auto row = [](const char* below, const char* text, const char* chosen) {
        QTest::addRow("%s below %s", text, below)
            << QByteArray(below) << QString::fromLatin1(text) << QString::fromLatin1(chosen);
    };
    row("G", "Box", "");
    row("G", "sphere", "");
    row("G", "spher", "SphereSensor");
    row("G", "transform", "Transform");
    row("G", "viewp", "Viewpoint");
    row("G", "clip", "ClipPlane");
    row("S", "box", "Box");
    row("S", "Sphere", "Sphere");
    row("A", "Material", "Material");
    row("G", "rotates", "");
    row("G", "nonsense", "");
}

void tst_AddNode::namesAloneAreChosen()
{
    QFETCH(QByteArray, below);
    QFETCH(QString, text);
    open(below.constData());
    type(text);
    QTEST(_dialog->typeName(), "chosen");
}

void tst_AddNode::whatMayNotStandHereSaysWhy_data()
{
    QTest::addColumn<QByteArray>("below");
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("need");
    const auto row = [](const char* below, const char* type, const char* need) {
        QTest::newRow(type) << QByteArray(below) << QString::fromLatin1(type) << QString::fromLatin1(need);
    };
    row("G", "Box", "needs a Shape");
    row("G", "Appearance", "needs a Shape");
    row("G", "Material", "needs an Appearance");
    row("G", "Normal", "needs a");
    row("B", "Transform", "needs a grouping node such as Group");
}

void tst_AddNode::whatMayNotStandHereSaysWhy()
{
    QFETCH(QByteArray, below);
    QFETCH(QString, type);
    QFETCH(QString, need);
    open(below.constData());
    this->type(type);
    const QModelIndex found = row(type);
    QVERIFY(found.isValid());
    QVERIFY(!(found.flags() & Qt::ItemIsEnabled));
    QVERIFY2(found.data().toString().contains(need), qPrintable(found.data().toString()));
    QVERIFY2(description().contains(need), qPrintable(description()));
}

void tst_AddNode::enterOnNothingAddsNothing()
{
    _dialog->show();
    QVERIFY(QTest::qWaitForWindowExposed(_dialog.get()));
    type(QStringLiteral("Box"));
    QTest::keyClick(search(), Qt::Key_Return);
    QVERIFY(_dialog->isVisible());
    QCOMPARE(_dialog->result(), int(QDialog::Rejected));
    // Nor does a double click on the row that tells why.
    auto* const list = _dialog->findChild<QListView*>(QStringLiteral("types"));
    const QPoint place = list->visualRect(row(QStringLiteral("Box"))).center();
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, place);
    QTest::mouseDClick(list->viewport(), Qt::LeftButton, {}, place);
    QVERIFY(_dialog->isVisible());
    type(QStringLiteral("Transform"));
    QTest::keyClick(search(), Qt::Key_Return);
    QCOMPARE(_dialog->result(), int(QDialog::Accepted));
}

void tst_AddNode::theArrowsPassWhatMayNotStandHere()
{
    type(QStringLiteral("sphere"));
    QTest::keyClick(search(), Qt::Key_Down);
    QCOMPARE(_dialog->typeName(), QStringLiteral("SphereSensor"));
    QTest::keyClick(search(), Qt::Key_Up);
    QCOMPARE(_dialog->typeName(), QStringLiteral("SphereSensor"));
}

void tst_AddNode::withoutTheSwitchPlacesAboveCount()
{
    open("B");
    type(QStringLiteral("Transform"));
    QCOMPARE(_dialog->typeName(), QString());
    _dialog->findChild<QCheckBox*>(QStringLiteral("fittingOnly"))->click();
    QCOMPARE(_dialog->typeName(), QStringLiteral("Transform"));
    // There is no place for it at any node on the way up.
    type(QStringLiteral("Coordinate"));
    QCOMPARE(_dialog->typeName(), QString());
    QVERIFY(!(row(QStringLiteral("Coordinate")).flags() & Qt::ItemIsEnabled));
}

void tst_AddNode::aBadNameKeepsTheBoxOpen()
{
    _author->select("G");
    QString fault;
    QTimer::singleShot(50, qApp, [&fault] {
        auto* const dialog = qobject_cast<AddNodeDialog*>(QApplication::activeModalWidget());
        QVERIFY(dialog);
        auto* const name = dialog->findChild<QLineEdit*>(QStringLiteral("name"));
        dialog->findChild<QLineEdit*>(QStringLiteral("search"))->setText(QStringLiteral("Transform"));
        name->setText(QStringLiteral("two words"));
        QTest::keyClick(name, Qt::Key_Return);
        QVERIFY(dialog->isVisible());
        QCOMPARE(name->text(), QStringLiteral("two words"));
        fault = dialog->findChild<QLabel*>(QStringLiteral("fault"))->text();
        name->setText(QStringLiteral("Two"));
        QTest::keyClick(name, Qt::Key_Return);
    });
    _author->key(Qt::Key_A, Qt::ControlModifier | Qt::ShiftModifier);
    QVERIFY2(fault.contains(QStringLiteral("two words")), qPrintable(fault));
    QVERIFY(_author->find("Two"));
    _author->steps().undo();
}

QTEST_MAIN(tst_AddNode)
#include "tst_AddNode.moc"
