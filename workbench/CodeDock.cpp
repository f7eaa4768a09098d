#include "CodeDock.h"

#include "AuthorFieldCommand.h"
#include "CodeAddress.h"
#include "CodeNodes.h"
#include "FieldCommands.h"
#include "FileDrops.h"
#include "GraphReach.h"
#include "KeptCode.h"
#include "RecordingDelegate.h"
#include "Selection.h"
#include "Steps.h"
#include "TextColors.h"
#include "ValueKeys.h"
#include <Orvane/MFString.h>
#include <Orvane/Node.h>
#include <QAction>
#include <QMessageBox>
#include <QPushButton>
#include <QStackedWidget>
#include <QTextBlock>
#include <QTextEdit>
#include <QVBoxLayout>
#include <QorLog.h>
#include <QorNodeEditor.h>
#include <QorNodeEditorTreeView.h>
#include <QorTools.h>
#include <algorithm>

using namespace Orvane::Qt4;

namespace {

const char module[] = "Workbench";

/// Shows the code of a node. The widget takes the blanks at the beginning of lines away, and would write the
/// code without them: here they stay.
void showCode(QorCodeWidget& widget, Orvane::Node* node)
{
    widget.setCodeNode(node);
    Orvane::MFString* const url = QorCodeWidget::urlField(node);
    if (url && url->size() > 0 && !widget.isUsingExternalScript(url))
        widget.setCode(fromRuntime((*url)[0]), false);
}

QTextEdit* editOf(const QorCodeWidget* widget)
{
    return widget ? widget->findChild<QTextEdit*>(QStringLiteral("code")) : nullptr;
}

/// Null when the widget has no such button.
QPushButton* applyButton(const QorCodeWidget& widget)
{
    const auto buttons = widget.findChildren<QPushButton*>();
    const auto apply = std::find_if(buttons.begin(), buttons.end(), [](const QPushButton* button) {
        return button->text() == QLatin1String("Apply");
    });
    return apply == buttons.end() ? nullptr : *apply;
}

/// Writes the code of a widget as its user does. False when it still waits.
bool applyCode(const QorCodeWidget* widget)
{
    if (QPushButton* const apply = applyButton(*widget))
        apply->click();
    return !widget->isModified();
}

} // namespace

CodeDock::EndObserver::EndObserver(CodeDock* dock)
    : Orvane::Observer("CodeDock")
    , _dock(dock)
{
    Orvane::Node::_deleteObject.attach(*this);
}

void CodeDock::EndObserver::notify(const double&, Orvane::BaseObject* node, Orvane::BaseObject*,
                                   Orvane::BaseObject*)
{
    if (_dock->_pages.empty())
        return;
    if (const auto* dying = dynamic_cast<const Orvane::Node*>(node))
        _dock->closePagesOf(dying->ID());
}

CodeDock::CodeDock(Selection* selection, Steps* steps, QWidget* parent)
    : QDockWidget(tr("Code"), parent)
    , _steps(steps)
    , _stack(new QStackedWidget(this))
    , _findBar(nullptr)
    , _nothing(new QorCodeWidget(_stack))
    , _applyAction(new QAction(tr("&Apply code"), this))
    , _endObserver(this)
{
    setObjectName(QStringLiteral("CodeDock"));
    auto* const content = new QWidget(this);
    auto* const layout = new QVBoxLayout(content);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(_stack);
    _findBar = new FindBar(_stack, {}, content);
    layout->addWidget(_findBar);
    content->setFocusProxy(_stack);
    setWidget(content);
    connect(_findBar, &FindBar::wanted, this, &CodeDock::find);
    // Who asks for the panel wants to write.
    connect(_stack, &QStackedWidget::currentChanged, this, [this] {
        _stack->setFocusProxy(editOf(codeWidget()));
        _applyAction->setEnabled(codeWidget() != _nothing);
    });
    _applyAction->setEnabled(false);
    _nothing->setCodeNode(nullptr);
    _stack->addWidget(_nothing);
    _applyAction->setShortcut(Qt::CTRL | Qt::Key_Return);
    connect(_applyAction, &QAction::triggered, this, [this] {
        if (QPushButton* const apply = applyButton(*codeWidget()))
            apply->click();
    });
    connect(selection, &Selection::changed, this,
            [this](const Orvane::NodePath& path) { openNode(path.node()); });
    connect(steps, &Steps::valueGiven, this, &CodeDock::reread);
    connect(steps, &Steps::fieldsChanged, this, &CodeDock::renewFields);
    connect(steps, &Steps::nodeLeft, this, [this](Orvane::Node* node) { putAway(*node); });
    connect(steps, &Steps::nodePlaced, this, &CodeDock::fetchBack);
}

