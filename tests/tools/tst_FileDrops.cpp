// Files and words that are dropped on a text: files are opened as anywhere on the window, words are text.
#include "Author.h"
#include "CodeDock.h"
#include <QDropEvent>
#include <QMimeData>
#include <QUrl>
#include <QorCodeWidget.h>

class tst_FileDrops : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { _author.reset(); }

    void aFileOnCodeIsOpened();
    void aFileOnAFloatingPanelIsOpened();
    void wordsOnCodeAreText();

private:
    CodeDock* dock() const { return _author->window.findChild<CodeDock*>(); }
    QTextEdit* edit() const { return dock()->codeWidget()->findChild<QTextEdit*>(QStringLiteral("code")); }
    /// Drags data over a widget and drops it. False when it is not taken.
    static bool drop(QWidget* widget, const QMimeData& data);

    std::unique_ptr<Author> _author;
    QString _other;
};

void tst_FileDrops::init()
{
    _author = std::make_unique<Author>();
    _other = _author->write(QStringLiteral("other.x3d"), "<X3D version='4.0'><Scene/></X3D>");
    QVERIFY(_author->open(QStringLiteral("scene.x3d"),
                          "<X3D version='4.0' profile='Full'><Scene><Script DEF='S' "
                          "url='\"ecmascript: function initialize() {}\"'/></Scene></X3D>"));
    QVERIFY(_author->select("S"));
}

bool tst_FileDrops::drop(QWidget* widget, const QMimeData& data)
{
    const QPoint place = widget->rect().center();
    QDragEnterEvent enter(place, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(widget, &enter);
    QDragMoveEvent move(place, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(widget, &move);
    QDropEvent drop(place, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(widget, &drop);
    return enter.isAccepted() && drop.isAccepted();
}

void tst_FileDrops::aFileOnCodeIsOpened()
{
    const QString code = edit()->toPlainText();
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(_other)});
    // Some programs say the name in words as well.
    data.setText(_other);
    QVERIFY(drop(edit()->viewport(), data));
    QCOMPARE(edit()->toPlainText(), code);
    QTRY_COMPARE(_author->window.document()->file(), _other);
}

void tst_FileDrops::aFileOnAFloatingPanelIsOpened()
{
    dock()->setFloating(true);
    QVERIFY(QTest::qWaitForWindowExposed(dock()));
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(_other)});
    QVERIFY(drop(dock()->widget(), data));
    QTRY_COMPARE(_author->window.document()->file(), _other);
}

void tst_FileDrops::wordsOnCodeAreText()
{
    QMimeData data;
    data.setText(QStringLiteral("dropped"));
    QVERIFY(drop(edit()->viewport(), data));
    QVERIFY(edit()->toPlainText().contains(QStringLiteral("dropped")));
    QVERIFY(_author->window.isWindowModified());
    QVERIFY(_author->window.document()->file() != _other);
}

QTEST_MAIN(tst_FileDrops)
#include "tst_FileDrops.moc"
