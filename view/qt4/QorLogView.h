#pragma once

#include "QorExport.h"
#include "ui_QorLogViewForm.h"
#include <OpenSG/OSGLog.h>
#include <QtCore/QMap>
#include <QtCore/QStringList>
#include <QtGui/QColor>
#include <QtGui/QTextFormat>
#include <QtWidgets/QFrame>

namespace Orvane::Qt4 {

/// Shows the process log in a text pane, coloured by level, with repeated lines folded into one that counts
/// them. It takes the log over while it lives: its level and header controls are those of the whole process.
/// Of several views only the one made last is given lines.
///
/// Lines come from any thread; what the pane shows is changed in the GUI thread only, five times a second.
class QOR_EXPORT QorLogView : public QFrame, private ::Ui::QorLogViewForm
{
    Q_OBJECT

public:
    /// Takes the log over.
    explicit QorLogView(QWidget* parent = nullptr);
    /// Lets go of the log, which stays a buffer log.
    ~QorLogView() override;

    /// Takes one entry of \a size bytes for the next time that the pane is written to. An entry without text
    /// is dropped. From any thread, but not beside the view's death; the log calls it under its lock.
    virtual void addLogData(const char* text, int size);

    /// Colours of lines that begin with the first letter of a level's name.
    const QColor& logColor() const { return _logColor; }
    const QColor& fatalColor() const { return _fatalColor; }
    const QColor& warningColor() const { return _warningColor; }
    const QColor& noticeColor() const { return _noticeColor; }
    const QColor& infoColor() const { return _infoColor; }
    const QColor& debugColor() const { return _debugColor; }

    /// Number of a level's name, which has capitals only; 0 for any other text.
    static int logLevelIndex(const QString& name);
    /// Name of a level; "DEBUG" for any number that is none.
    static QString logLevelName(int index);

public slots:
    /// Empties the pane. Lines that have not been written yet still come.
    virtual void clear();
    /// Sets the level of the process log, 0 (log) to 5 (debug).
    virtual void setLevel(int level);
    /// The same by name, as `logLevelIndex` reads it.
    void setLevel(QString levelName);

    /// Elements of the header in front of each line of the process log.
    virtual void enableTypeElement(bool state);
    virtual void enableFileElement(bool state);
    virtual void enableLineElement(bool state);
    virtual void enableModuleElement(bool state);
    virtual void enableTimeStampElement(bool state);
    virtual void beginNewLineElem(bool state);
    virtual void endNewLineElem(bool state);

    /// Font size of the pane in points; 0 and less are ignored.
    void setLogTextFontSize(int pointSize);

    /// Whether a line equal to the one before is counted instead of written; true by default.
    void setFilterDuplicateEntries(bool f);
    bool filterDuplicateEntries();

protected:
    /// Takes the log over, and sets the controls to its state.
    virtual void init();
    /// Lets go of the log.
    virtual void destroy();

    /// Writes an entry at the end of the pane. With a \a count above 0 it takes the place of the entry that
    /// was written last, and bears the count.
    void printLine(const QString& line, int count);

    void timerEvent(QTimerEvent* event) override;

private:
    static void callback(const char* text, osg::Int32 size, void* view);

    void setElement(osg::LogHeaderElem element, bool state);
    /// As `printLine`. The cursor stands at the end of the pane, before and after.
    void writeEntry(QTextCursor& end, const QString& line, int count);

    QColor _logColor;
    QColor _fatalColor;
    QColor _warningColor;
    QColor _noticeColor;
    QColor _infoColor;
    QColor _debugColor;
    QMap<QChar, QTextCharFormat> _formats; ///< by the first letter of a line
    QString _lastLine;
    QStringList _pendingLines; ///< shared with the threads that log, under the log's lock
    int _timerId = -1;
    bool _filterDuplicateEntries = true;
    int _repeatCount = 0;
    int _lastStart = -1; ///< where the entry that was written last begins in the pane
};

} // namespace Orvane::Qt4