CodeDock::~CodeDock() = default;

void CodeDock::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::PaletteChange) {
        for (const Page& page : _pages)
            colorCode(*page.widget);
    }
    QDockWidget::changeEvent(event);
}

QorCodeWidget* CodeDock::codeWidget() const
{
    return static_cast<QorCodeWidget*>(_stack->currentWidget());
}

void CodeDock::openNode(Orvane::Node* node)
{
    const CodeNodes nodes = CodeNodes::of(node);
    if (!nodes.code)
        return;
    const unsigned long long codeId = nodes.code->ID();
    // What waits to be applied is kept; the rest is read afresh when somebody comes back to it.
    for (std::size_t i = _pages.size(); i-- > 0;) {
        if (!_pages[i].widget->isModified() &&
            (_pages[i].codeId != codeId || _pages[i].widget != codeWidget()))
            closePage(i);
    }
    const auto page =
        std::find_if(_pages.begin(), _pages.end(), [&](const Page& each) { return each.codeId == codeId; });
    if (page == _pages.end())
        addPage(nodes);
    else
        _stack->setCurrentWidget(page->widget);
    show();
    raise();
}

void CodeDock::showLine(Orvane::Node* node, int line)
{
    openNode(node);
    if (!codeWidget()->codeNode() || codeWidget()->codeNode() != CodeNodes::of(node).code)
        return;
    QTextEdit* const edit = editOf(codeWidget());
    QTextCursor cursor(edit->document()->findBlockByNumber(line - 1));
    if (cursor.isNull())
        return;
    cursor.movePosition(QTextCursor::EndOfBlock);
    cursor.movePosition(QTextCursor::StartOfBlock, QTextCursor::KeepAnchor);
    edit->setTextCursor(cursor);
    edit->setFocus(Qt::OtherFocusReason);
}

void CodeDock::addPage(const CodeNodes& nodes)
{
    auto* widget = new QorCodeWidget(_stack);
    {
        const CodeAddress address(QorCodeWidget::urlField(nodes.code));
        widget->setLanguage(nodes.language(*widget));
        showCode(*widget, nodes.code);
    }
    widget->setFieldNode(nodes.fields);
    connect(widget, &QorCodeWidget::wantsAddField, this, &CodeDock::addField);
    connect(widget, &QorCodeWidget::wantsDeleteField, this, &CodeDock::removeField);
    record(widget);
    colorCode(*widget);
    connect(new FileDrops(editOf(widget)->viewport()), &FileDrops::dropped, this, &CodeDock::fileDropped);
    _pages.push_back({widget, nodes.code->ID(), nodes.fields->ID(), false});
    _stack->setCurrentIndex(_stack->addWidget(widget));
}

