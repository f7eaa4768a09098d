#include "core/VolumeText.h"
#include "core/ShadingText.h"
#include "core/VolumeRay.h"
#include "core/VolumeStyles.h"
#include <OpenSG/OSGImage.h>

namespace Orvane {

namespace {

VolumeText::Value reals(osg::UInt32 components, std::vector<float> numbers)
{
    VolumeText::Value value;
    value.components = components;
    value.reals = std::move(numbers);
    return value;
}

std::string numbered(const char* name, std::size_t number)
{
    return name + std::to_string(number);
}

/// The intensity of a voxel, which is its grey or its brightness, and the colour that it has without a style:
/// its opacity is alpha where it has some, else the intensity.
std::string channels(osg::Image& image, std::size_t voxels)
{
    const bool hasAlpha = image.hasAlphaChannel();
    const bool hasColor = image.hasColorChannel();
    // An image of alpha alone has neither.
    const bool isAlphaOnly = hasAlpha && !hasColor && image.getComponents() == 1;
    const std::string intensity = numbered("intensity", voxels);
    std::string text = "float " + intensity + "(vec4 t) { return ";
    text += isAlphaOnly ? "t.a" : hasColor ? "dot(t.rgb, vec3(0.299, 0.587, 0.114))" : "t.r";
    text += "; }\nvec4 " + numbered("plain", voxels) + "(vec4 t) { return vec4(";
    text += isAlphaOnly ? "vec3(1.0)" : "t.rgb";
    text += ", " + (hasAlpha ? std::string("t.a") : intensity + "(t)") + "); }\n";
    return text;
}

/// What the components of a voxel are called when it is read.
const char* membersOf(osg::Image& image)
{
    if (image.hasColorChannel())
        return image.hasAlphaChannel() ? "rgba" : "rgb";
    if (image.getComponents() > 1)
        return "ra";
    return image.hasAlphaChannel() ? "a" : "r";
}

} // namespace

VolumeText::VolumeText(const osg::Vec3f& boxSize)
{
    _values["boxSize"] = reals(3, {boxSize[0], boxSize[1], boxSize[2]});
}

std::string VolumeText::add(const char* type, Value value, const std::string& length)
{
    const std::string name = numbered("v", _values.size());
    _uniforms += std::string("uniform ") + type + ' ' + name + length + ";\n";
    _values[name] = std::move(value);
    return name;
}

std::string VolumeText::number(float value)
{
    return add("float", reals(1, {value}));
}

std::string VolumeText::color(const osg::Color3f& color)
{
    return add("vec3", reals(3, {color.red(), color.green(), color.blue()}));
}

std::string VolumeText::color(const osg::Color4f& color)
{
    return add("vec4", reals(4, {color.red(), color.green(), color.blue(), color.alpha()}));
}

std::string VolumeText::numbers(const std::vector<float>& values)
{
    return add("float", reals(1, values), '[' + std::to_string(values.size()) + ']');
}

std::string VolumeText::colors(const std::vector<osg::Color4f>& values)
{
    std::vector<float> all;
    for (const osg::Color4f& color : values)
        all.insert(all.end(), {color.red(), color.green(), color.blue(), color.alpha()});
    return add("vec4", reals(4, std::move(all)), '[' + std::to_string(values.size()) + ']');
}

std::string VolumeText::map(SurfaceTexture texture)
{
    texture.wrap.fill(osg::TextureChunk::CLAMP_TO_EDGE);
    // In branches of a program nobody knows how fine a texture has to be.
    texture.minFilter = texture.magFilter;
    texture.coordSet = 0;
    _parts.push_back(surfaceTexture(texture));
    Value value;
    value.textures = {osg::TextureChunkPtr::dcast(_parts.back()->get())};
    return add(texture.image->getDepth() > 1 ? "sampler3D" : "sampler2D", std::move(value));
}

std::size_t VolumeText::addVoxels(const SurfaceTexture& voxels)
{
    const std::size_t number = _slopes.size();
    osg::Image& image = *voxels.image.get();
    const std::vector<float> size{static_cast<float>(image.getWidth()), static_cast<float>(image.getHeight()),
                                  static_cast<float>(image.getDepth())};
    // Steps are as fine as the first voxels.
    if (number == 0)
        _values["voxelCount"] = reals(3, size);
    const std::string count = number == 0 ? "voxelCount" : add("vec3", reals(3, size));
    const std::string sampler = map(voxels);
    const std::string read = numbered("read", number);
    const std::string value = numbered("intensity", number) + "(" + read;
    _functions += "vec4 " + read + "(vec3 at) { return texture3D(" + sampler + ", at); }\n";
    _functions += channels(image, number);
    _members.emplace_back(membersOf(image));
    _slopes.push_back("    vec3 size = 1.0 / " + count + ";\n    vec3 change = vec3(" + value +
                      "(place + vec3(size.x, 0.0, 0.0))) - " + value +
                      "(place - vec3(size.x, 0.0, 0.0))),\n" + "        " + value +
                      "(place + vec3(0.0, size.y, 0.0))) - " + value +
                      "(place - vec3(0.0, size.y, 0.0))),\n        " + value +
                      "(place + vec3(0.0, 0.0, size.z))) - " + value +
                      "(place - vec3(0.0, 0.0, size.z))));\n    steepness = min(length(change), 1.0);\n"
                      "    turnTo(-change * " +
                      count + " / boxSize);\n");
    return number;
}

void VolumeText::setGradients(std::size_t voxels, const SurfaceTexture& gradients)
{
    _slopes[voxels] = "    vec3 change = texture3D(" + map(gradients) +
                      ", place).xyz * 2.0 - 1.0;\n    steepness = min(length(change), 1.0);\n"
                      "    turnTo(change);\n";
}

std::string VolumeText::addStyle(std::size_t voxels, VolumeStyleProc* style)
{
    std::string outer;
    outer.swap(_body);
    const std::size_t outerVoxels = _voxels;
    const bool outerSlope = _hasSlope;
    _voxels = voxels;
    _hasSlope = false;
    apply(style);
    const std::string call = numbered("style", _styleCount++) + "()";
    _functions += "vec4 " + call + "\n{\n    texel = " + numbered("read", voxels) +
                  "(place);\n    vec4 color = " + numbered("plain", voxels) + "(texel);\n" + _body +
                  "    return color;\n}\n";
    _body = std::move(outer);
    _voxels = outerVoxels;
    _hasSlope = outerSlope;
    return call;
}

void VolumeText::apply(VolumeStyleProc* style)
{
    ++_level;
    if (style && style->isEnabled() && _level <= MostLevels)
        style->describe(*this);
    --_level;
}

std::string VolumeText::components(int count) const
{
    std::string result = "vec" + std::to_string(count) + '(';
    for (int i = 0; i < count; ++i) {
        const std::string& members = _members[_voxels];
        const auto place = static_cast<std::size_t>(i);
        result += i > 0 ? ", " : "";
        result += place < members.size() ? std::string("texel.") + members[place] : "0.0";
    }
    return result + ')';
}

void VolumeText::useSlope()
{
    if (_hasSlope)
        return;
    _hasSlope = true;
    write("    normal = look;\n    steepness = 0.0;\n    if (color.a > 0.0)\n        " +
          numbered("slope", _voxels) + "();\n");
}

void VolumeText::useNormals(const SurfaceTexture& normals)
{
    _hasSlope = false;
    write("    normal = texture3D(" + map(normals) +
          ", place).xyz * 2.0 - 1.0;\n    steepness = min(length(normal), 1.0);\n    turnTo(normal);\n");
}

void VolumeText::gatherColors(const std::string& color)
{
    _begin.clear();
    _step = "        vec4 color = " + color + R"(;
        if (color.a > 0.0) {
            float cover = 1.0 - pow(1.0 - min(color.a, 1.0), thickness);
            sum += left * cover * inFog(color.rgb);
            left *= 1.0 - cover;
            if (left < 0.003)
                break;
        }
)";
    _end.clear();
}

