#pragma once

#include <QtCore/QStringList>

/// The patterns of the syntax highlighter, to be read as `QRegExp::RegExp`.
namespace Orvane::Qt4::QorCodePatterns {

/// Any of some words, whole.
QString anyOf(const QStringList& words);

/// Words of a language.
QString ecmaKeyword();
QString glslKeyword();
QString glslFunction();
/// The built-in variables with their indexes and members, and the blanks behind.
QString glslVariable();
/// The names in `glslVariable`, one of which begins each match.
QStringList glslVariableNames();
/// Index or swizzle behind a built-in variable, and one more character.
QString glslVariableSuffix();
/// The start of a preprocessor line.
QString glslPreprocessor();
/// What the colour of a preprocessor line ends at.
QString preprocessorEnd();

/// Comments of the languages, and where they begin and end.
QString lineComment();
QString lineEnd();
QString commentStart();
QString commentEnd();

} // namespace Orvane::Qt4::QorCodePatterns