/// Makes steps of what the widget writes: fields by the editors of its list, code by its button.
void CodeDock::record(QorCodeWidget* widget)
{
    auto* const fields = widget->findChild<QorNodeEditor*>();
    auto* const delegate = new RecordingDelegate(_steps, widget);
    fields->setItemDelegate(delegate);
    new ValueKeys(fields->treeView()); // which owns it
    widget->updateFieldList();
    delegate->watch(fields->model());

    connect(editOf(widget)->document(), &QTextDocument::modificationChanged, this,
            &CodeDock::unappliedChanged);
    QPushButton* const apply = applyButton(*widget);
    if (!apply)
        return;
    // The widget writes when the button is clicked, before anyone who has asked later.
    const auto before = std::make_shared<std::unique_ptr<const FieldState>>();
    connect(apply, &QPushButton::pressed, widget, [widget, before] {
        Orvane::Node* const node = widget->codeNode();
        const Orvane::Field* const code = node ? QorCodeWidget::urlField(node) : nullptr;
        before->reset(code ? new FieldState(*code) : nullptr);
    });
    connect(apply, &QPushButton::clicked, widget, [this, widget, before] {
        const std::unique_ptr<const FieldState> old = std::move(*before);
        Orvane::Node* const node = widget->codeNode();
        const Orvane::Field* const code = node ? QorCodeWidget::urlField(node) : nullptr;
        if (code && old && *old != FieldState(*code))
            _steps->push(new FieldCommand(*_steps, *code, *old, FieldState(*code), 0));
    });
}

/// Code that was taken back is shown, unless somebody is writing.
void CodeDock::reread(Orvane::Node* node)
{
    for (const Page& page : _pages) {
        if (page.codeId != node->ID() || page.widget->isModified())
            continue;
        page.widget->setCodeNode(nullptr);
        showCode(*page.widget, node);
    }
    renewFields(node);
}

void CodeDock::renewFields(Orvane::Node* node)
{
    for (const Page& page : _pages) {
        if (page.codeId != node->ID() && page.fieldsId != node->ID())
            continue;
        auto* const delegate = page.widget->findChild<RecordingDelegate*>();
        delegate->watch(nullptr);
        page.widget->updateFieldList();
        delegate->watch(page.widget->findChild<QorNodeEditor*>()->model());
    }
}

void CodeDock::closePage(std::size_t page)
{
    QorCodeWidget* widget = _pages[page].widget;
    _pages.erase(_pages.begin() + static_cast<std::ptrdiff_t>(page));
    if (widget == codeWidget())
        _stack->setCurrentWidget(_nothing);
    _stack->removeWidget(widget);
    widget->setCodeNode(nullptr);
    widget->hide();
    // It may be at work, and wait for its own signal.
    widget->deleteLater();
    emit unappliedChanged();
}

/// The node is no longer part of the scene. What was written waits for its return.
void CodeDock::putAway(const Orvane::Node& node)
{
    for (std::size_t i = _pages.size(); i-- > 0;) {
        Page& page = _pages[i];
        if (page.codeId != node.ID() && page.fieldsId != node.ID())
            continue;
        if (!page.widget->isModified()) {
            closePage(i);
            continue;
        }
        page.isAway = true;
        if (page.widget == codeWidget())
            _stack->setCurrentWidget(_nothing);
    }
    emit unappliedChanged();
}

void CodeDock::fetchBack()
{
    for (Page& page : _pages) {
        const Orvane::Node* const node = page.isAway ? Orvane::Node::findNode(page.codeId) : nullptr;
        if (node && node->state() == Orvane::RUNNING_NS)
            page.isAway = false;
    }
    emit unappliedChanged();
}

QStringList CodeDock::unapplied() const
{
    QStringList names;
    for (const Page& page : _pages) {
        const Orvane::Node* const node = Orvane::Node::findNode(page.codeId);
        if (node && !page.isAway && page.widget->isModified())
            names << fromRuntime(nodeName(node));
    }
    return names;
}

QByteArray CodeDock::keptCode() const
{
    std::vector<KeptCode> codes;
    for (const Page& page : _pages) {
        Orvane::Node* const node = Orvane::Node::findNode(page.codeId);
        if (node && !page.isAway && page.widget->isModified())
            codes.push_back({ScenePlace::of(Orvane::NodePath(node)), editOf(page.widget)->toPlainText()});
    }
    return KeptCode::toBytes(codes);
}

