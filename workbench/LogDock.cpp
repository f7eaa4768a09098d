#include "LogDock.h"

#include "TextColors.h"
#include <OpenSG/OSGLog.h>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QTextBlock>
#include <QTextEdit>
#include <QVBoxLayout>
#include <QorLogView.h>
#include <cstdio>

namespace {

class TerminalLogView : public Orvane::Qt4::QorLogView
{
public:
    using QorLogView::QorLogView;

    ~TerminalLogView() override
    {
        // No thread may be inside addLogData() when this class is taken down.
        destroy();
        const osg::LogLock lock;
        osg::osgLog().setLogType(osg::LOG_STDERR, true);
    }

    void addLogData(const char* text, int size) override
    {
        if (text && size > 0)
            std::fwrite(text, 1, static_cast<std::size_t>(size), stderr);
        QorLogView::addLogData(text, size);
    }
};

} // namespace

LogDock::LogDock(QWidget* parent)
    : QDockWidget(tr("Log"), parent)
{
    setObjectName(QStringLiteral("LogDock"));
    auto* content = new QWidget(this);
    auto* view = new TerminalLogView(content);
    // Its row of controls must not keep the window from being small.
    view->setMinimumSize(100, 60);
    _pane = view->findChild<QTextEdit*>(QStringLiteral("textView"));
    _findBar = new FindBar(
        _pane,
        {tr("All levels"), tr("Log"), tr("Fatal"), tr("Warning"), tr("Notice"), tr("Info"), tr("Debug")},
        content);
    auto* layout = new QVBoxLayout(content);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(view);
    layout->addWidget(_findBar);
    content->setFocusProxy(_pane);
    setWidget(content);

    _pane->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    _pane->installEventFilter(this);
    _pane->viewport()->installEventFilter(this);
    connect(_findBar, &FindBar::wanted, this, &LogDock::find);
    connect(_pane->document(), &QTextDocument::contentsChange, this, &LogDock::tellUnseen);
    _colors = new LogColors(_pane->document());
    _colors->setDark(isDark());
}

void LogDock::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::PaletteChange && _colors)
        _colors->setDark(isDark());
    QDockWidget::changeEvent(event);
}

bool LogDock::eventFilter(QObject* object, QEvent* event)
{
    QTextCursor place = _pane->textCursor();
    if (event->type() == QEvent::KeyPress && object == _pane) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key != Qt::Key_Return && key != Qt::Key_Enter)
            return QDockWidget::eventFilter(object, event);
    } else if (event->type() == QEvent::MouseButtonDblClick && object == _pane->viewport()) {
        place = _pane->cursorForPosition(static_cast<QMouseEvent*>(event)->pos());
    } else {
        return QDockWidget::eventFilter(object, event);
    }
    if (!place.block().text().trimmed().isEmpty())
        emit lineChosen(place.block().text());
    return true;
}

void LogDock::tellUnseen(int position, int, int added)
{
    if (added == 0 || !_pane->visibleRegion().isEmpty())
        return;
    QString grave;
    for (QTextBlock block = _pane->document()->findBlock(position);
         block.isValid() && block.position() < position + added; block = block.next())
    {
        if (LogColors::levelOf(block.text()) == osg::LOG_FATAL)
            grave = block.text();
    }
    const QString text = grave.section(QLatin1Char(':'), 1).trimmed();
    if (!text.isEmpty())
        emit told(tr("%1 (see the log)").arg(text));
}

void LogDock::showLine(const QString& text)
{
    show();
    raise();
    QTextBlock block = _pane->document()->lastBlock();
    while (block.isValid() && !block.text().contains(text))
        block = block.previous();
    // What is told last ends with a line break.
    if (!block.isValid())
        block = _pane->document()->lastBlock().previous();
    QTextCursor cursor(block.isValid() ? block : _pane->document()->lastBlock());
    cursor.movePosition(QTextCursor::EndOfBlock);
    cursor.movePosition(QTextCursor::StartOfBlock, QTextCursor::KeepAnchor);
    _pane->setTextCursor(cursor);
    _pane->setFocus(Qt::OtherFocusReason);
}

void LogDock::find(FindBar::Step step)
{
    const int wantedLevel = _findBar->choice() - 1; // the first choice is all of them
    const QTextCursor present = _pane->textCursor();
    // What is found is selected from its beginning.
    const QTextBlock presentBlock = _pane->document()->findBlock(present.selectionStart());
    std::vector<QTextBlock> found;
    int before = 0;
    bool isMatch = false;
    int level = -1;
    const bool isAsked = !_findBar->text().isEmpty() || wantedLevel >= 0;
    for (QTextBlock block = _pane->document()->begin(); isAsked && block.isValid(); block = block.next()) {
        const QString text = block.text();
        const int own = LogColors::levelOf(text);
        level = own >= 0 ? own : level;
        if (text.isEmpty() || (wantedLevel >= 0 && level != wantedLevel) || !_findBar->matches(text))
            continue;
        before += block.blockNumber() < presentBlock.blockNumber() ? 1 : 0;
        isMatch = isMatch || block == presentBlock;
        found.push_back(block);
    }
    const int match = _findBar->choose(step, static_cast<int>(found.size()), before, isMatch);
    if (match < 0)
        return;
    QTextCursor cursor(found[static_cast<std::size_t>(match)]);
    // The window stays at the beginning of a long line.
    cursor.movePosition(QTextCursor::EndOfBlock);
    cursor.movePosition(QTextCursor::StartOfBlock, QTextCursor::KeepAnchor);
    _pane->setTextCursor(cursor);
}
