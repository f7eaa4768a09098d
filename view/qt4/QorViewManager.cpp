#include "QorViewManager.h"

#include "QorLog.h"
#include "QorRenderView.h"
#include "QorTools.h"
#include <Orvane/ContextSetup.h>
#include <Orvane/Engine.h>
#include <Orvane/Field.h>
#include <Orvane/NodeNameSpace.h>
#include <Orvane/SAIBrowserRef.h>
#include <Orvane/Scene.h>
#include <Orvane/System.h>
#include <QtCore/QPointer>
#include <QtCore/QTimer>
#include <limits>
#include <new>

namespace Orvane::Qt4 {

namespace {

const unsigned int InvalidId = static_cast<unsigned int>(-1);

template <class Root>
Root* rootOf(Orvane::Context* context)
{
    return context ? dynamic_cast<Root*>(context->findRoot(Root::_type)) : nullptr;
}

template <class Root>
void ensureRoot(Orvane::Context* context)
{
    if (!rootOf<Root>(context))
        Root::create(context, nullptr, Orvane::HOST_NC);
}

Orvane::Field* findField(Orvane::Scene* scene, const QString& nodeName, const QString& fieldName)
{
    Orvane::Node* node = Orvane::NodeNameSpace::findNode(scene->nameSpace(), toRuntime(nodeName));
    return node ? node->findField(toRuntime(fieldName), Orvane::Node::DECLARED_FSO) : nullptr;
}

/// The wait in whole milliseconds, at least one; also for a wait that no timer can hold.
int timerInterval(double seconds)
{
    const double milliseconds = seconds * 1000.0;
    if (!(milliseconds >= 1.0))
        return 1;
    const int longest = std::numeric_limits<int>::max();
    return milliseconds < longest ? static_cast<int>(milliseconds) : longest;
}

} // namespace

std::map<unsigned int, QorViewManager::ContextEntry> QorViewManager::_contexts;
unsigned int QorViewManager::_nextContextId = 0;

QorViewManager::QorViewManager(QWidget* parent, TriggerMode mode)
    : QFrame(parent)
    , _triggerMode(mode)
{
    if (_contexts.empty())
        Orvane::System::the().init(0, nullptr, _systemVersion);

    const auto created = QorRef<Orvane::Context>::adopt(Orvane::Context::create());
    if (created) {
        _id = ++_nextContextId;
        ContextEntry& entry = _contexts[_id];
        entry.context = created;
        entry.manager = this;
    }

    QorRenderView::connectObserver(newRenderView, deleteRenderView);

    if (_id != InvalidId && _triggerMode == TimerTrigger)
        runChainedFrame();
}

QorViewManager::~QorViewManager()
{
    // The base class deletes the views that are left, when the list is gone.
    for (QorRenderView* view : qAsConst(_renderViews))
        disconnect(view, &QObject::destroyed, this, nullptr);

    // Letting a context go fires its windows' subjects, and their observers walk the table.
    const auto entry = _contexts.find(_id);
    if (entry != _contexts.end()) {
        const QorRef<Orvane::Context> last = std::move(entry->second.context);
        _contexts.erase(entry);
    }

    if (_contexts.empty()) {
        QOR_NOTICE("~QorViewManager::exit Orvane system\n");
        Orvane::System::the().exit();
    }
}

double QorViewManager::runFrame()
{
    if (_id == InvalidId)
        return 0.0;
    // The reference outlasts a manager that is deleted inside its own frame.
    const QorRef<Orvane::Context> context = _contexts[_id].context;
    return context->runFrame();
}

void QorViewManager::runChainedFrame()
{
    const QPointer<QorViewManager> self(this);
    const double wait = runFrame();
    if (self)
        scheduleFrame(wait);
}

void QorViewManager::scheduleFrame(double seconds)
{
    const unsigned int link = ++_pendingLink;
    // A coarse timer would round the longest wait past what an int holds, and fire at once.
    QTimer::singleShot(timerInterval(seconds), Qt::PreciseTimer, this, [this, link] {
        if (link == _pendingLink)
            runTimerFrame();
    });
}

void QorViewManager::runTimerFrame()
{
    if (_id != InvalidId && _triggerMode == TimerTrigger)
        runChainedFrame();
}

void QorViewManager::setTriggerMode(TriggerMode mode)
{
    QOR_NOTICE("QorViewManager::setTriggerMode::TriggerMode = %i\n", static_cast<int>(mode));

    const bool restart = mode == TimerTrigger && _triggerMode == ManualTrigger;
    _triggerMode = mode;
    if (restart && _id != InvalidId)
        runChainedFrame();
}

void QorViewManager::activateContext()
{
    if (_id == InvalidId)
        return;
    const QorRef<Orvane::Context> context = _contexts[_id].context;
    ensureRoot<Orvane::ContextSetup>(context.get());
    ensureRoot<Orvane::Engine>(context.get());
    ensureRoot<Orvane::Scene>(context.get());
    context->setRootState(0.0, Orvane::RUNNING_NS);
}

bool QorViewManager::loadContextByURL(const QString& url)
{
    if (_id == InvalidId || url.isEmpty())
        return false;
    const QorRef<Orvane::Context> context = _contexts[_id].context;
    const bool loaded = context->load(toRuntime(url), Orvane::Context::REPLACE_LT, std::string());
    if (loaded)
        activateContext();
    return loaded;
}

bool QorViewManager::loadContextByString(const QString& url, const QString& text)
{
    if (_id == InvalidId)
        return false;
    const QorRef<Orvane::Context> context = _contexts[_id].context;
    bool done = false;
    if (!text.isEmpty()) {
        done = context->load(toRuntime(url), toRuntime(text), Orvane::Context::REPLACE_LT, std::string());
    } else {
        if (!rootOf<Orvane::Scene>(context.get()))
            return false;
        done = context->removeRoot(Orvane::Scene::_type);
    }
    if (done)
        activateContext();
    return done;
}

QString QorViewManager::getValue(const QString& nodeName, const QString& fieldName)
{
    if (_id == InvalidId)
        return QString();
    const QorRef<Orvane::Context> context = _contexts[_id].context;
    std::string text;
    if (auto* scene = rootOf<Orvane::Scene>(context.get())) {
        if (const Orvane::Field* field = findField(scene, nodeName, fieldName))
            text = field->valueToString();
    }
    return fromRuntime(text);
}

bool QorViewManager::setValue(const QString& nodeName, const QString& fieldName, const QString& value)
{
    if (_id == InvalidId)
        return false;
    const QorRef<Orvane::Context> context = _contexts[_id].context;
    auto* scene = rootOf<Orvane::Scene>(context.get());
    if (!scene) {
        QOR_FATAL("QorViewManager::setValue: could not get scene\n");
        return false;
    }
    Orvane::Field* field = findField(scene, nodeName, fieldName);
    if (!field || value.isEmpty())
        return false;
    field->setValueByStr(context->timeStamp(), toRuntime(value).c_str());
    return true;
}

__SAI_SAIBrowserRef* QorViewManager::getSAI()
{
    return new (std::nothrow) Orvane::SAIBrowserRef(_contexts[_id].context.get());
}

} // namespace Orvane::Qt4
