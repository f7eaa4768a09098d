#include "core/ShadingText.h"
#include <algorithm>

namespace Orvane {

namespace {

using Texture = ShadingPlan::Texture;

const char* const version = "#version 120\n";

const char* const varyings = R"(
varying vec3 eyePlace;
varying vec3 eyeNormal;
varying vec4 vertexColor;
varying float fogDepth;
#define FOG_DEPTH fogDepth
)";

// Of each fragment the normal, on the side that is seen, and the look towards the eye.
const char* const lightFunctions = R"(
uniform int osg_LightCount;
uniform vec4 osg_LightShape[8];
uniform int osg_FogKind;
uniform sampler2D osg_Projected;
uniform mat4 osg_Projection;

vec3 projected;

vec3 unit(vec3 v) { return v * inversesqrt(max(dot(v, v), 1e-20)); }

// The way to a light, and how much of it arrives, in the colours of the image that it throws.
float reach(int i, out vec3 way)
{
    vec4 shape = osg_LightShape[i];
    projected = vec3(1.0);
    vec4 source = gl_LightSource[i].position;
    way = unit(source.xyz);
    if (shape.x < 0.5 || shape.x > 5.5)
        return 0.0;
    if (shape.x < 1.5)
        return 1.0;
    vec3 apart = source.xyz - eyePlace * source.w;
    float d = length(apart);
    way = unit(apart);
    if (shape.x > 4.5) {
        vec4 at = osg_Projection * vec4(eyePlace, 1.0);
        if (at.w <= 0.0 || any(lessThan(at.xyz, vec3(0.0))) || any(greaterThan(at.xyz, at.www)))
            return 0.0;
        vec4 shown = texture2DProj(osg_Projected, vec4(at.xy, 0.0, at.w));
        projected = shown.rgb * shown.a;
        return 1.0;
    }
    if (d > shape.y)
        return 0.0;
    float share = 1.0 / max(gl_LightSource[i].constantAttenuation +
        d * (gl_LightSource[i].linearAttenuation + d * gl_LightSource[i].quadraticAttenuation), 1.0);
    if (shape.x < 2.5)
        return share;
    float cosine = dot(-way, unit(gl_LightSource[i].spotDirection));
    float angle = acos(clamp(cosine, -1.0, 1.0));
    if (angle > shape.w)
        return 0.0;
    if (shape.x < 3.5)
        return share * pow(max(cosine, 1e-6), gl_LightSource[i].spotExponent);
    return angle > shape.z ? share * (shape.w - angle) / max(shape.w - shape.z, 1e-6) : share;
}

#ifndef FOG_DEPTH
#define FOG_DEPTH 0.0
#endif

vec3 inFog(vec3 color)
{
    if (osg_FogKind == 0)
        return color;
    float d = osg_FogKind > 2 ? FOG_DEPTH : abs(eyePlace.z);
    float thickness = d * gl_Fog.density;
    float seen = osg_FogKind == 1 || osg_FogKind == 3 ? (gl_Fog.end - d) * gl_Fog.scale : exp(-thickness * thickness);
    return mix(gl_Fog.color.rgb, color, clamp(seen, 0.0, 1.0));
}
)";

const char* const phongLight = R"(
    vec3 sum = emission;
    vec3 highlights = vec3(0.0);
    for (int i = 0; i < osg_LightCount; ++i) {
        vec3 way;
        float share = reach(i, way);
        if (share <= 0.0)
            continue;
        sum += share * projected * gl_LightSource[i].ambient.rgb * ambient;
        float facing = dot(normal, way);
        if (facing <= 0.0)
            continue;
        sum += share * facing * projected * gl_LightSource[i].diffuse.rgb * diffuse.rgb;
        float mirrored = max(dot(normal, unit(way + look)), 1e-6);
        highlights += share * pow(mirrored, shininess) * projected * gl_LightSource[i].specular.rgb * specular;
    }
)";

