#include <OpenSG/OSGThread.h>

#include <map>
#include <memory>
#include <mutex>
#include <utility>

namespace osg {

namespace {

thread_local UInt32 aspectOfThread = 0;

} // namespace

UInt32 ThreadBase::getAspect()
{
    return aspectOfThread;
}

void ThreadBase::setAspect(UInt32 aspect)
{
    aspectOfThread = aspect;
}

ExternalThread::ExternalThread(std::string name)
    : _name(std::move(name))
{
}

ExternalThread* ExternalThread::get(const Char8* name)
{
    static std::mutex mutex;
    static std::map<std::string, std::unique_ptr<ExternalThread>> threads;

    const std::lock_guard<std::mutex> guard(mutex);
    auto& thread = threads[name ? name : ""];
    if (!thread)
        thread.reset(new ExternalThread(name ? name : ""));
    return thread.get();
}

void ExternalThread::initialize(UInt32 aspect)
{
    setAspect(aspect < ThreadManager::getNumAspects() ? aspect : 0);
}

} // namespace osg
