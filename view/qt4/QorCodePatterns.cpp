#include "QorCodePatterns.h"

namespace Orvane::Qt4::QorCodePatterns {

namespace {

const char ecmaKeywordList[] =
    "abstract|boolean|break|byte|case|catch|char|class|const|continue|default|delete|"
    "do|double|else|export|extends|false|final|finally|float|for|function|goto|if|"
    "implements|in|instanceof|int|long|native|new|null|package|private|protected|"
    "public|return|short|static|super|switch|synchronized|this|throw|throws|transient|"
    "true|try|typeof|undefined|var|void|while|with";

/// The keywords and types, then the words reserved for future use.
const char glslKeywordList[] =
    "attribute|break|const|continue|discard|do|else|false|for|if|in|inout|main|out|"
    "return|true|uniform|varying|while|struct|int|ivec2|ivec3|ivec4|mat2|mat3|mat4|"
    "float|vec2|vec3|vec4|void|bool|bvec2|bvec3|bvec4|sampler1D|sampler2D|sampler3D|"
    "samplerCube|sampler1DShadow|sampler2DShadow|asm|cast|class|default|double|dvec2|"
    "dvec3|dvec4|enum|extern|external|fixed|fvec2|fvec3|fvec4|goto|half|hvec2|hvec3|"
    "hvec4|inline|input|interface|long|namespace|noinline|output|packed|public|"
    "sampler2DRect|sampler3DRect|sampler2DRectShadow|short|sizeof|static|switch|template|"
    "this|typedef|union|unsigned|using|volatile";

const char glslFunctionList[] =
    "abs|acos|all|any|asin|atan|ceil|clamp|cos|cross|dFdx|dFdy|degrees|distance|"
    "dot|equal|exp|exp2|faceforward|floor|fract|ftransform|fwidth|greaterThan|"
    "greaterThanEqual|inversesqrt|length|lessThan|lessThanEqual|log|log2|matrixCompMult|"
    "max|min|mix|mod|noise1|noise2|noise3|noise4|normalize|not|notEqual|pow|radians|"
    "reflect|refract|shadow1D|shadow1DLod|shadow1DProj|shadow1DProjLod|shadow2D|"
    "shadow2DLod|shadow2DProj|shadow2DProjLod|sign|sin|smoothstep|sqrt|step|tan|"
    "texture1D|texture1DLod|texture1DProj|texture1DProjLod|texture2D|texture2DLod|"
    "texture2DProj|texture2DProjLod|texture3D|texture3DLod|texture3DProj|texture3DProjLod|"
    "textureCube|textureCubeLod";

const char indexPattern[] = R"(\[\s*(\d|[1-9]\d|[a-zA-Z_]\w*)\s*\])";

/// A built-in variable of GLSL 1.x.
struct Variable
{
    const char* name;
    bool isArray;
    const char* members; ///< parted by bars
};

const Variable glslVariableTable[] = {
    {"gl_BackColor", false, ""},
    {"gl_BackLightModelProduct", false, "sceneColor"},
    {"gl_BackLightProduct", true, "ambient|diffuse|specular"},
    {"gl_BackMaterial", false, "emission|ambient|diffuse|specular|shininess"},
    {"gl_BackSecondaryColor", false, ""},
    {"gl_ClipPlane", false, ""},
    {"gl_ClipVertex", false, ""},
    {"gl_Color", false, ""},
    {"gl_DepthRange", false, "near|far|diff"},
    {"gl_EyePlaneQ", false, ""},
    {"gl_EyePlaneR", false, ""},
    {"gl_EyePlaneS", false, ""},
    {"gl_EyePlaneT", false, ""},
    {"gl_Fog", false, "color|density|start|end|scale"},
    {"gl_FogCoord", false, ""},
    {"gl_FogFragCoord", false, ""},
    {"gl_FragColor", false, ""},
    {"gl_FragCoord", false, ""},
    {"gl_FragData", false, ""},
    {"gl_FragDepth", false, ""},
    {"gl_FrontColor", false, ""},
    {"gl_FrontFacing", false, ""},
    {"gl_FrontLightModelProduct", false, "sceneColor"},
    {"gl_FrontLightProduct", true, "ambient|diffuse|specular"},
    {"gl_FrontMaterial", false, "emission|ambient|diffuse|specular|shininess"},
    {"gl_FrontSecondaryColor", false, ""},
    {"gl_LightModel", false, "ambient"},
    {"gl_LightSource", true,
     "ambient|diffuse|specular|position|halfVector|spotDirection|spotExponent|spotCutoff|"
     "spotCosCutoff|constantAttenuation|linearAttenuation|quadraticAttenuation"},
    {"gl_MaxClipPlanes", false, ""},
    {"gl_MaxCombinedTextureImageUnits", false, ""},
    {"gl_MaxDrawBuffers", false, ""},
    {"gl_MaxFragmentUniformComponents", false, ""},
    {"gl_MaxLights", false, ""},
    {"gl_MaxTextureCoords", false, ""},
    {"gl_MaxTextureImageUnits", false, ""},
    {"gl_MaxTextureUnits", false, ""},
    {"gl_MaxVaryingFloats", false, ""},
    {"gl_MaxVertexAttribs", false, ""},
    {"gl_MaxVertexTextureImageUnits", false, ""},
    {"gl_MaxVertexUniformComponents", false, ""},
    {"gl_ModelViewMatrix", false, ""},
    {"gl_ModelViewMatrixInverse", false, ""},
    {"gl_ModelViewMatrixInverseTranspose", false, ""},
    {"gl_ModelViewMatrixTranspose", false, ""},
    {"gl_ModelViewProjectionMatrix", false, ""},
    {"gl_ModelViewProjectionMatrixInverse", false, ""},
    {"gl_ModelViewProjectionMatrixInverseTranspose", false, ""},
    {"gl_ModelViewProjectionMatrixTranspose", false, ""},
    {"gl_MultiTexCoord0", false, ""},
    {"gl_MultiTexCoord1", false, ""},
    {"gl_MultiTexCoord2", false, ""},
    {"gl_MultiTexCoord3", false, ""},
    {"gl_MultiTexCoord4", false, ""},
    {"gl_MultiTexCoord5", false, ""},
    {"gl_MultiTexCoord6", false, ""},
    {"gl_MultiTexCoord7", false, ""},
    {"gl_Normal", false, ""},
    {"gl_NormalMatrix", false, ""},
    {"gl_NormalScale", false, ""},
    {"gl_ObjectPlaneQ", false, ""},
    {"gl_ObjectPlaneR", false, ""},
    {"gl_ObjectPlaneS", false, ""},
    {"gl_ObjectPlaneT", false, ""},
    {"gl_Point", false,
     "size|sizeMin|sizeMax|fadeThresholdSize|distanceConstantAttenuation|"
     "distanceLinearAttenuation|distanceQuadraticAttenuation"},
    {"gl_PointSize", false, ""},
    {"gl_Position", false, ""},
    {"gl_ProjectionMatrix", false, ""},
    {"gl_ProjectionMatrixInverse", false, ""},
    {"gl_ProjectionMatrixInverseTranspose", false, ""},
    {"gl_ProjectionMatrixTranspose", false, ""},
    {"gl_SecondaryColor", false, ""},
    {"gl_TexCoord", false, ""},
    {"gl_TextureEnvColor", false, ""},
    {"gl_TextureMatrix", false, ""},
    {"gl_TextureMatrixInverse", false, ""},
    {"gl_TextureMatrixInverseTranspose", false, ""},
    {"gl_TextureMatrixTranspose", false, ""},
    {"gl_Vertex", false, ""},
};

QString wordsPattern(const QString& words)
{
    return QStringLiteral("\\b(%1)\\b").arg(words);
}

QString optional(const QString& pattern)
{
    return QLatin1Char('(') + pattern + QStringLiteral(")?");
}

QString variablePattern(const Variable& variable)
{
    QString pattern = QLatin1String(variable.name);
    if (variable.isArray)
        pattern += optional(QLatin1String(indexPattern));
    if (*variable.members)
        pattern += optional(QStringLiteral("\\s*\\.\\s*(%1)").arg(QLatin1String(variable.members)));
    return pattern;
}

} // namespace

QString anyOf(const QStringList& words)
{
    return wordsPattern(words.join(QLatin1Char('|')));
}

QString ecmaKeyword()
{
    return wordsPattern(QLatin1String(ecmaKeywordList));
}

QString glslKeyword()
{
    return wordsPattern(QLatin1String(glslKeywordList));
}

QString glslFunction()
{
    return wordsPattern(QLatin1String(glslFunctionList));
}

QString glslVariable()
{
    QStringList patterns;
    for (const Variable& variable : glslVariableTable)
        patterns << variablePattern(variable);
    return anyOf(patterns) + QStringLiteral("(\\s)*");
}

QStringList glslVariableNames()
{
    QStringList names;
    for (const Variable& variable : glslVariableTable)
        names << QLatin1String(variable.name);
    return names;
}

QString glslVariableSuffix()
{
    return optional(QLatin1String(indexPattern)) + QStringLiteral("(\\s*\\.\\s*[rgbaxyzwstpq]{1,4})?\\W");
}

QString glslPreprocessor()
{
    return QStringLiteral("^(\\s)*#(\\s)*\\b(define|undef|include|error|pragma|extension|version|line|if|"
                          "ifdef|ifndef|else|elif|endif)\\b");
}

QString preprocessorEnd()
{
    return QStringLiteral("(%1|%2|%3)").arg(QStringLiteral("//"), commentStart(), lineEnd());
}

QString lineComment()
{
    return QStringLiteral("//.*");
}

QString lineEnd()
{
    return QStringLiteral("[\n\r\f]*$");
}

QString commentStart()
{
    return QStringLiteral("/\\*");
}

QString commentEnd()
{
    return QStringLiteral("\\*/");
}

} // namespace Orvane::Qt4::QorCodePatterns