// The distribution of Trowbridge and Reitz, the visibility of Smith and the reflectance of Schlick.
const char* const physicalLight = R"(
    roughness = clamp(roughness, 0.03, 1.0);
    vec3 straight = mix(vec3(0.04), base.rgb, metallic);
    vec3 scattered = base.rgb * 0.96 * (1.0 - metallic) / 3.14159265;
    float a = roughness * roughness;
    float a2 = a * a;
    float nv = max(dot(normal, look), 1e-4);
    vec3 sum = emission;
    for (int i = 0; i < osg_LightCount; ++i) {
        vec3 way;
        float share = reach(i, way);
        float nl = dot(normal, way);
        if (share <= 0.0 || nl <= 0.0)
            continue;
        vec3 between = unit(way + look);
        float nh = max(dot(normal, between), 0.0);
        vec3 reflected = straight + (1.0 - straight) * pow(1.0 - clamp(dot(look, between), 0.0, 1.0), 5.0);
        float spread = nh * nh * (a2 - 1.0) + 1.0;
        float distribution = a2 / (3.14159265 * spread * spread);
        float visibility = 0.5 / max(nl * sqrt(nv * nv * (1.0 - a2) + a2) + nv * sqrt(nl * nl * (1.0 - a2) + a2), 1e-6);
        sum += share * nl * projected * gl_LightSource[i].diffuse.rgb *
            ((1.0 - reflected) * scattered + reflected * visibility * distribution);
    }
)";

// The rougher a face, the coarser the level of the map that stands for all that it mirrors, and the more of
// what falls on a side.
const char* const environmentFunctions = R"(
uniform vec4 osg_Environment;
uniform vec3 osg_Irradiance[9];
uniform mat3 osg_TurnToEnvironment;
uniform samplerCube osg_Mirrored;

vec3 decoded(vec3 color) { return pow(max(color, 0.0), vec3(2.2)); }

vec3 mirrored(vec3 way, float level)
{
#ifdef GL_ARB_shader_texture_lod
    return decoded(textureCubeLod(osg_Mirrored, way, level).rgb);
#else
    return decoded(textureCube(osg_Mirrored, way, level).rgb);
#endif
}

vec3 irradiance(vec3 n)
{
    return max(osg_Irradiance[0] + osg_Irradiance[1] * n.y + osg_Irradiance[2] * n.z + osg_Irradiance[3] * n.x +
        osg_Irradiance[4] * (n.x * n.y) + osg_Irradiance[5] * (n.y * n.z) +
        osg_Irradiance[6] * (3.0 * n.z * n.z - 1.0) + osg_Irradiance[7] * (n.x * n.z) +
        osg_Irradiance[8] * (n.x * n.x - n.y * n.y), 0.0);
}
)";

// How much of it is mirrored: a curve that was fitted to the integral of the equations above.
const char* const environmentLight = R"(
    if (osg_Environment.r + osg_Environment.g + osg_Environment.b > 0.0) {
        vec3 around = scattered * irradiance(osg_TurnToEnvironment * normal);
        if (osg_Environment.a > 0.0) {
            vec4 fit = roughness * vec4(-1.0, -0.0275, -0.572, 0.022) + vec4(1.0, 0.0425, 1.04, -0.04);
            float edge = min(fit.x * fit.x, exp2(-9.28 * nv)) * fit.x + fit.y;
            vec3 share = straight * (fit.z - 1.04 * edge) + 1.04 * edge + fit.w;
            vec3 way = osg_TurnToEnvironment * reflect(-look, normal);
            vec3 seen = mirrored(way, roughness * (osg_Environment.a - 1.0));
            around += share * mix(seen, irradiance(way) / 3.14159265, roughness * roughness);
        }
        sum += osg_Environment.rgb * around;
    }
)";

std::string coords(std::size_t texture)
{
    return "coords" + std::to_string(texture);
}

