#include "QorLogView.h"

#include "QorLogLayout.h"
#include "QorTools.h"
#include <QtCore/QTimerEvent>
#include <QtGui/QTextCursor>
#include <QtGui/QTextOption>
#include <QtWidgets/QScrollBar>
#include <algorithm>
#include <array>

namespace Orvane::Qt4 {

namespace {

constexpr int PrintInterval = 200; // milliseconds

const std::array<const char*, 6> levelNames = {"LOG", "FATAL", "WARNING", "NOTICE", "INFO", "DEBUG"};

/// Keeps a user at the end of the pane at its end; one who has scrolled up keeps the position.
class EndKeeper
{
public:
    explicit EndKeeper(QScrollBar* bar)
        : _bar(bar)
        , _isAtEnd(bar->value() == bar->maximum())
    {
    }
    EndKeeper(const EndKeeper&) = delete;
    EndKeeper& operator=(const EndKeeper&) = delete;
    ~EndKeeper()
    {
        if (_isAtEnd)
            _bar->setValue(_bar->maximum());
    }

private:
    QScrollBar* _bar;
    bool _isAtEnd;
};

/// Characters of the line end that an entry has as its last.
int lineEndSize(const QString& entry)
{
    if (!entry.endsWith(QLatin1Char('\n')))
        return 0;
    return entry.endsWith(QLatin1String("\r\n")) ? 2 : 1;
}

} // namespace

QorLogView::QorLogView(QWidget* parent)
    : QFrame(parent)
{
    setupUi(this);
    auto* layout = new QorLogLayout(textView->document());
    layout->setPaintDevice(textView->viewport());
    textView->document()->setDocumentLayout(layout);
    dropShaping(*textView);
    // Lines begin with the name of a level: to look each one through for its direction is in vain.
    QTextOption option = textView->document()->defaultTextOption();
    option.setTextDirection(Qt::LeftToRight);
    textView->document()->setDefaultTextOption(option);
    QorLogView::init();
    _timerId = startTimer(PrintInterval);
}

QorLogView::~QorLogView()
{
    killTimer(_timerId);
    QorLogView::destroy();
}

void QorLogView::init()
{
    const osg::LogLock lock;
    osg::Log& log = osg::osgLog();

    levelComboBox->setCurrentIndex(log.getLogLevel());
    log.delHeaderElem(osg::LOG_COLOR_HEADER, true);
    log.setLogType(osg::LOG_BUFFER, true);
    log.getLogBuf().setCallback(callback, this, true);
    log.getLogBuf().setEnabled(false);
    log.getLogBuf().clearChunkBag();

    _logColor = QColor(0, 128, 0);
    _fatalColor = QColor(255, 0, 0);
    _warningColor = QColor(128, 0, 0);
    _noticeColor = QColor(0, 0, 0);
    _infoColor = QColor(0, 0, 128);
    _debugColor = QColor(128, 128, 0);

    const std::array<const QColor*, 6> colors = {&_logColor,    &_fatalColor, &_warningColor,
                                                 &_noticeColor, &_infoColor,  &_debugColor};
    for (std::size_t i = 0; i < colors.size(); ++i)
        _formats[QLatin1Char(levelNames[i][0])].setForeground(*colors[i]);

    const std::array<std::pair<osg::LogHeaderElem, QCheckBox*>, 5> boxes = {
        {{osg::LOG_TYPE_HEADER, levelCheck},
         {osg::LOG_TIMESTAMP_HEADER, timeStampCheck},
         {osg::LOG_MODULE_HEADER, moduleCheck},
         {osg::LOG_FILE_HEADER, fileCheck},
         {osg::LOG_LINE_HEADER, lineCheck}}};
    for (const auto& [element, box] : boxes)
        if (log.hasHeaderElem(element))
            box->setChecked(true);

    levelComboBox->setCurrentIndex(log.getLogLevel());
    textView->ensureCursorVisible();

    // The slots are virtual, so those of a subclass are called.
    connect(levelComboBox, SIGNAL(activated(int)), this, SLOT(setLevel(int)));
    connect(levelCheck, SIGNAL(toggled(bool)), this, SLOT(enableTypeElement(bool)));
    connect(timeStampCheck, SIGNAL(toggled(bool)), this, SLOT(enableTimeStampElement(bool)));
    connect(moduleCheck, SIGNAL(toggled(bool)), this, SLOT(enableModuleElement(bool)));
    connect(fileCheck, SIGNAL(toggled(bool)), this, SLOT(enableFileElement(bool)));
    connect(lineCheck, SIGNAL(toggled(bool)), this, SLOT(enableLineElement(bool)));
    connect(clearButton, SIGNAL(clicked()), this, SLOT(clear()));
}

void QorLogView::destroy()
{
    // Under the lock, so that no thread is inside the callback when this returns.
    const osg::LogLock lock;
    if (!osg::osgLogP)
        return;
    osg::LogBuf& buffer = osg::osgLogP->getLogBuf();
    buffer.removeCallback();
    buffer.setEnabled(true);
}

void QorLogView::callback(const char* text, osg::Int32 size, void* view)
{
    static_cast<QorLogView*>(view)->addLogData(text, size);
}

void QorLogView::addLogData(const char* text, int size)
{
    if (!text || size <= 0)
        return;
    const QString line = fromRuntime(std::string(text, static_cast<std::size_t>(size)));
    const osg::LogLock lock;
    _pendingLines.append(line);
}

void QorLogView::timerEvent(QTimerEvent* event)
{
    if (event->timerId() != _timerId) {
        QFrame::timerEvent(event);
        return;
    }

    QStringList lines;
    {
        const osg::LogLock lock;
        lines.swap(_pendingLines);
    }
    if (lines.isEmpty())
        return;

    const EndKeeper keeper(textView->verticalScrollBar());
    QTextCursor end(textView->document());
    end.movePosition(QTextCursor::End);
    end.beginEditBlock();
    for (int i = 0; i < lines.size(); ++i) {
        const QString& line = lines.at(i);
        const bool isLast = i == lines.size() - 1;
        if (_filterDuplicateEntries && line == _lastLine) {
            ++_repeatCount;
            if (!isLast)
                continue;
        } else if (_repeatCount > 0) {
            writeEntry(end, _lastLine, _repeatCount);
            _repeatCount = 0;
        }
        writeEntry(end, line, _repeatCount);
    }
    end.endEditBlock();
}

void QorLogView::printLine(const QString& line, int count)
{
    const EndKeeper keeper(textView->verticalScrollBar());
    QTextCursor end(textView->document());
    end.movePosition(QTextCursor::End);
    writeEntry(end, line, count);
}

void QorLogView::writeEntry(QTextCursor& end, const QString& line, int count)
{
    if (line.isEmpty())
        return;
    if (count > 0 && _lastStart >= 0)
        end.setPosition(_lastStart, QTextCursor::KeepAnchor);
    else
        _lastStart = end.position();

    const QTextCharFormat format = _formats.value(line.at(0));
    if (count > 0) {
        const int textEnd = line.size() - lineEndSize(line);
        end.insertText(line.left(textEnd) + QStringLiteral(" [%1]").arg(count) + line.mid(textEnd), format);
    } else {
        end.insertText(line, format);
    }
    _lastLine = line;
}

void QorLogView::clear()
{
    textView->clear();
    _lastLine.clear();
    _lastStart = -1;
}

void QorLogView::setLevel(int level)
{
    levelComboBox->setCurrentIndex(level);
    const int known = std::clamp<int>(level, osg::LOG_LOG, osg::LOG_DEBUG);
    const osg::LogLock lock;
    osg::osgLog().setLogLevel(static_cast<osg::LogLevel>(known), true);
}

void QorLogView::setLevel(QString levelName)
{
    setLevel(logLevelIndex(levelName));
}

void QorLogView::setElement(osg::LogHeaderElem element, bool state)
{
    const osg::LogLock lock;
    if (state)
        osg::osgLog().addHeaderElem(element, true);
    else
        osg::osgLog().delHeaderElem(element, true);
}

void QorLogView::enableTypeElement(bool state)
{
    levelCheck->setChecked(state);
    setElement(osg::LOG_TYPE_HEADER, state);
}

void QorLogView::enableFileElement(bool state)
{
    fileCheck->setChecked(state);
    setElement(osg::LOG_FILE_HEADER, state);
}

void QorLogView::enableLineElement(bool state)
{
    lineCheck->setChecked(state);
    setElement(osg::LOG_LINE_HEADER, state);
}

void QorLogView::enableModuleElement(bool state)
{
    moduleCheck->setChecked(state);
    setElement(osg::LOG_MODULE_HEADER, state);
}

void QorLogView::enableTimeStampElement(bool state)
{
    timeStampCheck->setChecked(state);
    setElement(osg::LOG_TIMESTAMP_HEADER, state);
}

void QorLogView::beginNewLineElem(bool state)
{
    setElement(osg::LOG_BEGIN_NEWLINE_HEADER, state);
}

void QorLogView::endNewLineElem(bool state)
{
    setElement(osg::LOG_END_NEWLINE_HEADER, state);
}

void QorLogView::setLogTextFontSize(int pointSize)
{
    if (pointSize <= 0)
        return;
    QFont font = textView->font();
    font.setPointSize(pointSize);
    textView->setFont(font);
}

void QorLogView::setFilterDuplicateEntries(bool f)
{
    _filterDuplicateEntries = f;
}

bool QorLogView::filterDuplicateEntries()
{
    return _filterDuplicateEntries;
}

int QorLogView::logLevelIndex(const QString& name)
{
    const auto found = std::find_if(levelNames.begin(), levelNames.end(),
                                    [&](const char* each) { return name == QLatin1String(each); });
    return found == levelNames.end() ? 0 : static_cast<int>(found - levelNames.begin());
}

QString QorLogView::logLevelName(int index)
{
    const bool isKnown = index >= 0 && index < static_cast<int>(levelNames.size());
    return QString::fromLatin1(isKnown ? levelNames[static_cast<std::size_t>(index)] : levelNames.back());
}

} // namespace Orvane::Qt4
