// The tree of the workbench by keys and by the right button: what is marked in it is what is selected.
#include "Author.h"
#include <QMenu>
#include <QorTools.h>

class tst_SceneTree : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { _author.reset(); }

    void arrowKeysSelect();
    void otherKeysLeaveTheSelection();
    void theMenuOfARowIsForThatRow();
    void aClickBelowTheRowsTellsNothing();

private:
    QString selected() const
    {
        const Orvane::Node* const node = _author->window.selection()->node();
        return node ? Orvane::Qt4::fromRuntime(Orvane::Qt4::nodeName(node)) : QString();
    }
    QModelIndex row(int number) const
    {
        const QAbstractItemModel* const model = _author->tree()->model();
        return model->index(number, 0, model->index(0, 0));
    }

    std::unique_ptr<Author> _author;
};

void tst_SceneTree::init()
{
    _author = std::make_unique<Author>();
    QVERIFY(_author->open(QStringLiteral("scene.x3d"), R"(<X3D version='4.0'><Scene>
<Group DEF='First'/><Transform DEF='Second'/><Switch DEF='Third'><Group DEF='Inside'/></Switch></Scene></X3D>)"));
}

void tst_SceneTree::arrowKeysSelect()
{
    _author->select("First");
    _author->key(Qt::Key_Down);
    QCOMPARE(selected(), QStringLiteral("Second"));
    _author->key(Qt::Key_End);
    QCOMPARE(selected(), QStringLiteral("Third"));
    _author->key(Qt::Key_Delete);
    QVERIFY(!_author->find("Third"));
    QVERIFY(_author->find("First"));
}

void tst_SceneTree::otherKeysLeaveTheSelection()
{
    // Where a filter hides the row, another one stands for it.
    _author->select("Inside");
    _author->tree()->setCurrentIndex(row(0));
    _author->key(Qt::Key_Shift);
    QCOMPARE(selected(), QStringLiteral("Inside"));
}

void tst_SceneTree::theMenuOfARowIsForThatRow()
{
    _author->select("First");
    const QPoint place = _author->tree()->visualRect(row(1)).center();
    // The menu takes the release of the button.
    QTest::mousePress(_author->tree()->viewport(), Qt::RightButton, Qt::NoModifier, place);
    QCOMPARE(selected(), QStringLiteral("Second"));
    QTest::mouseRelease(_author->tree()->viewport(), Qt::RightButton, Qt::NoModifier, place);
    QCOMPARE(selected(), QStringLiteral("Second"));
}

void tst_SceneTree::aClickBelowTheRowsTellsNothing()
{
    const QString before = _author->log()->toPlainText();
    _author->select("First");
    QTest::mouseClick(_author->tree()->viewport(), Qt::LeftButton, Qt::NoModifier,
                      _author->tree()->viewport()->rect().bottomLeft() + QPoint(5, -2));
    QCOMPARE(selected(), QStringLiteral("First"));
    QTest::qWait(300); // for the log
    QCOMPARE(_author->log()->toPlainText(), before);
}

QTEST_MAIN(tst_SceneTree)
#include "tst_SceneTree.moc"
