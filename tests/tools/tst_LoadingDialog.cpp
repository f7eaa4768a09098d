// Long loads in the workbench: they are shown, can be cancelled, and the window answers meanwhile.
#include "Author.h"
#include <QProgressDialog>
#include <QPushButton>

class tst_LoadingDialog : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { _author.reset(); }

    void quickLoadsShowNothing();
    void longLoadsAreShownAndTheWindowIsPainted();
    void cancelLeavesTheSceneAsItWas_data();
    void cancelLeavesTheSceneAsItWas();
    void nothingElseIsOpenedMeanwhile();
    void theSceneRunsOnMeanwhile();

private:
    /// A scene that takes a while.
    static QByteArray longScene(const QByteArray& node = "<Transform><Shape><Box/></Shape></Transform>")
    {
        return "<X3D version='4.0'><Scene>" + (node + "\n").repeated(5000) + "</Scene></X3D>";
    }
    /// Does something as soon as the dialog is there; again and again with \a often.
    template <class Work>
    void inDialog(Work work, bool often = false)
    {
        auto* const timer = new QTimer(&_author->window);
        connect(timer, &QTimer::timeout, timer, [this, timer, work, often] {
            auto* const dialog = _author->window.findChild<QProgressDialog*>();
            if (!dialog)
                return;
            if (!often)
                timer->deleteLater();
            work(dialog);
        });
        timer->start(0);
    }

    std::unique_ptr<Author> _author;
};

static const char scene[] = "<X3D version='4.0'><Scene><Transform DEF='T' translation='1 2 3'/>"
                            "<TimeSensor DEF='Clock' loop='true'/></Scene></X3D>";

void tst_LoadingDialog::init()
{
    _author = std::make_unique<Author>();
    QVERIFY(_author->open(QStringLiteral("scene.x3d"), scene));
    _author->window.document()->setPatience(0);
}

void tst_LoadingDialog::quickLoadsShowNothing()
{
    bool isShown = false;
    inDialog([&](QProgressDialog*) { isShown = true; });
    _author->window.document()->setPatience(60000);
    QVERIFY(_author->open(QStringLiteral("long.x3d"), longScene()));
    QVERIFY(!isShown);
}

void tst_LoadingDialog::longLoadsAreShownAndTheWindowIsPainted()
{
    class Painted : public QObject
    {
    public:
        int count = 0;
        bool eventFilter(QObject*, QEvent* event) override
        {
            count += event->type() == QEvent::Paint ? 1 : 0;
            return false;
        }
    };
    Painted painted;
    QWidget* const bar = _author->window.statusBar();
    bar->installEventFilter(&painted);
    QVector<int> values;
    QString label;
    inDialog(
        [&](QProgressDialog* dialog) {
            QVERIFY(dialog->isVisible());
            QVERIFY(dialog->isModal());
            values << dialog->value();
            label = dialog->labelText();
            bar->update();
        },
        true);
    const int before = painted.count;
    QVERIFY(_author->open(QStringLiteral("long.x3d"), longScene()));
    QVERIFY2(values.size() > 2, qPrintable(QString::number(values.size())));
    QVERIFY(std::is_sorted(values.begin(), values.end()));
    QVERIFY(values.last() > values.first());
    QVERIFY2(label.contains(QStringLiteral("long.x3d")) && label.contains(QStringLiteral("nodes")),
             qPrintable(label));
    QVERIFY(painted.count > before + 1);
    QVERIFY(!_author->window.findChild<QProgressDialog*>());
    QVERIFY(!QApplication::overrideCursor());
}

void tst_LoadingDialog::cancelLeavesTheSceneAsItWas_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("XML") << QStringLiteral("long.x3d") << longScene();
    QTest::newRow("classic") << QStringLiteral("long.x3dv")
                             << "#X3D V3.3 utf8\n" +
                                    QByteArray("Group { children Shape {} }\n").repeated(10000);
    QTest::newRow("many files") << QStringLiteral("many.x3d") << longScene("<Inline url='\"part.x3d\"'/>");
}

void tst_LoadingDialog::cancelLeavesTheSceneAsItWas()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, text);
    _author->write(QStringLiteral("part.x3d"),
                   "<X3D version='4.0'><Scene><Group><Shape/></Group></Scene></X3D>");
    _author->select("T");
    _author->field("T", "translation")->setValueByStr(0.0, "4 5 6");
    _author->run();
    const QByteArray before = _author->saved();
    Orvane::Node* const selected = _author->window.selection()->node();
    inDialog([](QProgressDialog* dialog) {
        QTest::mouseClick(dialog->findChild<QPushButton*>(), Qt::LeftButton);
    });
    QVERIFY(!_author->open(name, text));
    QCOMPARE(_author->saved(), before);
    QCOMPARE(_author->window.selection()->node(), selected);
    QCOMPARE(_author->window.document()->file(), _author->path(QStringLiteral("scene.x3d")));
    // It is no fault of the file.
    QVERIFY(!_author->window.findChild<QMessageBox*>());
    QVERIFY2(_author->told().contains(QStringLiteral("cancelled")), qPrintable(_author->told()));
    QVERIFY(!_author->log()->toPlainText().contains(QStringLiteral("could not be loaded")));
    // And can be read to its end.
    QVERIFY(_author->open(name, text));
}

void tst_LoadingDialog::nothingElseIsOpenedMeanwhile()
{
    const QString other = _author->write(QStringLiteral("other.x3d"), "<X3D version='4.0'><Scene/></X3D>");
    bool isTried = false;
    inDialog([&](QProgressDialog*) {
        isTried = true;
        QVERIFY(!_author->window.document()->openByUser(other));
        QVERIFY(!_author->window.document()->save());
        QVERIFY(!_author->window.close());
        QVERIFY(_author->window.isVisible());
    });
    QVERIFY(_author->open(QStringLiteral("long.x3d"), longScene()));
    QVERIFY(isTried);
    QCOMPARE(_author->window.document()->file(), _author->path(QStringLiteral("long.x3d")));
}

void tst_LoadingDialog::theSceneRunsOnMeanwhile()
{
    _author->window.viewManager()->setTriggerMode(Orvane::Qt4::QorViewManager::TimerTrigger);
    QSet<QByteArray> times;
    inDialog(
        [&](QProgressDialog*) {
            times << QByteArray::fromStdString(_author->value("Clock", "time"));
            // Nodes may come and go.
            Orvane::Field* const name = _author->field("T", "translation");
            name->setValueByStr(0.0, "1 1 1");
        },
        true);
    QVERIFY(_author->open(QStringLiteral("long.x3d"), longScene()));
    QVERIFY2(times.size() > 1, qPrintable(QString::number(times.size())));
    QVERIFY(!_author->find("Clock"));
}

QTEST_MAIN(tst_LoadingDialog)
#include "tst_LoadingDialog.moc"
