#include "QorCodeWidget.h"

#include "QorLog.h"
#include "QorNewFieldDialog.h"
#include "QorNodeEditor.h"
#include "QorNodeEditorTreeView.h"
#include "QorNodeItemDelegate.h"
#include "QorSyntaxHighlighter.h"
#include "QorTools.h"
#include <Orvane/MFString.h>
#include <Orvane/NodeNameSpace.h>
#include <QtCore/QFileInfo>
#include <QtCore/QTextStream>
#include <QtGui/QTextDocument>
#include <QtGui/QTextOption>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QSplitter>
#include <QtWidgets/QTextEdit>
#include <QtWidgets/QVBoxLayout>

namespace Orvane::Qt4 {

namespace {

QUrl baseUrl(const Orvane::NodeNameSpace* names)
{
    return names ? QUrl(fromRuntime(names->baseURL().toString())) : QUrl();
}

QString firstValue(const Orvane::MFString& field)
{
    return fromRuntime(field[0]);
}

/// No text edit can be used with more than this.
constexpr qint64 LargestScript = qint64(64) << 20;

/// False for what would never end or block: devices, pipes and the like. A file yet to be made is fine.
bool isPlainFile(const QString& path)
{
    const QFileInfo info(path);
    return info.isFile() || !info.exists();
}

QString withoutIndent(QString code)
{
    QString text;
    text.reserve(code.size() + 1);
    QTextStream lines(&code, QIODevice::ReadOnly);
    QString line;
    while (lines.readLineInto(&line)) {
        QTextStream rest(&line, QIODevice::ReadOnly);
        rest.skipWhiteSpace();
        text += rest.readAll() + QLatin1Char('\n');
    }
    return text;
}

QVBoxLayout* makePaneLayout(QWidget* pane)
{
    auto* layout = new QVBoxLayout(pane);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    return layout;
}

} // namespace

QorCodeWidget::QorCodeWidget(QWidget* parent)
    : QWidget(parent)
{
    setObjectName(QStringLiteral("QorCodeWidget"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(2, 2, 2, 2);
    layout->setSpacing(2);
    auto* split = new QSplitter(Qt::Vertical, this);
    split->setObjectName(QStringLiteral("split"));
    layout->addWidget(split);
    split->addWidget(makeFieldPane());
    split->addWidget(makeCodePane());

    connect(_addFieldButton, SIGNAL(clicked()), this, SLOT(openFieldDialog()));
    connect(_removeFieldButton, SIGNAL(clicked()), this, SLOT(onRemoveField()));
    connect(_applyButton, SIGNAL(clicked()), this, SLOT(onApply()));
    // The editor has no such signal yet; an editor that gets one is listened to.
    if (_fieldEditor->metaObject()->indexOfSignal("selectionChanged()") >= 0)
        connect(_fieldEditor, SIGNAL(selectionChanged()), this, SLOT(updateButtons()));
}

QorCodeWidget::~QorCodeWidget()
{
    // An editor leaves its model and the delegate that it made to whoever embeds it.
    _fieldEditor->setNode(nullptr);
    delete _defaultDelegate;
}

QWidget* QorCodeWidget::makeFieldPane()
{
    auto* pane = new QWidget;
    _codeNodeLabel = new QLabel(tr("<b>Code node:</b> "), pane);
    _fieldsLabel = new QLabel(tr("<b>Fields:</b> "), pane);
    _fieldEditor = new QorNodeEditor(pane);
    _fieldEditor->setGuiElementFilter(QorNodeEditor::NODE_TYPE_GE);
    _addFieldButton = new QPushButton(tr("+"), pane);
    _addFieldButton->setFixedSize(24, 24);
    _removeFieldButton = new QPushButton(tr("-"), pane);
    _removeFieldButton->setFixedSize(24, 24);

    QVBoxLayout* layout = makePaneLayout(pane);
    layout->addWidget(_codeNodeLabel);
    layout->addWidget(_fieldsLabel);
    auto* fields = new QHBoxLayout;
    fields->addWidget(_fieldEditor, 10);
    auto* buttons = new QVBoxLayout;
    buttons->addWidget(_addFieldButton);
    buttons->addWidget(_removeFieldButton);
    buttons->addStretch(1);
    fields->addLayout(buttons);
    layout->addLayout(fields);
    return pane;
}

QWidget* QorCodeWidget::makeCodePane()
{
    auto* pane = new QWidget;
    _codeLabel = new QLabel(tr("<b>Code:</b> "), pane);
    _codeEdit = new QTextEdit(pane);
    _codeEdit->setObjectName(QStringLiteral("code"));
    // Code reads left to right whatever its letters; lines that are looked at for it make each key slow.
    QTextOption option = _codeEdit->document()->defaultTextOption();
    option.setTextDirection(Qt::LeftToRight);
    _codeEdit->document()->setDefaultTextOption(option);
    _highlighter = new QorSyntaxHighlighter(_codeEdit, LANGUAGE_NONE);
    _applyButton = new QPushButton(QStringLiteral("Apply"), pane);

    QVBoxLayout* layout = makePaneLayout(pane);
    layout->addWidget(_codeLabel);
    layout->addWidget(_codeEdit, 10);
    layout->addWidget(_applyButton);
    return pane;
}

QorCodeWidget::LanguageE QorCodeWidget::language() const
{
    return _highlighter ? _highlighter->language() : LANGUAGE_NONE;
}

void QorCodeWidget::setLanguage(LanguageE language)
{
    if (!_highlighter)
        return;
    _highlighter->setLanguage(language);
    _highlighter->setDocument(_codeEdit->document());
}

Orvane::MFString* QorCodeWidget::urlField(Orvane::Node* node)
{
    if (!node) {
        QOR_WARNING("QorCodeWidget::urlField: node is null!\n");
        return nullptr;
    }
    Orvane::Field* field = node->findField("url", Orvane::Node::DECLARED_FSO);
    if (!field)
        field = node->findField("shaderUrl", Orvane::Node::DECLARED_FSO);
    return dynamic_cast<Orvane::MFString*>(field);
}

bool QorCodeWidget::isEmptyScript(Orvane::MFString* field) const
{
    return !field || field->size() == 0;
}

bool QorCodeWidget::isLocalFile(QString url) const
{
    return QUrl(url).scheme() == QLatin1String("file");
}

QString QorCodeWidget::scriptPath(const QString& value, const Orvane::MFString& field) const
{
    if (!isLocalFile(value))
        return value;
    const QString path = QUrl(value).path();
    if (!QFileInfo(path).isRelative() || !field.node())
        return path;
    const QString base = baseUrl(field.node()->nameSpace()).path();
    return base.left(base.lastIndexOf(QLatin1Char('/')) + 1) + path;
}

bool QorCodeWidget::isUsingExternalScript(Orvane::MFString* field) const
{
    if (isEmptyScript(field))
        return false;
    const QString path = scriptPath(firstValue(*field), *field);
    return !path.contains(QChar::Null) && QFileInfo::exists(path);
}

void QorCodeWidget::setCodeNode(Orvane::Node* s)
{
    if (!s) {
        _codeNode = QorBorrowedNode();
        _codeNodeLabel->setText(tr("<b>Script node:</b> "));
        _codeEdit->clear();
        _fieldEditor->setNode(nullptr);
        setEnabled(false);
        return;
    }
    if (s == codeNode())
        return;
    _codeNode = QorBorrowedNode(s);
    Orvane::MFString* url = urlField(s);
    _codeNodeLabel->setText(tr("<b>Code node:</b> ") + fromRuntime(nodeName(s)).toHtmlEscaped());
    if (url && isEmptyScript(url))
        _codeLabel->setText(tr("<b>Code [empty]:</b>"));
    else if (url)
        showCode(*url);
    setEnabled(true);
}

void QorCodeWidget::showCode(Orvane::MFString& field)
{
    const QString value = firstValue(field);
    if (!isUsingExternalScript(&field)) {
        QOR_NOTICE("QorCodeWidget::setCodeNode: node contains inlined script.\n");
        _codeLabel->setText(tr("<b>Code [inlined]:</b>"));
        setCode(value, true);
    } else if (isLocalFile(value)) {
        _isExternal = true;
        _scriptUrl = QUrl(value);
        _scriptFile = scriptPath(value, field);
        readScript(_scriptFile);
        _codeLabel->setText(tr("<b>Code [local, external]:</b>"));
    } else {
        _codeLabel->setText(tr("<b>Code [external]:</b>"));
    }
}

void QorCodeWidget::readScript(const QString& path)
{
    QFile file(path);
    if (isPlainFile(path) && file.size() <= LargestScript && file.open(QIODevice::ReadOnly)) {
        QTextStream stream(&file);
        stream.setCodec("UTF-8");
        setCode(stream.readAll(), false);
        return;
    }
    QUrl base = baseUrl(Orvane::NodeNameSpace::findNameSpace(nullptr, "scene", nullptr, false));
    base.setPath(_scriptUrl.path());
    QOR_WARNING("QorCodeWidget::setCodeNode: error reading script from [%s]\n",
                toRuntime(base.toString()).c_str());
}

bool QorCodeWidget::writeScript(const QString& code) const
{
    QFile file(_scriptFile);
    if (!isPlainFile(_scriptFile) || !file.open(QIODevice::WriteOnly))
        return false;
    QTextStream stream(&file);
    stream.setCodec("UTF-8");
    stream << code;
    stream.flush();
    file.close();
    return stream.status() == QTextStream::Ok && file.error() == QFileDevice::NoError;
}

void QorCodeWidget::setCode(QString code, bool removeIndent)
{
    _codeEdit->setPlainText(removeIndent ? withoutIndent(code) : code);
}

bool QorCodeWidget::isModified() const
{
    return _codeEdit->document()->isModified();
}

void QorCodeWidget::setFieldNode(Orvane::Node* n)
{
    if (!n)
        return;
    _fieldNode = QorBorrowedNode(n);
    updateFieldList();
}

void QorCodeWidget::updateFieldList()
{
    const bool hasDelegate = _fieldEditor->itemDelegate();
    _fieldEditor->setNode(nullptr);
    _fieldEditor->setNode(fieldNode());
    if (!hasDelegate)
        _defaultDelegate = _fieldEditor->itemDelegate();
    for (const auto column : {QorNodeModel::ID, QorNodeModel::ValueRestriction, QorNodeModel::ValueType,
                              QorNodeModel::DefaultValue, QorNodeModel::AutoProcess, QorNodeModel::Extension})
        _fieldEditor->hideColumn(column);
}

void QorCodeWidget::onApply()
{
    Orvane::Node* const node = codeNode();
    Orvane::MFString* const field = node ? urlField(node) : nullptr;
    if (!field)
        return;
    const QString code = _codeEdit->toPlainText();
    bool isKept = true;
    if (isEmptyScript(field))
        field->addValue(toRuntime(code));
    else if (_isExternal)
        isKept = writeScript(code);
    else
        (*field)[0] = toRuntime(code);
    _codeEdit->document()->setModified(!isKept);
    field->processValueChange(0.0, Orvane::Field::EXTERNAL_CT);
}

void QorCodeWidget::onRemoveField()
{
    Orvane::Node* const node = fieldNode();
    // A node button of the tree has led the editor elsewhere: its rows are no fields of the field node.
    if (_fieldEditor->node() != node) {
        updateFieldList();
        return;
    }
    const QModelIndex index = _fieldEditor->treeView()->currentIndex();
    if (!index.isValid())
        return;
    const QString name = index.data(Qt::DisplayRole).toString();
    const QPointer<QorCodeWidget> self(this);
    emit wantsDeleteField(node, name);
    if (self)
        updateFieldList();
}

void QorCodeWidget::openFieldDialog()
{
    auto* dialog = new QorNewFieldDialog(fieldNode(), this);
    connect(dialog,
            SIGNAL(wantsAddField(Orvane::Node*, QString, QString, QString, QString, QString, QString)), this,
            SIGNAL(wantsAddField(Orvane::Node*, QString, QString, QString, QString, QString, QString)));
    const QPointer<QorCodeWidget> self(this);
    const int result = dialog->exec();
    if (self && result == QDialog::Accepted)
        updateFieldList();
}

void QorCodeWidget::updateButtons()
{
}

} // namespace Orvane::Qt4
