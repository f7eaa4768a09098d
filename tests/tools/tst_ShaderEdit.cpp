// A shader of a running scene, edited in the workbench's panel of code and seen in its view.
#include "CodeDock.h"
#include "WorkbenchWindow.h"
#include <OpenSG/OSGLog.h>
#include <QFile>
#include <QGLWidget>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTextEdit>
#include <QorCodeWidget.h>
#include <QorViewManager.h>
#include <QtTest>

using namespace Orvane::Qt4;

class tst_ShaderEdit : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void appliedTextChangesThePicture();
    void brokenTextKeepsThePicture();
    void appliedFileChangesThePicture();
    void addedFieldReachesTheProgram();

private:
    void open(const QByteArray& url);
    void runFrames();
    QColor color();
    void edit(const QString& text);

    std::unique_ptr<WorkbenchWindow> _window;
    QTemporaryDir _folder;
};

void tst_ShaderEdit::initTestCase()
{
    osg::doInitLog();
    osg::osgLogP->setLogLevel(osg::LOG_FATAL, true);
}

void tst_ShaderEdit::init()
{
    _window = std::make_unique<WorkbenchWindow>(false);
    _window->resize(1000, 700);
    _window->show();
    QVERIFY(QTest::qWaitForWindowExposed(_window.get()));
}

void tst_ShaderEdit::cleanup()
{
    _window.reset();
}

/// Opens a scene with a large box, and selects the shader that draws it.
void tst_ShaderEdit::open(const QByteArray& url)
{
    QFile file(_folder.filePath(QStringLiteral("scene.x3d")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("<X3D version='4.0'><Scene><Shape><Appearance><ComposedShader DEF='S' language='GLSL'>"
               "<ShaderPart DEF='F' type='FRAGMENT' url='\"" +
               url + "\"'/></ComposedShader></Appearance><Box size='6 6 2'/></Shape></Scene></X3D>");
    file.close();
    QVERIFY(_window->open(file.fileName()));
    runFrames();
    QVERIFY(_window->showNode(QStringLiteral("F")));
}

void tst_ShaderEdit::runFrames()
{
    for (int i = 0; i < 3; ++i) {
        _window->viewManager()->runFrame();
        QCoreApplication::processEvents();
    }
}

QColor tst_ShaderEdit::color()
{
    runFrames();
    const QImage image = _window->findChild<QGLWidget*>()->grabFrameBuffer();
    return image.pixelColor(image.rect().center());
}

/// Replaces the text in the panel and presses Apply.
void tst_ShaderEdit::edit(const QString& text)
{
    QorCodeWidget* widget = _window->findChild<CodeDock*>()->codeWidget();
    QVERIFY(widget->isEnabled());
    widget->findChildren<QTextEdit*>().last()->setPlainText(text);
    for (QPushButton* button : widget->findChildren<QPushButton*>()) {
        if (button->text() == QLatin1String("Apply"))
            button->click();
    }
}

void tst_ShaderEdit::appliedTextChangesThePicture()
{
    open("void main() { gl_FragColor = vec4(1.0, 0.0, 0.0, 1.0); }");
    QCOMPARE(color(), QColor(255, 0, 0));
    edit(QStringLiteral("void main()\n{\n    gl_FragColor = vec4(0.0, 1.0, 0.0, 1.0);\n}\n"));
    QCOMPARE(color(), QColor(0, 255, 0));
}

void tst_ShaderEdit::brokenTextKeepsThePicture()
{
    open("void main() { gl_FragColor = vec4(1.0, 0.0, 0.0, 1.0); }");
    QCOMPARE(color(), QColor(255, 0, 0));
    edit(QStringLiteral("void main()\n{\n    gl_FragColor = nonsense;\n}\n"));
    QCOMPARE(color(), QColor(255, 0, 0));
    edit(QStringLiteral("void main()\n{\n    gl_FragColor = vec4(0.0, 0.0, 1.0, 1.0);\n}\n"));
    QCOMPARE(color(), QColor(0, 0, 255));
}

void tst_ShaderEdit::appliedFileChangesThePicture()
{
    const QString name = _folder.filePath(QStringLiteral("part.frag"));
    QFile file(name);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("void main() { gl_FragColor = vec4(1.0, 0.0, 0.0, 1.0); }\n");
    file.close();
    open("file:" + name.toUtf8());
    QCOMPARE(color(), QColor(255, 0, 0));
    edit(QStringLiteral("void main() { gl_FragColor = vec4(0.0, 1.0, 0.0, 1.0); }\n"));
    QCOMPARE(color(), QColor(0, 255, 0));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QVERIFY(file.readAll().contains("vec4(0.0, 1.0, 0.0, 1.0)"));
}

void tst_ShaderEdit::addedFieldReachesTheProgram()
{
    open("uniform vec3 tint; void main() { gl_FragColor = vec4(tint, 1.0); }");
    QCOMPARE(color(), QColor(0, 0, 0));
    QorCodeWidget* widget = _window->findChild<CodeDock*>()->codeWidget();
    emit widget->wantsAddField(widget->fieldNode(), QStringLiteral("SFColor"), QStringLiteral("Field"),
                               QStringLiteral("tint"), QStringLiteral("1 0 1"), QString(), QString());
    QCOMPARE(color(), QColor(255, 0, 255));
}

QTEST_MAIN(tst_ShaderEdit)
#include "tst_ShaderEdit.moc"
