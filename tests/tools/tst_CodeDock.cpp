// The panel of code of the workbench, over live nodes of the embedded runtime.
#include "AuthorFields.h"
#include "CodeDock.h"
#include "CodeNodes.h"
#include "NodeDock.h"
#include "Selection.h"
#include "Steps.h"
#include <OpenSG/OSGLog.h>
#include <Orvane/Context.h>
#include <Orvane/MFNode.h>
#include <Orvane/MFString.h>
#include <Orvane/NodeNameSpace.h>
#include <Orvane/NodePartDesc.h>
#include <Orvane/Scene.h>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTextEdit>
#include <QorNewFieldDialog.h>
#include <QorNodeEditor.h>
#include <QorNodeEditorTreeView.h>
#include <QorObservingNodeEditor.h>
#include <QtTest>

using namespace Orvane;
using namespace Orvane::Qt4;

Q_DECLARE_METATYPE(Orvane::Qt4::QorCodeWidget::LanguageE)

namespace {

const char sceneText[] =
    "<X3D version='4.0'><Scene>"
    "<Script DEF='First' url='\"javascript: first\"'><field name='size' type='SFFloat' "
    "accessType='inputOutput' value='2'/></Script>"
    "<Script DEF='Second' url='\"javascript: second\"'/>"
    "<Shape DEF='Plain'/>"
    "<Shape DEF='Shaded'><Appearance DEF='Look'><ComposedShader DEF='Composed' language='GLSL'>"
    "<ShaderPart DEF='Vertex' type='VERTEX' url='\"vertex code\"'/>"
    "<ShaderPart DEF='Fragment' type='FRAGMENT' url='\"fragment "
    "code\"'/></ComposedShader></Appearance></Shape>"
    "<Shape><Appearance><ComposedShader DEF='Bare' language='HLSL'/></Appearance></Shape>"
    "<Shape><Appearance><ProgramShader DEF='Programs' language='Cg'>"
    "<ShaderProgram DEF='Program' url='\"program code\"'/></ProgramShader></Appearance></Shape>"
    "<Shape><Appearance><ProgramShader DEF='NoPrograms'/></Appearance></Shape>"
    "<Shape><Appearance><PackagedShader DEF='Packaged' language='Cg' "
    "url='\"packaged\"'/></Appearance></Shape>"
    "<Inline DEF='Other' url='\"none.x3d\"'/>"
    "</Scene></X3D>";

} // namespace

class tst_CodeDock : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void nodesOfCode_data();
    void nodesOfCode();
    void languageOfCode_data();
    void languageOfCode();
    void languageOfAFile_data();
    void languageOfAFile();
    void emptyAndDisabledAtFirst();
    void selectedScriptIsOpened();
    void otherNodesChangeNothing();
    void selectedShapeOpensItsShader();
    void partOfAShaderHasTheFieldsOfTheShader();
    void unappliedTextWaits();
    void appliedTextIsReadAfresh();
    void applyChangesTheField();
    void fileIsNotWrittenForAnotherNode();
    void fileBesideTheSceneIsEdited_data();
    void fileBesideTheSceneIsEdited();
    void nameOfNoFileIsShown_data();
    void nameOfNoFileIsShown();
    void wantedFieldIsAdded();
    void unwantedFieldIsRemoved();
    void fieldsAreRefused_data();
    void fieldsAreRefused();
    void fieldOfTheTypeStays();
    void routesOfARemovedFieldEnd();
    void refusalIsTold();
    void panelOfTheNodeFollowsItsFields();
    void deadNodeEmptiesThePanel();
    void deadShaderEmptiesThePanelOfItsPart();
    void nodeMayDieWhileAFieldIsAskedFor();
    void everythingMayDieWhileTextWaits();
    void panelMayDieFirst();