/// The coordinates of a vertex as GLSL tells them.
std::string sourceOf(const Texture& texture)
{
    switch (texture.coordinates) {
    case SurfaceTexture::CAMERA_SPHERE:
    case SurfaceTexture::CAMERA_NORMAL:
        return texture.sampler == ShadingPlan::CUBE ? "vec4(osg_TurnToWorld * normal, 1.0)"
                                                    : "vec4(normal, 1.0)";
    case SurfaceTexture::CAMERA_POSITION:
        return "place";
    case SurfaceTexture::CAMERA_REFLECTION:
        return texture.sampler == ShadingPlan::CUBE ? "vec4(osg_TurnToWorld * thrown, 1.0)"
                                                    : "vec4(thrown, 1.0)";
    case SurfaceTexture::REFLECTION_SPHERE:
        return "vec4(thrown.xy / max(2.0 * length(thrown + vec3(0.0, 0.0, 1.0)), 1e-6) + 0.5, 0.0, 1.0)";
    case SurfaceTexture::LOCAL_POSITION:
        return "gl_Vertex";
    default:
        return "gl_MultiTexCoord" + std::to_string(texture.unit);
    }
}

std::string vertexText(const ShadingPlan& plan)
{
    std::string result = version;
    result += varyings;
    result += "uniform mat3 osg_TurnToWorld;\n";
    for (std::size_t i = 0; i < plan.textures.size(); ++i) {
        result += "varying vec4 " + coords(i) + ";\n";
        if (plan.textures[i].hasTransform)
            result += "uniform mat4 " + ShadingNames::transform(i) + ";\n";
    }
    result += R"(
void main()
{
    vec4 place = gl_ModelViewMatrix * gl_Vertex;
    eyePlace = place.xyz;
    eyeNormal = gl_NormalMatrix * gl_Normal;
    vertexColor = gl_Color;
    fogDepth = gl_FogCoord;
    gl_ClipVertex = place;
    gl_Position = ftransform();
    vec3 normal = eyeNormal * inversesqrt(max(dot(eyeNormal, eyeNormal), 1e-20));
    vec3 thrown = reflect(place.xyz * inversesqrt(max(dot(place.xyz, place.xyz), 1e-20)), normal);
)";
    for (std::size_t i = 0; i < plan.textures.size(); ++i) {
        const std::string matrix =
            plan.textures[i].hasTransform ? ShadingNames::transform(i) + " * " : std::string();
        result += "    " + coords(i) + " = " + matrix + sourceOf(plan.textures[i]) + ";\n";
    }
    return result + "}\n";
}

/// Writes the fragment's part, texture by texture.
class FragmentText
{
public:
    explicit FragmentText(const ShadingPlan& plan)
        : _plan(plan)
        , _isPhysical(plan.model == SurfaceShading::PHYSICAL)
    {
    }

    std::string write()
    {
        declare();
        _text += "\nvoid main()\n{\n    vec3 look = unit(-eyePlace);\n    vec3 normal = unit(eyeNormal);\n"
                 "    if (!gl_FrontFacing)\n        normal = -normal;\n";
        readNormal();
        if (_isPhysical)
            readPhysical();
        else
            readPhong();
        _text += _isPhysical ? physicalLight : phongLight;
        if (_isPhysical)
            _text += environmentLight;
        finish();
        return _text;
    }

private:
    /// Index of the texture with a role on a side; the number of textures when there is none.
    std::size_t find(SurfaceShading::Role role, SurfaceShading::Sides side) const
    {
        const auto found =
            std::find_if(_plan.textures.begin(), _plan.textures.end(), [&](const Texture& texture) {
                return texture.role == role && (texture.sides & side) != 0;
            });
        return static_cast<std::size_t>(found - _plan.textures.begin());
    }
    bool has(SurfaceShading::Role role) const
    {
        return find(role, SurfaceShading::BOTH_SIDES) < _plan.textures.size();
    }

    std::string sample(std::size_t index) const
    {
        const ShadingPlan::Sampler sampler = _plan.textures[index].sampler;
        if (sampler == ShadingPlan::CUBE)
            return "textureCube(" + ShadingNames::map(index) + ", " + coords(index) + ".xyz)";
        return (sampler == ShadingPlan::SPACE ? "texture3DProj(" : "texture2DProj(") +
               ShadingNames::map(index) + ", " + coords(index) + ")";
    }

