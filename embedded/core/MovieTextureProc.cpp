#include "base/ValueFields.h"
#include "core/ImageSource.h"
#include "core/Part.h"
#include "core/TextureProcs.h"
#include "core/TimedRun.h"
#include <Orvane/MFString.h>
#include <Orvane/SFBool.h>
#include <Orvane/SFFloat.h>
#include <algorithm>
#include <cmath>

namespace Orvane {

namespace {

const Part durationPart("duration_changed");
const Part loadPart("load");
const Part speedPart("speed");
const Part urlPart("url");

/// Behaviour of a `MovieTexture`: shows the pictures of a file one after the other. A file of one picture has
/// no duration and never runs.
class MovieTextureProc : public PictureTextureProc, private TimedRun
{
public:
    explicit MovieTextureProc(Node& node)
        : PictureTextureProc(node)
        , TimedRun(node)
    {
    }

    void start(double time) override
    {
        load(time, true);
        setTicking(true);
        PictureTextureProc::start(time);
    }

    void fieldChanged(Field& field, double time) override
    {
        const bool isLoad = urlPart.is(field) || loadPart.is(field);
        if (isLoad) {
            end(time);
            load(time, false);
        }
        if (isLoad || concerns(field) || speedPart.is(field))
            tick(time);
        else
            PictureTextureProc::fieldChanged(field, time);
    }

    void tick(double time) override
    {
        const double next = evaluate(time);
        setTicking(next < Never);
        if (next < Never)
            requestFrame(next - time);
    }

    void describe(Surface& surface) override { put(_screen.get(), surface); }

private:
    double cycleInterval() override
    {
        const float speed = speedPart.read<SFFloat>(node()).value();
        _speed = std::isfinite(speed) ? static_cast<double>(speed) : 0.0;
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

    /// Seconds of the film at its usual speed; 0 while there is none.
    double duration() const
    {
        /// Of pictures whose file says nothing about it.
        constexpr double UsualDelay = 0.1;
        if (frameCount() < 2.0)
            return 0.0;
        const double delay = _source.image()->getFrameDelay();
        return frameCount() * (delay > 0.0 ? delay : UsualDelay);
    }

    /// Takes the first film of the addresses. The loader has told of files that are not there if they are
    /// \a loaded.
    void load(double time, bool loaded)
    {
        const auto& urls = urlPart.read<MFString>(node());
        _source.clear();
        if (loadPart.read<SFBool>(node()).value()) {
            _source.read(urls);
            const std::string fault = _source.fault(urls, loaded, "a film of the kind GIF, or an image,");
            if (!fault.empty())
                complain("url", fault);
        }
        prepareScreen();
        const double told = duration() > 0.0 ? duration() : -1.0;
        auto& field = durationPart.edit<SFTime>(node());
        if (field.value() != told)
            field.setValue(time, told, Field::EVENT_CT);
        changed();
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
        if (speedPart.read<SFFloat>(node()).value() < 0.0F)
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