private:
    Node* node(const char* name) const
    {
        return NodeNameSpace::findNode(_context->findRoot(Scene::_type)->nameSpace(), name);
    }
    QorCodeWidget* widget() const { return _dock->codeWidget(); }
    QTextEdit* edit() const { return widget()->findChildren<QTextEdit*>().last(); }
    void select(const char* name) { _selection->selectNode(node(name)); }
    void pressApply() const
    {
        for (QPushButton* button : widget()->findChildren<QPushButton*>()) {
            if (button->text() == QLatin1String("Apply"))
                button->click();
        }
    }
    void selectField(const QString& name) const;
    void pressRemove() const;
    void removeFromScene(const char* name);

    Context* _context = nullptr;
    Selection* _selection = nullptr;
    Steps* _steps = nullptr;
    CodeDock* _dock = nullptr;
    QTemporaryDir _folder;
};

void tst_CodeDock::init()
{
    osg::doInitLog();
    osg::osgLogP->setLogLevel(osg::LOG_FATAL, true);
    _context = Context::create();
    QVERIFY(_context->load(_folder.filePath(QStringLiteral("scene.x3d")).toStdString(), sceneText,
                           Context::REPLACE_LT, ""));
    _context->setRootState(0.0, RUNNING_NS);
    _selection = new Selection(nullptr);
    _steps = new Steps(_selection);
    _dock = new CodeDock(_selection, _steps, nullptr);
}

void tst_CodeDock::cleanup()
{
    delete _dock;
    delete _selection;
    _context->subRef();
}

/// Takes a child of the scene's root out of the graph, so that it dies.
void tst_CodeDock::removeFromScene(const char* name)
{
    auto* children =
        dynamic_cast<MFNode*>(_context->findRoot(Scene::_type)->findField("children", Node::EXACT_FSO));
    for (unsigned int i = 0; i < children->size(); ++i) {
        if (children->elem(static_cast<int>(i)).node() == node(name)) {
            children->removeNode(0.0, static_cast<int>(i), Field::EXTERNAL_CT);
            return;
        }
    }
    QFAIL("no child of the root");
}

void tst_CodeDock::selectField(const QString& name) const
{
    QTreeView* tree = widget()->findChild<QorNodeEditor*>()->treeView();
    const QModelIndexList found =
        tree->model()->match(tree->model()->index(0, 0), Qt::DisplayRole, name, 1, Qt::MatchExactly);
    QCOMPARE(found.size(), 1);
    tree->setCurrentIndex(found.first());
}

void tst_CodeDock::pressRemove() const
{
    for (QPushButton* button : widget()->findChildren<QPushButton*>()) {
        if (button->text() == QLatin1String("-"))
            button->click();
    }
}

void tst_CodeDock::nodesOfCode_data()
{
    QTest::addColumn<QByteArray>("selected");
    QTest::addColumn<QByteArray>("code");
    QTest::addColumn<QByteArray>("fields");
    const auto row = [](const char* selected, const char* code, const char* fields) {
        QTest::newRow(selected) << QByteArray(selected) << QByteArray(code) << QByteArray(fields);
    };
    row("First", "First", "First");
    row("Plain", "", "");
    row("Other", "", "");
    row("Shaded", "Vertex", "Composed");
    row("Look", "Vertex", "Composed");
    row("Composed", "Vertex", "Composed");
    row("Fragment", "Fragment", "Composed");
    row("Bare", "Bare", "Bare");
    row("Programs", "Program", "Program");
    row("Program", "Program", "Program");
    row("NoPrograms", "NoPrograms", "NoPrograms");
    row("Packaged", "Packaged", "Packaged");
    row("no such node", "", "");
}

void tst_CodeDock::nodesOfCode()
{
    QFETCH(QByteArray, selected);
    QFETCH(QByteArray, code);
    QFETCH(QByteArray, fields);
    const CodeNodes nodes = CodeNodes::of(node(selected.constData()));
    QCOMPARE(nodes.code, node(code.constData()));
    QCOMPARE(nodes.fields, node(fields.constData()));
}

