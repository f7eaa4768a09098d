#pragma once

#include <Orvane/LoadWatcher.h>
#include <QElapsedTimer>
#include <QString>
#include <memory>

class QProgressDialog;
class QWidget;

/// Shows how far a load has come, and lets the user cancel it. Nothing is shown, and no event is processed,
/// before a load has taken some time. From then on the present scene runs on, and takes no input.
class LoadingDialog : public Orvane::LoadWatcher
{
public:
    /// Watches the loads of a context as long as it lives. \a patience is in milliseconds.
    LoadingDialog(Orvane::Context& context, int patience, QWidget* window);
    ~LoadingDialog() override;

    bool goesOn(const Orvane::LoadProgress& progress) override;
    bool isCancelled() const { return _isCancelled; }

private:
    void open();

    QWidget* _window;
    int _patience;
    QElapsedTimer _time;
    QElapsedTimer _shown; ///< since events were processed last
    std::unique_ptr<QProgressDialog> _dialog;
    bool _isAtWork = false;
    bool _isCancelled = false;
};