    /// What \a valueOf tells of the texture with a role on the side that is seen; \a neutral on a side
    /// without one.
    template <class ValueOf>
    std::string onSide(SurfaceShading::Role role, const char* neutral, ValueOf valueOf) const
    {
        const std::size_t front = find(role, SurfaceShading::FRONT);
        const std::size_t back = find(role, SurfaceShading::BACK);
        if (front == back)
            return valueOf(front);
        const auto value = [&](std::size_t index) {
            return index < _plan.textures.size() ? valueOf(index) : std::string(neutral);
        };
        return "(gl_FrontFacing ? " + value(front) + " : " + value(back) + ")";
    }

    /// What the texture with a role shows at the fragment.
    std::string texel(SurfaceShading::Role role, const char* neutral = "vec4(1.0)") const
    {
        return onSide(role, neutral, [this](std::size_t index) { return sample(index); });
    }

    /// Of a uniform of two sides the one that is seen.
    static std::string ofSide(const char* name) { return std::string(name) + "[gl_FrontFacing ? 0 : 1]"; }

    void declare()
    {
        _text = version;
        if (_isPhysical)
            _text += "#extension GL_ARB_shader_texture_lod : enable\n";
        _text += varyings;
        for (std::size_t i = 0; i < _plan.textures.size(); ++i) {
            _text += "varying vec4 " + coords(i) + ";\nuniform ";
            static const char* const types[] = {"sampler2D ", "samplerCube ", "sampler3D "};
            _text += types[_plan.textures[i].sampler];
            _text += ShadingNames::map(i) + ";\n";
        }
        const auto uniform = [this](const char* type, const char* name, const char* size = "") {
            _text.append("uniform ").append(type).append(" ").append(name).append(size).append(";\n");
        };
        if (_isPhysical) {
            uniform("vec4", ShadingNames::baseColors, "[2]");
            uniform("vec2", ShadingNames::metalRoughness, "[2]");
            _text += environmentFunctions;
        }
        if (_isPhysical || has(SurfaceShading::EMISSION))
            uniform("vec3", ShadingNames::emissions, "[2]");
        if (has(SurfaceShading::NORMAL))
            uniform("float", ShadingNames::normalScale, "[2]");
        if (has(SurfaceShading::OCCLUSION))
            uniform("float", ShadingNames::occlusionStrength, "[2]");
        _text += lightFunctions;
    }

