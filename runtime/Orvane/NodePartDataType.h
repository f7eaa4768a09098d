#pragma once

namespace Orvane {

/// Data type of a field. Types come in pairs: odd numbers hold one value, the next even number is the list of
/// such values.
enum NodePartDataType : int {
    NO_DT = 0,
    SFBOOL_DT = 1,
    MFBOOL_DT = 2,
    SFCOLOR_DT = 3,
    MFCOLOR_DT = 4,
    SFCOLORRGBA_DT = 5,
    MFCOLORRGBA_DT = 6,
    SFDOUBLE_DT = 7,
    MFDOUBLE_DT = 8,
    SFFLOAT_DT = 9,
    MFFLOAT_DT = 10,
    SFIMAGE_DT = 11,
    MFIMAGE_DT = 12,
    SFINT32_DT = 13,
    MFINT32_DT = 14,
    SFMATRIX3D_DT = 15,
    MFMATRIX3D_DT = 16,
    SFMATRIX3F_DT = 17,
    MFMATRIX3F_DT = 18,
    SFMATRIX4D_DT = 19,
    MFMATRIX4D_DT = 20,
    SFMATRIX4F_DT = 21,
    MFMATRIX4F_DT = 22,
    SFNODE_DT = 23,
    MFNODE_DT = 24,
    SFROTATION_DT = 25,
    MFROTATION_DT = 26,
    SFSTRING_DT = 27,
    MFSTRING_DT = 28,
    SFTIME_DT = 29,
    MFTIME_DT = 30,
    SFVEC2D_DT = 31,
    MFVEC2D_DT = 32,
    SFVEC2F_DT = 33,
    MFVEC2F_DT = 34,
    SFVEC3D_DT = 35,
    MFVEC3D_DT = 36,
    SFVEC3F_DT = 37,
    MFVEC3F_DT = 38,
    SFVEC4D_DT = 39,
    MFVEC4D_DT = 40,
    SFVEC4F_DT = 41,
    MFVEC4F_DT = 42,
    // The runtime's own numbers; the embedded runtime has no types there.
    SFRESERVED1_DT = 43,
    MFRESERVED1_DT = 44,
    SFRESERVED2_DT = 45,
    MFRESERVED2_DT = 46,
    SFRESERVED3_DT = 47,
    MFRESERVED3_DT = 48
};

} // namespace Orvane