void VolumeText::gatherSegments(const std::optional<SurfaceTexture>& segments,
                                const std::vector<std::string>& colors)
{
    if (!segments) {
        gatherColors(colors.front());
        return;
    }
    _functions += "vec4 segmentColor()\n{\n    int segment = int(texture3D(" + map(*segments) +
                  ", place).r * 255.0 + 0.5);\n";
    for (std::size_t i = 0; i + 1 < colors.size(); ++i)
        _functions += "    if (segment == " + std::to_string(i) + ")\n        return " + colors[i] + ";\n";
    _functions += "    return " + colors.back() + ";\n}\n";
    gatherColors("segmentColor()");
}

void VolumeText::gatherSurfaces(const std::vector<float>& values, const std::vector<std::string>& colors,
                                float tolerance)
{
    const std::string surfaces = numbers(values);
    const std::string count = std::to_string(values.size());
    _functions += "vec4 surfaceColor(int surface)\n{\n";
    for (std::size_t i = 0; i + 1 < colors.size(); ++i)
        _functions += "    if (surface == " + std::to_string(i) + ")\n        return " + colors[i] + ";\n";
    _functions += "    return " + colors.back() + ";\n}\n";
    _begin = "    float last = 0.0;\n";
    _step = R"(        float value = intensity0(read0(place));
        for (int j = 0; i > 0 && j < )" +
            count + R"(; ++j) {
            int surface = value > last ? j : )" +
            count + R"( - 1 - j;
            float wanted = )" +
            surfaces + R"([surface];
            if ((last < wanted) == (value < wanted))
                continue;
            goTo(t - stride * (value - wanted) / (value - last));
)";
    if (tolerance > 0.0F)
        _step += "            slope0();\n            if (steepness < " + number(tolerance) +
                 ")\n                continue;\n";
    _step += R"(            vec4 color = clamp(surfaceColor(surface), 0.0, 1.0);
            sum += left * color.a * inFog(color.rgb);
            left *= 1.0 - color.a;
        }
        last = value;
        if (left < 0.003)
            break;
)";
    _end.clear();
}

void VolumeText::gatherIntensity(const std::string& step)
{
    _begin = "    float best = -1.0;\n";
    _step = "        float value = intensity0(read0(place));\n" + step;
    _end = "    goTo(rayBegin);\n    left = 1.0 - clamp(best, 0.0, 1.0);\n"
           "    sum = (1.0 - left) * inFog(vec3(1.0));\n";
}

std::vector<osg::SHLProgram::Source> VolumeText::sources() const
{
    std::string text = VolumeRay::variables;
    text += shadingLights();
    text += VolumeRay::shadedHead;
    text += phongSum();
    text += VolumeRay::shadedTail;
    text += _uniforms;
    text += VolumeRay::walk;
    // Functions of styles call those of slopes, which call those that read.
    for (std::size_t i = 0; i < _slopes.size(); ++i)
        text += "void " + numbered("slope", i) + "();\n";
    text += _functions;
    for (std::size_t i = 0; i < _slopes.size(); ++i)
        text += "void " + numbered("slope", i) + "()\n{\n" + _slopes[i] + "}\n";
    text +=
        VolumeRay::mainHead + _begin + VolumeRay::mainLoop + _step + "    }\n" + _end + VolumeRay::mainTail;
    return {{osg::SHLProgram::VERTEX, VolumeRay::vertexText}, {osg::SHLProgram::FRAGMENT, std::move(text)}};
}

} // namespace Orvane
