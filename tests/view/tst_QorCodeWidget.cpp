#include "FieldRows.h"
#include "LogCapture.h"
#include "QorCodeWidget.h"
#include "QorNewFieldDialog.h"
#include "QorNodeEditor.h"
#include "QorNodeEditorTreeView.h"
#include "QorNodeItemDelegate.h"
#include "QorSyntaxHighlighter.h"
#include "QorTools.h"
#include <Orvane/MFString.h>
#include <Orvane/NodeType.h>
#include <Orvane/Scene.h>
#include <QtCore/QTemporaryDir>
#include <QtGui/QTextBlock>
#include <QtGui/QTextLayout>
#include <QtTest>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QSplitter>
#include <QtWidgets/QTextEdit>
#include <sys/stat.h>

using namespace Orvane;
using namespace Orvane::Qt4;

namespace {

const char Inlined[] = "<b>Code [inlined]:</b>";
const char Empty[] = "<b>Code [empty]:</b>";
const char Local[] = "<b>Code [local, external]:</b>";
const char External[] = "<b>Code [external]:</b>";

/// A node with a field of strings.
std::unique_ptr<Node> makeCodeNode(const std::vector<std::string>& values, const char* field = "url",
                                   const char* name = nullptr, Context* context = nullptr)
{
    std::unique_ptr<Node> node(
        Tiny::makeNode(Tiny::makeType("Script", {part(field, MFSTRING_DT)}), name, context));
    auto* url = dynamic_cast<MFString*>(node->findField(field, Node::EXACT_FSO));
    for (const std::string& value : values)
        url->addValue(value);
    Tiny::reset();
    return node;
}

std::vector<std::string> valuesOf(const Node& node)
{
    const auto* field = dynamic_cast<MFString*>(node.findField(0U));
    std::vector<std::string> values;
    for (unsigned int i = 0; i < field->size(); ++i)
        values.push_back((*field)[static_cast<int>(i)]);
    return values;
}

/// The widget, with its parts as they stand in the layout.
struct Shown
{
    QSplitter* split() const { return widget->findChild<QSplitter*>(QStringLiteral("split")); }
    QLayout* fieldPane() const { return split()->widget(0)->layout(); }
    QLayout* codePane() const { return split()->widget(1)->layout(); }
    template <class T>
    static T* at(QLayout* layout, int i)
    {
        return qobject_cast<T*>(layout->itemAt(i)->widget());
    }
    QLabel* nodeLabel() const { return at<QLabel>(fieldPane(), 0); }
    QHBoxLayout* fields() const { return qobject_cast<QHBoxLayout*>(fieldPane()->itemAt(2)->layout()); }
    QVBoxLayout* buttons() const { return qobject_cast<QVBoxLayout*>(fields()->itemAt(1)->layout()); }
    QorNodeEditor* fieldEditor() const { return at<QorNodeEditor>(fields(), 0); }
    QPushButton* add() const { return at<QPushButton>(buttons(), 0); }
    QPushButton* remove() const { return at<QPushButton>(buttons(), 1); }
    QLabel* codeLabel() const { return at<QLabel>(codePane(), 0); }
    QTextEdit* edit() const { return at<QTextEdit>(codePane(), 1); }
    QPushButton* apply() const { return at<QPushButton>(codePane(), 2); }
    QString code() const { return edit()->toPlainText(); }

    /// From the top row on, which is the last field.
    QStringList fieldNames() const
    {
        QStringList names;
        const QAbstractItemModel* model = fieldEditor()->treeView()->model();
        for (int row = 0; model && row < model->rowCount(); ++row)
            names << model->index(row, 0).data().toString();
        return names;
    }
    void selectField(int row, int column) const
    {
        QTreeView* tree = fieldEditor()->treeView();
        tree->setCurrentIndex(tree->model()->index(row, column));
    }

    std::unique_ptr<QorCodeWidget> widget = std::make_unique<QorCodeWidget>();
};

/// Runs in the dialog as soon as it is open.
template <class Work>
void inDialog(const Work& work)
{
    QTimer::singleShot(0, qApp, [work] {
        auto* dialog = qobject_cast<QorNewFieldDialog*>(QApplication::activeModalWidget());
        QVERIFY(dialog);
        work(dialog);
    });
}

void press(QorNewFieldDialog* dialog, const char* text)
{
    for (QPushButton* button : dialog->findChildren<QPushButton*>()) {
        if (button->text() == QLatin1String(text))
            button->click();
    }
}

QLineEdit* nameEdit(QorNewFieldDialog* dialog)
{
    return dialog->findChildren<QLineEdit*>().first();
}

} // namespace

class tst_QorCodeWidget : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void elementsAtFirst();
    void languageGoesToTheHighlighter();
    void urlFieldOfANode_data();
    void urlFieldOfANode();
    void urlFieldOfNullIsLogged();
    void emptyScript();
    void localFileByScheme_data();
    void localFileByScheme();
    void externalScriptIsOneOnDisk_data();
    void externalScriptIsOneOnDisk();
    void relativeFileUrlCountsFromTheScene();
    void nullEmptiesAndDisables();
    void shownNodeIsNotReloaded();
    void labelNamesTheNode();
    void nodeWithoutUrlKeepsTheText();
    void emptyFieldKeepsTheText();
    void inlinedCodeIsShownWithoutIndent();
    void indentIsRemoved_data();
    void indentIsRemoved();
    void codeReadsLeftToRight();
    void shaderUrlIsShown();
    void localFileIsShown_data();
    void localFileIsShown();
    void unreadableFileKeepsTheText_data();
    void unreadableFileKeepsTheText();
    void pathWithoutSchemeIsNotRead();
    void applyWritesTheFirstValue();
    void applyAppendsToAnEmptyField();
    void applyWritesTheFile();
    void applyToAFileThatCannotBeWritten();
    void applyAfterALocalFileWritesThatFile();
    void applyWithoutNodeDoesNothing();
    void applyIsRefusedByNoCharacter();
    void modifiedUntilApplied();
    void deadCodeNodeCountsAsNone();
    void fieldNodeIsSetApart();
    void fieldListHasFourColumns();
    void fieldListIsReadAnew();
    void removeAsksForTheCurrentCell();
    void removeWithoutCurrentCellAsksNothing();
    void removeAfterANodeButtonBringsTheListBack();
    void removeOfADeadNodeAsksNothing();
    void removeMayEndTheWidget();
    void dialogAsksTheHost();
    void rejectedDialogChangesNothing();
    void dialogMayEndTheWidget();
    void hugeLineIsShownAndApplied();
    void defaultDelegateGoesWithTheWidget();