void tst_CodeDock::languageOfCode_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QorCodeWidget::LanguageE>("language");
    QTest::newRow("script") << QByteArray("First") << QorCodeWidget::LANGUAGE_ECMA;
    QTest::newRow("shader part") << QByteArray("Vertex") << QorCodeWidget::LANGUAGE_GLSL;
    QTest::newRow("other language") << QByteArray("Bare") << QorCodeWidget::LANGUAGE_OTHER;
    QTest::newRow("language of the shader above") << QByteArray("Program") << QorCodeWidget::LANGUAGE_CG;
    QTest::newRow("no language") << QByteArray("NoPrograms") << QorCodeWidget::LANGUAGE_GLSL;
    QTest::newRow("own language") << QByteArray("Packaged") << QorCodeWidget::LANGUAGE_CG;
    QTest::newRow("nothing") << QByteArray("Plain") << QorCodeWidget::LANGUAGE_NONE;
}

void tst_CodeDock::languageOfCode()
{
    QFETCH(QByteArray, name);
    QFETCH(QorCodeWidget::LanguageE, language);
    QCOMPARE(CodeNodes::of(node(name.constData())).language(QorCodeWidget()), language);
}

void tst_CodeDock::languageOfAFile_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QorCodeWidget::LanguageE>("language");
    QTest::newRow("js") << QStringLiteral("a.js") << QorCodeWidget::LANGUAGE_ECMA;
    QTest::newRow("upper case") << QStringLiteral("a.FRAG") << QorCodeWidget::LANGUAGE_GLSL;
    QTest::newRow("cg") << QStringLiteral("a b#.cg") << QorCodeWidget::LANGUAGE_CG;
    QTest::newRow("other") << QStringLiteral("a.hlsl") << QorCodeWidget::LANGUAGE_OTHER;
    QTest::newRow("x3d") << QStringLiteral("a.x3d") << QorCodeWidget::LANGUAGE_X3D;
    QTest::newRow("unknown") << QStringLiteral("a.txt") << QorCodeWidget::LANGUAGE_ECMA;
    QTest::newRow("none") << QStringLiteral("a") << QorCodeWidget::LANGUAGE_ECMA;
}

void tst_CodeDock::languageOfAFile()
{
    QFETCH(QString, file);
    QFETCH(QorCodeWidget::LanguageE, language);
    QFile made(_folder.filePath(file));
    QVERIFY(made.open(QIODevice::WriteOnly));
    made.close();
    auto* url = QorCodeWidget::urlField(node("First"));
    (*url)[0] = QUrl::fromLocalFile(made.fileName()).toEncoded().toStdString();
    select("First");
    QCOMPARE(widget()->language(), language);
    QVERIFY(made.remove());
    QCOMPARE(CodeNodes::of(node("First")).language(QorCodeWidget()), QorCodeWidget::LANGUAGE_ECMA);
}

void tst_CodeDock::emptyAndDisabledAtFirst()
{
    QVERIFY(widget());
    QVERIFY(!widget()->isEnabled());
    QVERIFY(!widget()->codeNode());
}

void tst_CodeDock::selectedScriptIsOpened()
{
    QVERIFY(!_dock->isVisible());
    select("First");
    QVERIFY(_dock->isVisible());
    QVERIFY(widget()->isEnabled());
    QCOMPARE(widget()->codeNode(), node("First"));
    QCOMPARE(widget()->fieldNode(), node("First"));
    QCOMPARE(widget()->language(), QorCodeWidget::LANGUAGE_ECMA);
    QCOMPARE(edit()->toPlainText(), QStringLiteral("javascript: first"));
    select("Second");
    QCOMPARE(widget()->codeNode(), node("Second"));
    QCOMPARE(edit()->toPlainText(), QStringLiteral("javascript: second"));
}

void tst_CodeDock::otherNodesChangeNothing()
{
    select("Plain");
    QVERIFY(!_dock->isVisible());
    select("First");
    const QorCodeWidget* shown = widget();
    for (const char* other : {"Plain", "Other", "First"}) {
        select(other);
        QCOMPARE(widget(), shown);
    }
    _selection->selectNode(nullptr);
    QCOMPARE(widget(), shown);
}

void tst_CodeDock::selectedShapeOpensItsShader()
{
    select("Shaded");
    QCOMPARE(widget()->codeNode(), node("Vertex"));
    QCOMPARE(edit()->toPlainText(), QStringLiteral("vertex code"));
    QCOMPARE(widget()->language(), QorCodeWidget::LANGUAGE_GLSL);
}

