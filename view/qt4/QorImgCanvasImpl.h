#pragma once

#include "QorExport.h"
#include "ui_QorImgCanvas.h"
#include <OpenSG/OSGImage.h>
#include <QtWidgets/QFrame>

namespace Orvane::Qt4 {

class QorImgCanvasView;

/// The window of the lookup table painter: an image canvas beside controls for its channels, size, grid and
/// files. The interpolation is always linear.
class QOR_EXPORT QorImgCanvasImpl : public QFrame, private ::Ui::QorImgCanvas
{
    Q_OBJECT

public:
    /// A \a name that is not null becomes the object name, in place of "QorImgCanvas".
    explicit QorImgCanvasImpl(QWidget* parent, const char* name = nullptr,
                              Qt::WindowFlags f = Qt::WindowFlags());
    ~QorImgCanvasImpl() override;

    /// The table that is painted; see `QorImgCanvasView::getImage`.
    osg::ImagePtr getImage();
    /// Shows a table, as `QorImgCanvasView::setImage` takes it, and its width as the size; null shows 2 and
    /// changes nothing else.
    void setImage(osg::ImagePtr image);

public slots:
    /// Switches all four channels on or off.
    void setAll(bool on);
    /// Makes a table of so many entries; a text that is no number is ignored.
    void setSize(const QString& str);

signals:
    /// The table has been written to or replaced.
    void imageChanged();
    /// The window has been closed.
    void closed();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    QorImgCanvasView* _canvas;
};

} // namespace Orvane::Qt4