    // The axes of the texture on the face follow from how place and coordinates change over the screen.
    void readNormal()
    {
        if (!has(SurfaceShading::NORMAL))
            return;
        const std::string at = onSide(SurfaceShading::NORMAL, "vec4(0.0, 0.0, 0.0, 1.0)",
                                      [](std::size_t i) { return coords(i); });
        _text += "    vec4 place = " + at + ";\n    vec2 at = place.st / place.q;\n    vec3 bump = " +
                 texel(SurfaceShading::NORMAL, "vec4(0.5, 0.5, 1.0, 1.0)") +
                 ".xyz * 2.0 - 1.0;\n    bump.xy *= " + ofSide(ShadingNames::normalScale) + ";\n";
        _text += R"(    vec3 acrossX = cross(dFdy(eyePlace), normal);
    vec3 acrossY = cross(normal, dFdx(eyePlace));
    vec3 tangent = acrossX * dFdx(at.s) + acrossY * dFdy(at.s);
    vec3 bitangent = acrossX * dFdx(at.t) + acrossY * dFdy(at.t);
    float size = inversesqrt(max(max(dot(tangent, tangent), dot(bitangent, bitangent)), 1e-30));
    normal = unit(bump.x * size * tangent + bump.y * size * bitangent + bump.z * normal);
)";
    }

    void readPhong()
    {
        const auto material = [this](const char* type, const char* name, const std::string& member) {
            _text += std::string("    ") + type + ' ' + name + " = gl_FrontFacing ? gl_FrontMaterial." +
                     member + " : gl_BackMaterial." + member + ";\n";
        };
        material("vec4", "diffuse", "diffuse");
        material("vec3", "ambient", "ambient.rgb");
        material("vec3", "specular", "specular.rgb");
        if (has(SurfaceShading::EMISSION))
            _text += "    vec3 emission = " + ofSide(ShadingNames::emissions) + ";\n";
        else
            material("vec3", "emission", "emission.rgb");
        material("float", "shininess", "shininess");
        if (_plan.hasVertexColors)
            _text += "    diffuse = vertexColor;\n";
        if (has(SurfaceShading::COLOR)) {
            _text += "    vec4 tint = " + texel(SurfaceShading::COLOR) + ";\n";
            if (!_plan.tintsAll)
                _text += "    diffuse *= tint;\n    ambient *= tint.rgb;\n";
        }
        if (has(SurfaceShading::AMBIENT))
            _text += "    ambient *= " + texel(SurfaceShading::AMBIENT) + ".rgb;\n";
        if (has(SurfaceShading::SPECULAR))
            _text += "    specular *= " + texel(SurfaceShading::SPECULAR) + ".rgb;\n";
        if (has(SurfaceShading::SHININESS))
            _text += "    shininess *= " + texel(SurfaceShading::SHININESS) + ".a;\n";
        if (has(SurfaceShading::EMISSION))
            _text += "    emission *= " + texel(SurfaceShading::EMISSION) + ".rgb;\n";
    }

    // Colours of images are those of a screen, all others are light.
    void readPhysical()
    {
        _text += "    vec4 base = " + ofSide(ShadingNames::baseColors) +
                 ";\n    vec3 emission = " + ofSide(ShadingNames::emissions) +
                 ";\n    vec2 metalRough = " + ofSide(ShadingNames::metalRoughness) +
                 ";\n    float metallic = metalRough.x;\n    float roughness = metalRough.y;\n";
        if (_plan.hasVertexColors)
            _text += "    base = vertexColor;\n";
        if (has(SurfaceShading::COLOR))
            _text += "    vec4 tint = " + texel(SurfaceShading::COLOR) +
                     ";\n    base *= vec4(decoded(tint.rgb), tint.a);\n";
        if (has(SurfaceShading::METALLIC_ROUGHNESS))
            _text += "    vec3 metal = " + texel(SurfaceShading::METALLIC_ROUGHNESS) +
                     ".rgb;\n    metallic *= metal.b;\n    roughness *= metal.g;\n";
        if (has(SurfaceShading::EMISSION))
            _text += "    emission *= decoded(" + texel(SurfaceShading::EMISSION) + ".rgb);\n";
    }

    void finish()
    {
        const bool hasTint = !_isPhysical && _plan.tintsAll && has(SurfaceShading::COLOR);
        if (!_isPhysical)
            _text +=
                hasTint ? "    sum = min(sum, 1.0) * tint.rgb + highlights;\n" : "    sum += highlights;\n";
        if (has(SurfaceShading::OCCLUSION))
            _text += "    sum *= mix(1.0, " + texel(SurfaceShading::OCCLUSION) + ".r, " +
                     ofSide(ShadingNames::occlusionStrength) + ");\n";
        if (_isPhysical)
            _text += "    sum = pow(max(sum, 0.0), vec3(1.0 / 2.2));\n";
        const char* const alpha = _isPhysical ? "base.a" : hasTint ? "diffuse.a * tint.a" : "diffuse.a";
        _text += std::string("    gl_FragColor = vec4(inFog(min(sum, 1.0)), ") + alpha + ");\n}\n";
    }

    const ShadingPlan& _plan;
    const bool _isPhysical;
    std::string _text;
};

} // namespace

namespace ShadingNames {

const char* const baseColors = "baseColors";
const char* const emissions = "emissions";
const char* const metalRoughness = "metalRoughness";
const char* const normalScale = "normalScale";
const char* const occlusionStrength = "occlusionStrength";

std::string map(std::size_t texture)
{
    return "map" + std::to_string(texture);
}

std::string transform(std::size_t texture)
{
    return "transform" + std::to_string(texture);
}

} // namespace ShadingNames

const char* shadingLights()
{
    return lightFunctions;
}

const char* phongSum()
{
    return phongLight;
}

std::vector<osg::SHLProgram::Source> shadingText(const ShadingPlan& plan)
{
    return {{osg::SHLProgram::VERTEX, vertexText(plan)},
            {osg::SHLProgram::FRAGMENT, FragmentText(plan).write()}};
}

} // namespace Orvane