void tst_CodeDock::partOfAShaderHasTheFieldsOfTheShader()
{
    select("Fragment");
    QCOMPARE(widget()->codeNode(), node("Fragment"));
    QCOMPARE(widget()->fieldNode(), node("Composed"));
    QCOMPARE(widget()->findChild<QorNodeEditor*>()->node(), node("Composed"));
}

void tst_CodeDock::unappliedTextWaits()
{
    select("First");
    edit()->insertPlainText(QStringLiteral("mine "));
    select("Second");
    QCOMPARE(edit()->toPlainText(), QStringLiteral("javascript: second"));
    select("Fragment");
    select("First");
    QCOMPARE(edit()->toPlainText(), QStringLiteral("mine javascript: first"));
    pressApply();
    QCOMPARE((*QorCodeWidget::urlField(node("First")))[0], std::string("mine javascript: first"));
}

void tst_CodeDock::appliedTextIsReadAfresh()
{
    select("First");
    edit()->insertPlainText(QStringLiteral("mine "));
    pressApply();
    select("Second");
    QorCodeWidget::urlField(node("First"))->setElem(0, "other");
    select("First");
    QCOMPARE(edit()->toPlainText(), QStringLiteral("other"));
}

void tst_CodeDock::applyChangesTheField()
{
    select("First");
    edit()->setPlainText(QStringLiteral("javascript: new"));
    pressApply();
    QCOMPARE((*QorCodeWidget::urlField(node("First")))[0], std::string("javascript: new"));
    QCOMPARE((*QorCodeWidget::urlField(node("Second")))[0], std::string("javascript: second"));
}

