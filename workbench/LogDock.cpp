#include "LogDock.h"

#include <OpenSG/OSGLog.h>
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
    auto* view = new TerminalLogView(this);
    // Its row of controls must not keep the window from being small.
    view->setMinimumSize(100, 60);
    setWidget(view);
}
