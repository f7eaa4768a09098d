#include "LineReporter.h"
#include <QorImgCanvasView.h>
#include <QtGui/QMouseEvent>
#include <QtWidgets/QApplication>
#include <cmath>

namespace {

class Canvas : public Orvane::Qt4::QorImgCanvasView
{
public:
    using QorImgCanvasView::mouseMoveEvent;
    using QorImgCanvasView::mousePressEvent;
    using QorImgCanvasView::mouseReleaseEvent;
    using QorImgCanvasView::updateTable;

    Canvas()
        : QorImgCanvasView(nullptr)
    {
        resize(400, 400);
        setRed(true);
        setGreen(true);
        setBlue(true);
        setAlpha(true);
    }
    ~Canvas() override { osg::subRefCP(getImage()); }

    void send(QEvent::Type type, int x, int y)
    {
        QMouseEvent event(type, QPointF(x, y), Qt::LeftButton, Qt::LeftButton, {});
        if (type == QEvent::MouseButtonPress)
            mousePressEvent(&event);
        else if (type == QEvent::MouseMove)
            mouseMoveEvent(&event);
        else
            mouseReleaseEvent(&event);
    }
};

/// Curves of 16 points in all four channels, sampled into a table.
void sample(benchmark::State& state, int entries)
{
    Canvas canvas;
    for (int x = 25; x < 400; x += 25) {
        canvas.send(QEvent::MouseButtonPress, x, 200 + static_cast<int>(180 * std::sin(x)));
        canvas.send(QEvent::MouseButtonRelease, x, 200 + static_cast<int>(180 * std::sin(x)));
    }
    canvas.setSize(entries);
    for (auto step : state) {
        static_cast<void>(step);
        canvas.updateTable();
    }
}

/// One move of a stroke over curves that were read from the table, so that they have a point an entry.
void stroke(benchmark::State& state, int entries)
{
    Canvas canvas;
    osg::ImagePtr image = osg::Image::create();
    image->set(osg::Image::OSG_RGBA_PF, entries, 1);
    osg::subRefCP(canvas.getImage());
    canvas.setImage(image);
    canvas.send(QEvent::MouseButtonPress, 0, 200);
    int x = 0;
    for (auto step : state) {
        static_cast<void>(step);
        x = (x + 7) % 400;
        canvas.send(QEvent::MouseMove, x, 200);
    }
    canvas.send(QEvent::MouseButtonRelease, 399, 200);
}

} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    benchmark::RegisterBenchmark("table_4096_entries/orvane", sample, 4096)->Unit(benchmark::kMicrosecond);
    benchmark::RegisterBenchmark("stroke_65536_entries/orvane", stroke, 65536)
        ->Unit(benchmark::kMillisecond)
        ->Iterations(20);
    return runBenchmarks(argc, argv);
}
