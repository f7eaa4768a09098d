#include "core/ImageSource.h"
#include "core/MediaProc.h"
#include "core/TextureProcs.h"
#include <algorithm>
#include <cmath>

namespace Orvane {

namespace {

const Part speedPart("speed");

/// Behaviour of a `MovieTexture`: shows the pictures of a file one after the other. A file of one picture has
/// no duration and never runs.
class MovieTextureProc : public MediaProc<PictureTextureProc>
{
public:
    explicit MovieTextureProc(Node& node)
        : MediaProc(node, speedPart)
    {
    }

    void describe(Surface& surface) override { put(_screen.get(), surface); }

protected:
    void takeFile(const MFString* urls, bool loaded) override
    {
        _source.clear();
        if (urls) {
            _source.read(*urls);
            const std::string fault = _source.fault(*urls, loaded, "a film of the kind GIF, or an image,");
            if (!fault.empty())
                complain("url", fault);
        }
        prepareScreen();
        changed();
    }

    double duration() const override
    {
        /// Of pictures whose file says nothing about it.
        constexpr double UsualDelay = 0.1;
        if (frameCount() < 2.0)
            return 0.0;
        const double delay = _source.image()->getFrameDelay();
        return frameCount() * (delay > 0.0 ? delay : UsualDelay);
    }

private:
    double cycleInterval() override
    {
        _speed = speed();
        // At speed 0 the first picture stands.
        return _speed != 0.0 ? duration() / std::abs(_speed) : duration() > 0.0 ? Never : 0.0;
    }

    double pace() const override
    {
        return _speed != 0.0 ? 0.5 * duration() / (frameCount() * std::abs(_speed)) : 0.1;
    }

    void sendFraction(double, double fraction) override
    {
        const double place = (_speed < 0.0 ? 1.0 - fraction : fraction) * frameCount();
        show(std::clamp(place, 0.0, frameCount() - 1.0));
    }

    double frameCount() const
    {
        const osg::ImagePtr film = _source.image();
        return film ? film->getFrameCount() : 0.0;
    }

    /// Each film has a screen of its own, as others may show the same pictures at other times.
    void prepareScreen()
    {
        const osg::ImagePtr film = _source.image();
        _frame = 0;
        _screen = film;
        if (frameCount() < 2.0)
            return;
        _screen = osg::Image::create();
        _screen->set(film->getPixelFormat(), film->getWidth(), film->getHeight(), 1, 1, 1, 0.0,
                     film->getData(), film->getDataType());
        if (speed() < 0.0)
            show(frameCount() - 1.0);
    }

    void show(double place)
    {
        const auto frame = static_cast<osg::UInt32>(place);
        if (frame == _frame)
            return;
        _frame = frame;
        osg::beginEditCP(_screen.get(), osg::Image::PixelFieldMask);
        _screen->setData(_source.image()->getData(0, frame));
        osg::endEditCP(_screen.get(), osg::Image::PixelFieldMask);
        pictureChanged();
    }

    ImageSource _source;
    osg::RefPtr<osg::ImagePtr> _screen; ///< what is seen: the image itself when it has one picture
    osg::UInt32 _frame = 0;             ///< number of the picture on the screen
    double _speed = 1.0;                ///< of the present run
};

const ProcRegistration movieTexture("MovieTexture", makeProc<MovieTextureProc>);

} // namespace

} // namespace Orvane