bool CodeDock::bringBack(Orvane::Node& root, const QByteArray& kept)
{
    bool ok = true;
    for (const KeptCode& code : KeptCode::fromBytes(kept)) {
        Orvane::Node* const node = code.place.find(root).node();
        openNode(node);
        if (!node || codeWidget()->codeNode() != node) {
            QOR_LOG_LINE(osg::LOG_WARNING, module, "Code of a node that is not there, %s %s:\n%s\n",
                         code.place.type.c_str(), code.place.name.c_str(), toRuntime(code.text).c_str());
            ok = false;
            continue;
        }
        QTextCursor cursor(editOf(codeWidget())->document());
        cursor.select(QTextCursor::Document);
        cursor.insertText(code.text);
    }
    return ok;
}

bool CodeDock::applyAll()
{
    for (std::size_t i = 0; i < _pages.size(); ++i) {
        const Page page = _pages[i];
        if (page.isAway || !page.widget->isModified() || applyCode(page.widget))
            continue;
        tell(tr("The code of %1 cannot be written.")
                 .arg(fromRuntime(nodeName(Orvane::Node::findNode(page.codeId)))));
        return false;
    }
    return true;
}

bool CodeDock::mayLeave(Orvane::Node& node)
{
    const std::vector<Orvane::Node*> leaving = nodesBelow({&node});
    for (std::size_t i = _pages.size(); i-- > 0;) {
        const Page page = _pages[i];
        Orvane::Node* const code = Orvane::Node::findNode(page.codeId);
        if (page.isAway || !page.widget->isModified() ||
            std::find(leaving.begin(), leaving.end(), code) == leaving.end())
            continue;
        const auto answer = QMessageBox::question(
            window(), tr("Apply code?"),
            tr("The code of %1 was changed and not applied. Apply it before the node is deleted?")
                .arg(fromRuntime(nodeName(code))),
            QMessageBox::Apply | QMessageBox::Discard | QMessageBox::Cancel, QMessageBox::Apply);
        if (answer == QMessageBox::Discard)
            closePage(i);
        else if (answer != QMessageBox::Apply || !applyCode(page.widget))
            return false;
    }
    return true;
}

void CodeDock::find(FindBar::Step step)
{
    QTextEdit* const edit = editOf(codeWidget());
    const QString text = edit->toPlainText();
    const QTextCursor present = edit->textCursor();
    std::vector<int> found;
    int before = 0;
    const int length = _findBar->text().size();
    for (int at = 0; length > 0; at += length) {
        at = text.indexOf(_findBar->text(), at, Qt::CaseInsensitive);
        if (at < 0)
            break;
        before += at < present.selectionStart() ? 1 : 0;
        found.push_back(at);
    }
    const bool isMatch = std::find(found.begin(), found.end(), present.selectionStart()) != found.end() &&
                         present.selectionEnd() - present.selectionStart() == length;
    const int match = _findBar->choose(step, static_cast<int>(found.size()), before, isMatch);
    if (match < 0)
        return;
    QTextCursor cursor = present;
    cursor.setPosition(found[static_cast<std::size_t>(match)]);
    cursor.movePosition(QTextCursor::NextCharacter, QTextCursor::KeepAnchor, length);
    edit->setTextCursor(cursor);
}

void CodeDock::closePagesOf(unsigned long long nodeId)
{
    for (std::size_t i = _pages.size(); i-- > 0;) {
        if (_pages[i].codeId == nodeId || _pages[i].fieldsId == nodeId)
            closePage(i);
    }
}

void CodeDock::addField(Orvane::Node* node, const QString& dataType, const QString& fieldType,
                        const QString& name, const QString& defaultValue)
{
    if (!node)
        return;
    const QString error = AuthorFieldCommand::add(*_steps, *node, dataType, fieldType, name, defaultValue);
    if (!error.isEmpty())
        tell(tr("The field is not added: %1.").arg(error));
}

void CodeDock::removeField(Orvane::Node* node, const QString& name)
{
    if (!node)
        return;
    const QString error = AuthorFieldCommand::remove(*_steps, *node, name);
    if (!error.isEmpty())
        tell(tr("The field is not removed: %1.").arg(error));
}

void CodeDock::tell(const QString& text)
{
    QOR_LOG_LINE(osg::LOG_WARNING, module, "%s\n", toRuntime(text).c_str());
    emit told(text);
}
