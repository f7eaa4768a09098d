#pragma once

#include "QorExport.h"
#include <OpenSG/OSGImage.h>
#include <QtGui/QPixmap>
#include <QtWidgets/QFrame>
#include <vector>

namespace Orvane::Qt4 {

/// Paints a colour lookup table by hand: one curve for each of red, green, blue and alpha, sampled into an
/// RGBA image that is one pixel high.
///
/// The left button draws into the curves of the channels that are switched on, and overwrites what the stroke
/// crosses; the right button shows a preview and sets one point at its release. Shift keeps the height, Alt
/// lets a stroke only fall, Control lets the curve only rise from left to right. The view takes no reference
/// on its image.
class QOR_EXPORT QorImgCanvasView : public QFrame
{
    Q_OBJECT

public:
    /// A point of a curve: place along the table and value of the channel, both from 0 to 1.
    struct Point2f
    {
        /// Along the table, and the value.
        float x;
        float y;
    };

    /// A \a name that is not null becomes the object name.
    explicit QorImgCanvasView(QWidget* parent, const char* name = nullptr,
                              Qt::WindowFlags f = Qt::WindowFlags());
    ~QorImgCanvasView() override;

    /// Shows the table of an image, whose entries become the points of the curves. Ignored unless the image
    /// is RGBA, at most one pixel high and deep, and has pixels.
    void setImage(osg::ImagePtr image);
    /// The table. Its pixels are defined after the first stroke, size or image.
    osg::ImagePtr getImage() { return _image; }

public slots:
    /// Asks for a file name and writes the table there: png, tif or mtd.
    void save();
    /// Asks for a file and takes its table; anything but such a table is ignored.
    void open();
    /// Makes the curves of the channels that are switched on straight.
    void clear();
    /// Makes a new table of so many entries from the curves.
    void setSize(int size);
    /// Switch editing of a channel on or off.
    void setRed(bool on);
    void setGreen(bool on);
    void setBlue(bool on);
    void setAlpha(bool on);
    /// Density of the grid: 2 to the power of \a size cells a side.
    void setGrid(int size);

signals:
    /// The table has been written to or replaced.
    void imageChanged();

protected:
    /// Makes the curves anew from the table.
    void readTable();
    /// Samples all curves into the table.
    void updateTable();

    void drawGrid(QPainter* painter, int size);
    /// Draws a curve with the painter's pen.
    void paint(QPainter* painter, std::vector<Point2f>* curve);
    /// One step of a stroke on the curve of a channel: sets a point, or draws a preview of that.
    void drag(QPainter* painter, std::vector<Point2f>* curve, float x, float y, int channel);

    /// Index of a point at \a x; -1 - p when there is none and one would become point p.
    int findPoint(std::vector<Point2f>* curve, float x);
    /// The same among the points \a lo to \a hi.
    int findPoint(std::vector<Point2f>* curve, float x, int lo, int hi);
    /// Puts a point into its place, over one with the same x if there is one; \a oldY becomes the value of
    /// that one, else -1. Answers the index.
    int insertPoint(std::vector<Point2f>* curve, Point2f point, float& oldY);

    /// Draws grid and curves, inside the frame.
    virtual void drawContents(QPainter* painter);

    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    static constexpr int ChannelCount = 4;

    std::vector<Point2f>& curve(int channel);
    void setChannel(int channel, bool on);
    void replaceCurve(int channel, std::vector<Point2f> points);
    /// Forgets where the stroke has been on a curve.
    void forgetStroke(int channel);
    int constrainedY(const QMouseEvent& event) const;
    QPoint pixel(const Point2f& point) const;
    void drawPreview(QPainter* painter, std::vector<Point2f>* curve, QPoint point, int channel, int index,
                     float oldY);
    /// Shows the curves as they are, without a preview.
    void refresh();

    std::vector<Point2f> _redCurve;
    std::vector<Point2f> _greenCurve;
    std::vector<Point2f> _blueCurve;
    std::vector<Point2f> _alphaCurve;
    int _size = 256;
    int _grid = 2;
    bool _pressed = false;
    bool _addMode = true;
    int _lastX = 0;
    int _lastY = 0;
    int _lastIndex[ChannelCount];
    unsigned int _constraint = 0;
    unsigned int _channels = 0; ///< bit mask: red 1, green 2, blue 4, alpha 8
    int _previewX[ChannelCount];
    int _previewY[ChannelCount];
    int _previewIndex[ChannelCount];
    osg::ImagePtr _image;
    QPixmap _preview; ///< what the stroke has drawn over the contents so far
};

} // namespace Orvane::Qt4
