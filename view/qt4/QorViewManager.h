#pragma once

#include "QorExport.h"
#include "QorRef.h"
#include <Orvane/Context.h>
#include <QtCore/QVector>
#include <QtWidgets/QFrame>
#include <QtWidgets/QLayoutItem>
#include <SAI/SAIBrowserRef.h>
#include <map>
#include <memory>
#include <vector>

class QGridLayout;

namespace Orvane {
class WindowProc;
}

namespace Orvane::Qt4 {

class QorRenderView;

/// The widget that a host embeds to get a running scene. It owns one context, starts the runtime's system
/// with the first manager and ends it with the last one, runs the frames of its context and is the parent of
/// the views of its windows. Used on the GUI thread.
class QOR_EXPORT QorViewManager : public QFrame
{
    Q_OBJECT

public:
    /// Who calls for frames.
    enum TriggerMode : int {
        TimerTrigger = 0, ///< the manager runs its own frames, by a chain of single-shot timers
        ManualTrigger = 1 ///< the host calls `runFrame`
    };

    /// In `TimerTrigger` mode the first frame runs inside the constructor.
    explicit QorViewManager(QWidget* parent, TriggerMode mode = TimerTrigger);
    ~QorViewManager() override;

    /// `TimerTrigger` after `ManualTrigger` runs one frame at once and starts the chain; any other mode ends
    /// the chain at its next link.
    void setTriggerMode(TriggerMode mode);

    /// Loads a scene from an address or file name and sets it running. True on success.
    bool loadContextByURL(const QString& url);
    /// Loads a scene from \a text, whose relative addresses count from \a url. An empty text puts an empty
    /// scene in place of the present one; false when there is none.
    bool loadContextByString(const QString& url, const QString& text);

    /// The value of a field of a named node as text; empty when there is no such field, null when the manager
    /// has no context.
    QString getValue(const QString& nodeName, const QString& fieldName);
    /// Hands a non-empty text to a field of a named node. False when there is no such field; whether the text
    /// could be read is not told.
    bool setValue(const QString& nodeName, const QString& fieldName, const QString& value);

    /// A new browser object of the context, owned by the caller, who releases it by `dispose` and `delete`.
    __SAI_SAIBrowserRef* getSAI();

public slots:
    /// Runs one frame and gives the seconds until the next one is due; 0 without a context.
    double runFrame();

protected:
    /// Makes the view of a window as a child of the manager of its context: the callback for new windows.
    static QorRenderView* newRenderView(Orvane::WindowProc* windowProc);
    /// Ends a view, which may be null: the callback for windows that go.
    static void deleteRenderView(QorRenderView* view);
    /// Deletes a view that stands in the grid. The grid is left empty, the other views keep their geometry.
    void removeRenderView(QorRenderView* view);

    void childEvent(QChildEvent* event) override;

private slots:
    void runTimerFrame();

private:
    struct ContextEntry
    {
        QorRef<Orvane::Context> context;
        QorViewManager* manager = nullptr;
    };

    void activateContext();
    void scheduleFrame(double seconds);
    void runChainedFrame();

    /// One entry per living manager that has a context.
    static std::map<unsigned int, ContextEntry> _contexts;
    static unsigned int _nextContextId;

    int _systemVersion = 382;
    unsigned int _id = static_cast<unsigned int>(-1);
    QGridLayout* _layout = nullptr;
    QVector<QorRenderView*> _renderViews;
    TriggerMode _triggerMode;

    /// Number of the one pending link of the chain; a timer of an older number runs no frame.
    unsigned int _pendingLink = 0;
    /// Items taken out of the grid: they stay alive as long as the manager.
    std::vector<std::unique_ptr<QLayoutItem>> _releasedItems;
};

} // namespace Orvane::Qt4
