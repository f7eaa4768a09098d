#include "BenchScenes.h"

#include <cstdarg>
#include <cstdio>

namespace bench {

namespace {

void append(std::string& out, const char* format, ...) __attribute__((format(printf, 2, 3)));

void append(std::string& out, const char* format, ...)
{
    char buffer[512];
    va_list arguments;
    va_start(arguments, format);
    const int length = std::vsnprintf(buffer, sizeof buffer, format, arguments);
    va_end(arguments);
    out.append(buffer, static_cast<std::size_t>(length));
}

void appendPoints(std::string& out, int side)
{
    for (int z = 0; z <= side; ++z)
        for (int x = 0; x <= side; ++x)
            append(out, "%.3f %.4f %.3f ", x * 0.01, 0.001 * ((x * 31 + z * 17) % 97), z * 0.01);
}

void appendFaces(std::string& out, int side)
{
    for (int z = 0; z < side; ++z) {
        for (int x = 0; x < side; ++x) {
            const int a = z * (side + 1) + x;
            const int b = a + side + 1;
            append(out, "%d %d %d -1 %d %d %d -1 ", a, b, a + 1, a + 1, b, b + 1);
        }
    }
}

} // namespace

std::string boxesXml(int count)
{
    std::string out = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<X3D profile=\"Interchange\" "
                      "version=\"4.0\">\n<Scene>\n";
    for (int i = 0; i < count; ++i)
        append(out,
               "<Transform DEF=\"Box%d\" translation=\"%d %d %d\">\n  <Shape>\n    <Appearance>\n      "
               "<Material "
               "diffuseColor=\"0.%d 0.%d 0.5\"/>\n    </Appearance>\n    <Box size=\"0.8 0.8 0.8\"/>\n  "
               "</Shape>\n</Transform>\n",
               i, i % 100, i / 100 % 100, i / 10000, i % 10, i / 10 % 10);
    return out + "</Scene>\n</X3D>\n";
}

std::string tilesVrml(int count)
{
    std::string out = "#VRML V2.0 utf8\n"
                      "PROTO Tile [ exposedField SFVec3f place 0 0 0 exposedField SFColor color 1 1 1 ] {\n"
                      "  Transform { translation IS place children Shape {\n"
                      "    appearance Appearance { material Material { diffuseColor IS color } }\n"
                      "    geometry Box { size 0.8 0.8 0.8 } } }\n}\n";
    for (int i = 0; i < count; ++i)
        append(out, "DEF Tile%d Tile { place %d %d %d color 0.%d 0.%d 0.5 }\n", i, i % 100, i / 100 % 100,
               i / 10000, i % 10, i / 10 % 10);
    return out;
}

std::string boxesVrml(int count)
{
    std::string out = "#VRML V2.0 utf8\n";
    for (int i = 0; i < count; ++i)
        append(out,
               "DEF Box%d Transform {\n  translation %d %d %d\n  children Shape {\n    appearance Appearance "
               "{\n      "
               "material Material { diffuseColor 0.%d 0.%d 0.5 }\n    }\n    geometry Box { size 0.8 0.8 0.8 "
               "}\n  "
               "}\n}\n",
               i, i % 100, i / 100 % 100, i / 10000, i % 10, i / 10 % 10);
    return out;
}

std::string usesVrml(int count)
{
    std::string out = "#VRML V2.0 utf8\nDEF Brick Shape { appearance Appearance { material Material { "
                      "diffuseColor 0.8 0.5 0.5 } } geometry Box { size 0.8 0.8 0.8 } }\n";
    for (int i = 0; i < count; ++i)
        append(out, "Transform { translation %d %d %d children USE Brick }\n", i % 100, i / 100 % 100,
               i / 10000);
    return out;
}

std::string meshXml(int side)
{
    std::string out = "<X3D profile='Interchange' version='4.0'><Scene><Shape><IndexedFaceSet coordIndex='";
    appendFaces(out, side);
    out += "'><Coordinate point='";
    appendPoints(out, side);
    return out + "'/></IndexedFaceSet></Shape></Scene></X3D>";
}

std::string meshVrml(int side)
{
    std::string out = "#VRML V2.0 utf8\nShape { geometry IndexedFaceSet { coord Coordinate { point [ ";
    appendPoints(out, side);
    out += "] } coordIndex [ ";
    appendFaces(out, side);
    return out + "] } }";
}

} // namespace bench
