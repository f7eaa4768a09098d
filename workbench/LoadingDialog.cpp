#include "LoadingDialog.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QGuiApplication>
#include <QLocale>
#include <QProgressDialog>
#include <QorTools.h>

namespace {

constexpr int longestPause = 40;  ///< milliseconds between looks at events
constexpr int longestEvents = 20; ///< milliseconds for them
constexpr int wholeBar = 1000;

QString tr(const char* text)
{
    return QCoreApplication::translate("LoadingDialog", text);
}

} // namespace

LoadingDialog::LoadingDialog(Orvane::Context& context, int patience, QWidget* window)
    : Orvane::LoadWatcher(context)
    , _window(window)
    , _patience(patience)
{
    _time.start();
    _shown.start();
}

LoadingDialog::~LoadingDialog() = default;

void LoadingDialog::open()
{
    _dialog = std::make_unique<QProgressDialog>(_window);
    _dialog->setWindowTitle(tr("Opening scene"));
    _dialog->setWindowModality(Qt::WindowModal);
    _dialog->setRange(0, wholeBar);
    _dialog->setMinimumDuration(0);
    _dialog->setMinimumWidth(_dialog->fontMetrics().averageCharWidth() * 50);
    _dialog->setAutoReset(false);
    _dialog->setAutoClose(false);
    if (QGuiApplication::overrideCursor())
        QGuiApplication::changeOverrideCursor(Qt::BusyCursor);
    _dialog->show();
}

bool LoadingDialog::goesOn(const Orvane::LoadProgress& progress)
{
    // What the events do may load, too.
    const bool isDue =
        _dialog ? _shown.elapsed() >= qMin(longestPause, _patience) : _time.elapsed() >= _patience;
    if (_isAtWork || _isCancelled || !isDue)
        return !_isCancelled;
    _isAtWork = true;
    if (!_dialog)
        open();
    const QString name = QFileInfo(Orvane::Qt4::fromRuntime(progress.file)).fileName();
    _dialog->setLabelText(tr("%1\n%L2 nodes").arg(name).arg(static_cast<qulonglong>(progress.nodes)));
    const double part =
        progress.size > 0 ? static_cast<double>(progress.bytes) / static_cast<double>(progress.size) : 0.0;
    _dialog->setValue(static_cast<int>(part * wholeBar));
    QCoreApplication::processEvents(QEventLoop::AllEvents, longestEvents);
    _isCancelled = _dialog->wasCanceled();
    _isAtWork = false;
    _shown.restart();
    return !_isCancelled;
}