void tst_CodeDock::fileIsNotWrittenForAnotherNode()
{
    QFile file(_folder.filePath(QStringLiteral("first.js")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("javascript: file");
    file.close();
    (*QorCodeWidget::urlField(node("First")))[0] = "file:first.js";
    select("First");
    QCOMPARE(edit()->toPlainText(), QStringLiteral("javascript: file"));
    select("Second");
    edit()->setPlainText(QStringLiteral("javascript: second code"));
    pressApply();
    QCOMPARE((*QorCodeWidget::urlField(node("Second")))[0], std::string("javascript: second code"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), QByteArray("javascript: file"));
}

void tst_CodeDock::fileBesideTheSceneIsEdited_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("value"); // "*" stands for the folder
    QTest::newRow("name") << QStringLiteral("first.frag") << QByteArray("first.frag");
    QTest::newRow("ended line") << QStringLiteral("first.frag") << QByteArray("first.frag\r\n");
    QTest::newRow("odd name") << QStringLiteral("a b\u00e4\u4e2d.frag") << QByteArray("a b\u00e4\u4e2d.frag");
    QTest::newRow("escapes") << QStringLiteral("a b#.frag") << QByteArray("./none/../a%20b%23.frag");
    QTest::newRow("path") << QStringLiteral("first.frag") << QByteArray("*/first.frag");
    QTest::newRow("address") << QStringLiteral("first.frag") << QByteArray("file:first.frag");
}

void tst_CodeDock::fileBesideTheSceneIsEdited()
{
    QFETCH(QString, file);
    QFETCH(QByteArray, value);
    QFile code(_folder.filePath(file));
    QVERIFY(code.open(QIODevice::WriteOnly));
    code.write("old code");
    code.close();
    const std::string name = value.replace("*", QFile::encodeName(_folder.path())).toStdString();
    auto* url = QorCodeWidget::urlField(node("Vertex"));
    (*url)[0] = name;
    select("Vertex");
    QCOMPARE((*url)[0], name);
    QCOMPARE(edit()->toPlainText(), QStringLiteral("old code"));
    QCOMPARE(widget()->language(), QorCodeWidget::LANGUAGE_GLSL);
    edit()->setPlainText(QStringLiteral("new code"));
    pressApply();
    QCOMPARE((*url)[0], name);
    QVERIFY(code.open(QIODevice::ReadOnly));
    QCOMPARE(code.readAll(), QByteArray("new code"));
    QVERIFY(code.remove());
}

void tst_CodeDock::nameOfNoFileIsShown_data()
{
    QTest::addColumn<QByteArray>("value");
    QTest::newRow("no such file") << QByteArray("none.frag");
    QTest::newRow("folder") << QByteArray(".");
    QTest::newRow("network") << QByteArray("http://none/a.frag");
    QTest::newRow("long") << QByteArray(100000, 'a');
    QTest::newRow("null character") << QByteArray("a\0b", 3);
    QTest::newRow("nothing") << QByteArray();
}

void tst_CodeDock::nameOfNoFileIsShown()
{
    QFETCH(QByteArray, value);
    auto* url = QorCodeWidget::urlField(node("Vertex"));
    (*url)[0] = value.toStdString();
    select("Vertex");
    QVERIFY(widget()->isEnabled());
    QCOMPARE((*url)[0], value.toStdString());
    edit()->setPlainText(QStringLiteral("code"));
    pressApply();
    QCOMPARE((*url)[0], std::string("code"));
}

void tst_CodeDock::wantedFieldIsAdded()
{
    QSignalSpy changed(_steps, &Steps::fieldsChanged);
    select("First");
    QTimer::singleShot(0, qApp, [] {
        auto* dialog = qobject_cast<QorNewFieldDialog*>(QApplication::activeModalWidget());
        QVERIFY(dialog);
        const auto edits = dialog->findChildren<QLineEdit*>();
        edits.at(0)->setText(QStringLiteral("on"));
        edits.at(1)->setText(QStringLiteral("TRUE"));
        dialog->onCreate();
    });
    widget()->openFieldDialog();
    const Field* field = node("First")->findField("on", Node::EXACT_FSO);
    QVERIFY(field);
    QCOMPARE(field->dataType(), SFBOOL_DT);
    QCOMPARE(field->partType(), FIELDP);
    QVERIFY(field->_desc->objExt());
    QCOMPARE(field->valueToString(), std::string("TRUE"));
    QVERIFY(!node("Second")->findField("on", Node::EXACT_FSO));
    QCOMPARE(changed.size(), 1);
    selectField(QStringLiteral("on"));
}

void tst_CodeDock::unwantedFieldIsRemoved()
{
    QSignalSpy changed(_steps, &Steps::fieldsChanged);
    select("First");
    selectField(QStringLiteral("size"));
    pressRemove();
    QVERIFY(!node("First")->findField("size", Node::EXACT_FSO));
    QCOMPARE(changed.size(), 1);
    const QAbstractItemModel* model = widget()->findChild<QorNodeEditor*>()->model();
    for (int row = 0; row < model->rowCount(); ++row)
        QVERIFY(model->index(row, 0).data().toString() != QLatin1String("size"));
}

void tst_CodeDock::fieldsAreRefused_data()
{
    QTest::addColumn<QByteArray>("node");
    QTest::addColumn<QString>("dataType");
    QTest::addColumn<QString>("fieldType");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("value");
    QTest::addColumn<bool>("isAdded");
    const auto row = [](const char* title, const char* node, const char* dataType, const char* fieldType,
                        const QString& name, const char* value, bool isAdded) {
        QTest::newRow(title) << QByteArray(node) << QString::fromLatin1(dataType)
                             << QString::fromLatin1(fieldType) << name << QString::fromLatin1(value)
                             << isAdded;
    };
    const QString name = QStringLiteral("fresh");
    row("plain", "First", "SFInt32", "Field", name, "7", true);
    row("no value", "First", "MFVec3f", "ExposedField", name, "", true);
    row("several values", "First", "MFInt32", "Field", name, "1, 2", true);
    row("event", "First", "SFTime", "EventOut", name, "", true);
    row("umlaut", "First", "SFTime", "EventIn", QStringLiteral("gr\u00f6\u00dfe"), "", true);
    row("beyond Latin-1", "First", "SFTime", "EventIn", QStringLiteral("\u4e2d"), "", true);
    row("shader", "Composed", "SFFloat", "ExposedField", name, "0.5", true);
    row("program", "Program", "SFFloat", "ExposedField", name, "0.5", true);
    row("node without fields of authors", "Plain", "SFInt32", "Field", name, "7", false);
    row("part without a shader", "NoPrograms", "SFInt32", "Field", name, "7", false);
    row("name of another", "First", "SFInt32", "Field", QStringLiteral("size"), "", false);
    row("name of the type", "First", "SFInt32", "Field", QStringLiteral("url"), "", false);
    row("event of an exposed field", "First", "SFInt32", "EventIn", QStringLiteral("set_size"), "", false);
    row("no name", "First", "SFInt32", "Field", QString(), "", false);
    row("blank", "First", "SFInt32", "Field", QStringLiteral("a b"), "", false);
    row("digit first", "First", "SFInt32", "Field", QStringLiteral("1a"), "", false);
    row("point", "First", "SFInt32", "Field", QStringLiteral("a.b"), "", false);
    row("quote", "First", "SFInt32", "Field", QStringLiteral("a\"b"), "", false);
    row("markup", "First", "SFInt32", "Field", QStringLiteral("a<b"), "", false);
    row("null character", "First", "SFInt32", "Field", QString(QChar::Null), "", false);
    row("keyword", "First", "SFInt32", "Field", QStringLiteral("ROUTE"), "", false);
    row("reserved type", "First", "SFReserved1", "Field", name, "", false);
    row("unknown type", "First", "SFThing", "Field", name, "", false);
    row("unknown access", "First", "SFInt32", "field", name, "", false);
    row("value of another type", "First", "SFInt32", "Field", name, "abc", false);
    row("value too many", "First", "SFInt32", "Field", name, "1 2", false);
    row("value of an event", "First", "SFInt32", "EventIn", name, "1", false);
}

void tst_CodeDock::fieldsAreRefused()
{
    QFETCH(QByteArray, node);
    QFETCH(QString, dataType);
    QFETCH(QString, fieldType);
    QFETCH(QString, name);
    QFETCH(QString, value);
    QFETCH(bool, isAdded);
    Node& owner = *this->node(node.constData());
    const unsigned int count = owner.partDescCount();
    const QString error = AuthorFields::add(owner, dataType, fieldType, name, value);
    QCOMPARE(error.isEmpty(), isAdded);
    QCOMPARE(owner.partDescCount(), isAdded ? count + 1 : count);
    if (isAdded) {
        QCOMPARE(AuthorFields::remove(owner, name), QString());
        QCOMPARE(owner.partDescCount(), count);
    }
}

void tst_CodeDock::fieldOfTheTypeStays()
{
    Node& owner = *node("First");
    const unsigned int count = owner.partDescCount();
    QVERIFY(!AuthorFields::remove(owner, QStringLiteral("url")).isEmpty());
    QVERIFY(!AuthorFields::remove(owner, QStringLiteral("none")).isEmpty());
    QVERIFY(!AuthorFields::remove(owner, QString()).isEmpty());
    QCOMPARE(owner.partDescCount(), count);
}

void tst_CodeDock::routesOfARemovedFieldEnd()
{
    QVERIFY(_context->load(_folder.filePath(QStringLiteral("scene.x3d")).toStdString(),
                           "<X3D version='4.0'><Scene><Script DEF='First'><field name='out' type='SFFloat' "
                           "accessType='outputOnly'/></Script><Script DEF='Second'><field name='in' "
                           "type='SFFloat' accessType='inputOnly'/></Script><ROUTE fromNode='First' "
                           "fromField='out' toNode='Second' toField='in'/></Scene></X3D>",
                           Context::REPLACE_LT, ""));
    const Field* in = node("Second")->findField("in", Node::EXACT_FSO);
    QCOMPARE(in->inRouteCount(true, false), 1U);
    QCOMPARE(AuthorFields::remove(*node("First"), QStringLiteral("out")), QString());
    QCOMPARE(in->inRouteCount(true, false), 0U);
}

void tst_CodeDock::refusalIsTold()
{
    QSignalSpy told(_dock, &CodeDock::told);
    QSignalSpy changed(_steps, &Steps::fieldsChanged);
    select("First");
    selectField(QStringLiteral("url"));
    pressRemove();
    QCOMPARE(told.size(), 1);
    QVERIFY(told.takeFirst().first().toString().contains(QStringLiteral("url")));
    emit widget()->wantsAddField(node("First"), QStringLiteral("SFReserved1"), QStringLiteral("Field"),
                                 QStringLiteral("x"), QString(), QString(), QString());
    QCOMPARE(told.size(), 1);
    QVERIFY(told.takeFirst().first().toString().contains(QStringLiteral("SFReserved1")));
    emit widget()->wantsAddField(nullptr, QString(), QString(), QString(), QString(), QString(), QString());
    emit widget()->wantsDeleteField(nullptr, QString());
    QVERIFY(told.isEmpty());
    QVERIFY(changed.isEmpty());
}

void tst_CodeDock::panelOfTheNodeFollowsItsFields()
{
    NodeDock nodeDock(_selection, _steps, nullptr);
    select("First");
    const auto* editor = nodeDock.findChild<QorObservingNodeEditor*>();
    const int rows = editor->model()->rowCount();
    selectField(QStringLiteral("size"));
    pressRemove();
    QCOMPARE(editor->model()->rowCount(), rows - 1);
    nodeDock.refresh(node("Second"));
    QCOMPARE(editor->node(), node("First"));
    nodeDock.refresh(nullptr);
    QCOMPARE(editor->node(), node("First"));
}

void tst_CodeDock::deadNodeEmptiesThePanel()
{
    select("First");
    edit()->insertPlainText(QStringLiteral("mine "));
    removeFromScene("First");
    _context->runFrame();
    QVERIFY(!node("First"));
    QVERIFY(!widget()->isEnabled());
    QVERIFY(!widget()->codeNode());
    QVERIFY(edit()->toPlainText().isEmpty());
    QVERIFY(!widget()->findChild<QorNodeEditor*>()->node());
    widget()->grab();
    select("Second");
    QCOMPARE(edit()->toPlainText(), QStringLiteral("javascript: second"));
}

void tst_CodeDock::deadShaderEmptiesThePanelOfItsPart()
{
    select("Fragment");
    removeFromScene("Shaded");
    _context->runFrame();
    QVERIFY(!widget()->isEnabled());
    QVERIFY(!widget()->codeNode() && !widget()->fieldNode());
}

void tst_CodeDock::nodeMayDieWhileAFieldIsAskedFor()
{
    select("First");
    bool isDead = false;
    QTimer::singleShot(0, qApp, [&] {
        auto* dialog = qobject_cast<QorNewFieldDialog*>(QApplication::activeModalWidget());
        QVERIFY(dialog);
        removeFromScene("First");
        _context->runFrame();
        isDead = !node("First");
        dialog->findChildren<QLineEdit*>().at(0)->setText(QStringLiteral("x"));
        dialog->onCreate();
    });
    widget()->openFieldDialog();
    QVERIFY(isDead);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(!widget()->isEnabled());
}

void tst_CodeDock::everythingMayDieWhileTextWaits()
{
    for (const char* name : {"First", "Second", "Fragment", "Program", "Packaged"}) {
        select(name);
        edit()->insertPlainText(QStringLiteral("mine "));
    }
    QVERIFY(_context->load("other.x3d", "<X3D version='4.0'><Scene><Script DEF='First'/></Scene></X3D>",
                           Context::REPLACE_LT, ""));
    _context->runFrame();
    QVERIFY(!widget()->codeNode());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCOMPARE(_dock->findChildren<QorCodeWidget*>().size(), 1);
    select("First");
    QVERIFY(edit()->toPlainText().isEmpty());
}

void tst_CodeDock::panelMayDieFirst()
{
    select("First");
    delete _dock;
    removeFromScene("First");
    _context->runFrame();
    _dock = new CodeDock(_selection, _steps, nullptr);
}

QTEST_MAIN(tst_CodeDock)
#include "tst_CodeDock.moc"
