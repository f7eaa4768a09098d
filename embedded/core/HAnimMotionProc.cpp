#include "core/HAnimMotionProc.h"
#include "base/ValueFields.h"
#include "core/Part.h"
#include "core/UsableValues.h"
#include <Orvane/MFBool.h>
#include <Orvane/MFFloat.h>
#include <Orvane/SFBool.h>
#include <Orvane/SFInt32.h>
#include <Orvane/SFString.h>
#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <string_view>
#include <utility>

namespace Orvane {

namespace {

const Part channelsEnabledPart("channelsEnabled");
const Part channelsPart("channels");
const Part cycleTimePart("cycleTime");
const Part elapsedTimePart("elapsedTime");
const Part enabledPart("enabled");
const Part endFramePart("endFrame");
const Part frameCountPart("frameCount");
const Part frameDurationPart("frameDuration");
const Part frameIncrementPart("frameIncrement");
const Part frameIndexPart("frameIndex");
const Part jointsPart("joints");
const Part loopPart("loop");
const Part nextPart("next");
const Part previousPart("previous");
const Part startFramePart("startFrame");
const Part valuesPart("values");

constexpr double RadiansPerDegree = 0.017453292519943295;

/// The words of a text, between spaces and commas.
std::vector<std::string> wordsOf(const std::string& text)
{
    static constexpr char Between[] = " ,\t\r\n";
    std::vector<std::string> words;
    std::size_t begin = text.find_first_not_of(Between);
    while (begin != std::string::npos) {
        const std::size_t end = std::min(text.find_first_of(Between, begin), text.size());
        words.push_back(text.substr(begin, end - begin));
        begin = text.find_first_not_of(Between, end);
    }
    return words;
}

bool endsWith(std::string_view text, std::string_view end)
{
    return text.size() >= end.size() && text.substr(text.size() - end.size()) == end;
}

const ProcRegistration motion("HAnimMotion", makeProc<HAnimMotionProc>);

} // namespace

void HAnimMotionProc::start(double)
{
    readChannels();
    _isNew = true;
    setTicking(true);
}

void HAnimMotionProc::fieldChanged(Field& field, double time)
{
    if (channelsPart.is(field) || jointsPart.is(field) || valuesPart.is(field)) {
        readChannels();
        begin(time);
    } else if (nextPart.is(field) || previousPart.is(field)) {
        if (static_cast<SFBool&>(field).value())
            step(nextPart.is(field) ? 1 : -1, time);
    } else if (frameIndexPart.is(field)) {
        _shownSince = time;
        changed();
    } else if (enabledPart.is(field)) {
        begin(time);
    } else if (loopPart.is(field) || startFramePart.is(field) || endFramePart.is(field)) {
        if (!_isRunning)
            begin(time);
    } else {
        changed();
    }
    setTicking(_isRunning || _isNew);
}

void HAnimMotionProc::readChannels()
{
    _joints = wordsOf(jointsPart.read<SFString>(node()).value());
    _channels.clear();
    std::size_t jointCount = 0;
    long left = 0;
    // Each joint has the number of its channels, and then their names.
    for (const std::string& word : wordsOf(channelsPart.read<SFString>(node()).value())) {
        if (word.find_first_not_of("0123456789") == std::string::npos) {
            ++jointCount;
            left = std::strtol(word.c_str(), nullptr, 10);
            continue;
        }
        if (left-- <= 0) {
            complain("channels",
                     "expected the number of the channels of a joint before their names, found \"" + word +
                         '"');
            _channels.clear();
            break;
        }
        const int axis = std::tolower(static_cast<unsigned char>(word[0])) - 'x';
        const bool isKnown = axis >= 0 && axis <= 2;
        const Channel channel = isKnown && endsWith(word, "position")   ? PLACE
                                : isKnown && endsWith(word, "rotation") ? TURN
                                                                        : OTHER;
        _channels.push_back({jointCount - 1, channel, static_cast<std::uint8_t>(isKnown ? axis : 0)});
    }
    auto& count = frameCountPart.edit<SFInt32>(node());
    if (count.value() != frameCount())
        count.setValue(0.0, frameCount(), Field::EVENT_CT);
}

int HAnimMotionProc::frameCount() const
{
    return _channels.empty() ? 0
                             : static_cast<int>(valuesPart.read<MFFloat>(node()).size() / _channels.size());
}

HAnimMotionProc::Range HAnimMotionProc::range() const
{
    const int most = std::max(0, frameCount() - 1);
    const int first = startFramePart.read<SFInt32>(node()).value();
    const int last = endFramePart.read<SFInt32>(node()).value();
    const int stride = frameIncrementPart.read<SFInt32>(node()).value();
    Range range{std::clamp(first, 0, most), std::clamp(last, 0, most),
                std::abs(std::max(stride, -std::numeric_limits<int>::max()))};
    // Where the scene says nothing the run ends with the recording.
    if (first == 0 && last == 0)
        range.last = most;
    if (stride < 0)
        std::swap(range.first, range.last);
    return range;
}

void HAnimMotionProc::begin(double time)
{
    _isRunning = enabledPart.read<SFBool>(node()).value() && frameCount() > 0;
    setTicking(_isRunning);
    if (!_isRunning) {
        changed();
        return;
    }
    _runBegin = _shownSince = time;
    cycleTimePart.edit<SFTime>(node()).setValue(time, time, Field::EVENT_CT);
    show(range().first, time);
}

void HAnimMotionProc::show(int frame, double time)
{
    frameIndexPart.edit<SFInt32>(node()).setValue(time, frame, Field::EVENT_CT);
    elapsedTimePart.edit<SFTime>(node()).setValue(time, std::max(0.0, time - _runBegin), Field::EVENT_CT);
    changed();
}

void HAnimMotionProc::step(int frames, double time)
{
    if (frameCount() == 0)
        return;
    const Range run = range();
    const int low = std::min(run.first, run.last);
    const int high = std::max(run.first, run.last);
    int frame = std::clamp(frameIndexPart.read<SFInt32>(node()).value(), low, high);
    frame += run.last >= run.first ? frames : -frames;
    _shownSince = time;
    show(frame > high ? low : frame < low ? high : frame, time);
}

void HAnimMotionProc::tick(double time)
{
    if (std::exchange(_isNew, false))
        begin(time);
    else if (_isRunning)
        advance(time);
    else
        setTicking(false);
}

void HAnimMotionProc::advance(double time)
{
    constexpr double StandByInterval = 1.0;
    const double duration = frameDurationPart.read<SFTime>(node()).value();
    const Range run = range();
    if (!(duration > 0.0) || !std::isfinite(duration) || run.stride == 0) {
        _shownSince = time;
        requestFrame(StandByInterval);
        return;
    }
    // What is due but for a rounding is due.
    const double due = std::floor((time - _shownSince) / duration + 1e-6);
    if (due >= 1.0) {
        _shownSince += due * duration;
        const double length = std::abs(run.last - run.first);
        const int shown = std::clamp(frameIndexPart.read<SFInt32>(node()).value(),
                                     std::min(run.first, run.last), std::max(run.first, run.last));
        double place = std::abs(shown - run.first) + due * run.stride;
        if (place > length) {
            _isRunning = loopPart.read<SFBool>(node()).value();
            place = _isRunning ? std::fmod(place, length + 1.0) : length;
            if (_isRunning)
                cycleTimePart.edit<SFTime>(node()).setValue(time, time, Field::EVENT_CT);
        }
        show(run.first + static_cast<int>(run.last >= run.first ? place : -place), time);
    }
    setTicking(_isRunning);
    if (_isRunning)
        requestFrame(std::max(0.0, _shownSince + duration - time));
}

std::vector<HAnimMotionProc::Pose> HAnimMotionProc::poses() const
{
    std::vector<Pose> poses;
    const int count = frameCount();
    if (count == 0 || !enabledPart.read<SFBool>(node()).value())
        return poses;
    const int frame = std::clamp(frameIndexPart.read<SFInt32>(node()).value(), 0, count - 1);
    const std::vector<float>& values = valuesPart.read<MFFloat>(node()).values();
    const auto& enabled = channelsEnabledPart.read<MFBool>(node());
    poses.resize(_joints.size());
    for (std::size_t i = 0; i < _joints.size(); ++i)
        poses[i].joint = _joints[i];
    const std::size_t first = static_cast<std::size_t>(frame) * _channels.size();
    for (std::size_t i = 0; i < _channels.size(); ++i) {
        const ChannelEntry& entry = _channels[i];
        const float value = values[first + i];
        if (entry.joint >= poses.size() || !isDrawable(value) ||
            (i < enabled.size() && !enabled[static_cast<int>(i)]))
            continue;
        Pose& pose = poses[entry.joint];
        if (entry.channel == PLACE) {
            pose.place[entry.axis] = value;
        } else if (entry.channel == TURN) {
            osg::Vec3f axis;
            axis[entry.axis] = 1.0F;
            const double angle = static_cast<double>(value) * RadiansPerDegree;
            osg::Quaternion turn =
                toQuaternion(Rotation(axis[0], axis[1], axis[2], static_cast<float>(angle)));
            if (!pose.turn)
                pose.turn = turn;
            else
                pose.turn->mult(turn);
        }
    }
    return poses;
}

} // namespace Orvane