private:
    QString path(const char* name) const { return _dir->filePath(QString::fromUtf8(name)); }
    std::string write(const char* name, const QByteArray& text) const;
    static QByteArray read(const QString& path);

    std::unique_ptr<QTemporaryDir> _dir;
};

void tst_QorCodeWidget::init()
{
    _dir = std::make_unique<QTemporaryDir>();
    QVERIFY(_dir->isValid());
}

void tst_QorCodeWidget::cleanup()
{
    _dir.reset();
}

/// Writes a file, and gives its address.
std::string tst_QorCodeWidget::write(const char* name, const QByteArray& text) const
{
    QFile file(path(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
        qFatal("cannot write");
    return QUrl::fromLocalFile(path(name)).toEncoded().toStdString();
}

QByteArray tst_QorCodeWidget::read(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void tst_QorCodeWidget::elementsAtFirst()
{
    const Shown shown;
    QCOMPARE(shown.widget->objectName(), QStringLiteral("QorCodeWidget"));
    QVERIFY(shown.widget->isEnabled());
    QVERIFY(!shown.widget->codeNode());
    QVERIFY(!shown.widget->fieldNode());
    QCOMPARE(shown.widget->language(), QorCodeWidget::LANGUAGE_NONE);

    const auto* layout = qobject_cast<QVBoxLayout*>(shown.widget->layout());
    QVERIFY(layout);
    QCOMPARE(layout->contentsMargins(), QMargins(2, 2, 2, 2));
    QCOMPARE(layout->spacing(), 2);
    QCOMPARE(layout->count(), 1);
    QCOMPARE(layout->itemAt(0)->widget(), shown.split());
    QCOMPARE(shown.split()->orientation(), Qt::Vertical);
    QCOMPARE(shown.split()->count(), 2);

    for (QLayout* pane : {shown.fieldPane(), shown.codePane()}) {
        QVERIFY(qobject_cast<QVBoxLayout*>(pane));
        QCOMPARE(pane->contentsMargins(), QMargins(0, 0, 0, 0));
        QCOMPARE(pane->spacing(), 0);
        QCOMPARE(pane->count(), 3);
    }
    QCOMPARE(shown.nodeLabel()->text(), QStringLiteral("<b>Code node:</b> "));
    QCOMPARE(Shown::at<QLabel>(shown.fieldPane(), 1)->text(), QStringLiteral("<b>Fields:</b> "));
    QCOMPARE(shown.fields()->count(), 2);
    QCOMPARE(shown.fields()->stretch(0), 10);
    QCOMPARE(shown.fieldEditor()->guiElementFilter(), QorNodeEditor::NODE_TYPE_GE);
    QCOMPARE(shown.buttons()->count(), 3);
    QCOMPARE(shown.buttons()->stretch(2), 1);
    QCOMPARE(shown.add()->text(), QStringLiteral("+"));
    QCOMPARE(shown.remove()->text(), QStringLiteral("-"));
    for (const QPushButton* button : {shown.add(), shown.remove()}) {
        QCOMPARE(button->minimumSize(), QSize(24, 24));
        QCOMPARE(button->maximumSize(), QSize(24, 24));
    }
    QCOMPARE(shown.codeLabel()->text(), QStringLiteral("<b>Code:</b> "));
    QCOMPARE(qobject_cast<QVBoxLayout*>(shown.codePane())->stretch(1), 10);
    QVERIFY(shown.code().isEmpty());
    QCOMPARE(shown.apply()->text(), QStringLiteral("Apply"));
}

void tst_QorCodeWidget::languageGoesToTheHighlighter()
{
    const Shown shown;
    const auto* highlighter = shown.edit()->document()->findChild<QorSyntaxHighlighter*>();
    if (!highlighter)
        highlighter = shown.edit()->findChild<QorSyntaxHighlighter*>();
    QVERIFY(highlighter);
    QCOMPARE(highlighter->document(), shown.edit()->document());
    shown.widget->setCode(QStringLiteral("if"), false);
    QCoreApplication::processEvents();
    const auto formats = [&] { return shown.edit()->document()->begin().layout()->formats(); };
    QVERIFY(formats().isEmpty());
    shown.widget->setLanguage(QorCodeWidget::LANGUAGE_ECMA);
    QCOMPARE(shown.widget->language(), QorCodeWidget::LANGUAGE_ECMA);
    QCOMPARE(highlighter->language(), QorCodeWidget::LANGUAGE_ECMA);
    QCoreApplication::processEvents();
    QCOMPARE(formats().size(), 1);
    QCOMPARE(formats().first().format.foreground().color(), QColor(0, 0, 255));
    shown.widget->setLanguage(QorCodeWidget::LANGUAGE_PLAIN);
    QCoreApplication::processEvents();
    QVERIFY(formats().isEmpty());
}

void tst_QorCodeWidget::urlFieldOfANode_data()
{
    QTest::addColumn<int>("url");
    QTest::addColumn<int>("shaderUrl");
    QTest::addColumn<QString>("found");
    QTest::newRow("url") << int(MFSTRING_DT) << 0 << QStringLiteral("url");
    QTest::newRow("shaderUrl") << 0 << int(MFSTRING_DT) << QStringLiteral("shaderUrl");
    QTest::newRow("both") << int(MFSTRING_DT) << int(MFSTRING_DT) << QStringLiteral("url");
    QTest::newRow("url of another type") << int(SFSTRING_DT) << 0 << QString();
    QTest::newRow("url of another type first") << int(SFSTRING_DT) << int(MFSTRING_DT) << QString();
    QTest::newRow("shaderUrl of another type") << 0 << int(SFINT32_DT) << QString();
    QTest::newRow("none") << 0 << 0 << QString();
}

void tst_QorCodeWidget::urlFieldOfANode()
{
    QFETCH(int, url);
    QFETCH(int, shaderUrl);
    QFETCH(QString, found);
    std::vector<Tiny::Part> parts;
    if (shaderUrl)
        parts.push_back(part("shaderUrl", NodePartDataType(shaderUrl)));
    if (url)
        parts.push_back(part("url", NodePartDataType(url)));
    const std::unique_ptr<Node> node(Tiny::makeNode(Tiny::makeType("Code", parts)));
    LogCapture log;
    const MFString* field = QorCodeWidget::urlField(node.get());
    QCOMPARE(field ? QString::fromLatin1(field->name()) : QString(), found);
    QVERIFY(log.take().isEmpty());
}

void tst_QorCodeWidget::urlFieldOfNullIsLogged()
{
    LogCapture log;
    QVERIFY(!QorCodeWidget::urlField(nullptr));
    QCOMPARE(log.take(), QByteArrayList{"2 QorCodeWidget::urlField: node is null!\n"});
}

void tst_QorCodeWidget::emptyScript()
{
    const QorCodeWidget widget;
    const auto node = makeCodeNode({});
    MFString* field = QorCodeWidget::urlField(node.get());
    QVERIFY(widget.isEmptyScript(field));
    QVERIFY(!widget.isUsingExternalScript(field));
    field->addValue("");
    QVERIFY(!widget.isEmptyScript(field));
    QVERIFY(widget.isEmptyScript(nullptr));
    QVERIFY(!widget.isUsingExternalScript(nullptr));
}

void tst_QorCodeWidget::localFileByScheme_data()
{
    QTest::addColumn<QString>("url");
    QTest::addColumn<bool>("isLocal");
    QTest::newRow("three slashes") << QStringLiteral("file:///a/b.js") << true;
    QTest::newRow("one slash") << QStringLiteral("file:/a/b.js") << true;
    QTest::newRow("relative") << QStringLiteral("file:b.js") << true;
    QTest::newRow("upper case") << QStringLiteral("FILE:///a/b.js") << true;
    QTest::newRow("path") << QStringLiteral("/a/b.js") << false;
    QTest::newRow("http") << QStringLiteral("http://a/b.js") << false;
    QTest::newRow("code") << QStringLiteral("ecmascript: var file = 1;") << false;
    QTest::newRow("empty") << QString() << false;
    QTest::newRow("no scheme") << QStringLiteral("file") << false;
}

void tst_QorCodeWidget::localFileByScheme()
{
    QFETCH(QString, url);
    QFETCH(bool, isLocal);
    QCOMPARE(QorCodeWidget().isLocalFile(url), isLocal);
}

void tst_QorCodeWidget::externalScriptIsOneOnDisk_data()
{
    QTest::addColumn<QByteArray>("value"); // "%" stands for the folder
    QTest::addColumn<bool>("isExternal");
    QTest::newRow("path") << QByteArray("%/a.js") << true;
    QTest::newRow("file address") << QByteArray("file://%/a.js") << true;
    QTest::newRow("file address, one slash") << QByteArray("file:%/a.js") << true;
    QTest::newRow("file address with a blank") << QByteArray("file://%/a b.js") << true;
    QTest::newRow("file address with an escape") << QByteArray("file://%/a\x01"
                                                               "20b.js")
                                                 << true;
    QTest::newRow("path with an escape") << QByteArray("%/a\x01"
                                                       "20b.js")
                                         << false;
    QTest::newRow("umlaut, Latin-1") << QByteArray("file://%/\xe4.js") << true;
    QTest::newRow("umlaut, UTF-8") << QByteArray("file://%/\xc3\xa4.js") << true;
    QTest::newRow("umlaut, path") << QByteArray("%/\xc3\xa4.js") << true;
    QTest::newRow("folder") << QByteArray("%") << true;
    QTest::newRow("no such file") << QByteArray("file://%/none.js") << false;
    QTest::newRow("name beside the scene") << QByteArray("a.js") << false;
    QTest::newRow("code") << QByteArray("javascript: function a() {}") << false;
    QTest::newRow("empty") << QByteArray() << false;
    QTest::newRow("null character") << QByteArray("%/a.js\0b", 8) << false;
    QTest::newRow("line feed") << QByteArray("%/a.js\n") << false;
    QTest::newRow("scheme only") << QByteArray("file:") << false;
    QTest::newRow("long") << QByteArray("file:///").append(QByteArray(1000000, 'a')) << false;
}

void tst_QorCodeWidget::externalScriptIsOneOnDisk()
{
    QFETCH(QByteArray, value);
    QFETCH(bool, isExternal);
    write("a.js", "");
    write("a b.js", "");
    write("ä.js", "");
    value.replace("%", _dir->path().toLatin1()).replace('\x01', "%");
    const auto node = makeCodeNode({value.toStdString()});
    QCOMPARE(QorCodeWidget().isUsingExternalScript(QorCodeWidget::urlField(node.get())), isExternal);
}

void tst_QorCodeWidget::relativeFileUrlCountsFromTheScene()
{
    write("beside.js", "var a;");
    Context* context = Context::create();
    Scene::create(context, nullptr, HOST_NC);
    context->load("file://" + path("scene.x3d").toStdString(), Context::REPLACE_LT, "");
    const Shown shown;
    {
        const auto node = makeCodeNode({"file:beside.js"}, "url", nullptr, context);
        const auto plain = makeCodeNode({"beside.js"}, "url", nullptr, context);
        shown.widget->setCodeNode(node.get());
        QCOMPARE(shown.codeLabel()->text(), QLatin1String(Local));
        QCOMPARE(shown.code(), QStringLiteral("var a;"));
        // Without the scheme "file" the name is taken for code.
        shown.widget->setCodeNode(plain.get());
        QCOMPARE(shown.codeLabel()->text(), QLatin1String(Inlined));
        QCOMPARE(shown.code(), QStringLiteral("beside.js\n"));
        shown.widget->setCodeNode(nullptr);
    }
    context->subRef();
}

void tst_QorCodeWidget::nullEmptiesAndDisables()
{
    const Shown shown;
    const auto node = makeCodeNode({"var a;"});
    shown.widget->setCodeNode(node.get());
    shown.widget->setFieldNode(node.get());
    QVERIFY(shown.widget->isEnabled());
    shown.widget->setCodeNode(nullptr);
    QVERIFY(!shown.widget->isEnabled());
    QVERIFY(!shown.widget->codeNode());
    QCOMPARE(shown.nodeLabel()->text(), QStringLiteral("<b>Script node:</b> "));
    QCOMPARE(shown.codeLabel()->text(), QLatin1String(Inlined));
    QVERIFY(shown.code().isEmpty());
    QVERIFY(!shown.fieldEditor()->node());
    QCOMPARE(shown.widget->fieldNode(), node.get());
    shown.widget->setCodeNode(node.get());
    QVERIFY(shown.widget->isEnabled());
    QCOMPARE(shown.code(), QStringLiteral("var a;\n"));
}

void tst_QorCodeWidget::shownNodeIsNotReloaded()
{
    const Shown shown;
    const auto node = makeCodeNode({"var a;"});
    shown.widget->setCodeNode(node.get());
    shown.edit()->setPlainText(QStringLiteral("mine"));
    shown.widget->setEnabled(false);
    QorCodeWidget::urlField(node.get())->setElem(0, "var b;");
    LogCapture log;
    shown.widget->setCodeNode(node.get());
    QCOMPARE(shown.code(), QStringLiteral("mine"));
    QVERIFY(!shown.widget->isEnabled());
    QVERIFY(log.take().isEmpty());
}

void tst_QorCodeWidget::labelNamesTheNode()
{
    const Shown shown;
    const auto named = makeCodeNode({}, "url", "Mover");
    shown.widget->setCodeNode(named.get());
    QCOMPARE(shown.nodeLabel()->text(), QStringLiteral("<b>Code node:</b> Mover"));
    const auto unnamed = makeCodeNode({});
    shown.widget->setCodeNode(unnamed.get());
    QCOMPARE(shown.nodeLabel()->text(),
             QStringLiteral("<b>Code node:</b> ") + QString::fromStdString(unnamed->getIDStr()));
    const auto odd = makeCodeNode({}, "url", "a<i>b");
    shown.widget->setCodeNode(odd.get());
    QCOMPARE(shown.nodeLabel()->text(), QStringLiteral("<b>Code node:</b> a&lt;i&gt;b"));
}

void tst_QorCodeWidget::nodeWithoutUrlKeepsTheText()
{
    const Shown shown;
    shown.widget->setCode(QStringLiteral("old"), false);
    shown.widget->setEnabled(false);
    const std::unique_ptr<Node> node(
        Tiny::makeNode(Tiny::makeType("Plain", {part("url", SFSTRING_DT)}), "Plain"));
    shown.widget->setCodeNode(node.get());
    QCOMPARE(shown.widget->codeNode(), node.get());
    QCOMPARE(shown.nodeLabel()->text(), QStringLiteral("<b>Code node:</b> Plain"));
    QCOMPARE(shown.codeLabel()->text(), QStringLiteral("<b>Code:</b> "));
    QCOMPARE(shown.code(), QStringLiteral("old"));
    QVERIFY(shown.widget->isEnabled());
}

void tst_QorCodeWidget::emptyFieldKeepsTheText()
{
    const Shown shown;
    shown.widget->setCode(QStringLiteral("old"), false);
    shown.widget->setEnabled(false);
    const auto node = makeCodeNode({});
    shown.widget->setCodeNode(node.get());
    QCOMPARE(shown.codeLabel()->text(), QLatin1String(Empty));
    QCOMPARE(shown.code(), QStringLiteral("old"));
    QVERIFY(shown.widget->isEnabled());
}

void tst_QorCodeWidget::inlinedCodeIsShownWithoutIndent()
{
    const Shown shown;
    const auto node = makeCodeNode({"javascript:\n    function a() {\n\tb();\n    }", "second"});
    LogCapture log;
    shown.widget->setCodeNode(node.get());
    QCOMPARE(shown.codeLabel()->text(), QLatin1String(Inlined));
    QCOMPARE(shown.code(), QStringLiteral("javascript:\nfunction a() {\nb();\n}\n"));
    QCOMPARE(log.take(), QByteArrayList{"3 QorCodeWidget::setCodeNode: node contains inlined script.\n"});
}

void tst_QorCodeWidget::indentIsRemoved_data()
{
    QTest::addColumn<QString>("code");
    QTest::addColumn<QString>("text");
    QTest::newRow("nothing") << QString() << QString();
    QTest::newRow("one line") << QStringLiteral("a") << QStringLiteral("a\n");
    QTest::newRow("final line break") << QStringLiteral("a\n") << QStringLiteral("a\n");
    QTest::newRow("blanks and tabs") << QStringLiteral("  \t a  b \n\tc") << QStringLiteral("a  b \nc\n");
    QTest::newRow("line of blanks") << QStringLiteral("a\n   \nb") << QStringLiteral("a\n\nb\n");
    QTest::newRow("empty lines") << QStringLiteral("\n\na\n\n") << QStringLiteral("\n\na\n\n");
    QTest::newRow("Windows line ends") << QStringLiteral("  a\r\n  b\r\n") << QStringLiteral("a\nb\n");
    QTest::newRow("beyond Latin-1") << QStringLiteral("  \u20ac\n") << QStringLiteral("\u20ac\n");
}

void tst_QorCodeWidget::indentIsRemoved()
{
    QFETCH(QString, code);
    QFETCH(QString, text);
    const Shown shown;
    shown.widget->setCode(code, true);
    QCOMPARE(shown.code(), text);
    shown.widget->setCode(QStringLiteral("  <b>a</b>\n b"), false);
    QCOMPARE(shown.code(), QStringLiteral("  <b>a</b>\n b"));
}

void tst_QorCodeWidget::codeReadsLeftToRight()
{
    const Shown shown;
    for (int i = 0; i < 2; ++i) {
        shown.widget->setCode(QStringLiteral("\u05d0\u05d1 = 1;"), false);
        QCOMPARE(shown.edit()->document()->begin().textDirection(), Qt::LeftToRight);
        shown.widget->setCodeNode(nullptr);
    }
}

void tst_QorCodeWidget::shaderUrlIsShown()
{
    const Shown shown;
    const auto node = makeCodeNode({"void main() {}"}, "shaderUrl");
    shown.widget->setCodeNode(node.get());
    QCOMPARE(shown.code(), QStringLiteral("void main() {}\n"));
    shown.edit()->setPlainText(QStringLiteral("x"));
    shown.apply()->click();
    QCOMPARE(valuesOf(*node), std::vector<std::string>{"x"});
}

void tst_QorCodeWidget::localFileIsShown_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("plain") << QStringLiteral("a.js");
    QTest::newRow("blank, number sign, question mark") << QStringLiteral("a b#c?d.js");
    QTest::newRow("percent") << QStringLiteral("100%20.js");
    QTest::newRow("umlaut") << QStringLiteral("\u00e4\u00df.js");
    QTest::newRow("beyond Latin-1") << QStringLiteral("\u20ac\u4e2d\U0001F600.js");
    QTest::newRow("quotes") << QStringLiteral("a'b\"c.js");
    QTest::newRow("line feed") << QStringLiteral("a\nb.js");
    QTest::newRow("markup") << QStringLiteral("<b>&amp;.js");
}

void tst_QorCodeWidget::localFileIsShown()
{
    QFETCH(QString, name);
    const auto node = makeCodeNode({write(name.toUtf8().constData(), "\tif \xe2\x82\xac\r\n  x")});
    const Shown shown;
    LogCapture log;
    shown.widget->setCodeNode(node.get());
    QCOMPARE(shown.codeLabel()->text(), QLatin1String(Local));
    QCOMPARE(shown.code(), QStringLiteral("\tif \u20ac\n  x"));
    QVERIFY(log.take().isEmpty());
    shown.edit()->setPlainText(QStringLiteral("\u20ac"));
    shown.apply()->click();
    QCOMPARE(read(_dir->filePath(name)), QByteArray("\xe2\x82\xac"));
    QCOMPARE(QDir(_dir->path()).entryList(QDir::Files).size(), 1);
}

void tst_QorCodeWidget::unreadableFileKeepsTheText_data()
{
    QTest::addColumn<QString>("kind");
    QTest::newRow("folder") << QStringLiteral("folder");
    QTest::newRow("pipe") << QStringLiteral("pipe");
    QTest::newRow("too large") << QStringLiteral("large");
}

void tst_QorCodeWidget::unreadableFileKeepsTheText()
{
    QFETCH(QString, kind);
    const QString target = path("a");
    if (kind == QLatin1String("folder")) {
        QVERIFY(QDir().mkdir(target));
    } else if (kind == QLatin1String("pipe")) {
        QCOMPARE(mkfifo(QFile::encodeName(target).constData(), 0600), 0);
    } else {
        QFile file(target);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QVERIFY(file.resize(qint64(5) << 30)); // holds no block on the disk
    }
    const auto node = makeCodeNode({QUrl::fromLocalFile(target).toString().toStdString()});
    const Shown shown;
    shown.widget->setCode(QStringLiteral("old"), false);
    LogCapture log;
    shown.widget->setCodeNode(node.get());
    QCOMPARE(shown.code(), QStringLiteral("old"));
    QCOMPARE(shown.codeLabel()->text(), QLatin1String(Local));
    QCOMPARE(log.take(), QByteArrayList{"2 QorCodeWidget::setCodeNode: error reading script from [" +
                                        target.toUtf8() + "]\n"});
    QVERIFY(shown.widget->isEnabled());
}

void tst_QorCodeWidget::pathWithoutSchemeIsNotRead()
{
    write("a.js", "var a;");
    const auto node = makeCodeNode({path("a.js").toStdString()});
    const Shown shown;
    shown.widget->setCode(QStringLiteral("old"), false);
    LogCapture log;
    shown.widget->setCodeNode(node.get());
    QCOMPARE(shown.codeLabel()->text(), QLatin1String(External));
    QCOMPARE(shown.code(), QStringLiteral("old"));
    QVERIFY(log.take().isEmpty());
    // What is applied then replaces the name.
    shown.apply()->click();
    QCOMPARE(valuesOf(*node), std::vector<std::string>{"old"});
    QCOMPARE(read(path("a.js")), QByteArray("var a;"));
}

void tst_QorCodeWidget::applyWritesTheFirstValue()
{
    const auto node = makeCodeNode({"var a;", "second"});
    MFString* field = QorCodeWidget::urlField(node.get());
    const Shown shown;
    shown.widget->setCodeNode(node.get());
    shown.edit()->setPlainText(QStringLiteral("  var \u00e4;\n"));
    Tiny::reset();
    shown.apply()->click();
    QCOMPARE(valuesOf(*node), (std::vector<std::string>{"  var \xe4;\n", "second"}));
    QCOMPARE(Tiny::fieldWrites().size(), 1U);
    QCOMPARE(Tiny::fieldWrites().front().field, static_cast<Field*>(field));
    QCOMPARE(Tiny::fieldWrites().front().time, 0.0);
    QCOMPARE(Tiny::fieldWrites().front().caller, Field::EXTERNAL_CT);
    shown.edit()->setPlainText(QStringLiteral("\u20ac"));
    shown.apply()->click();
    QCOMPARE(valuesOf(*node).front(), std::string("\xe2\x82\xac"));
}

void tst_QorCodeWidget::applyAppendsToAnEmptyField()
{
    const auto node = makeCodeNode({});
    const Shown shown;
    shown.widget->setCodeNode(node.get());
    shown.edit()->setPlainText(QStringLiteral("var a;"));
    Tiny::reset();
    shown.apply()->click();
    QCOMPARE(valuesOf(*node), std::vector<std::string>{"var a;"});
    QVERIFY(!Tiny::fieldWrites().empty());
    QCOMPARE(Tiny::fieldWrites().back().time, 0.0);
    shown.edit()->setPlainText(QStringLiteral("var b;"));
    shown.apply()->click();
    QCOMPARE(valuesOf(*node), std::vector<std::string>{"var b;"});
}

void tst_QorCodeWidget::applyWritesTheFile()
{
    const std::string address = write("a.js", "var a;\r\nvar abc;\r\n");
    const auto node = makeCodeNode({address});
    const Shown shown;
    shown.widget->setCodeNode(node.get());
    QCOMPARE(shown.code(), QStringLiteral("var a;\nvar abc;\n"));
    shown.edit()->setPlainText(QStringLiteral("  x\n\u00e4"));
    Tiny::reset();
    shown.apply()->click();
    QCOMPARE(read(path("a.js")), QByteArray("  x\n\xc3\xa4"));
    QCOMPARE(valuesOf(*node), std::vector<std::string>{address});
    QCOMPARE(Tiny::fieldWrites().size(), 1U);
}

void tst_QorCodeWidget::applyToAFileThatCannotBeWritten()
{
    const std::string address = write("a.js", "var a;");
    const auto node = makeCodeNode({address});
    const Shown shown;
    shown.widget->setCodeNode(node.get());
    QVERIFY(QFile::remove(path("a.js")));
    QVERIFY(QDir().mkdir(path("a.js")));
    Tiny::reset();
    LogCapture log;
    shown.apply()->click();
    QCOMPARE(valuesOf(*node), std::vector<std::string>{address});
    QCOMPARE(Tiny::fieldWrites().size(), 1U);
    QVERIFY(log.take().isEmpty());
    QVERIFY(QDir().rmdir(path("a.js")));
    shown.apply()->click();
    QCOMPARE(read(path("a.js")), QByteArray("var a;"));
}

void tst_QorCodeWidget::applyAfterALocalFileWritesThatFile()
{
    const auto first = makeCodeNode({write("a.js", "var a;")});
    const auto second = makeCodeNode({"var b;"});
    const auto empty = makeCodeNode({});
    const Shown shown;
    shown.widget->setCodeNode(first.get());
    shown.widget->setCodeNode(second.get());
    QCOMPARE(shown.codeLabel()->text(), QLatin1String(Inlined));
    shown.apply()->click();
    QCOMPARE(valuesOf(*second), std::vector<std::string>{"var b;"});
    QCOMPARE(read(path("a.js")), QByteArray("var b;\n"));
    shown.edit()->setPlainText(QStringLiteral("c"));
    shown.widget->setCodeNode(empty.get());
    shown.apply()->click();
    QCOMPARE(valuesOf(*empty), std::vector<std::string>{"c"});
    QCOMPARE(read(path("a.js")), QByteArray("var b;\n"));
}

void tst_QorCodeWidget::applyWithoutNodeDoesNothing()
{
    const Shown shown;
    LogCapture log;
    shown.widget->setCode(QStringLiteral("x"), false);
    Tiny::reset();
    shown.apply()->click();
    const std::unique_ptr<Node> plain(Tiny::makeNode(Tiny::makeType("Plain", {part("x", SFINT32_DT)})));
    shown.widget->setCodeNode(plain.get());
    shown.apply()->click();
    QVERIFY(Tiny::fieldWrites().empty());
    QVERIFY(log.take().isEmpty());
}

void tst_QorCodeWidget::applyIsRefusedByNoCharacter()
{
    const auto node = makeCodeNode({"x"});
    const Shown shown;
    shown.widget->setCodeNode(node.get());
    QString all;
    for (int code = 0x20; code < 0x3000; ++code)
        all += QChar(code);
    shown.edit()->setPlainText(all);
    const QString text = shown.code();
    shown.apply()->click();
    QCOMPARE(fromRuntime(valuesOf(*node).front()), text);
}

void tst_QorCodeWidget::modifiedUntilApplied()
{
    const Shown shown;
    const auto file = makeCodeNode({write("a.js", "var a;")});
    const auto inlined = makeCodeNode({"var a;"});
    for (Node* node : {inlined.get(), file.get()}) {
        shown.widget->setCodeNode(node);
        QVERIFY(!shown.widget->isModified());
        QTest::keyClicks(shown.edit(), QStringLiteral("x"));
        QVERIFY(shown.widget->isModified());
        shown.apply()->click();
        QVERIFY(!shown.widget->isModified());
    }
    // What could not be written still waits.
    QVERIFY(QFile::remove(path("a.js")) && QDir().mkdir(path("a.js")));
    QTest::keyClicks(shown.edit(), QStringLiteral("x"));
    shown.apply()->click();
    QVERIFY(shown.widget->isModified());
}

void tst_QorCodeWidget::deadCodeNodeCountsAsNone()
{
    auto node = makeCodeNode({"var a;"});
    const Shown shown;
    shown.widget->setCodeNode(node.get());
    shown.widget->setFieldNode(node.get());
    node.reset();
    QVERIFY(!shown.widget->codeNode());
    QVERIFY(!shown.widget->fieldNode());
    QCOMPARE(shown.code(), QStringLiteral("var a;\n"));
    Tiny::reset();
    shown.apply()->click();
    QVERIFY(Tiny::fieldWrites().empty());
    shown.widget->updateFieldList();
    QVERIFY(shown.fieldNames().isEmpty());
    shown.widget->grab();
}

void tst_QorCodeWidget::fieldNodeIsSetApart()
{
    const auto code = makeCodeNode({"x"});
    const auto fields = makeCodeNode({});
    const Shown shown;
    shown.widget->setFieldNode(fields.get());
    shown.widget->setCodeNode(code.get());
    QCOMPARE(shown.widget->codeNode(), code.get());
    QCOMPARE(shown.widget->fieldNode(), fields.get());
    QCOMPARE(shown.fieldEditor()->node(), fields.get());
    shown.widget->setFieldNode(nullptr);
    QCOMPARE(shown.widget->fieldNode(), fields.get());
    QCOMPARE(shown.fieldEditor()->node(), fields.get());
    QCOMPARE(shown.fieldNames(), QStringList{QStringLiteral("url")});
}

void tst_QorCodeWidget::fieldListHasFourColumns()
{
    const auto node = makeCodeNode({});
    const Shown shown;
    shown.widget->setFieldNode(node.get());
    const QTreeView* tree = shown.fieldEditor()->treeView();
    QCOMPARE(tree->model()->columnCount(), 10);
    for (int column = 0; column < 10; ++column)
        QCOMPARE(tree->isColumnHidden(column), column > 3);
}

void tst_QorCodeWidget::fieldListIsReadAnew()
{
    const auto node = makeCodeNode({});
    const Shown shown;
    shown.widget->setFieldNode(node.get());
    Tiny::addField(node.get(), part("speed", SFFLOAT_DT));
    QCOMPARE(shown.fieldNames(), QStringList{QStringLiteral("url")});
    shown.widget->setFieldNode(node.get());
    QCOMPARE(shown.fieldNames(), (QStringList{QStringLiteral("speed"), QStringLiteral("url")}));
    Tiny::addField(node.get(), part("more", SFFLOAT_DT));
    shown.widget->updateFieldList();
    QCOMPARE(shown.fieldNames().size(), 3);
    QVERIFY(shown.fieldEditor()->treeView()->isColumnHidden(QorNodeModel::ID));
}

void tst_QorCodeWidget::removeAsksForTheCurrentCell()
{
    const auto node = makeCodeNode({"x"});
    Tiny::addField(node.get(), part("speed", SFFLOAT_DT, "2"));
    const Shown shown;
    shown.widget->setFieldNode(node.get());
    QSignalSpy asked(shown.widget.get(), SIGNAL(wantsDeleteField(Orvane::Node*, QString)));
    QStringList texts;
    for (int column = 0; column < 4; ++column) {
        shown.selectField(0, column);
        shown.remove()->click();
        QCOMPARE(asked.size(), 1);
        QCOMPARE(asked.first().at(0).value<Orvane::Node*>(), node.get());
        texts << asked.takeFirst().at(1).toString();
        // The list is a new one.
        QVERIFY(!shown.fieldEditor()->treeView()->currentIndex().isValid());
    }
    QCOMPARE(texts, (QStringList{QStringLiteral("speed"), QStringLiteral("2"), QStringLiteral("SFFloat"),
                                 QStringLiteral("ExposedField")}));
    // The host changes the fields in its slot.
    connect(shown.widget.get(), &QorCodeWidget::wantsDeleteField, shown.widget.get(),
            [](Orvane::Node* n) { Tiny::addField(n, part("instead", SFBOOL_DT)); });
    shown.selectField(0, 0);
    shown.remove()->click();
    QCOMPARE(shown.fieldNames(),
             (QStringList{QStringLiteral("instead"), QStringLiteral("speed"), QStringLiteral("url")}));
}

void tst_QorCodeWidget::removeWithoutCurrentCellAsksNothing()
{
    const Shown shown;
    QSignalSpy asked(shown.widget.get(), SIGNAL(wantsDeleteField(Orvane::Node*, QString)));
    shown.remove()->click();
    const auto node = makeCodeNode({});
    shown.widget->setFieldNode(node.get());
    QVERIFY(!shown.fieldEditor()->treeView()->currentIndex().isValid());
    const QAbstractItemModel* model = shown.fieldEditor()->treeView()->model();
    shown.remove()->click();
    QVERIFY(asked.isEmpty());
    QCOMPARE(shown.fieldEditor()->treeView()->model(), model);
}

void tst_QorCodeWidget::removeAfterANodeButtonBringsTheListBack()
{
    const auto node = makeCodeNode({});
    const std::unique_ptr<Node> other(Tiny::makeNode(Tiny::makeType("Other", {part("x", SFINT32_DT)})));
    const Shown shown;
    shown.widget->setFieldNode(node.get());
    shown.fieldEditor()->setNode(other.get());
    shown.selectField(0, 0);
    QSignalSpy asked(shown.widget.get(), SIGNAL(wantsDeleteField(Orvane::Node*, QString)));
    shown.remove()->click();
    QVERIFY(asked.isEmpty());
    QCOMPARE(shown.fieldEditor()->node(), node.get());
}

void tst_QorCodeWidget::removeOfADeadNodeAsksNothing()
{
    auto node = makeCodeNode({});
    const Shown shown;
    shown.widget->setFieldNode(node.get());
    shown.selectField(0, 0);
    QSignalSpy asked(shown.widget.get(), SIGNAL(wantsDeleteField(Orvane::Node*, QString)));
    node.reset();
    shown.remove()->click();
    QVERIFY(asked.isEmpty());
}

void tst_QorCodeWidget::removeMayEndTheWidget()
{
    const auto node = makeCodeNode({});
    Shown shown;
    shown.widget->setFieldNode(node.get());
    shown.selectField(0, 0);
    connect(shown.widget.get(), &QorCodeWidget::wantsDeleteField, this, [&] { shown.widget.reset(); });
    QMetaObject::invokeMethod(shown.widget.get(), "onRemoveField");
    QVERIFY(!shown.widget);
}

void tst_QorCodeWidget::dialogAsksTheHost()
{
    const auto node = makeCodeNode({});
    const Shown shown;
    shown.widget->setFieldNode(node.get());
    QStringList asked;
    connect(shown.widget.get(), &QorCodeWidget::wantsAddField, this,
            [&](Orvane::Node* n, const QString& dataType, const QString& fieldType, const QString& name,
                const QString& value, const QString& valueType, const QString& description) {
                QCOMPARE(n, node.get());
                asked = QStringList{dataType, fieldType, name, value, valueType, description};
                Tiny::addField(n, part("speed", SFBOOL_DT));
            });
    inDialog([](QorNewFieldDialog* dialog) {
        nameEdit(dialog)->setText(QStringLiteral("speed"));
        press(dialog, "Create");
    });
    shown.add()->click();
    QCOMPARE(asked, (QStringList{QStringLiteral("SFBool"), QStringLiteral("Field"), QStringLiteral("speed"),
                                 QString(), QString(), QString()}));
    QCOMPARE(shown.fieldNames(), (QStringList{QStringLiteral("speed"), QStringLiteral("url")}));
    const auto dialogs = shown.widget->findChildren<QorNewFieldDialog*>();
    QCOMPARE(dialogs.size(), 1);
    QVERIFY(dialogs.first()->isHidden());
    QCOMPARE(dialogs.first()->parent(), shown.widget.get());
}

void tst_QorCodeWidget::rejectedDialogChangesNothing()
{
    const auto node = makeCodeNode({});
    const Shown shown;
    shown.widget->setFieldNode(node.get());
    QSignalSpy asked(shown.widget.get(), SIGNAL(wantsAddField(Orvane::Node*, QString, QString, QString,
                                                              QString, QString, QString)));
    const QAbstractItemModel* model = shown.fieldEditor()->treeView()->model();
    for (int i = 0; i < 2; ++i) {
        inDialog([](QorNewFieldDialog* dialog) { press(dialog, "Cancel"); });
        shown.add()->click();
    }
    QVERIFY(asked.isEmpty());
    QCOMPARE(shown.fieldEditor()->treeView()->model(), model);
    QCOMPARE(shown.widget->findChildren<QorNewFieldDialog*>().size(), 2);
}

void tst_QorCodeWidget::dialogMayEndTheWidget()
{
    Shown shown;
    inDialog([&](QorNewFieldDialog*) { shown.widget.reset(); });
    shown.widget->openFieldDialog();
    QVERIFY(!shown.widget);
}

void tst_QorCodeWidget::hugeLineIsShownAndApplied()
{
    const QString line = QStringLiteral("if (a) b = \"\u00e4\"; ").repeated(60000);
    const auto node = makeCodeNode({toRuntime(line)});
    const Shown shown;
    shown.widget->setLanguage(QorCodeWidget::LANGUAGE_ECMA);
    shown.widget->resize(400, 600);
    shown.widget->show();
    QVERIFY(QTest::qWaitForWindowExposed(shown.widget.get()));
    shown.widget->setCodeNode(node.get());
    QCoreApplication::processEvents();
    QCOMPARE(shown.code().size(), line.size() + 1);
    shown.apply()->click();
    QCOMPARE(valuesOf(*node).front().size(), static_cast<std::size_t>(line.size()) + 1);
}

void tst_QorCodeWidget::defaultDelegateGoesWithTheWidget()
{
    const auto node = makeCodeNode({});
    Shown shown;
    shown.widget->setFieldNode(node.get());
    const QPointer<QorNodeItemDelegate> delegate = shown.fieldEditor()->itemDelegate();
    const QPointer<QorNodeModel> model = shown.fieldEditor()->model();
    QVERIFY(delegate && model);
    shown.widget.reset();
    QVERIFY(!delegate);
    QVERIFY(!model);
}

QTEST_MAIN(tst_QorCodeWidget)
#include "tst_QorCodeWidget.moc"
