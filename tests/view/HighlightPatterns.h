#pragma once

/// The expressions of the highlighter written out in full, as a yardstick for what it finds.
namespace HighlightPatterns {

const char EcmaKeyword[] =
    R"-(\b(abstract|boolean|break|byte|case|catch|char|class|const|continue|default|delete|do|)-"
    R"-(double|else|export|extends|false|final|finally|float|for|function|goto|if|implements|in|)-"
    R"-(instanceof|int|long|native|new|null|package|private|protected|public|return|short|)-"
    R"-(static|super|switch|synchronized|this|throw|throws|transient|true|try|typeof|undefined|)-"
    R"-(var|void|while|with)\b)-";

const char GlslVariable[] =
    R"-(\b(gl_BackColor|gl_BackLightModelProduct(\s*\.\s*(sceneColor))?|)-"
    R"-(gl_BackLightProduct(\[\s*(\d|[1-9]\d|[a-zA-Z_]\w*)\s*\])?(\s*\.\s*(ambient|diffuse|)-"
    R"-(specular))?|gl_BackMaterial(\s*\.\s*(emission|ambient|diffuse|specular|shininess))?|)-"
    R"-(gl_BackSecondaryColor|gl_ClipPlane|gl_ClipVertex|gl_Color|gl_DepthRange(\s*\.\s*(near|)-"
    R"-(far|diff))?|gl_EyePlaneQ|gl_EyePlaneR|gl_EyePlaneS|gl_EyePlaneT|gl_Fog(\s*\.\s*(color|)-"
    R"-(density|start|end|scale))?|gl_FogCoord|gl_FogFragCoord|gl_FragColor|gl_FragCoord|)-"
    R"-(gl_FragData|gl_FragDepth|gl_FrontColor|gl_FrontFacing|)-"
    R"-(gl_FrontLightModelProduct(\s*\.\s*(sceneColor))?|gl_FrontLightProduct(\[\s*(\d|[1-9]\d|)-"
    R"-([a-zA-Z_]\w*)\s*\])?(\s*\.\s*(ambient|diffuse|specular))?|)-"
    R"-(gl_FrontMaterial(\s*\.\s*(emission|ambient|diffuse|specular|shininess))?|)-"
    R"-(gl_FrontSecondaryColor|gl_LightModel(\s*\.\s*(ambient))?|gl_LightSource(\[\s*(\d|)-"
    R"-([1-9]\d|[a-zA-Z_]\w*)\s*\])?(\s*\.\s*(ambient|diffuse|specular|position|halfVector|)-"
    R"-(spotDirection|spotExponent|spotCutoff|spotCosCutoff|constantAttenuation|)-"
    R"-(linearAttenuation|quadraticAttenuation))?|gl_MaxClipPlanes|)-"
    R"-(gl_MaxCombinedTextureImageUnits|gl_MaxDrawBuffers|gl_MaxFragmentUniformComponents|)-"
    R"-(gl_MaxLights|gl_MaxTextureCoords|gl_MaxTextureImageUnits|gl_MaxTextureUnits|)-"
    R"-(gl_MaxVaryingFloats|gl_MaxVertexAttribs|gl_MaxVertexTextureImageUnits|)-"
    R"-(gl_MaxVertexUniformComponents|gl_ModelViewMatrix|gl_ModelViewMatrixInverse|)-"
    R"-(gl_ModelViewMatrixInverseTranspose|gl_ModelViewMatrixTranspose|)-"
    R"-(gl_ModelViewProjectionMatrix|gl_ModelViewProjectionMatrixInverse|)-"
    R"-(gl_ModelViewProjectionMatrixInverseTranspose|gl_ModelViewProjectionMatrixTranspose|)-"
    R"-(gl_MultiTexCoord0|gl_MultiTexCoord1|gl_MultiTexCoord2|gl_MultiTexCoord3|)-"
    R"-(gl_MultiTexCoord4|gl_MultiTexCoord5|gl_MultiTexCoord6|gl_MultiTexCoord7|gl_Normal|)-"
    R"-(gl_NormalMatrix|gl_NormalScale|gl_ObjectPlaneQ|gl_ObjectPlaneR|gl_ObjectPlaneS|)-"
    R"-(gl_ObjectPlaneT|gl_Point(\s*\.\s*(size|sizeMin|sizeMax|fadeThresholdSize|)-"
    R"-(distanceConstantAttenuation|distanceLinearAttenuation|distanceQuadraticAttenuation))?|)-"
    R"-(gl_PointSize|gl_Position|gl_ProjectionMatrix|gl_ProjectionMatrixInverse|)-"
    R"-(gl_ProjectionMatrixInverseTranspose|gl_ProjectionMatrixTranspose|gl_SecondaryColor|)-"
    R"-(gl_TexCoord|gl_TextureEnvColor|gl_TextureMatrix|gl_TextureMatrixInverse|)-"
    R"-(gl_TextureMatrixInverseTranspose|gl_TextureMatrixTranspose|gl_Vertex)\b(\s)*)-";

const char GlslSuffix[] = R"-((\[\s*(\d|[1-9]\d|[a-zA-Z_]\w*)\s*\])?(\s*\.\s*[rgbaxyzwstpq]{1,4})?\W)-";

const char GlslKeyword[] =
    R"-(\b(attribute|break|const|continue|discard|do|else|false|for|if|in|inout|main|out|return|)-"
    R"-(true|uniform|varying|while|struct|int|ivec2|ivec3|ivec4|mat2|mat3|mat4|float|vec2|vec3|)-"
    R"-(vec4|void|bool|bvec2|bvec3|bvec4|sampler1D|sampler2D|sampler3D|samplerCube|)-"
    R"-(sampler1DShadow|sampler2DShadow|asm|cast|class|default|double|dvec2|dvec3|dvec4|enum|)-"
    R"-(extern|external|fixed|fvec2|fvec3|fvec4|goto|half|hvec2|hvec3|hvec4|inline|input|)-"
    R"-(interface|long|namespace|noinline|output|packed|public|sampler2DRect|sampler3DRect|)-"
    R"-(sampler2DRectShadow|short|sizeof|static|switch|template|this|typedef|union|unsigned|)-"
    R"-(using|volatile)\b)-";

const char GlslFunction[] =
    R"-(\b(abs|acos|all|any|asin|atan|ceil|clamp|cos|cross|dFdx|dFdy|degrees|distance|dot|equal|)-"
    R"-(exp|exp2|faceforward|floor|fract|ftransform|fwidth|greaterThan|greaterThanEqual|)-"
    R"-(inversesqrt|length|lessThan|lessThanEqual|log|log2|matrixCompMult|max|min|mix|mod|)-"
    R"-(noise1|noise2|noise3|noise4|normalize|not|notEqual|pow|radians|reflect|refract|shadow1D|)-"
    R"-(shadow1DLod|shadow1DProj|shadow1DProjLod|shadow2D|shadow2DLod|shadow2DProj|)-"
    R"-(shadow2DProjLod|sign|sin|smoothstep|sqrt|step|tan|texture1D|texture1DLod|texture1DProj|)-"
    R"-(texture1DProjLod|texture2D|texture2DLod|texture2DProj|texture2DProjLod|texture3D|)-"
    R"-(texture3DLod|texture3DProj|texture3DProjLod|textureCube|textureCubeLod)\b)-";

const char Preprocessor[] =
    R"-(^(\s)*#(\s)*\b(define|undef|include|error|pragma|extension|version|line|if|ifdef|ifndef|)-"
    R"-(else|elif|endif)\b)-";

const char PreprocessorEnd[] = "(//|/\\*|[\n\r\f]*$)";
const char LineComment[] = "//.*";
const char LineEnd[] = "[\n\r\f]*$";
const char CommentStart[] = "/\\*";
const char CommentEnd[] = "\\*/";

} // namespace HighlightPatterns
