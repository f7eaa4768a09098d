#include "core/VolumeRay.h"

namespace Orvane::VolumeRay {

// Planes that cut shapes cut the ray, not the faces of the box: a place at 0 is inside of all.
const char* const vertexText = R"(#version 120
varying vec3 boxPlace;

void main()
{
    boxPlace = gl_Vertex.xyz;
    gl_ClipVertex = vec4(0.0);
    gl_Position = ftransform();
}
)";

const char* const variables = R"(#version 120
varying vec3 boxPlace;
uniform vec3 boxSize;
uniform vec3 voxelCount;
uniform int osg_PlaneCount;
uniform vec4 osg_Planes[6];
uniform sampler2D osg_Depth;
uniform vec4 osg_DepthPart;

vec3 place;
vec3 eyePlace;
vec3 look;
vec4 texel;
vec3 normal;
float steepness;
)";

const char* const shadedHead = R"(
vec3 shaded(vec4 diffuse, vec3 ambient, vec3 specular, vec3 emission, float shininess)
{
)";
const char* const shadedTail = R"(
    return min(sum + highlights, 1.0);
}

// The normal for a gradient in the system of the box.
void turnTo(vec3 direction)
{
    vec3 turned = gl_NormalMatrix * direction;
    normal = dot(turned, turned) > 0.0 ? unit(turned) : look;
    normal = faceforward(normal, -look, normal);
}
)";

// A place on the ray is `from + t * way`, from the eye at 0 to the back of the box at 1.
const char* const walk = R"(
bool isParallel;
vec3 rayFrom;
vec3 rayWay;
vec3 eyeFrom;
vec3 eyeWay;
float rayBegin;
float rayEnd;

void goTo(float t)
{
    place = rayFrom + t * rayWay;
    eyePlace = eyeFrom + t * eyeWay;
    look = isParallel ? vec3(0.0, 0.0, 1.0) : unit(-eyeWay);
}

float notNull(float v) { return abs(v) < 1e-9 ? 1e-9 : v; }

void cut(vec4 plane)
{
    float height = dot(plane, vec4(eyeFrom, 1.0));
    float rise = dot(plane.xyz, eyeWay);
    if (rise > 0.0)
        rayBegin = max(rayBegin, -height / rise);
    else if (rise < 0.0)
        rayEnd = min(rayEnd, -height / rise);
    else if (height < 0.0)
        rayEnd = rayBegin;
}

// Where something opaque stands in the way.
void stopAtDepth()
{
    float depth = texture2D(osg_Depth, (gl_FragCoord.xy - osg_DepthPart.xy) * osg_DepthPart.zw).r * 2.0 - 1.0;
    mat4 p = gl_ProjectionMatrix;
    float z = (p[3][2] - depth * p[3][3]) / notNull(depth * p[2][3] - p[2][2]);
    rayEnd = min(rayEnd, (z - eyeFrom.z) / notNull(eyeWay.z));
}

bool findRay()
{
    vec3 back = (gl_ModelViewMatrix * vec4(boxPlace, 1.0)).xyz;
    isParallel = gl_ProjectionMatrix[3][3] > 0.5;
    eyeFrom = isParallel ? vec3(back.xy, 0.0) : vec3(0.0);
    eyeWay = back - eyeFrom;
    vec3 start = (gl_ModelViewMatrixInverse * vec4(eyeFrom, 1.0)).xyz;
    rayFrom = start / boxSize + 0.5;
    rayWay = (boxPlace - start) / boxSize;
    vec3 divisor = vec3(notNull(rayWay.x), notNull(rayWay.y), notNull(rayWay.z));
    vec3 entry = min(-rayFrom / divisor, (1.0 - rayFrom) / divisor);
    rayBegin = max(max(entry.x, entry.y), max(entry.z, 0.0));
    rayEnd = 1.0;
    for (int i = 0; i < osg_PlaneCount; ++i)
        cut(osg_Planes[i]);
    if (osg_DepthPart.z > 0.0)
        stopAtDepth();
    return rayBegin < rayEnd;
}

// The depth of the place where the ray begins: what is opaque before it hides all.
float beginDepth()
{
    vec4 begin = gl_ProjectionMatrix * vec4(eyeFrom + rayBegin * eyeWay, 1.0);
    return begin.z > -begin.w ? clamp(0.5 * begin.z / begin.w + 0.5, 0.0, 1.0) : 0.0;
}
)";

// Two steps for each voxel; where they would be more than 1024 they are longer.
const char* const mainHead = R"(
void main()
{
    if (!findRay())
        discard;
    gl_FragDepth = beginDepth();
    float voxels = length(rayWay * voxelCount) * (rayEnd - rayBegin);
    int count = int(clamp(ceil(2.0 * voxels - 0.01), 1.0, 1024.0));
    float stride = (rayEnd - rayBegin) / float(count);
    float thickness = voxels / float(count);
    vec3 sum = vec3(0.0);
    float left = 1.0;
)";

const char* const mainLoop = R"(
    for (int i = 0; i < count; ++i) {
        float t = rayBegin + (float(i) + 0.5) * stride;
        goTo(t);
)";

const char* const mainTail = R"(
    gl_FragColor = vec4(sum / max(1.0 - left, 1e-5), 1.0 - left);
}
)";

} // namespace Orvane::VolumeRay
